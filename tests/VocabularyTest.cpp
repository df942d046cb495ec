// The vocabulary is neither wider nor narrower than what the readers read and the writers write.
#include "Tests.h"

#include <rapidxml/rapidxml.hpp>

#include "XmlVocabulary.h"

using namespace libswf;
using namespace xml2swf;

namespace {

using Node = rapidxml::xml_node<>;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// --- what is written is in the vocabulary ----------------------------------------------------------------------------

bool allows(const XmlValueForm& form, std::string_view text) {
    const bool isNamed = std::ranges::any_of(form.names, [&](const XmlName& name) { return name.name == text; });
    const bool isNumber = !text.empty() && text.find_first_not_of("-0123456789") == text.npos;
    switch (form.kind) {
    case XmlValueForm::Kind::integer: {
        const int64_t value = isNumber ? std::stoll(std::string(text)) : INT64_MIN;
        return isNumber && value >= form.low && value <= form.high;
    }
    case XmlValueForm::Kind::boolean: return text == "true" || text == "false" || isNumber;
    case XmlValueForm::Kind::color: return text.size() <= 8 && text.find_first_not_of("0123456789abcdef") == text.npos;
    case XmlValueForm::Kind::name: return isNamed;
    case XmlValueForm::Kind::nameOrInteger: return isNamed || isNumber;
    case XmlValueForm::Kind::text:
    case XmlValueForm::Kind::places:
    case XmlValueForm::Kind::place:
    case XmlValueForm::Kind::real: break;
    }
    return true;
}

void expectKnown(const Node& node, const XmlElementType& type, const std::string& where) {
    for (const auto* attribute = node.first_attribute(); attribute != nullptr;
         attribute = attribute->next_attribute()) {
        const XmlAttributeForm* form = type.attribute(attribute->name());
        if (form == nullptr || !allows(form->value, attribute->value()))
            ADD_FAILURE() << where << "@" << attribute->name() << "=" << attribute->value();
    }
    for (const Node* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
        if (child->type() != rapidxml::node_element) {
            EXPECT_TRUE(child->type() != rapidxml::node_cdata || type.content != XmlContent::none) << where;
            continue;
        }
        const std::string inner = where + "/" + child->name();
        if (const XmlChildForm* form = type.child(child->name()))
            expectKnown(*child, *form->type, inner);
        else
            ADD_FAILURE() << inner;
    }
}

void expectKnown(std::string text, const std::string& name, bool fullForm) {
    rapidxml::xml_document<> document;
    document.parse<0>(text.data());
    const Node* movie = document.first_node("Movie");
    ASSERT_NE(movie, nullptr) << name;
    expectKnown(*movie, *XmlVocabulary::get(fullForm).movie().type, name);
}

TEST(Vocabulary, HasAllThatIsWritten) {
    const std::string saysLess = "get-url2-other-flags.case"; // than its bytes did: not written by one who keeps bytes
    for (const fs::path& path : findCases(casesDir)) {
        for (const CaseFile& file : parseCases(path)) {
            if (file.xml && file.body && file.fails == CaseFile::Fails::never && path.filename() != saysLess)
                expectKnown("<Movie>" + *file.xml + "</Movie>", path.filename().string(), file.fullForm);
        }
    }
    for (const auto& entry : fs::directory_iterator(samplesDir)) {
        if (entry.path().extension() == ".xml")
            expectKnown(contentOf(entry.path()), entry.path().filename().string(), false);
    }
}

// --- what is in the vocabulary is read -------------------------------------------------------------------------------

// An element and those around it, outermost first.
using Path = std::vector<const XmlChildForm*>;

// Visits every type of a form once, in one place that it may have. What is in a block of ActionScript 3 leads from one
// to the other: no part of one stands for itself.
void visit(bool fullForm, const std::function<void(const Path&)>& look) {
    std::set<const XmlElementType*> seen;
    const std::function<void(Path)> descend = [&](const Path& path) {
        if (!seen.insert(path.back()->type).second)
            return;
        if (path.back()->name == "Abc")
            return;
        look(path);
        const XmlElementType& type = *path.back()->type;
        for (const std::vector<XmlChildForm>* children :
             {&type.ownChildren, type.group != nullptr ? &type.group->children : nullptr}) {
            for (size_t i = 0; children != nullptr && i < children->size(); ++i) {
                Path inner = path;
                inner.push_back(&(*children)[i]);
                descend(inner);
            }
        }
    };
    descend({&XmlVocabulary::get(fullForm).movie()});
}

// What leads to a place stands in the stead of a number, and has cases of its own.
bool isOfPlaces(const XmlAttributeForm& attribute) {
    return attribute.value.kind == XmlValueForm::Kind::places || attribute.value.kind == XmlValueForm::Kind::place;
}

// How a movie around an element differs from the plainest one.
struct Variation {
    const XmlAttributeForm* attribute = nullptr;
    std::string value;
    bool isAlone = false; // no siblings before the elements around it
};

std::vector<std::string> valuesOf(const XmlValueForm& form) {
    switch (form.kind) {
    case XmlValueForm::Kind::text: return {form.textForm == nullptr ? "" : std::string(form.textForm->sample)};
    case XmlValueForm::Kind::integer: {
        std::vector<std::string> fitting;
        for (const int64_t value : {1, 2, 0}) {
            if (form.low <= value && value <= form.high)
                fitting.push_back(std::to_string(value));
        }
        return fitting;
    }
    case XmlValueForm::Kind::real: return {"1.5"};
    case XmlValueForm::Kind::boolean: return {"true", "false"};
    case XmlValueForm::Kind::color: return {"ff00ff"};
    default: break;
    }
    std::vector<std::string> names;
    for (const XmlName& name : form.names)
        names.emplace_back(name.name);
    return names;
}

// Names of places are those of their elements: each stands once.
std::string startTag(const XmlChildForm& form, const Variation& variation, const char* end) {
    std::string text = "<" + std::string(form.name);
    for (const XmlAttributeForm& attribute : form.type->attributes) {
        if (attribute.value.kind == XmlValueForm::Kind::places)
            text += " " + std::string(attribute.name) + "=\"" + std::string(form.name) + "\"";
        if (isOfPlaces(attribute))
            continue;
        const bool varies = &attribute == variation.attribute;
        const bool isRival = !varies && variation.attribute != nullptr && attribute.name == variation.attribute->name;
        if (!isRival && (!varies || !variation.value.empty()))
            text += " " + std::string(attribute.name) + "=\"" +
                    (varies ? variation.value : valuesOf(attribute.value)[0]) + "\"";
    }
    return text + end;
}

// A movie with the last element of the path, which holds `inside` or has a text of its own. The elements that may stand
// before each do so.
std::string movieAround(const Path& path, const Variation& variation, const std::string& inside,
                        const std::string& ownText = "") {
    const bool isFull = path.front()->type == XmlVocabulary::get(true).movie().type;
    std::string start = isFull ? "<Movie Form=\"full\" SwfVersion=\"10\">" : "<Movie SwfVersion=\"10\">";
    std::string end = "</Movie>";
    for (size_t i = 1; i < path.size(); ++i) {
        for (const XmlChildForm& sibling : path[i - 1]->type->ownChildren) {
            if (&sibling == path[i] || variation.isAlone)
                break;
            start += startTag(sibling, {}, "/>");
        }
        if (isFull && path[i]->name == "Push")
            start += "<ConstantPool />"; // for constants by their text
        if (i == path.size() - 1 && !ownText.empty())
            return start + ownText + end;
        start += startTag(*path[i], variation, ">");
        end = "</" + std::string(path[i]->name) + ">" + end;
    }
    return start + inside + end;
}

// The reasons of warnings about an element or attribute of this name.
bool warnsOf(const std::string& text, const std::string& name, size_t from) {
    SwfWarnings warnings;
    MovieTarget target;
    try {
        xmlToSwf(text, target, {.warnings = &warnings, .ignoreFonts = true}); // The texts have none.
    } catch (const XmlValueError& error) {
        ADD_FAILURE() << error.description() << text;
    }
    return std::ranges::any_of(warnings.items(), [&](const SwfWarning& warning) {
        return warning.offset >= from && (warning.tagName == name || warning.reason.find(name) != std::string::npos);
    });
}

// Whether there is a movie of this form without a warning of what was looked for.
bool isReadSomehow(const Path& path, const std::function<bool(const Variation&)>& isRead) {
    for (const bool isAlone : {false, true}) {
        if (isRead({nullptr, "", isAlone}))
            return true;
        for (const XmlChildForm* element : path) {
            for (const XmlAttributeForm& attribute : element->type->attributes) {
                if (isOfPlaces(attribute))
                    continue;
                std::vector<std::string> values = valuesOf(attribute.value);
                values[0] = ""; // stands for none
                for (const std::string& value : values) {
                    if (isRead({&attribute, value, isAlone}))
                        return true;
                }
            }
        }
    }
    return false;
}

// Of the classic form, and of the full one.
class VocabularyOf : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Form, VocabularyOf, testing::Bool());

