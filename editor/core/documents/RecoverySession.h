// Copies of documents with unsaved changes, kept for the case that the program ends without closing them.
//
//   ROOT/SESSION.lock             held while the run lives (SessionLock)
//   ROOT/SESSION/N/text.xml       the text as it is edited
//   ROOT/SESSION/N/original-M.swf the movie that the text came from, inflated; if there is one
//   ROOT/SESSION/N/info           lines of a name and a value, M among them
//
// Each file is written beside its place and renamed, the info last: what is there is whole, whenever the run ends. Only
// the user can enter ROOT.
#pragma once

#include <memory>
#include <vector>

#include "DocumentFiles.h"
#include "SessionLock.h"

namespace zelk {

/// A document as it is kept.
struct KeptDocument {
    uint32_t id = 0; ///< in its session
    std::string fileName;
    FileKind kind = FileKind::swf;
    bool hasFile = false;
    std::optional<FileStamp> fileStamp;
    uint32_t original = 0; ///< another number for another movie that the text came from; 0 for none
    uint64_t caret = 0;    ///< offset in the text
    int64_t time = 0;      ///< when it was kept, milliseconds since 1970
    uint64_t textSize = 0; ///< in bytes

    static KeptDocument of(const Document& document);
};

/// The copies of one run of the program. May be moved between threads, but is used by one at a time.
class RecoverySession {
public:
    static constexpr uint64_t mostBytes = uint64_t(2) << 30; ///< in all sessions of one ROOT

    /// A new one, empty. Null when nothing can be kept there.
    static std::unique_ptr<RecoverySession> begin(const std::filesystem::path& root);
    /// Those whose run ended without end(). No other run gets them while these objects live.
    static std::vector<std::unique_ptr<RecoverySession>> ended(const std::filesystem::path& root);

    /// [any thread] In place of what was kept under this id. An original is written once for its number. Throws
    /// FileSaveException, with the reason, and keeps the former copy then.
    void keep(const KeptDocument& document, std::string_view text, const xml2swf::OriginalMovie* original);
    void forget(uint32_t id);
    /// Moves a copy here from an ended session. False when it cannot be moved; it stays there then.
    bool adopt(uint32_t id, RecoverySession& from, uint32_t fromId);

    std::vector<KeptDocument> documents() const;
    /// Throws FileLoadException.
    std::string text(uint32_t id) const;
    /// [worker thread] The document with its text and original, as modified. A text without its original loads, with a
    /// warning. Throws FileLoadException.
    void load(uint32_t id, LoadParams& params) const;

    /// The run closes all its documents: nothing of the session stays.
    void end();

private:
    RecoverySession(std::filesystem::path root, std::string name, SessionLock lock);
    std::filesystem::path folderOf(uint32_t id) const { return _folder / std::to_string(id); }
    std::optional<KeptDocument> info(const std::filesystem::path& folder) const;
    void checkRoom(const KeptDocument& document, uint64_t bytes) const;

    std::filesystem::path _root, _folder, _lockFile;
    std::optional<SessionLock> _lock;
};

} // namespace zelk
