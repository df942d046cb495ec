#include "PlayMovie.h"

#include <system_error>

#include "Command.h"
#include "Exceptions.h"
#include "SwfException.h"

namespace zelk::guicommand {

namespace {

std::string temporaryFile(Session& session, const libswf::SwfVector<uint8_t>& movie) {
    try {
        return session.temporaryMovies.create({movie.data(), movie.size()});
    } catch (const libswf::SwfFileException& error) {
        throw PlayerException(error.what());
    } catch (const std::system_error& error) { // There is no folder for temporary files.
        throw PlayerException(error.what());
    }
}

} // namespace

void playMovie(Session& session, const libswf::SwfVector<uint8_t>& movie, PlayRequest request) {
    if (session.player == nullptr)
        throw NoPlayerException("");
    const std::string name = temporaryFile(session, movie);
    request.fileName = name;
    const auto ended = [&session, name](const std::exception_ptr& failure) {
        session.temporaryMovies.remove(name);
        if (failure)
            reportFailure(session, failure);
    };
    try {
        session.player->play(request, ended);
    } catch (...) {
        session.temporaryMovies.remove(name);
        throw;
    }
}

} // namespace zelk::guicommand
