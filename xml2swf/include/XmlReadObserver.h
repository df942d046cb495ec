// Listening to the readers of elements: what they would read if it were there.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace xml2swf {

class XmlElement;

/// One name of an enumeration and its value in the file.
struct XmlName {
    std::string_view name;
    uint32_t value;
};
using XmlNames = std::span<const XmlName>;

/// A text of which not any will do.
struct XmlTextForm {
    std::string_view name;
    std::string_view sample;  ///< what a new element has
    std::string_view pattern; ///< of all such texts, as schemas have it
};

/// What a reader takes the text of an attribute for.
struct XmlValueForm {
    enum class Kind : uint8_t {
        text,
        integer,
        real,
        boolean,
        color,
        name,
        nameOrInteger,
        places, ///< names of the place where the element stands, with blanks between them
        place   ///< the name of a place that the element leads to
    };

    Kind kind = Kind::text;
    int64_t low = 0, high = 0; ///< of an integer
    XmlNames names = {};
    const XmlTextForm* textForm = nullptr; ///< of a text; null for any

    static XmlValueForm text(const XmlTextForm& form) { return {Kind::text, 0, 0, {}, &form}; }
    bool isAnyText() const { return kind == Kind::text && textForm == nullptr; }
    static XmlValueForm integer(int64_t low, int64_t high) { return {Kind::integer, low, high, {}}; }
    bool isInteger() const { return kind == Kind::integer || kind == Kind::nameOrInteger; }
    /// What fits into an attribute, for the user: "Id: 0 to 65535".
    std::string fitting(std::string_view attribute) const;
};

/// What an element holds besides elements.
enum class XmlContent : uint8_t { none, text, base64 };

/// The elements of a table, which may stand wherever its readers read: all tags, all actions.
struct XmlNameGroup {
    std::string_view name; ///< of the group itself
    std::span<const std::string_view> names;
};

/// Hears of every question that the text has no answer to, and of most that it has. Names stay valid for good.
class XmlReadObserver {
public:
    virtual ~XmlReadObserver() = default;

    /// Not of an integer that is there and fits.
    virtual void askedForAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form) = 0;
    virtual void askedForPresence(const XmlElement& element, std::string_view name) = 0;
    virtual void skippedAttribute(const XmlElement& element, std::string_view name) = 0;

    /// A child of this name would be read.
    virtual void missedChild(const XmlElement& element, std::string_view name) = 0;
    /// All children are read, whatever their names, and this is what they are called.
    virtual void askedForAll(const XmlElement& element, std::string_view name) = 0;
    virtual void askedForChildAt(const XmlElement& element, uint32_t index, std::string_view name) = 0;
    virtual void askedForGroup(const XmlElement& element, const XmlNameGroup& names) = 0;
    /// The element is not the one that the name belongs to.
    virtual void comparedName(const XmlElement& element, std::string_view name) = 0;
    virtual void skipped(const XmlElement& element) = 0;
    virtual void askedForContent(const XmlElement& element, XmlContent content) = 0;
};

} // namespace xml2swf
