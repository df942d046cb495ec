// Goes over a movie for its texts.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "MovieTexts.h"
#include "StaticTexts.h"
#include "SwfTagDefineEditText.h"

namespace zelk {

class TextCollector {
public:
    TextCollector(const libswf::SwfMovieSafe& movie, TextChoice choice);
    MovieTexts run();

private:
    // The list of tags that is gone over: the movie's or a sprite's.
    struct List {
        std::optional<uint16_t> sprite;
        uint32_t frame = 1;

        /// "sprite12/frame3".
        std::string frameKey() const;
        /// "sprite 12, frame 3".
        std::string frameText() const;
    };

    void notePlaces(const libswf::SwfTags& tags, List list);
    void collect(const libswf::SwfTags& tags, List list);
    void collectTag(const libswf::SwfTagWrapper& tag, const List& list);
    void addStatic(const libswf::SwfTagDefineText& text, const List& list);
    void addField(const libswf::SwfTagDefineEditText& field, const List& list);
    void addScripts(const libswf::SwfTagWrapper& tag, const List& list);
    void addNames(const libswf::SwfTag& tag, const List& list);
    void addPlaceName(uint16_t depth, const libswf::SwfString& name, const List& list);

    /// A text of the current tag with what holds for all of them.
    MovieText start(TextKind kind, const libswf::SwfTag& tag, const List& list) const;
    void add(MovieText text, std::string key);
    void addName(TextKind kind, uint32_t slot, const libswf::SwfString& name, std::string key, const List& list);
    void setFont(MovieText& text, uint16_t font) const;
    /// The key, or with a number behind it when it was given before.
    std::string unique(std::string key);

    const libswf::SwfMovieSafe& _movie;
    const TextChoice _choice;
    const TextFonts _fonts;
    std::unordered_map<uint16_t, std::string> _places; // of characters
    std::map<std::string, uint32_t> _keys;             // how often each was asked for
    std::vector<uint32_t> _path;
    const libswf::SwfTag* _tag = nullptr; // being looked at
    MovieTexts _result;
};

} // namespace zelk
