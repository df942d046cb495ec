// What may be typed at a place of a movie's XML.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

class CharacterIndex;

struct Completion {
    enum class Kind : uint8_t { element, endTag, attribute, value };
    Kind kind;
    size_t start; ///< of what stands there of it already, up to the place
    /// Elements and attributes in the order in which they are written, tags and actions in that of the alphabet. Among
    /// elements "/NAME" closes the one around them.
    std::vector<std::string> words;
    /// What is said of each word beside it; empty where nothing is said of any.
    std::vector<std::string> notes = {};
};

/// Where a list of what may be typed comes up.
class ICompletionView {
public:
    virtual ~ICompletionView() = default;

    /// Valid until the text changes.
    virtual std::string_view text() const = 0;
    virtual size_t caret() const = 0;
    /// The form of a text that does not tell it.
    virtual std::optional<bool> fullForm() const { return {}; }
    /// The characters whose ids may be typed, as far as they are known.
    virtual std::shared_ptr<const CharacterIndex> characters() const { return nullptr; }
    virtual void showList(const Completion& completion) = 0;
};

/// None where nothing is known. Looks at some megabyte of text at most. The form is what the text begins in, where it
/// is not said: a part of a movie does not tell.
std::optional<Completion> completionAt(std::string_view text, size_t position, std::optional<bool> fullForm = {},
                                       const CharacterIndex* characters = nullptr);

} // namespace zelk
