#include "XmlVocabulary.h"

#include <algorithm>
#include <map>

#include "XmlNewElement.h"
#include "XmlProbe.h"

namespace xml2swf {

namespace {

template <class Named>
const Named* findByName(const std::vector<Named>& items, std::string_view name) {
    const auto found = std::find_if(items.begin(), items.end(), [&](const Named& item) { return item.name == name; });
    return found == items.end() ? nullptr : &*found;
}

// The elements of a group and one that they may stand in.
struct ProbeGroup {
    XmlNameGroup names;
    const ProbeNode* host;
    std::vector<std::unique_ptr<ProbeNode>> members;
};

// All elements, each in one place that it may have.
struct ProbeForest {
    ProbeNode movie;
    std::vector<std::unique_ptr<ProbeGroup>> groups;

    explicit ProbeForest(bool fullForm) {
        movie.name = "Movie";
        movie.fullForm = fullForm;
        XmlProber prober;
        prober.explore(movie);
        findGroups(movie);
        for (size_t i = 0; i < groups.size(); ++i) { // they become more
            ProbeGroup& group = *groups[i];
            for (const std::string_view name : group.names.names) {
                ProbeNode& member = *group.members.emplace_back(std::make_unique<ProbeNode>());
                member.name = name;
                member.parent = group.host;
                prober.explore(member);
                findGroups(member);
            }
        }
    }

private:
    void findGroups(const ProbeNode& node) {
        const bool isNew = node.group && std::none_of(groups.begin(), groups.end(), [&](const auto& group) {
                               return group->names.name == node.group->name;
                           });
        if (isNew) {
            groups.push_back(std::make_unique<ProbeGroup>());
            groups.back()->names = *node.group;
            groups.back()->host = &node;
        }
        for (const auto& child : node.children)
            findGroups(*child);
    }
};

// Makes types of nodes, one for all that may have the same.
class TypeMaker {
public:
    TypeMaker(std::deque<XmlElementType>& types, std::deque<XmlChildGroup>& groups) : _types(types), _groups(groups) {}

    XmlChildForm make(const ProbeNode& node) {
        std::vector<XmlChildForm> children;
        std::string key = keyOf(node);
        for (const auto& child : node.children) {
            const bool isOfGroup =
                node.group && std::ranges::find(node.group->names, child->name) != node.group->names.end();
            if (!child->isRead || isOfGroup)
                continue;
            children.push_back(make(*child));
            key.append(child->name).append(child->isAlwaysRead ? "!" : "?");
            key += std::to_string(reinterpret_cast<uintptr_t>(children.back().type)) + " ";
        }
        Made& made = _made[key];
        if (made.type == nullptr)
            made = {&add(node, std::move(children)), &node};
        ++made.uses[std::string(node.name)];
        return {node.name, made.type};
    }

    // The shortest names that are unique. The one that an element most often has is its own name.
    void giveNames() {
        std::vector<Made*> byUse;
        for (auto& [key, made] : _made)
            byUse.push_back(&made);
        std::sort(byUse.begin(), byUse.end(), [this](const Made* a, const Made* b) {
            return std::pair(-a->mostUsed()->second, indexOf(*a->type)) <
                   std::pair(-b->mostUsed()->second, indexOf(*b->type));
        });
        std::map<std::string, bool> taken;
        for (Made* made : byUse) {
            std::string name(made->mostUsed()->first);
            const ProbeNode* around = made->node->parent;
            for (; taken.contains(name) && around != nullptr; around = around->parent)
                name = std::string(around->name) + "." + name;
            taken[name] = true;
            made->type->name = name;
        }
    }

private:
    struct Made {
        XmlElementType* type = nullptr;
        const ProbeNode* node = nullptr;
        std::map<std::string, int> uses = {}; // by element name

        std::map<std::string, int>::const_iterator mostUsed() const {
            return std::max_element(uses.begin(), uses.end(), [](auto& a, auto& b) { return a.second < b.second; });
        }
    };

    static std::string keyOf(const ProbeNode& node) {
        ProbeNode bare;
        for (const ProbeAttribute& attribute : node.attributes) {
            if (attribute.isRead)
                bare.attributes.push_back(attribute);
        }
        bare.isOrdered = node.isOrdered;
        bare.group = node.group;
        bare.content = node.content;
        return structureOf(bare);
    }

    XmlElementType& add(const ProbeNode& node, std::vector<XmlChildForm> children) {
        XmlElementType& type = _types.emplace_back();
        for (const ProbeAttribute& attribute : node.attributes) {
            if (attribute.isRead)
                type.attributes.push_back({attribute.name, attribute.form});
        }
        type.ownChildren = std::move(children);
        type.content = node.content;
        type.isOrdered = node.isOrdered;
        if (node.group) {
            type.group = &*std::find_if(_groups.begin(), _groups.end(),
                                        [&](const XmlChildGroup& group) { return group.name == node.group->name; });
        }
        chooseNewElement(node, type);
        return type;
    }

    size_t indexOf(const XmlElementType& type) const {
        size_t index = 0;
        while (&_types[index] != &type)
            ++index;
        return index;
    }

    std::deque<XmlElementType>& _types;
    std::deque<XmlChildGroup>& _groups;
    std::map<std::string, Made> _made;
};

} // namespace

const XmlAttributeForm* XmlElementType::attribute(std::string_view name) const { return findByName(attributes, name); }

const XmlChildForm* XmlElementType::child(std::string_view name) const {
    const XmlChildForm* own = findByName(ownChildren, name);
    return own == nullptr && group != nullptr ? findByName(group->children, name) : own;
}

std::vector<XmlChildForm> XmlElementType::children() const {
    std::vector<XmlChildForm> all = ownChildren;
    if (group != nullptr)
        all.insert(all.end(), group->children.begin(), group->children.end());
    return all;
}

XmlVocabulary::XmlVocabulary(bool fullForm) : _isFullForm(fullForm) {
    const ProbeForest forest(fullForm);
    for (const auto& group : forest.groups)
        _groups.emplace_back().name = group->names.name;
    TypeMaker maker(_types, _groups);
    _movie = maker.make(forest.movie);
    for (size_t i = 0; i < forest.groups.size(); ++i) {
        for (const auto& member : forest.groups[i]->members)
            _groups[i].children.push_back(maker.make(*member));
    }
    maker.giveNames();
}

const XmlVocabulary& XmlVocabulary::get(bool fullForm) {
    if (fullForm) {
        static const XmlVocabulary full(true);
        return full;
    }
    static const XmlVocabulary classic(false);
    return classic;
}

const XmlChildGroup* XmlVocabulary::findGroup(std::string_view name) const {
    const auto found =
        std::find_if(_groups.begin(), _groups.end(), [&](const XmlChildGroup& group) { return group.name == name; });
    return found == _groups.end() ? nullptr : &*found;
}

} // namespace xml2swf
