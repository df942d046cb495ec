#define PCRE2_CODE_UNIT_WIDTH 8
#include "TextSearch.h"

#include <algorithm>
#include <chrono>
#include <pcre2.h>

namespace zelk {

namespace {

std::string errorText(int code) {
    PCRE2_UCHAR text[256];
    pcre2_get_error_message(code, text, sizeof text);
    return reinterpret_cast<const char*>(text);
}

PCRE2_SPTR units(std::string_view text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

// The fastest that the system has: texts may have a gigabyte.
size_t findBytes(std::string_view text, std::string_view pattern, size_t from) {
#ifdef Q_OS_WIN
    return text.find(pattern, from);
#else
    const void* found = memmem(text.data() + from, text.size() - from, pattern.data(), pattern.size());
    return found == nullptr ? text.npos : static_cast<size_t>(static_cast<const char*>(found) - text.data());
#endif
}

// Room that most replacements need; longer ones are asked for again.
constexpr size_t usualReplacement = 256;

} // namespace

struct TextSearch::Compiled {
    explicit Compiled(const SearchOptions& options);
    ~Compiled() {
        pcre2_match_data_free(match);
        pcre2_code_free(code);
    }
    Compiled(const Compiled&) = delete;
    Compiled& operator=(const Compiled&) = delete;

