// Which elements and attributes a movie's XML may have, learned from the readers that compile it.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "XmlReadObserver.h"

namespace xml2swf {

struct XmlElementType;

struct XmlAttributeForm {
    std::string_view name;
    XmlValueForm value;
    /// What a new element has here, mostly 0, "false", "", opaque black or the first name. None for attributes that a
    /// new element lacks: they say something by being there, or count only beside others.
    std::optional<std::string_view> newValue = {};
};

struct XmlChildForm {
    std::string_view name;
    const XmlElementType* type = nullptr;
    bool isInNew = false; ///< A new element has it: an empty one is as good as none.
};

/// Elements that stand together wherever they may stand.
struct XmlChildGroup {
    std::string_view name;
    std::vector<XmlChildForm> children; ///< in the order of their table
};

/// What an element may have inside. Elements of one name can differ, by the element that they stand in; elements that
/// may have the same share a type. The types are a graph: sprites hold tags, functions hold actions.
struct XmlElementType {
    std::string name; ///< unique: the element's, with those of elements around it where that is not enough
    std::vector<XmlAttributeForm> attributes;
    std::vector<XmlChildForm> ownChildren;
    const XmlChildGroup* group = nullptr; ///< more children; may be null
    XmlContent content = XmlContent::none;
    bool isOrdered = false; ///< its own children are told apart by their place

    /// Null when there is none.
    const XmlAttributeForm* attribute(std::string_view name) const;
    const XmlChildForm* child(std::string_view name) const;
    std::vector<XmlChildForm> children() const;
    bool isEmpty() const { return ownChildren.empty() && group == nullptr && content == XmlContent::none; }
};

class XmlVocabulary {
public:
    /// Of one form. Learned at the first call, in some hundredths of a second.
    static const XmlVocabulary& get(bool fullForm = false);

    explicit XmlVocabulary(bool fullForm);
    XmlVocabulary(const XmlVocabulary&) = delete;
    XmlVocabulary& operator=(const XmlVocabulary&) = delete;

    /// The root element.
    const XmlChildForm& movie() const { return _movie; }
    const XmlChildGroup& tags() const { return *findGroup("Tags"); }
    const XmlChildGroup& actions() const { return *findGroup("Actions"); }
    bool isFullForm() const { return _isFullForm; }
    const std::deque<XmlElementType>& types() const { return _types; }
    const std::deque<XmlChildGroup>& groups() const { return _groups; }

private:
    const XmlChildGroup* findGroup(std::string_view name) const;

    std::deque<XmlElementType> _types;
    std::deque<XmlChildGroup> _groups;
    XmlChildForm _movie;
    const bool _isFullForm;
};

/// A new element with the children that belong to it, in the form in which elements are written. Lines end with "\n".
std::string newElementText(const XmlChildForm& form);

/// A schema of one form, that other editors check and complete with: XSD 1.0.
std::string xmlSchema(bool fullForm = false);

} // namespace xml2swf
