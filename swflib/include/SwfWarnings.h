// What a conversion dropped, skipped, kept raw or cut, as values that the caller shows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace libswf {

class SwfIStream;
struct SwfContext;

struct SwfWarning {
    enum class Kind : uint8_t {
        dropped,  ///< a tag that could not be read is not in the result
        keptRaw,  ///< a tag or action is carried as bytes instead of fields
        skipped,  ///< an XML element or attribute that nothing reads
        cut,      ///< a value that loses bits on its way into the file
        ignored,  ///< bytes of the file that belong to nothing
        tooSmall, ///< a limit that its code exceeds
        astray    ///< a branch that does not lead to the start of an action
    };
    static constexpr uint64_t noOffset = UINT64_MAX;

    Kind kind = Kind::skipped;
    uint16_t tagCode = 0;
    std::string tagName;              ///< name of the tag or element concerned
    std::string path;                 ///< indices from the top-level list down, "4.2"; empty when not inside a tag
    uint64_t offset = noOffset;       ///< byte in the inflated movie, or in the XML text when row is set
    uint32_t row = 0, column = 0;     ///< place in the XML text, counted from 1; 0 for a place in a movie
    uint64_t targetOffset = noOffset; ///< of a branch: byte in the XML text of the element that it leads into
    uint32_t targetRow = 0;
    std::string reason;

    /// One line: "kept raw: tag 4.2 (PlaceObject3) at offset 0x1f: ...".
    std::string text() const;
};

/// "kept raw" and the like.
const char* kindText(SwfWarning::Kind kind);

/// The warnings of one conversion in the order of their discovery. Holds at most `limit` of them, so that memory stays
/// bounded on hostile input; `total` goes on counting.
class SwfWarnings {
public:
    static constexpr size_t limit = 10000;

    void add(SwfWarning warning);
    /// Adds the warnings of a later part; `finish` sees those that are held.
    void add(SwfWarnings&& later, const std::function<void(SwfWarning&)>& finish = {});
    const std::vector<SwfWarning>& items() const { return _items; }
    uint64_t total() const { return _total; }
    bool empty() const { return _total == 0; }

private:
    std::vector<SwfWarning> _items;
    uint64_t _total = 0;
};

/// Warns about the tag being read, at the stream's position. Does nothing when no one takes warnings.
void addWarning(const SwfIStream& stream, SwfWarning::Kind kind, std::string reason);
/// Warns about the tag being written.
void addWarning(const SwfContext& context, SwfWarning::Kind kind, std::string reason);

} // namespace libswf
