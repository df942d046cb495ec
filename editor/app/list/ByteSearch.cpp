#include "ByteSearch.h"

#include <algorithm>

namespace zelk {

ByteSearch::ByteSearch(const QString& text) : _text(text) {
    _text.replace(u'&', QStringLiteral("&amp;")).replace(u'<', QStringLiteral("&lt;"));
    _lower = _text.toLower().toStdString();
    _isAscii = std::ranges::all_of(_lower, [](char c) { return static_cast<uint8_t>(c) < 0x80; });
    for (size_t c = 0; c < _fold.size(); ++c)
        _fold[c] = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

bool ByteSearch::isAt(const char* bytes) const {
    for (size_t i = 1; i < _lower.size(); ++i) {
        if (_fold[static_cast<uint8_t>(bytes[i])] != _lower[i])
            return false;
    }
    return true;
}

bool ByteSearch::isIn(std::string_view bytes) const {
    if (!_isAscii) // Other letters have no case that bytes could tell.
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()))
            .contains(_text, Qt::CaseInsensitive);
    if (_lower.size() > bytes.size())
        return false;
    const char first = _lower.empty() ? '\0' : _lower.front();
    for (size_t i = 0; i + _lower.size() <= bytes.size(); ++i) {
        if (_lower.empty() || (_fold[static_cast<uint8_t>(bytes[i])] == first && isAt(bytes.data() + i)))
            return true;
    }
    return false;
}

} // namespace zelk
