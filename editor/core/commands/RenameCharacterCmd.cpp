#include "RenameCharacterCmd.h"

#include "CharacterText.h"

namespace zelk::guicommand {

namespace {

// The user cannot change the text while the job runs.
struct RenameParams : ThreadParams {
    std::string_view text; ///< in
    uint16_t from = 0;     ///< in
    int64_t to = 0;        ///< in
    Renaming renaming;     ///< out
};

void work(RenameParams& params) {
    params.progress.report(0);
    params.renaming = renamedCharacter(CharacterIndex(params.text), params.from, params.to);
}

} // namespace

bool RenameCharacterCmd::Execute() {
    RenameParams params;
    params.text = _text.text();
    params.from = _from;
    params.to = _to;
    runJob<work>(_session.user, "Renaming a character", params);
    if (!params.renaming.refusal.empty())
        _session.user.inform({params.renaming.refusal, "Rename Character"});
    else
        _text.replaceAll(params.renaming.changes);
    _changed = params.renaming.changes.size();
    return params.renaming.refusal.empty();
}

} // namespace zelk::guicommand
