#include "DocumentViewTextCommands.h"

namespace zelk::guicommand::documentviewtext {

bool MovieSettingsCmd::Execute() {
    const MovieSettings before = movieSettings(_view.text());
    MovieSettings settings = before;
    for (;;) {
        const std::optional<MovieSettings> answer = _session.user.askForMovieSettings(settings);
        if (!answer || *answer == before)
            return false;
        settings = *answer;
        try {
            const TextChange change = changeMovieSettings(_view.text(), settings);
            _view.replace(change.start, change.end, change.text);
            return true;
        } catch (...) {
            _session.user.report(describeFailure()); // and he is asked again, with what he typed
        }
    }
}

} // namespace zelk::guicommand::documentviewtext
