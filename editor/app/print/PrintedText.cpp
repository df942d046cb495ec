#include "PrintedText.h"

#include <algorithm>

namespace zelk {

namespace {

constexpr size_t mostData = 400, shownData = 60; // characters of base64 in one piece

bool isData(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) {
        return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') || c == '+' || c == '/' || c == '=';
    });
}

QString shownText(std::string_view bytes) {
    if (bytes.size() <= mostData || !isData(bytes.substr(0, mostData)) || !isData(bytes))
        return QString::fromUtf8(bytes.data(), qsizetype(bytes.size())).replace(u'\t', QStringLiteral("    "));
    return QString::fromLatin1(bytes.data(), shownData) + QStringLiteral("… (%1 characters)").arg(bytes.size());
}

} // namespace

PrintedText::PrintedText(std::string_view text, size_t start, size_t end) : _text(text.substr(start, end - start)) {
    const auto quotes = std::ranges::count(text.substr(0, start), '"');
    _isInString = quotes % 2 != 0;
    _number = static_cast<size_t>(std::ranges::count(text.substr(0, start), '\n'));
    const bool endsInLine = !_text.empty() && _text.back() != '\n';
    _lastNumber = _number + static_cast<size_t>(std::ranges::count(_text, '\n')) + (endsInLine ? 1 : 0);
}

double PrintedText::progress() const {
    return _text.empty() ? 1 : static_cast<double>(_position) / static_cast<double>(_text.size());
}

std::optional<PrintedLine> PrintedText::next() {
    if (_position >= _text.size())
        return std::nullopt;
    const size_t end = std::min(_text.find('\n', _position), _text.size());
    std::string_view line = _text.substr(_position, end - _position);
    _position = end + 1;
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    const std::string classes = SwfSyntaxHighlighter::classesOf(line, _isInString);
    _isInString = _isInString != (std::ranges::count(line, '"') % 2 != 0);

    PrintedLine printed{++_number, {}};
    for (size_t start = 0; start < line.size();) {
        const size_t next = std::min(classes.find_first_not_of(classes[start], start), line.size());
        printed.runs.push_back(
            {shownText(line.substr(start, next - start)), SwfSyntaxHighlighter::Class(classes[start])});
        start = next;
    }
    return printed;
}

} // namespace zelk
