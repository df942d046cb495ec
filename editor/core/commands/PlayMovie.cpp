#include "PlayMovie.h"

#include "Command.h"
#include "Exceptions.h"

namespace zelk::guicommand {

void playMovie(Session& session, const libswf::SwfVector<uint8_t>& movie, int width, int height) {
    if (session.player == nullptr)
        throw NoPlayerException("");
    const std::string name = session.temporaryMovies.create({movie.data(), movie.size()});
    const auto ended = [&session, name](const std::exception_ptr& failure) {
        session.temporaryMovies.remove(name);
        if (failure)
            reportFailure(session, failure);
    };
    try {
        session.player->play(name, width, height, ended);
    } catch (...) {
        session.temporaryMovies.remove(name);
        throw;
    }
}

} // namespace zelk::guicommand
