// Steps through XML whose form is foreseen: edges of big shapes, twice as fast as by nodes (README.md).
#pragma once

#include <bit>
#include <cstring>
#include <string_view>

#include "XmlBytes.h"
#include "XmlWords.h"

namespace xml2swf {

/// A place in a text. Each step succeeds only where the text is exactly of the form asked for; then the place moves on.
/// Where the next step begins is told by the quotes, which are found all at once, and not by the values between them:
/// the processor need not wait for these.
class XmlCursor {
public:
    /// An element without content, whose start tag is asked for step by step, takes no more than this.
    static constexpr ptrdiff_t longestElement = 160;

    XmlCursor(std::string_view text, size_t at)
        : _text(text.data()), _at(text.data() + at), _end(text.data() + text.size()) {}
    size_t position() const { return static_cast<size_t>(_at - _text); }

    /// Passes over blanks. False where less text is left than an element might take: the steps below do not look where
    /// the text ends.
    bool toElement() {
        if (_end - _at < longestElement)
            return false;
        if (!standsBehindBlanks(_at, _gap)) {
            const char* element = findFirst<NotBlank>(_at, _end);
            _gap = static_cast<size_t>(element - _at);
            if (_end - element < longestElement)
                return false;
        }
        _at += _gap;
        prefetch(_at);
        _block = _at;
        _quotes = quotesOf(_at);
        return true;
    }
    template <size_t N>
    bool take(const char (&literal)[N]) {
        if (std::memcmp(_at, literal, N - 1) != 0)
            return false;
        _at += N - 1;
        return true;
    }
    /// A number of at most 7 digits, between quotes. The place is behind the opening one.
    bool take(int32_t& value) {
        _quotes &= _quotes - 1; // the opening one
        if (_quotes == 0)
            return false;
        const bool isNegative = *_at == '-';
        const char* end = _block + std::countr_zero(_quotes);
        _quotes &= _quotes - 1;
        const ptrdiff_t digits = end - _at - isNegative;
        _at = end;
        if (digits < 1 || digits > 7)
            return false;
        uint64_t values;
        std::memcpy(&values, end - sizeof values, sizeof values);
        const auto others = static_cast<unsigned>(64 - 8 * digits);
        values = (values ^ eightZeros) >> others << others; // zeros in front of the number
        if (!areDigits(values))
            return false;
        const auto magnitude = static_cast<int32_t>(numberOf(values));
        value = (magnitude ^ -int32_t(isNegative)) + isNegative; // no branch: signs come as they like
        return true;
    }
    bool take(uint16_t& value) {
        int32_t number;
        if (*_at == '-' || !take(number) || number > UINT16_MAX)
            return false;
        value = static_cast<uint16_t>(number);
        return true;
    }

private:
    static constexpr size_t mostGap = 64;

    // Elements mostly follow each other at one distance.
    static bool standsBehindBlanks(const char* at, size_t gap) {
        if (gap == 0 || gap > mostGap || !NotBlank::test(at[gap]))
            return false;
#ifdef __SSE2__
        uint32_t found = 0;
        for (size_t i = 0; i < gap; i += 16) {
            const uint32_t inGap = gap - i >= 16 ? 0xFFFF : (1u << (gap - i)) - 1;
            found |= bits16(NotBlank::test(load16(at + i))) & inGap;
        }
        return found == 0;
#else
        return findFirst<NotBlank>(at, at + gap) == at + gap;
#endif
    }

    // Bit i for the byte at[i].
    static uint64_t quotesOf(const char* at) {
        uint64_t quotes = 0;
#ifdef __SSE2__
        for (int i = 0; i < 4; ++i)
            quotes |= uint64_t(bits16(equal16(load16(at + 16 * i), '"'))) << 16 * i;
#else
        for (int i = 0; i < 64; ++i)
            quotes |= uint64_t(at[i] == '"') << i;
#endif
        return quotes;
    }

    const char* _text;
    const char* _at;
    const char* _end;
    size_t _gap = 0;              // between elements, as it was last
    const char* _block = nullptr; // the element's start
    uint64_t _quotes = 0;         // those that come, from there on
};

} // namespace xml2swf
