#include "ScriptText.h"

#include <algorithm>

#include "Conversion.h"
#include "Exceptions.h"
#include "MovieLayout.h"
#include "XmlSurroundings.h"

namespace zelk {

using namespace xml2swf;

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view tagsWithScripts[] = {"DoAction",     "DoInitAction", "PlaceObject2", "PlaceObject3",
                                                "PlaceObject4", "DefineButton", "DefineButton2"};

// The scripts of a text of one tag, whose elements are to be bytes of another one.
class Collector : public IScriptListener {
public:
    explicit Collector(size_t moved) : _moved(moved) {}
    void script(ScriptBranches script) override {
        move(script.first);
        move(script.last);
        for (ScriptBranches::Branch& branch : script.branches) {
            move(branch.element);
            if (branch.target)
                move(branch.target->element);
        }
        for (ScriptBranches::Label& label : script.labels)
            move(label.element);
        scripts.push_back(std::move(script));
    }
    std::vector<ScriptBranches> scripts;

private:
    void move(size_t& element) const { element += _moved - 1; } // of the name, and a "<" stands before it

    const size_t _moved; // modulo 2^64
};

struct NoTarget : IXml2SwfConversionTarget {
    void movieHeader(uint8_t, int32_t, int32_t, float, bool) override {}
    void append(std::shared_ptr<libswf::SwfTag>) override {}
};

XmlPlace inText(std::string_view text, XmlPlace place, size_t moved) {
    XmlPlace moving{std::min(place.offset + moved, text.size())};
    moving.locate(text);
    return moving;
}

} // namespace

bool holdsScripts(std::string_view tagName) {
    return std::ranges::find(tagsWithScripts, tagName) != std::end(tagsWithScripts);
}

std::optional<size_t> elementEnd(std::string_view text, size_t open, size_t limit) {
    const auto tag = tagTokenAt(text, open, limit);
    if (!tag)
        return {};
    if (tag->kind == XmlTagToken::Kind::empty)
        return tag->end;
    const auto close = endTagBehind(text, tag->end, limit - tag->end);
    return close ? std::optional(close->end) : std::nullopt;
}

bool holdsName(std::string_view names, std::string_view name) {
    for (size_t at = names.find(name); at != names.npos; at = names.find(name, at + 1)) {
        const size_t end = at + name.size();
        const bool starts = at == 0 || blanks.find(names[at - 1]) != blanks.npos;
        if (starts && (end == names.size() || blanks.find(names[end]) != blanks.npos))
            return !name.empty();
    }
    return false;
}

std::vector<ScriptBranches> scriptsOf(std::string_view text, size_t start, size_t end) {
    const std::string_view movieTag = movieTagAtStart(text);
    std::string lone(movieTag.empty() ? "<Movie>" : movieTag);
    if (lone.ends_with("/>"))
        lone.erase(lone.size() - 2, 1);
    const size_t moved = start - lone.size();
    lone.append(text.substr(start, end - start)).append("</Movie>");
    Collector collector(moved);
    ConversionOptions options;
    options.scripts = &collector;
    options.threads = 1;
    NoTarget target;
    try {
        xmlToSwf(lone, target, options);
    } catch (const XmlSyntaxError& error) {
        const XmlPlace place = inText(text, error.place, moved);
        throw XmlException(error.what(), place.row, place.column);
    } catch (XmlValueError& error) {
        error.place = inText(text, error.place, moved);
        throw;
    } catch (Base64Error& error) {
        error.place = inText(text, error.place, moved);
        throw;
    }
    return std::move(collector.scripts);
}

} // namespace zelk
