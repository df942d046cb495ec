#include "DocumentViewTextCommands.h"

#include "TagCheck.h"

namespace zelk::guicommand::documentviewtext {

namespace {

struct CheckParams : ThreadParams {
    std::string_view text; ///< in; the user cannot change it while the job runs
};

void check(CheckParams& params) { checkMovieText(params.text, &params.progress); }

} // namespace

bool LoadFromDocCmd::Execute() {
    _view.setText(std::move(_document.text));
    _document.text = {};
    _document.isModified = false;
    return true;
}

bool SaveAsDocCmd::Execute() {
    _document.text = _view.text();
    return true;
}

bool CheckXmlCmd::Execute() {
    CheckParams params;
    params.text = _view.text();
    runJob<check>(_session.user, "Checking", params);
    params.progress.checkCancelled(); // Nobody wants to know any more, even if it was done by then.
    _session.user.inform(xmlIsCorrect());
    return true;
}

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

bool GotoLineCmd::Execute() {
    const std::optional<uint32_t> row = _session.user.askForRow(_view.row(), _view.rowCount());
    if (row)
        _view.gotoPlace(*row, 1);
    return row.has_value();
}

bool SwfAutoCompleteCmd::Execute() {
    const std::optional<Completion> completion = completionAt(_view.text(), _view.caret());
    if (completion)
        _view.showList(*completion);
    return completion.has_value();
}

} // namespace zelk::guicommand::documentviewtext