TEST_P(VocabularyOf, IsReadWithoutWarnings) {
    visit(GetParam(), [](const Path& path) {
        if (path.size() == 1)
            return;
        const XmlElementType& type = *path.back()->type;
        const std::string name(path.back()->name);
        for (const XmlAttributeForm& attribute : type.attributes) {
            if (attribute.value.kind == XmlValueForm::Kind::place)
                continue;
            EXPECT_TRUE(isReadSomehow(path,
                                      [&](const Variation& variation) {
                                          if (variation.attribute == &attribute && variation.value.empty())
                                              return false;
                                          const std::string text = movieAround(path, variation, "");
                                          const size_t own = text.rfind("<" + name + " ");
                                          return !warnsOf(text, "attribute " + std::string(attribute.name) + " is",
                                                          own) &&
                                                 !warnsOf(text, name, own);
                                      }))
                << type.name << "@" << attribute.name;
        }
        for (const XmlChildForm& child : type.children()) {
            Path inner = path;
            const XmlChildForm* form = type.child(child.name);
            inner.push_back(form);
            EXPECT_TRUE(isReadSomehow(inner,
                                      [&](const Variation& variation) {
                                          const std::string text = movieAround(inner, variation, "");
                                          const size_t own = text.rfind("<" + std::string(child.name));
                                          return !warnsOf(text, std::string(child.name), own);
                                      }))
                << type.name << "/" << child.name;
        }
    });
}

