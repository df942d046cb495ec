// Commands on the scripts and code of a document.
#pragma once

#include "Command.h"
#include "ScriptLabels.h"
#include "Symbols.h"
#include "TaggedText.h"

namespace zelk::guicommand::script {

/// Lets the branches of scripts go by label, or by number, as one step of undo: of those that the range from `start` to
/// `end` touches, of all when it is empty. Says so when there is nothing to change.
class ChangeBranchesCmd : public FinalCommand {
public:
    ChangeBranchesCmd(Session& session, TaggedText& text, BranchTargets targets, size_t start, size_t end)
        : _session(session), _text(text), _targets(targets), _start(start), _end(end) {}
    bool Execute() override;

private:
    Session& _session;
    TaggedText& _text;
    const BranchTargets _targets;
    const size_t _start, _end;
};

/// Collects the symbols of the text, or of the tag from `start` to `end`.
class CollectSymbolsCmd : public FinalCommand {
public:
    CollectSymbolsCmd(Session& session, TaggedText& text, size_t start, size_t end)
        : _session(session), _text(text), _start(start), _end(end) {}
    bool Execute() override;

    std::vector<Symbol> symbols;

private:
    Session& _session;
    TaggedText& _text;
    const size_t _start, _end;
};

} // namespace zelk::guicommand::script
