// Buttons as XML.
#include "XmlActions.h"
#include "XmlFilters.h"
#include "XmlNames.h"
#include "XmlSound.h"
#include "XmlTagForms.h"

namespace xml2swf {

using namespace libswf;

static constexpr XmlName keyNames[] = {{"LeftArrow", 1}, {"RightArrow", 2}, {"Home", 3},      {"End", 4},
                                       {"Insert", 5},    {"Delete", 6},     {"BackSpace", 8}, {"Enter", 13},
                                       {"UpArrow", 14},  {"DownArrow", 15}, {"PageUp", 16},   {"PageDown", 17},
                                       {"Tab", 18},      {"Escape", 19}};

static constexpr XmlName conditionNames[] = {{"RollOver", SwfButtonAction::rollOver},
                                             {"RollOut", SwfButtonAction::rollOut},
                                             {"Press", SwfButtonAction::press},
                                             {"Release", SwfButtonAction::release},
                                             {"PushDragOut", SwfButtonAction::pushDragOut},
                                             {"PushDragOver", SwfButtonAction::pushDragOver},
                                             {"PushReleaseOutside", SwfButtonAction::pushReleaseOutside},
                                             {"MenuDragOver", SwfButtonAction::menuDragOver},
                                             {"MenuDragOut", SwfButtonAction::menuDragOut}};

// Records of DefineButton have no colour transform, filters or blend mode in either direction.
static void writeRecord(XmlNode& node, const SwfButtonRecord& record, bool isButton2) {
    node.attribute("CharacterId", record.characterId);
    node.attribute("Depth", record.depth);
    if (isButton2 && record.hasBlendMode)
        node.attribute("BlendMode", record.blendMode);
    {
        XmlNode flags(node, "BitsField");
        flags.attribute("StateUp", record.stateUp);
        flags.attribute("StateOver", record.stateOver);
        flags.attribute("StateDown", record.stateDown);
        flags.attribute("HitTest", record.hitTest);
        flags.attribute("HasFilterList", record.hasFilterList);
        flags.attribute("HasBlendMode", record.hasBlendMode);
        if (record.reserved != 0)
            flags.attribute("Reserved", record.reserved);
    }
    writeChild(node, "Matrix", record.matrix);
    if (!isButton2)
        return;
    writeChild(node, "ColorTransform", record.colorTransform);
    if (record.hasFilterList)
        writeChild(node, "FilterList", record.filters);
}

static void readRecord(XmlElement& element, SwfButtonRecord& record, bool isButton2) {
    record.characterId = element.ui16("CharacterId");
    record.depth = element.ui16("Depth");
    if (auto flags = element.child("BitsField")) {
        record.stateUp = flags->boolean("StateUp");
        record.stateOver = flags->boolean("StateOver");
        record.stateDown = flags->boolean("StateDown");
        record.hitTest = flags->boolean("HitTest");
        record.hasFilterList = flags->boolean("HasFilterList");
        record.hasBlendMode = flags->boolean("HasBlendMode");
        if (flags->fullForm())
            record.reserved = static_cast<uint8_t>(flags->ranged("Reserved", 0, 3));
    }
    readChild(element, "Matrix", record.matrix);
    if (!isButton2)
        return;
    // What is there counts as announced, so that nothing is left out of the file.
    record.hasBlendMode = element.has("BlendMode") || record.hasBlendMode;
    record.blendMode = element.ui8("BlendMode");
    readChild(element, "ColorTransform", record.colorTransform);
    record.hasFilterList = readChild(element, "FilterList", record.filters) || record.hasFilterList;
}

static void writeRecords(XmlNode& button, const SwfButtonRecords& list, bool isButton2) {
    XmlNode node(button, "ButtonRecords");
    for (const SwfButtonRecord& record : list.records) {
        XmlNode child(node, "ButtonRecord");
        writeRecord(child, record, isButton2);
    }
}

static void readRecords(XmlElement& button, SwfButtonRecords& list, bool isButton2) {
    auto element = button.child("ButtonRecords");
    if (!element)
        return;
    readEach(*element, "ButtonRecord",
             [&](XmlElement& child) { readRecord(child, list.records.emplace_back(), isButton2); });
}

void writeXml(XmlNode& node, const SwfTagDefineButton& tag) {
    node.attribute("ButtonId", tag.buttonId);
    writeRecords(node, tag.records, false);
    if (tag.actions.empty())
        return;
    XmlNode actions(node, "Actions");
    writeActions(actions, tag.actions);
}

void readXml(XmlElement& element, SwfTagDefineButton& tag) {
    tag.buttonId = element.ui16("ButtonId");
    readRecords(element, tag.records, false);
    if (auto actions = element.child("Actions"))
        readActions(*actions, tag.actions);
}

// A key is a name, or a number for one without: most keys of buttons are characters.
static void writeKeyCode(XmlNode& node, uint8_t code) {
    if (code != 0)
        writeNameOrNumber(node, "KeyCode", keyNames, code);
}

static uint8_t readKeyCode(XmlElement& element) {
    return static_cast<uint8_t>(element.namedOrNumber("KeyCode", keyNames, SwfButtonAction::maxKeyCode));
}

static void writeAction(XmlNode& node, const SwfButtonAction& action) {
    for (const XmlName& condition : conditionNames)
        node.attribute(condition.name, (action.conditions & condition.value) != 0);
    writeKeyCode(node, action.keyCode());
    writeActions(node, action.actions);
}

static void readAction(XmlElement& element, SwfButtonAction& action) {
    for (const XmlName& condition : conditionNames) {
        if (element.boolean(condition.name))
            action.conditions |= static_cast<uint16_t>(condition.value);
    }
    action.setKeyCode(readKeyCode(element));
    readActions(element, action.actions);
}

void writeXml(XmlNode& node, const SwfTagDefineButton2& tag) {
    node.attribute("ButtonId", tag.buttonId);
    node.attribute("TrackAsMenu", tag.trackAsMenu);
    if (tag.reserved != 0)
        node.attribute("Reserved", tag.reserved);
    writeRecords(node, tag.records, true);
    if (tag.conditionActions.empty())
        return;
    XmlNode list(node, "ButtonCondactions");
    for (const SwfButtonAction& action : tag.conditionActions) {
        XmlNode child(list, "ButtonCondaction");
        writeAction(child, action);
    }
}

void readXml(XmlElement& element, SwfTagDefineButton2& tag) {
    tag.buttonId = element.ui16("ButtonId");
    tag.trackAsMenu = element.boolean("TrackAsMenu");
    if (element.fullForm())
        tag.reserved = static_cast<uint8_t>(element.ranged("Reserved", 0, 127));
    readRecords(element, tag.records, true);
    auto list = element.child("ButtonCondactions");
    if (!list)
        return;
    readEach(*list, "ButtonCondaction",
             [&](XmlElement& child) { readAction(child, tag.conditionActions.emplace_back()); });
}

void writeXml(XmlNode& node, const SwfTagDefineButtonCxform& tag) {
    node.attribute("ButtonId", tag.buttonId);
    writeChild(node, "ColorTransform", tag.colorTransform);
    for (const SwfColorTransform& transform : tag.furtherTransforms)
        writeChild(node, "ColorTransform", transform);
}

void readXml(XmlElement& element, SwfTagDefineButtonCxform& tag) {
    tag.buttonId = element.ui16("ButtonId");
    if (!element.fullForm()) {
        readChild(element, "ColorTransform", tag.colorTransform);
        return;
    }
    bool isFirst = true;
    for (XmlElement child : element.anyChildren("ColorTransform"))
        readXml(child, std::exchange(isFirst, false) ? tag.colorTransform : tag.furtherTransforms.append({}));
}

void writeXml(XmlNode& node, const SwfTagDefineButtonSound& tag) {
    node.attribute("ButtonId", tag.buttonId);
    node.attribute("SoundIdRollOut", tag.rollOut.soundId);
    node.attribute("SoundIdRollOver", tag.rollOver.soundId);
    node.attribute("SoundIdPress", tag.press.soundId);
    node.attribute("SoundIdRelease", tag.release.soundId);
    auto writeInfo = [&](const char* name, const SwfButtonSound& sound) {
        if (sound.soundId != 0)
            writeChild(node, name, sound.soundInfo);
    };
    writeInfo("SoundInfoRollOut", tag.rollOut);
    writeInfo("SoundInfoRollOver", tag.rollOver);
    writeInfo("SoundInfoPress", tag.press);
    writeInfo("SoundInfoRelease", tag.release);
}

// A SoundInfo without a sound id is read and not written.
void readXml(XmlElement& element, SwfTagDefineButtonSound& tag) {
    tag.buttonId = element.ui16("ButtonId");
    tag.rollOut.soundId = element.ui16("SoundIdRollOut");
    tag.rollOver.soundId = element.ui16("SoundIdRollOver");
    tag.press.soundId = element.ui16("SoundIdPress");
    tag.release.soundId = element.ui16("SoundIdRelease");
    readChild(element, "SoundInfoRollOut", tag.rollOut.soundInfo);
    readChild(element, "SoundInfoRollOver", tag.rollOver.soundInfo);
    readChild(element, "SoundInfoPress", tag.press.soundInfo);
    readChild(element, "SoundInfoRelease", tag.release.soundInfo);
}

} // namespace xml2swf
