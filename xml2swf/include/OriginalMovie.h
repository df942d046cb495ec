// The movie that a document came from: tags whose text was not touched are written with their original bytes.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "SwfMovie.h"

namespace xml2swf {

struct TagText;

/// Remembers for each tag of a movie, at any depth, its record and a hash of its element's text. Give it to xmlToSwf by
/// ConversionOptions::original.
class OriginalMovie {
public:
    /// `movie` was read with keepRaw; it may be released afterwards. Converts it once to learn the texts.
    explicit OriginalMovie(libswf::SwfMovieSafe& movie);
    /// The same with the texts at hand: what swfToXmlDocument gave with keepRaw, and the places of its tags.
    OriginalMovie(libswf::SwfMovieSafe& movie, std::string_view document, std::span<const TagText> tags);

    uint8_t version() const { return _version; }
    bool fullForm() const { return _fullForm; }
    const libswf::SwfMovieSource& source() const { return _source; }
    const libswf::SwfBytes& wholeFile() const { return _wholeFile; }
    /// Whether the elements of a text that say what glyphs of fonts stand for are those of the original, in its order.
    bool hasFonts(std::span<const std::string_view> elements) const;
    /// Whether this is the unchanged Movie element's text.
    bool isWholeText(std::string_view movieElement) const;

    /// The search for the records of one compile.
    class Search {
    public:
        explicit Search(const OriginalMovie& original) : _original(original) {}
        /// The record of a tag whose element has this text; empty when there is none. Of several, the one that follows
        /// the last hit.
        libswf::SwfBytes find(std::string_view elementText);
        const OriginalMovie& original() const { return _original; }
        /// The last record found is the movie's last tag.
        bool atLastTag() const { return _lastIsFinal; }

    private:
        const OriginalMovie& _original;
        uint64_t _next = 0;
        bool _lastIsFinal = false;
    };

private:
    struct TextKey {
        uint64_t hash;
        uint64_t length;
        bool operator==(const TextKey&) const = default;
    };
    struct KeyHash {
        size_t operator()(const TextKey& key) const { return static_cast<size_t>(key.hash ^ key.length); }
    };
    struct Entry {
        uint64_t start, end; ///< of the element in the text
        libswf::SwfBytes record;
    };
    static TextKey keyOf(std::string_view text);
    void remember(std::string_view text, size_t movieElement, std::span<const TagText> tags);

    uint8_t _version;
    bool _fullForm;
    libswf::SwfMovieSource _source;
    libswf::SwfBytes _wholeFile;
    TextKey _wholeText{};
    std::vector<TextKey> _fonts; // of the elements, in their order
    std::unordered_map<TextKey, std::vector<Entry>, KeyHash> _records;
};

} // namespace xml2swf
