#include "SwfSyntaxHighlighter.h"

#include <span>
#include <unordered_map>
#include <unordered_set>

#include "CodeWords.h"
#include "SwfFullWords.h"
#include "SwfWords.h"
#include "TextBuffer.h"
#include "TextControl.h"

namespace zelk {

namespace {

using WordTable = std::unordered_map<std::u16string_view, SwfSyntaxHighlighter::Class>;

const WordTable& wordTable() {
    static const WordTable table = [] {
        WordTable words;
        const auto add = [&](std::span<const char16_t* const> list, SwfSyntaxHighlighter::Class wordClass) {
            for (const char16_t* word : list)
                words[word] = wordClass;
        };
        add(tagWords, SwfSyntaxHighlighter::Tag);
        add(structureWords, SwfSyntaxHighlighter::Structure);
        add(actionWords, SwfSyntaxHighlighter::Action);
        add(fieldWords, SwfSyntaxHighlighter::Field);
        const auto addNew = [&](std::span<const char16_t* const> list, SwfSyntaxHighlighter::Class wordClass) {
            for (const char16_t* word : list)
                words.try_emplace(word, wordClass);
        };
        addNew(fullTagWords, SwfSyntaxHighlighter::Tag);
        addNew(fullStructureWords, SwfSyntaxHighlighter::Structure);
        addNew(fullActionWords, SwfSyntaxHighlighter::Action);
        return words;
    }();
    return table;
}

bool isCodeAttribute(std::u16string_view word) {
    static const std::unordered_set<std::u16string_view> words(std::begin(codeAttributeWords),
                                                               std::end(codeAttributeWords));
    return words.contains(word);
}

bool belongsToWord(char16_t unit) {
    if (unit < 0x80) // the common case, without a look at the tables
        return (unit >= '0' && unit <= '9') || ((unit | 0x20) >= 'a' && (unit | 0x20) <= 'z');
    return QChar(unit).isLetterOrNumber();
}

void readString(ITextBuffer& buffer) {
    while (buffer.peek() != 0 && buffer.next() != '"') {
    }
}

} // namespace

const std::map<int, QRgb>& SwfSyntaxHighlighter::colours(bool onDark) {
    static const std::map<int, QRgb> table = {
        {EndOfText, 0xFF000000}, {Other, 0xFF000000},     {Word, 0xFF000000},
        {String, 0xFFB22222},    {Structure, 0xFF4876FF}, {Action, 0xFF836FFF},
        {Tag, 0xFF0000CD},       {Field, 0xFF2E8B57},     {CodeAttribute, 0xFF8B5A00},
    };
    static const std::map<int, QRgb> dark = {
        {EndOfText, 0xFFE6E6E6}, {Other, 0xFFE6E6E6},     {Word, 0xFFE6E6E6},
        {String, 0xFFF09080},    {Structure, 0xFF8FAEFF}, {Action, 0xFFBBA8FF},
        {Tag, 0xFF5CC8FF},       {Field, 0xFF6FCF97},     {CodeAttribute, 0xFFE0B060},
    };
    return onDark ? dark : table;
}

SwfSyntaxHighlighter::Class SwfSyntaxHighlighter::readToken(ITextBuffer& buffer) {
    char16_t unit = buffer.next();
    while (unit == ' ')
        unit = buffer.next();
    switch (unit) {
    case 0: return EndOfText;
    case '"': readString(buffer); return String;
    case '/': return Slash;
    case '<': return Less;
    case '=': return Equals;
    case '>': return Greater;
    default: break;
    }
    if (!belongsToWord(unit))
        return Other;
    buffer.collect();
    while (belongsToWord(buffer.peek()))
        buffer.next();
    const auto word = wordTable().find(buffer.collected());
    return word == wordTable().end() ? Word : word->second;
}

std::string SwfSyntaxHighlighter::classesOf(std::string_view text, bool startsInString) {
    std::string classes(text.size(), char(Other));
    const auto colour = [&](size_t start, size_t end, Class as) {
        std::fill(classes.begin() + ptrdiff_t(start), classes.begin() + ptrdiff_t(end), char(as));
    };
    TextBuffer buffer(text);
    if (startsInString) {
        readString(buffer);
        colour(0, buffer.position(), String);
    }
    Class before = Other;
    for (;;) {
        while (buffer.peek() == ' ')
            buffer.next();
        const size_t start = buffer.position();
        const Class token = readToken(buffer);
        if (token == EndOfText)
            return classes;
        if (token == String || (token >= Structure && (before == Less || before == Slash)))
            colour(start, buffer.position(), token);
        else if ((token == Word || token >= Structure) && buffer.peek() == '=' && isCodeAttribute(buffer.collected()))
            colour(start, buffer.position(), CodeAttribute);
        before = token;
    }
}

void SwfSyntaxHighlighter::highlight(TextControl& control, size_t start, size_t end) {
    const std::string_view range = control.bytes().substr(start, end - start);
    const QuoteMap::State state = control.quoteStateAt(start);
    control.setStyles(start, state == QuoteMap::Ended ? std::string(range.size(), char(Other))
                                                      : classesOf(range, state == QuoteMap::Inside));
}

} // namespace zelk
