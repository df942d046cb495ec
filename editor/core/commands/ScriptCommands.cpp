#include "ScriptCommands.h"

#include "DocumentViewListCommands.h"

namespace zelk::guicommand::script {

namespace {

// The user cannot change the text while a job runs.
struct TextParams : ThreadParams {
    std::string_view text;          ///< in
    const TagIndex* tags = nullptr; ///< in
    size_t start = 0, end = 0;      ///< in
};

struct BranchParams : TextParams {
    BranchTargets targets{};         ///< in
    std::vector<TextChange> changes; ///< out
};

struct SymbolParams : TextParams {
    std::vector<Symbol> symbols; ///< out
};

void changeBranches(BranchParams& params) {
    params.changes =
        zelk::changeBranches(params.targets, params.text, *params.tags, params.start, params.end, &params.progress);
}

void collectSymbols(SymbolParams& params) {
    params.symbols = symbolsOf(params.text, *params.tags, params.start, params.end, &params.progress);
}

void fill(TextParams& params, Session& session, TaggedText& text, size_t start, size_t end) {
    documentviewlist::BuildTagListCmd(session, text).Execute();
    params.text = text.text();
    params.tags = &text.tags();
    params.start = start;
    params.end = end;
}

} // namespace

bool ChangeBranchesCmd::Execute() {
    BranchParams params;
    fill(params, _session, _text, _start, _end);
    params.targets = _targets;
    runJob<changeBranches>(_session.user, "Rewriting scripts", params);
    if (params.changes.empty())
        _session.user.inform(noBranches());
    else
        _text.view().replaceAll(params.changes);
    return !params.changes.empty();
}

bool CollectSymbolsCmd::Execute() {
    SymbolParams params;
    fill(params, _session, _text, _start, _end);
    runJob<collectSymbols>(_session.user, "Collecting symbols", params);
    symbols = std::move(params.symbols);
    return true;
}

} // namespace zelk::guicommand::script
