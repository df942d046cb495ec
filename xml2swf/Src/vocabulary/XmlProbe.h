// Learning what the readers read, by giving them elements and listening to what they ask for.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "XmlReadObserver.h"

namespace xml2swf {

struct ProbeAttribute {
    std::string_view name;
    XmlValueForm form;
    bool isOptional = false;   ///< the reader asks whether it is there
    bool isRead = false;       ///< in at least one sample
    bool isAlwaysRead = false; ///< in the sample with all attributes at their first values
    bool wasSkipped = false;   ///< in the sample that is being read
};

/// An element of which it is being learned what it may have.
struct ProbeNode {
    std::string_view name;
    const ProbeNode* parent = nullptr; ///< the element that it stands in
    std::vector<ProbeAttribute> attributes;
    std::vector<std::unique_ptr<ProbeNode>> children;
    std::optional<XmlNameGroup> group;
    XmlContent content = XmlContent::none;
    bool fullForm = false; ///< of a movie: its readers are those of the full form
    bool isOrdered = false;
    bool isAlone = false; ///< read only where no other child stands before it
    bool isRead = false, isAlwaysRead = false;
};

/// Some text that an attribute of this form may have; empty when it has fewer than `index` + 1 to try.
std::optional<std::string> sampleValue(const XmlValueForm& form, size_t index);

/// What stands before and behind an element in a movie.
std::string sampleBefore(const ProbeNode& node);
std::string sampleBehind(const ProbeNode& node);

/// What differs from the first sample: one attribute, or all, have another value to try, or are missing.
struct ProbeVariation {
    static constexpr size_t none = size_t(-1), all = size_t(-2);
    size_t attribute = none, value = 0;
};

class XmlProber : private XmlReadObserver {
public:
    /// Learns what an element has. What stands in a group is left to the caller. The node must not move afterwards.
    void explore(ProbeNode& node);

private:
    // Where an element of the sample stands.
    struct Place {
        size_t offset;
        ProbeNode* node;
        bool isStranger; // an element of an unknown name inside the node
        bool wasSkipped = false;
        bool isMistaken = false; ///< read for an element of another name
    };

    bool learn(ProbeNode& focus, const ProbeVariation& variation = {});
    void run();
    void write(ProbeNode& node, const ProbeVariation& variation);
    void note();
    void vary(ProbeNode& node);
    bool varyAttributes(ProbeNode& node);
    bool tryAlone(ProbeNode& node);
    Place* placeOf(const XmlElement& element);
    ProbeNode* nodeOf(const XmlElement& element);
    ProbeAttribute* attributeOf(const XmlElement& element, std::string_view name);
    ProbeAttribute* addAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form);
    void addChild(ProbeNode& node, size_t index, std::string_view name);

    void askedForAttribute(const XmlElement& element, std::string_view name, const XmlValueForm& form) override;
    void askedForPresence(const XmlElement& element, std::string_view name) override;
    void skippedAttribute(const XmlElement& element, std::string_view name) override;
    void missedChild(const XmlElement& element, std::string_view name) override;
    void askedForAll(const XmlElement& element, std::string_view name) override;
    void askedForChildAt(const XmlElement& element, uint32_t index, std::string_view name) override;
    void askedForGroup(const XmlElement& element, const XmlNameGroup& names) override;
    void comparedName(const XmlElement& element, std::string_view name) override;
    void skipped(const XmlElement& element) override;
    void askedForContent(const XmlElement& element, XmlContent content) override;

    std::string _text;
    std::vector<Place> _places; // by offset
    ProbeNode* _focus = nullptr;
    bool _hasNews = false;
    std::set<std::string> _dull; // elements of which no variation gave anything new
};

/// Equal for elements that may have the same.
std::string structureOf(const ProbeNode& node);

} // namespace xml2swf
