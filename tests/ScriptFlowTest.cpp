// Where branches, constants and names in a text lead to.
#include "Tests.h"

#include "ScriptFlow.h"
#include "Symbols.h"

namespace {

using namespace zelk;

// The caret is at "|"; the target's name stands behind "^", which is not part of the text.
struct Marked {
    explicit Marked(std::string marked) : text(std::move(marked)) {
        target = text.find('^');
        if (target != none)
            text.erase(target, 1);
        caret = text.find('|');
        text.erase(caret, 1);
        target -= target != none && target > caret ? 1 : 0;
    }
    static constexpr size_t none = SIZE_MAX;
    std::string text;
    size_t caret = 0, target = none;
};

std::string script(const std::string& actions) {
    return "<Movie SwfVersion=\"8\"><DoAction>\n<Actions>" + actions + "</Actions>\n</DoAction></Movie>";
}
std::string code(const std::string& block) {
    return "<Movie Form=\"full\"><DoABC><Abc>" + block +
           "<Constants><String Value=\"f\"/></Constants></Abc></DoABC></Movie>";
}

TEST(ScriptFlow, LeadsWhereTheCodeGoes) {
    const std::string pool = "<ConstantPool><Constant Name=\"a\"/><^Constant Name=\"b &amp; c\"/></ConstantPool>";
    const std::string nested = "<With><Actions><ConstantPool><Constant Name=\"a\"/></ConstantPool></Actions></With>";
    const struct {
        std::string marked;
        const char* reason = "";
    } cases[] = {
        {script("<If To=\"|a\"/><Play/><^Stop At=\"b a\"/>")},
        {script("<|If To=\"end\"/><Play/><^Place At=\"end\"/>")},
        {script("<With><Actions><Jump To=\"a\"|/></Actions></With><^Stop At=\"a\"/>")},
        {script("\n |  <Jump Offset=\"1\"/>\n<Play/>\n<^Stop/>")},
        {script("<^Push><Null/></Push><Jump Offset=\"-|9\"/>")},
        {"<Movie><DoAction><Actions><Jump Offset=\"0\"|/></^Actions></DoAction></Movie>"},
        {script("<WaitForFrame Frame=\"1\" SkipCount=\"|1\"/><Play/><^Stop/>")},
        {script("<|If To=\"x\"/>"), "No place here is called \"x\"."},
        {script("<|If Offset=\"1\"/><Push><Null/></Push>"), "This leads to no place in the script."},
        {script("<|If Offset=\"x\"/>"), "The script does not compile."},
        {script(pool + "<Push><Constant8 Value=\"|1\"/></Push>")},
        {script(pool + "<With><Actions><Push><|Constant16 Value=\"1\"/></Push></Actions></With>")},
        {script(pool + "<Push><Constant Name=\"b &#38; c|\"/></Push>")},
        {script("<Push><|Constant8 Value=\"0\"/></Push>"), "No pool is in force here."},
        {script("<ConstantPool/><Push><|Constant8/></Push>"), "The pool in force has no such entry."},
        {script("<ConstantPool/><Push><|Constant Name=\"n\"/></Push>"),
         "The pool in force gets this text on compiling."},
        {script(nested + "<Push><|Constant8/></Push>"), "It is not known which pool is in force here."},
        {code("<Class Name=\"A\"><Constructor><Code><Jump To=\"|x\"/></Code></Constructor><Method Name=\"f\"><Code>"
              "<Nop At=\"x\"/></Code></Method></Class>"),
         "No place here is called \"x\"."},
        {code("<Script><Code><Label At=\"a\"/><^Nop At=\"b\"/><Catch From=\"a\" Until=\"b|\" "
              "To=\"a\"/></Code></Script>")},
        {code("<Script><Code><^Label At=\"a\"/><LookupSwitch Default=\"a|\"><Case "
              "To=\"b\"/></LookupSwitch></Code></Script>")},
        {code("<Class Name=\"A\"><Method Name=\"f\"/></Class><Class Name=\"p::B\"><^Method Name=\"f\"><Code>"
              "<CallPropVoid Name=\"{p:B}::f|\"/></Code></Method></Class>")},
        {code("<Class Name=\"A\"><^Method Name=\"private(A)::f\"/></Class><Class Name=\"B\"><Slot Name=\"f\"/>"
              "<Constructor><Code><|CallPropVoid Name=\"private(A)::f\"/></Code></Constructor></Class>")},
        {code("<^Class Name=\"p::B\"/><Class Name=\"A\" Base=\"p::B|\"/>")},
        {code("<Script><Code><NewFunction Method=\"1|\"/></Code></Script><^Function Id=\"1\"/>")},
        {code("<Script><Code><|GetLex Name=\"gone\"/></Code></Script>"),
         "Nothing in this movie's code declares \"gone\"."},
    };
    for (const auto& c : cases) {
        const Marked marked(c.marked);
        const auto target = flowTargetAt(marked.text, marked.caret, FlowEffort::full);
        ASSERT_TRUE(target.has_value()) << c.marked;
        EXPECT_EQ(target->reason, c.reason) << c.marked;
        if (marked.target != Marked::none) {
            EXPECT_EQ(target->start, marked.target) << c.marked;
        }
    }
    for (const std::string& marked :
         {script("<|Play/>"), script("<Push><|Null/></Push>"), std::string("<Movie><FrameLabel Name=\"|a\"/></Movie>"),
          std::string("|"), code("<Class Name=\"|A\"/>"), std::string("<Movie><Jump |Offset=\"1\"/></Movie>")}) {
        const Marked at(marked);
        EXPECT_FALSE(flowTargetAt(at.text, at.caret, FlowEffort::full).has_value()) << marked;
    }
}

TEST(Symbols, StandInTheOrderOfTheText) {
    const std::string text =
        "<Movie Form=\"full\"><FrameLabel Name=\"start\"/><ShowFrame/><DefineShape ShapeId=\"3\"/>"
        "<DefineSprite SpriteId=\"4\"><FrameLabel Name=\"a &amp; b\"/><PlaceObject2 Depth=\"5\"/></DefineSprite>"
        "<DoAction><Actions><DefineFunction "
        "Name=\"f\"><Actions/></DefineFunction><DefineFunction2/></Actions></DoAction>"
        "<DoABC Name=\"\"><Abc><Class Name=\"C\"><Constructor/><Method Name=\"m\"/><Static><Method "
        "Name=\"n\"/></Static></Class>"
        "<Script><Method Name=\"o\"/></Script></Abc></DoABC></Movie>";
    const char* const expected[] = {"start (FrameLabel) <FrameLabel Name=\"start",
                                    "DefineShape 3 (DefineShape) <DefineShape",
                                    "DefineSprite 4 (DefineSprite) <DefineSprite",
                                    "a & b (FrameLabel) <FrameLabel Name=\"a",
                                    "PlaceObject2 at 5 (PlaceObject2) <PlaceObject2",
                                    "DoAction (DoAction) <DoAction",
                                    "f (DefineFunction) <DefineFunction ",
                                    "DoABC (DoABC) <DoABC",
                                    "C (Class) <Class",
                                    "C (Constructor of C) <Constructor",
                                    "m (Method of C) <Method Name=\"m",
                                    "n (Method of C) <Method Name=\"n",
                                    "o (Method) <Method Name=\"o"};
    const TagIndex tags(text);
    const auto all = symbolsOf(text, tags);
    for (size_t i = 0; i < std::max(all.size(), std::size(expected)); ++i) {
        const std::string shown =
            i < all.size() ? all[i].name + " (" + all[i].where + ") " + text.substr(all[i].offset, 40) : "";
        EXPECT_TRUE(i < std::size(expected) && shown.starts_with(expected[i])) << i << ": " << shown;
    }
    const size_t sprite = text.find("<DefineSprite"), behind = text.find("<DoAction");
    EXPECT_EQ(symbolsOf(text, tags, sprite, behind).size(), 3u);
}

TEST(Symbols, NamesThatBeginWithTheFilterComeFirst) {
    std::vector<Symbol> symbols;
    for (const char* name : {"ball", "one", "football", "two Balls", "Balloon", "balls"})
        symbols.push_back({Symbol::Kind::tag, 0, name, ""});
    const std::pair<size_t, std::vector<uint32_t>> expected[] = {
        {0, {}}, {2, {0, 4}}, {4, {0, 4, 5, 2}}, {9, {0, 4, 5, 2, 3}}};
    for (const auto& [most, indices] : expected)
        EXPECT_EQ(matchingSymbols(symbols, "ball", most), indices) << most;
}

} // namespace
