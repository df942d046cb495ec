#include "ElementInsertion.h"

#include <algorithm>

#include "TagText.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t", allBlanks = " \t\r\n", oneLevel = "    ";

std::vector<XmlChildForm> sortedByName(const XmlChildGroup& group) {
    std::vector<XmlChildForm> sorted = group.children;
    std::ranges::sort(sorted, {}, &XmlChildForm::name);
    return sorted;
}

std::vector<XmlChildForm> choicesIn(const XmlVocabulary& vocabulary, const XmlElementType* type, ElementKind kind) {
    if (type == nullptr)
        return {};
    if (kind == ElementKind::structure) {
        const bool isOther = type->group != &vocabulary.tags() && type->group != &vocabulary.actions();
        return isOther ? type->children() : type->ownChildren;
    }
    const XmlChildGroup& group = kind == ElementKind::tag ? vocabulary.tags() : vocabulary.actions();
    return type->group == &group ? sortedByName(group) : std::vector<XmlChildForm>();
}

std::string indentationAt(std::string_view text, size_t position) {
    const size_t start = text.find_last_of("\r\n", position) + 1; // 0 when there is none
    const size_t end = std::min(text.find_first_not_of(blanks, start), text.size());
    return std::string(text.substr(start, end - start));
}

// The tag or section that a place is inside of.
std::optional<XmlTagToken> tagAround(std::string_view text, size_t position) {
    const size_t open = position == 0 ? text.npos : text.rfind('<', position - 1);
    if (open == text.npos || position - open > surroundingsReach)
        return std::nullopt;
    const auto tag = tagTokenAt(text, open, std::min(text.size(), position + surroundingsReach));
    return tag && position < tag->end ? tag : std::nullopt;
}

// Elements are put between tags, so not in the middle of a CDATA section or comment.
size_t behindSection(std::string_view text, size_t position) {
    const size_t least = position > surroundingsReach ? position - surroundingsReach : 0;
    const std::string_view near = text.substr(least, position - least + surroundingsReach);
    for (const auto& [start, end] :
         {std::pair<std::string_view, std::string_view>("<![CDATA[", "]]>"), {"<!--", "-->"}, {"<?", "?>"}}) {
        const size_t open = position == least ? near.npos : near.rfind(start, position - least - 1);
        const size_t close = open == near.npos ? open : near.find(end, open + start.size());
        if (close != near.npos && position - least < close + end.size())
            return least + close + end.size();
    }
    return position;
}

// A line of its own for the new element: the one that the place is in, when it is blank, or else a new one.
void makeLine(std::string_view text, size_t position, ElementPlace& place) {
    const size_t last = position == 0 ? text.npos : text.find_last_not_of(allBlanks, position - 1);
    const size_t content = last == text.npos ? 0 : last + 1;
    const auto tag = XmlTagsBefore(text, content).next();
    if (tag)
        place.indentation = indentationAt(text, tag->open);
    if (tag && tag->kind == XmlTagToken::Kind::start)
        place.indentation += oneLevel;
    const size_t lineStart = position == 0 ? 0 : text.find_last_of("\r\n", position - 1) + 1;
    const size_t lineEnd = std::min(text.find_first_not_of(blanks, position), text.size());
    const bool isLineEnd = lineEnd == text.size() || text[lineEnd] == '\r' || text[lineEnd] == '\n';
    if (content <= lineStart && isLineEnd) {
        place.start = lineStart;
        place.end = lineEnd;
        place.before = place.indentation;
        return;
    }
    place.start = content;
    place.end = std::max(content, isLineEnd ? content : lineEnd);
    place.before = (content == 0 ? "" : place.lineEnd) + place.indentation;
    if (!isLineEnd) {
        const bool isEnd = text.substr(lineEnd).starts_with("</");
        const std::string behind = isEnd && place.indentation.ends_with(oneLevel)
                                       ? place.indentation.substr(oneLevel.size())
                                       : place.indentation;
        place.after = place.lineEnd + behind;
    }
}

