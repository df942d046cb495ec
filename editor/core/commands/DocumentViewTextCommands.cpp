#include "DocumentViewTextCommands.h"

#include "DocumentFiles.h"
#include "Problems.h"
#include "TagCheck.h"

namespace zelk::guicommand::documentviewtext {

namespace {

struct CheckParams : ThreadParams {
    std::string_view text; ///< in; the user cannot change it while the job runs
    Problems problems;     ///< out
};

// A part of a job.
class ProgressOfPart : public xml2swf::IProgressReporter {
public:
    ProgressOfPart(xml2swf::IProgressReporter& whole, double start, double end)
        : _whole(whole), _start(start), _end(end) {}
    void report(double fraction) override { _whole.report(_start + (_end - _start) * fraction); }

private:
    xml2swf::IProgressReporter& _whole;
    const double _start, _end;
};

// Nothing else is to be said of a text that is no movie.
void check(CheckParams& params) {
    constexpr double wellFormed = 0.1; // of the time
    ProgressOfPart first(params.progress, 0, wellFormed), rest(params.progress, wellFormed, 1);
    checkMovieText(params.text, &first);
    params.problems = problemsOfText(params.text, &rest);
}

struct FormatParams : ThreadParams {
    std::string_view text;            ///< in; the user cannot change it while the job runs
    size_t start = 0, end = 0, caret; ///< in
    FormatStyle style;                ///< in
    FormattedXml formatted;           ///< out
};

void format(FormatParams& params) {
    params.formatted = formatXml(params.text, params.start, params.end, params.caret, params.style, &params.progress);
}

void showInForm(Session& session, Document& document, ITextView& view, std::string text, bool fullForm) {
    ChangeFormParams params;
    params.text = std::move(text);
    params.original = document.original;
    params.fullForm = fullForm;
    runJob<changeForm>(session.user, "Changing the form of " + document.fileName, params);
    view.replace(0, view.text().size(), params.text);
    document.original = std::move(params.original);
    document.warnings.loaded(std::move(params.warnings));
    document.formDifferences = {};
}

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
    params.progress.checkCancelled(); // A check that was cancelled says nothing, even if it had just finished.
    _foundProblems = !params.problems.items.empty();
    _warnings.checked(warningsOfCheck(params.problems, params.text));
    if (!_foundProblems)
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
            apply(before, settings);
            return true;
        } catch (...) {
            _session.user.report(describeFailure()); // then the dialog opens again with what was typed
        }
    }
}

void MovieSettingsCmd::apply(const MovieSettings& before, const MovieSettings& settings) {
    const TextChange change = changeMovieSettings(_view.text(), settings);
    if (settings.fullForm == before.fullForm) {
        _view.replace(change.start, change.end, change.text);
        return;
    }
    std::string text(_view.text());
    text.replace(change.start, change.end - change.start, change.text);
    showInForm(_session, _document, _view, std::move(text), settings.fullForm);
}

bool ChangeFormCmd::Execute() {
    showInForm(_session, _document, _view, std::string(_view.text()), _fullForm);
    return true;
}

bool FormatXmlCmd::Execute() {
    FormatParams params;
    params.text = _view.text();
    params.start = _start;
    params.end = _end;
    params.caret = _caret;
    params.style = _style;
    runJob<format>(_session.user, "Formatting", params);
    params.progress.checkCancelled();
    if (params.formatted.changes.empty()) {
        _session.user.inform(nothingToFormat());
        return false;
    }
    _view.replaceAll(params.formatted.changes);
    _caret = params.formatted.caret;
    return true;
}

bool GotoLineCmd::Execute() {
    const std::optional<uint32_t> row = _session.user.askForRow(_view.row(), _view.rowCount());
    if (row)
        _view.gotoPlace(*row, 1);
    return row.has_value();
}

bool SwfAutoCompleteCmd::Execute() {
    const std::optional<Completion> completion =
        completionAt(_view.text(), _view.caret(), _view.fullForm(), _view.characters().get());
    if (completion)
        _view.showList(*completion);
    return completion.has_value();
}

} // namespace zelk::guicommand::documentviewtext