TEST_P(VocabularyOf, HasNoNameThatIsMadeUp) {
    visit(GetParam(), [](const Path& path) {
        const std::string own = "<" + std::string(path.back()->name);
        std::string text = movieAround(path, {}, "<Zx Zy=\"1\"/>");
        EXPECT_TRUE(warnsOf(text, "Zx", 0)) << text;
        text.insert(text.rfind(own) + own.size(), " Zz=\"1\"");
        EXPECT_TRUE(warnsOf(text, "Zz", 0)) << text;
    });
}

TEST_P(VocabularyOf, NamesOfEnumerationsComeBack) {
    visit(GetParam(), [](const Path& path) {
        if (path.size() == 1) // movieAround writes the root itself
            return;
        for (const XmlAttributeForm& attribute : path.back()->type->attributes) {
            for (const XmlName& name : attribute.value.names) {
                const std::string given = std::string(attribute.name) + "=\"" + std::string(name.name) + "\"";
                const auto comesBack = [&](const Variation& variation) {
                    MovieTarget target;
                    xmlToSwf(movieAround(path, variation, ""), target, {});
                    SwfMovieSafe movie;
                    movie.fullForm = target.movie.fullForm;
                    for (const auto& tag : target.movie.tags.items())
                        movie.tags.append(tag);
                    return swfToXml(movie, {}).find(given) != std::string::npos;
                };
                EXPECT_TRUE(comesBack({&attribute, std::string(name.name)})) << path.back()->type->name << " " << given;
            }
        }
    });
}

// Why a movie cannot be made of a text, or what is lost in one. What stands before a place in it does not matter.
std::string complaints(const std::string& text, size_t from) {
    SwfWarnings reading, writing;
    MovieTarget target;
    try {
        xmlToSwf(text, target, {.warnings = &reading});
        target.movie.serialise(1, &writing);
    } catch (const SwfException& error) {
        return error.what();
    }
    for (const SwfWarning& warning : reading.items()) {
        if (warning.offset >= from)
            return warning.text();
    }
    return writing.empty() ? "" : writing.items().front().text();
}

TEST_P(VocabularyOf, NewElementsCompileWithoutWarnings) {
    std::set<std::string> seen;
    visit(GetParam(), [&](const Path& path) {
        for (const XmlChildForm& child : path.back()->type->children()) {
            if (!seen.insert(std::string(child.name) + child.type->name).second)
                continue;
            Path inner = path;
            inner.push_back(path.back()->type->child(child.name));
            const std::string text = newElementText(child);
            std::string last;
            EXPECT_TRUE(isReadSomehow(path,
                                      [&](const Variation& variation) {
                                          const std::string movie = movieAround(inner, variation, "", text);
                                          last = complaints(movie, movie.rfind(text));
                                          return last.empty();
                                      }))
                << text << last;
        }
    });
    const XmlVocabulary& vocabulary = XmlVocabulary::get(GetParam());
    EXPECT_GT(seen.size(), vocabulary.tags().children.size() + vocabulary.actions().children.size());
}

} // namespace
