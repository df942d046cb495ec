// Finds and replaces in a text of bytes. Texts are read as UTF-8; bytes that are no UTF-8 match nothing but themselves.
#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zelk {

struct SearchOptions {
    std::string pattern;
    bool wholeWord = false;
    bool matchCase = false;
    bool regularExpression = false; ///< of Perl's kind; "^" and "$" match at each line

    bool operator==(const SearchOptions&) const = default;
};

/// A regular expression that cannot be understood, or that takes too long.
class SearchError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct TextMatch {
    size_t start, end;
    bool operator==(const TextMatch&) const = default;
};

class TextSearch {
public:
    /// Throws SearchError. An empty pattern is found nowhere.
    explicit TextSearch(SearchOptions options);
    ~TextSearch();
    TextSearch(TextSearch&&) noexcept;

    const SearchOptions& options() const { return _options; }

    /// The first match that starts at or behind `from`.
    std::optional<TextMatch> next(std::string_view text, size_t from) const;
    /// The last match that ends at or before `before`.
    std::optional<TextMatch> previous(std::string_view text, size_t before) const;

    /// Where a match stands among all, from 1.
    struct Count {
        size_t total = 0, index = 0; ///< index 0: the match is none of those counted
        bool isComplete = false;     ///< otherwise there are at least `total`
        size_t next = 0;             ///< where counting goes on
    };
    /// Counts on for some milliseconds. Its `current` match has to be the same each time, and so has the text.
    void count(std::string_view text, std::optional<TextMatch> current, Count& count, int milliseconds) const;
    /// The first match that starts at or behind `from`, among those that can be told from the text up to `limit`. Where
    /// there is none, `from` becomes the place from which one has to look on: the text's size when there is no more.
    std::optional<TextMatch> nextUpTo(std::string_view text, size_t& from, size_t limit) const;

    /// What stands in a match's place then. In regular expressions $1, ${1} or \1 is a group, $0 the whole match, \\ a
    /// backslash.
    std::string replacement(std::string_view text, const TextMatch& match, std::string_view with) const;

    struct Replaced {
        std::string text; ///< instead of [start, end)
        size_t start = 0, end = 0;
        size_t count = 0;
    };
    /// All matches inside [from, to), which keep their surroundings.
    Replaced replaceAll(std::string_view text, size_t from, size_t to, std::string_view with) const;

private:
    struct Compiled;
    std::optional<TextMatch> matchFrom(std::string_view text, size_t from) const;
    std::string expand(std::string_view text, const TextMatch& match, const std::string& with) const;

    SearchOptions _options;
    std::unique_ptr<Compiled> _compiled; // null for what needs no expression
};

} // namespace zelk
