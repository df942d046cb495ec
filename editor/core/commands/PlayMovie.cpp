#include "PlayMovie.h"

namespace zelk::guicommand {

bool playMovie(Session& session, const libswf::SwfVector<uint8_t>& movie, int width, int height) {
    if (session.player == nullptr) {
        session.user.report({message(MessageCode::noPlayer), {}});
        return false;
    }
    session.player->play(session.temporaryMovies.create({movie.data(), movie.size()}), width, height);
    return true;
}

} // namespace zelk::guicommand
