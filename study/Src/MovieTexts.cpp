#include "MovieTexts.h"

#include "FieldTexts.h"
#include "MovieStrings.h"
#include "ScriptTexts.h"
#include "SwfTagDefineButton.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagDoAction.h"
#include "SwfTagPlaceObject.h"
#include "SwfTagsAssets.h"
#include "SwfTagsControl.h"
#include "TextCollector.h"

namespace zelk {

using namespace libswf;

std::string_view kindText(TextKind kind) {
    switch (kind) {
    case TextKind::staticText: return "static text";
    case TextKind::field: return "text field";
    case TextKind::script: return "script";
    case TextKind::frameLabel: return "frame label";
    case TextKind::instanceName: return "instance name";
    case TextKind::exportName: return "export name";
    case TextKind::className: return "class name";
    case TextKind::variableName: return "variable name";
    }
    return "";
}

MovieTexts findTexts(const SwfMovieSafe& movie, TextChoice choice) { return TextCollector(movie, choice).run(); }

std::string TextCollector::List::frameKey() const {
    return (sprite ? "sprite" + std::to_string(*sprite) + "/" : "") + "frame" + std::to_string(frame);
}

std::string TextCollector::List::frameText() const {
    return (sprite ? "sprite " + std::to_string(*sprite) + ", " : "") + "frame " + std::to_string(frame);
}

TextCollector::TextCollector(const SwfMovieSafe& movie, TextChoice choice)
    : _movie(movie), _choice(choice), _fonts(movie.tags.tags(), movie.version) {}

MovieTexts TextCollector::run() {
    notePlaces(_movie.tags.tags(), {});
    collect(_movie.tags.tags(), {});
    return std::move(_result);
}

void TextCollector::notePlaces(const SwfTags& tags, List list) {
    const auto note = [&](uint16_t id, uint16_t depth) {
        _places.try_emplace(id, list.frameText() + ", depth " + std::to_string(depth));
    };
    const auto noteButton = [&](uint16_t button, const SwfButtonRecords& records) {
        for (const SwfButtonRecord& record : records.records)
            _places.try_emplace(record.characterId, "button " + std::to_string(button));
    };
    for (const auto& tag : tags.items()) {
        if (tag->type == SwfTagCode::ShowFrame)
            ++list.frame;
        else if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
            notePlaces(sprite->tags, {sprite->spriteId});
        else if (const auto* place = dynamic_cast<const SwfTagPlaceObject*>(tag.get()))
            note(place->characterId, place->depth);
        else if (const auto* place2 = dynamic_cast<const SwfTagPlaceObject2*>(tag.get());
                 place2 && place2->hasCharacter)
            note(place2->characterId, place2->depth);
        else if (const auto* place3 = dynamic_cast<const SwfTagPlaceObject3*>(tag.get());
                 place3 && place3->hasPlace(SwfPlaceFlag::character))
            note(place3->characterId, place3->depth);
        else if (const auto* button = dynamic_cast<const SwfTagDefineButton*>(tag.get()))
            noteButton(button->buttonId, button->records);
        else if (const auto* button2 = dynamic_cast<const SwfTagDefineButton2*>(tag.get()))
            noteButton(button2->buttonId, button2->records);
    }
}

void TextCollector::collect(const SwfTags& tags, List list) {
    _path.push_back(0);
    for (const auto& tag : tags.items()) {
        if (tag->type == SwfTagCode::ShowFrame)
            ++list.frame;
        else if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
            collect(sprite->tags, {sprite->spriteId});
        else
            collectTag(tag, list);
        ++_path.back();
    }
    _path.pop_back();
}

void TextCollector::collectTag(const SwfTagWrapper& tag, const List& list) {
    _tag = tag.get();
    if (const auto* text = dynamic_cast<const SwfTagDefineText*>(_tag))
        addStatic(*text, list);
    else if (const auto* field = dynamic_cast<const SwfTagDefineEditText*>(_tag))
        addField(*field, list);
    if (_choice.scripts && mayHaveScripts(*_tag))
        addScripts(tag, list);
    if (_choice.names)
        addNames(*tag, list);
}

MovieText TextCollector::start(TextKind kind, const SwfTag& tag, const List& list) const {
    MovieText text;
    text.kind = kind;
    text.tagPath = _path;
    text.tagCode = tag.type;
    text.sprite = list.sprite;
    text.frame = list.frame;
    if (tag.definitionId() != 0) {
        text.id = tag.definitionId();
        const auto place = _places.find(*text.id);
        text.place = place == _places.end() ? "" : place->second;
    }
    return text;
}

void TextCollector::add(MovieText text, std::string key) {
    text.key = std::move(key);
    _result.texts.push_back(std::move(text));
}

void TextCollector::setFont(MovieText& text, uint16_t font) const {
    text.font = font;
    text.fontName = _fonts.name(font);
}

std::string TextCollector::unique(std::string key) {
    const uint32_t count = ++_keys[key];
    return count == 1 ? key : key + "#" + std::to_string(count);
}

void TextCollector::addStatic(const SwfTagDefineText& tag, const List& list) {
    const std::string owner = unique("text:" + std::to_string(tag.characterId));
    for (const StaticText& found : staticTexts(tag, _fonts)) {
        std::string key = owner + ":" + std::to_string(found.record + 1);
        if (!found.problem.empty()) {
            _result.unreadable.push_back({std::move(key), found.problem});
            continue;
        }
        MovieText text = start(TextKind::staticText, tag, list);
        text.slot = found.record;
        text.text = toUtf8(found.characters);
        text.room = found.room;
        setFont(text, *found.font);
        add(std::move(text), std::move(key));
    }
}

void TextCollector::addField(const SwfTagDefineEditText& tag, const List& list) {
    const std::string owner = unique("field:" + std::to_string(tag.characterId));
    MovieText text = start(TextKind::field, tag, list);
    if (tag.hasFont)
        setFont(text, tag.fontId);
    if (tag.hasMaxLength && tag.maxLength != 0)
        text.maxLength = tag.maxLength;
    const std::string initial = tag.hasText ? shownString(tag.initialText.view(), _movie.version) : "";
    if (!tag.html) {
        text.text = initial;
        if (!initial.empty())
            add(std::move(text), owner);
        return;
    }
    for (const HtmlRun& run : htmlRuns(initial)) {
        ++text.slot;
        MovieText part = text;
        part.text = run.text;
        add(std::move(part), owner + ":" + std::to_string(text.slot));
    }
}

void TextCollector::addName(TextKind kind, uint32_t slot, const SwfString& name, std::string key, const List& list) {
    std::string own = unique(std::move(key));
    if (name.empty())
        return;
    MovieText text = start(kind, *_tag, list);
    text.slot = slot;
    text.text = shownString(name.view(), _movie.version);
    add(std::move(text), std::move(own));
}

void TextCollector::addPlaceName(uint16_t depth, const SwfString& name, const List& list) {
    addName(TextKind::instanceName, 0, name, "name:" + list.frameKey() + "/depth" + std::to_string(depth), list);
}

// Where a tag's scripts belong, as their keys say it. Empty for a tag without.
static std::string scriptOwner(const SwfTag& tag, const std::string& frame) {
    if (const auto* init = dynamic_cast<const SwfTagDoInitAction*>(&tag))
        return "init" + std::to_string(init->spriteId);
    if (const auto* button = dynamic_cast<const SwfTagDefineButton*>(&tag))
        return "button" + std::to_string(button->buttonId);
    if (const auto* button2 = dynamic_cast<const SwfTagDefineButton2*>(&tag))
        return "button" + std::to_string(button2->buttonId);
    if (const auto* place2 = dynamic_cast<const SwfTagPlaceObject2*>(&tag))
        return place2->hasClipActions ? frame + "/depth" + std::to_string(place2->depth) : "";
    if (const auto* place3 = dynamic_cast<const SwfTagPlaceObject3*>(&tag))
        return place3->hasPlace(SwfPlaceFlag::clipActions) ? frame + "/depth" + std::to_string(place3->depth) : "";
    if (const auto* abc = dynamic_cast<const SwfTagDoABC*>(&tag))
        return abc->name.empty() ? "abc" : "abc/" + std::string(abc->name.view());
    return tag.type == SwfTagCode::DoABCDefine ? "abc" : frame;
}

void TextCollector::addScripts(const SwfTagWrapper& tag, const List& list) {
    const std::string own = scriptOwner(*tag, list.frameKey());
    if (own.empty())
        return;
    const std::string owner = unique("script:" + shownString(own, _movie.version));
    MovieText text = start(TextKind::script, *tag, list);
    for (const ScriptText& found : scriptTexts(scriptElement(tag, _movie.version))) {
        const uint32_t slot = text.slot++;
        if (found.isName || found.bytes.empty())
            continue;
        MovieText part = text;
        part.slot = slot;
        part.text = shownString(found.bytes, _movie.version);
        add(std::move(part), owner + ":" + shownString(found.part, _movie.version));
    }
}

void TextCollector::addNames(const SwfTag& tag, const List& list) {
    const auto addAssets = [&](TextKind kind, const char* prefix, const SwfAssets& assets) {
        for (uint32_t i = 0; i < assets.size(); ++i)
            addName(kind, i, assets[i].name, prefix + std::to_string(assets[i].id), list);
    };
    if (const auto* label = dynamic_cast<const SwfTagFrameLabel*>(&tag))
        addName(TextKind::frameLabel, 0, label->name, "label:" + list.frameKey(), list);
    else if (const auto* place2 = dynamic_cast<const SwfTagPlaceObject2*>(&tag); place2 && place2->hasName)
        addPlaceName(place2->depth, place2->name, list);
    else if (const auto* place3 = dynamic_cast<const SwfTagPlaceObject3*>(&tag);
             place3 && place3->hasPlace(SwfPlaceFlag::name))
        addPlaceName(place3->depth, place3->name, list);
    else if (const auto* assets = dynamic_cast<const SwfTagExportAssets*>(&tag))
        addAssets(TextKind::exportName, "export:", assets->assets);
    else if (const auto* symbols = dynamic_cast<const SwfTagSymbolClass*>(&tag))
        addAssets(TextKind::className, "class:", symbols->symbols);
    else if (const auto* field = dynamic_cast<const SwfTagDefineEditText*>(&tag))
        addName(TextKind::variableName, 0, field->varName, "variable:" + std::to_string(field->characterId), list);
}

} // namespace zelk
