// What conversions warned of and what a check found, in the text that is being edited.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Conversion.h"
#include "SwfWarnings.h"
#include "TextAnchors.h"

namespace zelk {

struct Problems;

struct DocumentWarning {
    static constexpr size_t nowhere = SIZE_MAX;

    libswf::SwfWarning warning;
    size_t offset = nowhere; ///< of its element's "<" in the text
    size_t inElement = 0;    ///< bytes from there to what is meant
    // The whole element, of a warning that was given when a movie was opened:
    size_t size = 0;
    size_t hash = 0;
    std::string effect = {}; ///< of a check: "error" or "warning", in place of what the kind of warning says
};

/// Of one conversion.
struct ConversionWarnings {
    std::vector<DocumentWarning> items;
    uint64_t more = 0; ///< that were given beyond those
};

/// Of showing a movie as a text: each at the tag that it names by its path.
ConversionWarnings warningsOfLoad(const libswf::SwfWarnings& warnings, std::string_view text,
                                  std::vector<xml2swf::TagText> tags);
/// Of compiling a text.
ConversionWarnings warningsOfCompile(const libswf::SwfWarnings& warnings, std::string_view text);
/// Of a check of a text.
ConversionWarnings warningsOfCheck(const Problems& problems, std::string_view text);

/// The warnings of a document that are still true. Those of load tell of the movie that the text came from: each stays
/// until its element is gone or is saved with another content. Those of the last save or play tell of the text: each
/// stays until its element is gone or the next save or play. Those of the last check likewise, until the next.
class WarningList {
public:
    using Reader = TextAnchors::Reader;
    /// One of the list; valid until `loaded`, `compiled` or `checked`.
    enum class From : uint8_t { load, save, check };
    struct Entry {
        From from;
        uint32_t number;
        bool operator==(const Entry&) const = default;
    };

    void loaded(ConversionWarnings warnings);
    void compiled(ConversionWarnings warnings);
    void checked(ConversionWarnings warnings);
    /// The text was written as a movie: what it warned of stays true for elements that kept their bytes, of which there
    /// are none without an original.
    void savedAsMovie(std::string_view text, bool keepsOriginal);

    // The text is edited: see the members of TextAnchors.
    void willInsert(size_t at, size_t length);
    void willDelete(size_t start, size_t end, const Reader& text);
    bool settle(const Reader& text);

    /// In the order of the text; those without a place last.
    std::vector<Entry> entries() const;
    /// How many were given beyond those that are listed.
    uint64_t more() const { return of(From::load).more + of(From::save).more + of(From::check).more; }
    /// Whether there is such an entry still.
    bool has(Entry entry) const { return entry.number < of(entry.from).items.size(); }
    const DocumentWarning& at(Entry entry) const { return of(entry.from).items[entry.number].given; }
    /// Where its element is now; DocumentWarning::nowhere when it has none.
    size_t offset(Entry entry) const;

private:
    struct Item {
        DocumentWarning given;
        bool isOver = false;
    };
    struct Set {
        explicit Set(ConversionWarnings warnings = {});
        std::vector<Item> items;
        TextAnchors places;
        uint64_t more = 0;
    };

    const Set& of(From from) const { return _sets[static_cast<size_t>(from)]; }
    Set& of(From from) { return _sets[static_cast<size_t>(from)]; }
    bool isTrue(Entry entry) const;

    std::array<Set, 3> _sets; // by From
};

/// Warnings that say the same.
struct WarningGroup {
    std::string title; ///< "NUL bytes at the end of the font name, 6 tags"; of a single one its reason
    std::vector<WarningList::Entry> entries;
};

/// Puts like ones together: of one conversion, of one kind, with reasons that differ in their numbers only. In the
/// order of their first ones.
std::vector<WarningGroup> grouped(const WarningList& list, const std::vector<WarningList::Entry>& entries);

} // namespace zelk
