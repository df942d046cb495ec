// What may be typed at a place, and where new elements go. "|" in a text is the place.
#include "Tests.h"

#include "CharacterIndex.h"
#include "Completion.h"
#include "ElementInsertion.h"

namespace {

using namespace zelk;

size_t takeCaret(std::string& text) {
    const size_t caret = text.find('|');
    text.erase(caret, 1);
    return caret;
}

// "KIND START: WORD WORD ...", START as what stands there already.
std::string completed(std::string text) {
    const size_t caret = takeCaret(text);
    const auto completion = completionAt(text, caret);
    if (!completion)
        return "";
    constexpr const char* kinds[] = {"element", "end", "attribute", "value"};
    std::string result = kinds[static_cast<size_t>(completion->kind)];
    result += " " + text.substr(completion->start, caret - completion->start) + ":";
    for (const std::string& word : completion->words)
        result += " " + word;
    return result;
}

TEST(Completion, OffersWhatMayStandThere) {
    const std::pair<const char*, const char*> cases[] = {
        {"|", ""},
        {"<|", "element : Movie"},
        {"<?xml version=\"1.0\"?>\n<M|", "element M: Movie"},
        {"<Movie/>\n<|", ""},
        {"<Movie SwfVersion=\"8\" |>", "attribute : Form Width Height FrameRate IsCompressed MaxX MaxY MinX MinY"},
        {"<DefineShape><|", "element : Bounds FillStyles LineStyles Edges /DefineShape"},
        {"<DefineShape><Bounds/><FillStyles></FillStyles><|", "element : LineStyles Edges /DefineShape"},
        {"<Movie><DefineShape ShapeId=\"1\"><FillStyles>\n<So|",
         "element So: SolidFillStyle GradientFillStyle BitmapFillStyle /FillStyles"},
        {"<DefineShape3><Edges><Line DX=\"1\" |/><Line DY=\"1\"/></Edges>", "attribute : DY"},
        {"<DefineShape4><LineStyles2><LineStyle><|", "element : BitsField FillStyle /LineStyle"},
        {"<DefineSceneAndFrameLabelData><FrameLabel |", "attribute : FrameNum FrameLabel"},
        {"<Movie><FrameLabel |", "attribute : Name IsAnchor"},
        {"<Push><|",
         "element : Boolean Constant16 Constant8 Double Float Integer Null Register String Undefined /Push"},
        {"<DoAction><Actions><Play/><GetURL2 LoadVariables=\"|", "value : true false"},
        {"<Actions><GetURL2 SendVarsMethod = 'G|'/>", "value G: None GET POST"},
        {"<Actions><GetURL2 SendVarsMethod=\"GET\"|", ""},
        {"<Actions><GetURL2 SendVarsMethod=\"GET|\"", "value GET: None GET POST"},
        {"<Actions><GetURL URL=\"|", ""},
        {"<Actions><GetURL |URL = \"a\"", "attribute : At Target"},
        {"<Paly><|", ""},
        {"<Movie><Paly><|", ""},
        {"<Movie><DefineShape></|", "end : DefineShape"},
        {"<Movie><Metadata><Data><![CDATA[<x></x></Metadata>]]></Data></M|", "end M: Metadata"},
        {"<Movie><Metadata><Data><![CDATA[<|", ""},
        {"<Movie><!-- <DefineShape> --><!-- <|", ""},
        {"<DefineShape><!-- <DefineText> ]]> --><|", "element : Bounds FillStyles LineStyles Edges /DefineShape"},
        {"<DefineShape><Bounds MaxX='\">'/><|", "element : FillStyles LineStyles Edges /DefineShape"},
        {"<Movie><DefineShape/>|", ""},
        {"<!--<--><!--<|", ""},
        {"<--><!----><FillStyles/><Paly><|", ""},
        {"<Movie><DefineShape / |", ""},
        {"<DoAction><Actions><Play At=\"a b\"/><If To=\"|\"/><Place At=\"c\"/></Actions></DoAction>", "value : a b c"},
        {"<DoAction><Actions><ConstantPool><Constant Name=\"x &lt;\"/></ConstantPool><Push><Constant Name=\"x|",
         "value x: x &lt;"},
        {"<Abc><Class Name=\"p::A\"><Slot Type=\"int\"/><Constructor><Code><GetLex Name=\"|\"/>", "value : int p::A"},
        {"<Abc><Script><Code><Jump To=\"|\"/><Nop At=\"x\"/></Code>", "value : x"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(completed(text), expected) << text;
    const std::string ids = "<Movie><DefineShape ShapeId=\"7\"/><PlaceObject CharacterId=\"\"/></Movie>";
    const CharacterIndex characters(ids);
    EXPECT_EQ(completionAt(ids, ids.find("\"\"") + 1, {}, &characters).value().words, std::vector<std::string>{"7"});

    // Tags are told by those before them, however far the root is.
    const std::string tags = completed("</DefineBits><ShowFrame/>\n<|");
    EXPECT_TRUE(tags.starts_with("element : CSMTextSettings DefineBinaryData ")) << tags;
    EXPECT_EQ(completed("<Movie>" + std::string(3 << 20, ' ') + "<ShowFrame/><|"), tags);
    EXPECT_EQ(completed("<Movie>" + std::string(3 << 20, ' ') + "<|"), "");
    EXPECT_EQ(completed("<Movie><|"), tags + " /Movie");
}

TEST(ElementInsertion, PutsElementsWhereTheyMayStand) {
    const struct {
        ElementKind kind;
        const char *name, *text, *expected;
    } cases[] = {
        {ElementKind::tag, "ShowFrame", "<Movie>|</Movie>", "<Movie>\n    <ShowFrame />\n</Movie>"},
        {ElementKind::tag, "ShowFrame", "<Mo|vie />", "<Movie>\n    <ShowFrame />\n</Movie>"},
        {ElementKind::tag, "ShowFrame", "<Movie>\r\n  <End |/>\r\n</Movie>",
         "<Movie>\r\n  <End />\r\n  <ShowFrame />\r\n</Movie>"},
        {ElementKind::tag, "ShowFrame", "<Movie>\n  <End/>\n |\n\n</Movie>",
         "<Movie>\n  <End/>\n  <ShowFrame />\n\n</Movie>"},
        {ElementKind::tag, "DoAction",
         "<Movie>\n  <Metadata>\n    <Data><![CDATA[<a>|</a>]]></Data>\n  </Metadata>\n</Movie>",
         "<Movie>\n  <Metadata>\n    <Data><![CDATA[<a></a>]]></Data>\n  </Metadata>\n  <DoAction>\n      <Actions "
         "/>\n  </DoAction>\n</Movie>"},
        {ElementKind::action, "Play", "<DoAction>\n    <Actions|  />\n</DoAction>",
         "<DoAction>\n    <Actions>\n        <Play />\n    </Actions>\n</DoAction>"},
        {ElementKind::action, "Play", "<DoAction|>\n    <Actions />\n</DoAction>",
         "<DoAction>\n    <Actions>\n        <Play />\n    </Actions>\n</DoAction>"},
        {ElementKind::tag, "End", "|<?xml version=\"1.0\"?> <!-- < -->\n<Movie>\n</Movie>",
         "<?xml version=\"1.0\"?> <!-- < -->\n<Movie>\n    <End />\n</Movie>"},
        {ElementKind::action, "Play", "<Actions>\n    <Push>\n        <Null/>|\n    </Push>\n    <End/>\n</Actions>",
         "<Actions>\n    <Push>\n        <Null/>\n    </Push>\n    <Play />\n    <End/>\n</Actions>"},
        {ElementKind::action, "Play", "<Actions>\n    <End/>\n</Act|ions>",
         "<Actions>\n    <End/>\n    <Play />\n</Actions>"},
        {ElementKind::action, "Play", "<Movie><DoAction>|</DoAction></Movie>", nullptr},
        {ElementKind::structure, "Null", "<Push>|</Push>", "<Push>\n    <Null />\n</Push>"},
        {ElementKind::structure, "LineStyle", "<DefineShape><LineStyles/>|", nullptr},
        {ElementKind::structure, "LineStyle", "<DefineShape><LineStyles|/>",
         "<DefineShape><LineStyles>\n    <LineStyle Width=\"0\" Color=\"ff\" />\n</LineStyles>"},
        {ElementKind::structure, "Edges", "<DefineShape>\n<LineStyles/><!-- | --></DefineShape>",
         "<DefineShape>\n<LineStyles/><!--  -->\n<Edges />\n</DefineShape>"},
        {ElementKind::structure, "Edges", "<Movie>|</Movie>", nullptr},
        {ElementKind::structure, "ShowFrame", "<Movie>|</Movie>", nullptr},
        {ElementKind::tag, "End", "|", nullptr},
        {ElementKind::tag, "End", "|<!-- <Movie/> -->", nullptr},
        {ElementKind::tag, "End", "<Movie><Metadata>|<!", nullptr},
    };
    for (const auto& c : cases) {
        std::string text = c.text;
        const size_t caret = takeCaret(text);
        const auto place = placeForElement(text, caret, c.kind);
        const auto* choice =
            place ? &*std::ranges::find(place->choices, c.name, &xml2swf::XmlChildForm::name) : nullptr;
        if (choice == nullptr || choice == &*place->choices.end()) {
            EXPECT_EQ(c.expected, nullptr) << c.text;
            continue;
        }
        ASSERT_NE(c.expected, nullptr) << c.text;
        const TextChange change = insertElement(*place, *choice);
        EXPECT_EQ(text.replace(change.start, change.end - change.start, change.text), c.expected) << c.text;
    }
}

// All over a text something may be typed or inserted; what is inserted compiles.
TEST(ElementInsertion, CompilesWhereverTheCaretIs) {
    const std::string text = libswf::readTextFile(std::string(samplesDir) + "/animated-shape.xml");
    for (size_t caret = 0; caret <= text.size(); caret += 3) {
        completionAt(text, caret);
        for (ElementKind kind : {ElementKind::tag, ElementKind::action, ElementKind::structure}) {
            const auto place = placeForElement(text, caret, kind);
            if (!place)
                continue;
            const TextChange change = insertElement(*place, place->choices[caret % place->choices.size()]);
            std::string changed = text;
            changed.replace(change.start, change.end - change.start, change.text);
            xml2swf::MovieTarget target;
            ASSERT_NO_THROW(xml2swf::xmlToSwf(changed, target, {})) << changed;
        }
    }
}

} // namespace
