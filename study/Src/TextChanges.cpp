#include <algorithm>
#include <map>
#include <unordered_map>

#include "FieldTexts.h"
#include "MovieStrings.h"
#include "MovieTexts.h"
#include "ScriptTexts.h"
#include "StaticTexts.h"
#include "SwfException.h"
#include "SwfTagDefineEditText.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagPlaceObject.h"
#include "SwfTagsAssets.h"
#include "SwfTagsControl.h"

namespace zelk {

using namespace libswf;

namespace {

using TagPath = std::vector<uint32_t>;

const SwfTagWrapper& tagAt(const SwfTags& tags, const TagPath& path) {
    const SwfTags* list = &tags;
    for (size_t i = 0; i + 1 < path.size(); ++i)
        list = &dynamic_cast<const SwfTagDefineSprite&>(list->at(path[i])).tags;
    return list->sharedAt(path.back());
}

// What stands in front of the last part of a key: the tag or script that the text belongs to.
std::string_view ownerOf(std::string_view key) { return key.substr(0, key.rfind(':')); }

// Finds the texts that changes are for.
class TextTargets {
public:
    explicit TextTargets(const std::vector<MovieText>& texts) : _texts(texts), _taken(texts.size()) {
        for (size_t i = 0; i < texts.size(); ++i)
            _byKey.emplace(texts[i].key, i);
    }

    /// The text of the change's key, if it is the one that was changed; null otherwise.
    const MovieText* exact(const NewText& change) {
        const auto found = _byKey.find(change.key);
        if (found == _byKey.end() || (change.original && *change.original != _texts[found->second].text))
            return nullptr;
        _taken[found->second] = true;
        return &_texts[found->second];
    }
    /// In a tag or script that has more or fewer texts than when they were taken out: the one that no other change is
    /// for. Throws TextRefusal when there is no such text.
    const MovieText* moved(const NewText& change) {
        std::vector<size_t> candidates;
        for (size_t i = 0; change.original && i < _texts.size(); ++i) {
            if (!_taken[i] && _texts[i].text == *change.original && ownerOf(_texts[i].key) == ownerOf(change.key))
                candidates.push_back(i);
        }
        if (candidates.size() == 1) {
            _taken[candidates[0]] = true;
            return &_texts[candidates[0]];
        }
        const bool isKnown = _byKey.contains(change.key);
        throw TextRefusal{isKnown ? "the movie has another text there now" : "the movie has no text of this key"};
    }

private:
    const std::vector<MovieText>& _texts;
    std::unordered_map<std::string_view, size_t> _byKey;
    std::vector<bool> _taken;
};

class TextChanger {
public:
    TextChanger(SwfMovieSafe& movie, TextChangeOptions options)
        : _movie(movie), _options(options), _fonts(movie.tags.tags(), movie.version) {}

    ChangedTexts run(std::span<const NewText> changes);

private:
    void put(const MovieText& target, const std::string& text);
    void putField(SwfTagDefineEditText& field, const MovieText& target, const std::string& text) const;
    void checkGlyphs(const SwfTagDefineEditText& field, std::string_view before, std::string_view text) const;
    void putName(SwfTag& tag, const MovieText& target, const std::string& text) const;
    void replace(SwfString& string, std::string_view text) const {
        string.assign(storedString(text, string.view(), _movie.version));
    }
    void replaceInitial(SwfTagDefineEditText& field, std::string text) const;

    void putScripts(ChangedTexts& result);

    bool isTouched(const TagPath& path) const;
    SwfTagWrapper written(const SwfTagWrapper& tag, TagPath& path) const;
    void writeList(const SwfTags& from, SwfTags& to, TagPath& path) const;