// An empty element becomes one with content.
void openEmpty(std::string_view text, const XmlTagToken& tag, ElementPlace& place) {
    const std::string outer = indentationAt(text, tag.open);
    place.indentation = outer + std::string(oneLevel);
    place.start = text.find_last_not_of(allBlanks, tag.end - 3) + 1;
    place.end = tag.end;
    place.before = ">" + place.lineEnd + place.indentation;
    place.after = place.lineEnd + outer + "</" + std::string(tag.name) + ">";
}

// Puts the place at the beginning of an element, if that holds what is asked for.
bool enter(const XmlVocabulary& vocabulary, std::string_view text, const XmlTagToken& tag, ElementKind kind,
           ElementPlace& place) {
    place.choices = choicesIn(vocabulary, typeOfElement(surroundingsOf(vocabulary, text, tag.open), tag.name), kind);
    if (place.choices.empty())
        return false;
    if (tag.kind == XmlTagToken::Kind::empty)
        openEmpty(text, tag, place);
    else
        makeLine(text, tag.end, place);
    return true;
}

// The tag that is next to a place, with nothing but blanks, comments and declarations between.
std::optional<XmlTagToken> tagBehind(std::string_view text, size_t position) {
    text = text.substr(0, position + surroundingsReach);
    const size_t start = text.find_first_not_of(allBlanks, position);
    return start == text.npos || text[start] != '<' ? std::nullopt
                                                    : tagTokenAt(text, skipSections(text, start), text.size());
}

std::optional<ElementPlace> findPlace(const XmlVocabulary& vocabulary, std::string_view text, size_t position,
                                      ElementKind kind) {
    ElementPlace place{{}, {}, 0, 0, "", "", "", std::string(lineEndOf(text))};
    position = behindSection(text, position);
    if (const auto tag = tagAround(text, position)) {
        if (tag->kind == XmlTagToken::Kind::empty && enter(vocabulary, text, *tag, kind, place))
            return place;
        position = tag->kind == XmlTagToken::Kind::end ? tag->open : tag->end;
    }
    place.choices = choicesIn(vocabulary, surroundingsOf(vocabulary, text, position).type, kind);
    if (place.choices.empty()) {
        const auto next = tagBehind(text, position);
        if (next && next->kind != XmlTagToken::Kind::end && enter(vocabulary, text, *next, kind, place))
            return place;
    }
    while (place.choices.empty()) {
        const auto end = endTagBehind(text, position);
        if (!end)
            return std::nullopt;
        position = end->end;
        place.choices = choicesIn(vocabulary, surroundingsOf(vocabulary, text, position).type, kind);
    }
    makeLine(text, position, place);
    return place;
}

} // namespace

std::vector<XmlChildForm> tagChoices(const XmlVocabulary& vocabulary) { return sortedByName(vocabulary.tags()); }

// What is defined or begins is shown next; a frame of what is shown ends.
std::string_view likelyTag(std::string_view before) {
    if (before.empty())
        return "SetBackgroundColor";
    const bool isBeginning = before.starts_with("Define") || before == "ShowFrame" || before == "FrameLabel";
    return isBeginning ? "PlaceObject2" : "ShowFrame";
}

std::optional<ElementPlace> placeForElement(std::string_view text, size_t position, ElementKind kind,
                                            std::optional<bool> fullForm) {
    auto place = findPlace(vocabularyOf(text, fullForm), text, position, kind);
    if (place && kind == ElementKind::tag) {
        const auto tag = XmlTagsBefore(text, place->start).next();
        place->likely = likelyTag(tag && tag->name != "Movie" ? tag->name : std::string_view());
    }
    return place;
}

TextChange insertElement(const ElementPlace& place, const XmlChildForm& choice) {
    TextChange change{place.start, place.end, place.before};
    for (const char c : newElementText(choice)) {
        if (c == '\n')
            change.text += place.lineEnd + place.indentation;
        else
            change.text += c;
    }
    change.text += place.after;
    return change;
}

} // namespace zelk