    pcre2_code* code = nullptr;
    pcre2_match_data* match = nullptr;
};

TextSearch::Compiled::Compiled(const SearchOptions& options) {
    uint32_t flags = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
    flags |= options.regularExpression ? PCRE2_MULTILINE | PCRE2_UCP : PCRE2_LITERAL;
    if (!options.matchCase)
        flags |= PCRE2_CASELESS;
    const std::unique_ptr<pcre2_compile_context, void (*)(pcre2_compile_context*)> context(
        pcre2_compile_context_create(nullptr), pcre2_compile_context_free);
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_ANYCRLF);
    if (options.wholeWord)
        pcre2_set_compile_extra_options(context.get(), PCRE2_EXTRA_MATCH_WORD);
    int error = 0;
    PCRE2_SIZE offset = 0;
    code = pcre2_compile(units(options.pattern), options.pattern.size(), flags, &error, &offset, context.get());
    if (code == nullptr)
        throw SearchError(errorText(error) + " (at " + std::to_string(offset + 1) + ")");
    pcre2_jit_compile(code, PCRE2_JIT_COMPLETE | PCRE2_JIT_PARTIAL_HARD); // Without it matching is only slower.
    match = pcre2_match_data_create_from_pattern(code, nullptr);
}

TextSearch::TextSearch(SearchOptions options) : _options(std::move(options)) {
    const bool isPlain = _options.matchCase && !_options.regularExpression && !_options.wholeWord;
    if (!_options.pattern.empty() && !isPlain)
        _compiled = std::make_unique<Compiled>(_options);
}

TextSearch::~TextSearch() = default;
TextSearch::TextSearch(TextSearch&&) noexcept = default;

std::optional<TextMatch> TextSearch::matchFrom(std::string_view text, size_t from) const {
    if (_options.pattern.empty() || from > text.size())
        return std::nullopt;
    if (_compiled == nullptr) {
        const size_t start = findBytes(text, _options.pattern, from);
        return start == text.npos ? std::nullopt : std::optional(TextMatch{start, start + _options.pattern.size()});
    }
    const int result = pcre2_match(_compiled->code, units(text), text.size(), from, 0, _compiled->match, nullptr);
    if (result == PCRE2_ERROR_NOMATCH)
        return std::nullopt;
    if (result < 0)
        throw SearchError(errorText(result));
    const PCRE2_SIZE* place = pcre2_get_ovector_pointer(_compiled->match);
    return TextMatch{std::min(place[0], place[1]), place[1]};
}

std::optional<TextMatch> TextSearch::next(std::string_view text, size_t from) const { return matchFrom(text, from); }

// Goes back in steps, each twice as long as the one before; in each the last match counts.
std::optional<TextMatch> TextSearch::previous(std::string_view text, size_t before) const {
    size_t step = 4096, end = std::min(before, text.size());
    for (size_t limit = end;; step *= 2) {
        const size_t start = limit > step ? limit - step : 0;
        std::optional<TextMatch> last;
        for (auto match = matchFrom(text, start); match && match->start <= limit;
             match = matchFrom(text, std::max(match->start + 1, match->end))) {
            if (match->end <= end && match->start < end)
                last = match;
        }
        if (last || start == 0)
            return last;
        limit = start;
    }
}

std::optional<TextMatch> TextSearch::nextUpTo(std::string_view text, size_t& from, size_t limit) const {
    while (limit < text.size() && (text[limit] & 0xC0) == 0x80) // not inside of a character
        ++limit;
    const std::string_view near = text.substr(0, limit);
    if (limit >= text.size() || _compiled == nullptr) {
        const auto match = matchFrom(near, from);
        const size_t rest = _compiled != nullptr || _options.pattern.empty() ? 0 : _options.pattern.size() - 1;
        if (!match)
            from = limit >= text.size() ? text.size() : std::max(from, limit - std::min(limit, rest));
        return match;
    }
    const int result =
        pcre2_match(_compiled->code, units(near), near.size(), from, PCRE2_PARTIAL_HARD, _compiled->match, nullptr);
    if (result < 0 && result != PCRE2_ERROR_NOMATCH && result != PCRE2_ERROR_PARTIAL)
        throw SearchError(errorText(result));
    const PCRE2_SIZE* place = pcre2_get_ovector_pointer(_compiled->match);
    if (result >= 0)
        return TextMatch{std::min(place[0], place[1]), place[1]};
    from = result == PCRE2_ERROR_PARTIAL ? place[0] : limit;
    return std::nullopt;
}

void TextSearch::count(std::string_view text, std::optional<TextMatch> current, Count& count, int milliseconds) const {
    using Clock = std::chrono::steady_clock;
    constexpr size_t usualPiece = size_t(1) << 20; // some milliseconds
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    size_t piece = usualPiece, checked = 0;
    while (!count.isComplete) {
        const size_t from = count.next;
        if (const auto match = nextUpTo(text, count.next, from + std::min(piece, text.size() - from))) {
            ++count.total;
            count.index = match == current ? count.total : count.index;
            count.next = std::max(match->start + 1, match->end);
            count.isComplete = count.next > text.size();
            piece = usualPiece;
        } else {
            count.isComplete = count.next >= text.size();
            piece = count.next == from ? piece * 2 : usualPiece; // A match that goes on and on needs more of the text.
        }
        if (++checked % 64 == 0 || piece > usualPiece || count.next - from > usualPiece / 2) {
            if (Clock::now() > end)
                return;
        }
    }
}

namespace {

// The groups of a replacement in the way in which the library has them.
std::string withDollars(std::string_view with) {
    std::string result;
    for (size_t i = 0; i < with.size(); ++i) {
        const char next = i + 1 < with.size() ? with[i + 1] : ' ';
        if (with[i] == '\\' && next >= '0' && next <= '9') {
            result.append("${").append(1, next).append("}");
            ++i;
        } else {
            result += with[i];
            i += with[i] == '\\' && next == '\\' ? 1 : 0;
        }
    }
    return result;
}

} // namespace

std::string TextSearch::replacement(std::string_view text, const TextMatch& match, std::string_view with) const {
    if (!_options.regularExpression || matchFrom(text, match.start) != match)
        return std::string(with);
    return expand(text, match, withDollars(with));
}

// Of the match that was found last.
std::string TextSearch::expand(std::string_view text, const TextMatch& match, const std::string& with) const {
    std::string result(std::max(usualReplacement, with.size() * 2), '\0');
    for (;;) {
        PCRE2_SIZE size = result.size();
        const uint32_t flags = PCRE2_SUBSTITUTE_MATCHED | PCRE2_SUBSTITUTE_REPLACEMENT_ONLY |
                               PCRE2_SUBSTITUTE_UNSET_EMPTY | PCRE2_SUBSTITUTE_OVERFLOW_LENGTH;
        const int done =
            pcre2_substitute(_compiled->code, units(text), text.size(), match.start, flags, _compiled->match, nullptr,
                             units(with), with.size(), reinterpret_cast<PCRE2_UCHAR*>(result.data()), &size);
        if (done == PCRE2_ERROR_NOMEMORY) {
            result.resize(size);
            continue;
        }
        if (done < 0)
            throw SearchError(errorText(done));
        result.resize(size);
        return result;
    }
}

TextSearch::Replaced TextSearch::replaceAll(std::string_view text, size_t from, size_t to,
                                            std::string_view with) const {
    Replaced result;
    size_t copied = from;
    for (auto match = matchFrom(text, from); match && match->end <= to;
         match = matchFrom(text, std::max(match->start + 1, match->end))) {
        if (result.count++ == 0)
            result.start = copied = match->start;
        result.text.append(text.substr(copied, match->start - copied));
        result.text += replacement(text, *match, with);
        result.end = copied = match->end;
    }
    return result;
}

} // namespace zelk