    SwfMovieSafe& _movie;
    const TextChangeOptions _options;
    const TextFonts _fonts;
    std::map<TagPath, SwfTagWrapper> _touched;
    struct ScriptChange {
        uint32_t slot;
        const NewText* change;
    };
    std::map<TagPath, std::vector<ScriptChange>> _scripts; // of a tag all at once
};

ChangedTexts TextChanger::run(std::span<const NewText> changes) {
    const MovieTexts all = findTexts(_movie, {true, true});
    TextTargets targets(all.texts);
    ChangedTexts result;
    std::vector<const MovieText*> found;
    for (const NewText& change : changes)
        found.push_back(targets.exact(change));
    for (size_t i = 0; i < changes.size(); ++i) {
        const NewText& change = changes[i];
        try {
            const MovieText* target = found[i] != nullptr ? found[i] : targets.moved(change);
            if (target->text == change.text)
                continue;
            if (target->kind == TextKind::script) {
                _scripts[target->tagPath].push_back({target->slot, &change});
                continue;
            }
            put(*target, change.text);
            ++result.changed;
        } catch (const TextRefusal& refusal) {
            result.problems.push_back({change.key, refusal.reason});
        } catch (const SwfException& error) {
            result.problems.push_back({change.key, error.what()});
        }
    }
    putScripts(result);
    static_cast<SwfMovieHeader&>(result.movie) = _movie;
    result.movie.source = _movie.source();
    TagPath path;
    writeList(_movie.tags.tags(), result.movie.tags, path);
    return result;
}

void TextChanger::put(const MovieText& target, const std::string& text) {
    if (text.empty())
        throw TextRefusal{"the new text is empty"};
    const auto touched = _touched.find(target.tagPath);
    const SwfTagWrapper tag = touched != _touched.end() ? touched->second : tagAt(_movie.tags.tags(), target.tagPath);
    if (target.kind == TextKind::staticText) {
        const std::optional<std::u32string> characters = fromUtf8(text);
        if (!characters)
            throw TextRefusal{"the new text is no UTF-8"};
        putStaticText(dynamic_cast<SwfTagDefineText&>(*tag), target.slot, *characters, _fonts, _options);
    } else if (target.kind == TextKind::field) {
        putField(dynamic_cast<SwfTagDefineEditText&>(*tag), target, text);
    } else {
        putName(*tag, target, text);
    }
    _touched[target.tagPath] = tag;
}

// Through the XML of the tag, where branches lead to labels and constants stand by their text, so that sizes, branches
// and pools are worked out anew.
void TextChanger::putScripts(ChangedTexts& result) {
    for (auto& [path, changes] : _scripts) {
        const auto touched = _touched.find(path);
        const SwfTagWrapper tag = touched != _touched.end() ? touched->second : tagAt(_movie.tags.tags(), path);
        std::string element = scriptElement(tag, _movie.version);
        const std::vector<ScriptText> texts = scriptTexts(element);
        std::sort(changes.begin(), changes.end(),
                  [](const ScriptChange& a, const ScriptChange& b) { return a.slot > b.slot; }); // from the end
        uint32_t count = 0;
        const auto refuse = [&](const ScriptChange& change, std::string reason) {
            result.problems.push_back({change.change->key, std::move(reason)});
        };
        for (const ScriptChange& change : changes) {
            const ScriptText& text = texts.at(change.slot);
            try {
                const std::string bytes = storedString(change.change->text, text.bytes, _movie.version);
                element.replace(text.start, text.end - text.start, scriptValue(bytes, text.isAbc));
                ++count;
            } catch (const TextRefusal& refusal) {
                refuse(change, refusal.reason);
            }
        }
        try {
            const SwfTagWrapper made = scriptTag(element, _movie.version);
            SwfContext context;
            context.version = _movie.version;
            context.fullForm = true;
            made->prepare();
            made->getSize(context); // which tells what does not fit
            _touched[path] = made;
            result.changed += count;
        } catch (const std::exception& error) {
            for (const ScriptChange& change : changes)
                refuse(change,
                       std::string("the script of this and other new texts cannot be written: ") + error.what());
        }
    }
}

// A field that is shown in a font of the movie has only its glyphs.
void TextChanger::checkGlyphs(const SwfTagDefineEditText& field, std::string_view before, std::string_view text) const {
    const TextFont* font = field.hasFont && field.useOutlines ? _fonts.find(field.fontId) : nullptr;
    if (font == nullptr || font->characters.empty())
        return;
    const std::u32string old = fromUtf8(before).value_or(U"");
    for (const char32_t c : fromUtf8(text).value_or(U"")) {
        if (c >= U' ' && !font->characters.glyphOf(c) && old.find(c) == old.npos)
            throw TextRefusal{"font " + std::to_string(field.fontId) + " (" + font->name + ") has no glyph for " +
                              characterName(c)};
    }
}

void TextChanger::putField(SwfTagDefineEditText& field, const MovieText& target, const std::string& text) const {
    if (target.maxLength && fromUtf8(text).value_or(U"").size() > *target.maxLength)
        throw TextRefusal{"the field takes at most " + std::to_string(*target.maxLength) + " characters"};
    const std::string shown = shownString(field.initialText.view(), _movie.version);
    if (!field.html) {
        checkGlyphs(field, target.text, text);
        replaceInitial(field, text);
        return;
    }
    if (text.find_first_not_of(" \t\r\n") == text.npos)
        throw TextRefusal{"the new text is blank"};
    const HtmlRun run = htmlRuns(shown).at(target.slot - 1);
    const TextFont* font = _fonts.find(field.fontId);
    bool isOtherFace = false; // then another font is asked for somewhere
    constexpr std::string_view face = "face=\"";
    for (size_t at = shown.find(face); at != shown.npos; at = shown.find(face, at + 1))
        isOtherFace |= font == nullptr || !shown.substr(at + face.size()).starts_with(font->name + "\"");
    if (!isOtherFace)
        checkGlyphs(field, target.text, text);
    replaceInitial(field, std::string(shown).replace(run.start, run.end - run.start, asHtml(text)));
}

// Lines of text fields mostly end with \r.
void TextChanger::replaceInitial(SwfTagDefineEditText& field, std::string text) const {
    if (field.initialText.view().find('\n') == std::string_view::npos)
        std::replace(text.begin(), text.end(), '\n', '\r');
    replace(field.initialText, text);
}

void TextChanger::putName(SwfTag& tag, const MovieText& target, const std::string& text) const {
    if (auto* label = dynamic_cast<SwfTagFrameLabel*>(&tag))
        replace(label->name, text);
    else if (auto* place2 = dynamic_cast<SwfTagPlaceObject2*>(&tag))
        replace(place2->name, text);
    else if (auto* place3 = dynamic_cast<SwfTagPlaceObject3*>(&tag))
        replace(place3->name, text);
    else if (auto* assets = dynamic_cast<SwfTagExportAssets*>(&tag))
        replace(assets->assets[target.slot].name, text);
    else if (auto* symbols = dynamic_cast<SwfTagSymbolClass*>(&tag))
        replace(symbols->symbols[target.slot].name, text);
    else
        replace(dynamic_cast<SwfTagDefineEditText&>(tag).varName, text);
}

// Whether a tag at or below this path has another text.
bool TextChanger::isTouched(const TagPath& path) const {
    const auto next = _touched.lower_bound(path);
    return next != _touched.end() && next->first.size() >= path.size() &&
           std::equal(path.begin(), path.end(), next->first.begin());
}

SwfTagWrapper TextChanger::written(const SwfTagWrapper& tag, TagPath& path) const {
    if (!isTouched(path))
        return tag->source.empty() ? tag : std::make_shared<SwfTagRecord>(tag->source);
    const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get());
    if (sprite == nullptr)
        return _touched.at(path);
    auto result = std::make_shared<SwfTagDefineSprite>();
    result->longHeader = sprite->longHeader;
    result->trailing = sprite->trailing;
    result->spriteId = sprite->spriteId;
    result->frameCount = sprite->frameCount;
    result->keepsFrameCount = sprite->keepsFrameCount;
    writeList(sprite->tags, result->tags, path);
    return result;
}

void TextChanger::writeList(const SwfTags& from, SwfTags& to, TagPath& path) const {
    path.push_back(0);
    for (const auto& tag : from.items()) {
        to.append(written(tag, path));
        ++path.back();
    }
    path.pop_back();
}

} // namespace

ChangedTexts changeTexts(SwfMovieSafe& movie, std::span<const NewText> changes, TextChangeOptions options) {
    return TextChanger(movie, options).run(changes);
}

} // namespace zelk
