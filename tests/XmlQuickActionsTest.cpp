// Scripts that are read straight from the text give what they give through nodes.

#include "Outcome.h"

namespace {

std::string script(const std::string& actions) {
    std::string pops;
    for (int i = 0; i < 3000; ++i) // some 30 KB: big enough to be read piece by piece
        pops += "\n<Pop />";
    return "<Movie SwfVersion=\"8\"><DoAction><Actions>" + pops + "\n" + actions + pops +
           "</Actions></DoAction></Movie>";
}

// A script that is read with others, and with what stands around it.
std::string smallScript(const std::string& actions, const std::string& before = {}, const std::string& after = {}) {
    return "<Movie SwfVersion=\"8\">\n<DoInitAction SpriteId=\"1\">\n<Actions>\n<Pop />\n</Actions>\n</DoInitAction>\n"
           "<DoAction>" +
           before + "\n<Actions>\n" + actions + "\n</Actions>\n" + after + "</DoAction>\n<ShowFrame />\n</Movie>";
}

std::string inFunction(const std::string& actions) {
    return "<With>\n<Actions>\n<DefineFunction Name=\"f\">\n<Params>\n<Param Value=\"p\" />\n</Params>\n<Actions>\n" +
           actions + "\n</Actions>\n</DefineFunction>\n</Actions>\n</With>\n";
}

// The same with comments in all scripts, before which nothing is read straight from the text.
std::string forNodes(std::string text) {
    constexpr std::string_view start = "<Actions>";
    for (size_t at = 0; (at = text.find(start, at)) != text.npos; at += start.size())
        text.insert(at + start.size(), "<!-- -->");
    return text;
}

// Whether quick reading gives what nodes give, as objects and as bytes.
bool areAlike(const std::string& movie) {
    const Outcome objects = compiled(movie);
    return compiled(forNodes(movie)) == objects && compiled(movie, {.toWrite = true}) == objects;
}

} // namespace

TEST(XmlQuickActions, GiveWhatNodesGive) {
    const char* const rows[] = {
        "<If Offset=\"-5\" />",
        "<If Offset=\"+5\" />",
        "<If Offset=\"0000000000007\" />",
        "<If Offset=\"40000\" />",
        "<If Offset=\"five\" />",
        "<If Offset=\"\" />",
        "<If Offset=\"1\" Offset=\"2\" />",
        "<If Offset='1' />",
        "<If  Offset=\"1\"/>",
        "<If />",
        "<If Ofset=\"1\" />",
        "<If Offset=\"1\">",
        "<If Offset=\"1\"></If>",
        "<If Offset=\"1\"><Pop /></If>",
        "<StoreRegister Number=\"256\" />",
        "<WaitForFrame Frame=\"1\" SkipCount=\"2\" />",
        "<WaitForFrame SkipCount=\"2\" Frame=\"1\" />",
        "<GoToFrame2 Play=\"true\" SceneBias=\"3\" />",
        "<GoToFrame2 SceneBias=\"3\" Play=\"yes\" />",
        "<GetURL2 LoadVariables=\"1\" LoadTarget=\"false\" SendVarsMethod=\"POST\" />",
        "<GetURL2 SendVarsMethod=\"what\" />",
        "<Pop></Pop>",
        "<Pop/><Add2 Value=\"1\" />",
        "<Popp />",
        "<Compiled />",
        "text<!-- comment --><Pop />",
        "<UnknownAction Type=\"20\"><Data><![CDATA[AAEC]]></Data></UnknownAction>",
        "<UnknownAction Type=\"144\"><Data><![CDATA[AAEC]]></Data></UnknownAction>",
        "<ConstantPool><Constant Name=\"a&lt;&#65;\" /><Constant Name=\"a>b\" /></ConstantPool>",
        "<ConstantPool>\n<Constant Name=\"a\" />\n<Constnt Name=\"b\" />\n</ConstantPool>",
        "<Push />",
        "<Push>\n<Integer Value=\"4294967295\" />\n<Integer Value=\"-2147483648\" />\n</Push>",
        "<Push>\n<Integer Value=\"4294967296\" />\n</Push>",
        "<Push>\n<Float Value=\"1065353216\" />\n<Double Value=\"-1.5e300\" />\n<Double Value=\"nan\" />\n</Push>",
        "<Push>\n<Double Value=\"1,5\" />\n</Push>",
        "<Push>\n<String Name=\"\" />\n<String Name=\"&quot;\" />\n<Null />\n<Undefined />\n</Push>",
        "<Push>\n<String Name=\"a&#0;b\" />\n</Push>",
        "<Push>\n<String Name=\"&lt;a&gt;&amp;lt;&apos;b&quot;\" />\n<String Name=\"&x;\" />\n</Push>",
        "<Push>\n<Integer Value=\"&lt;1\" />\n</Push>",
        "<GetURL Url=\"a&amp;b=1\" Target=\"&quot\" />",
        "<Push>\n<Boolean Value=\"1\" />\n<Boolean Value=\"true\" />\n</Push>",
        "<Push>\n<Constant8 Value=\"7\" />\n<Constant16 Value=\"65535\" />\n<What Value=\"1\" />\n</Push>",
        "<Push>\n<Register Value=\"1\" />\n</Psh>",
        "<DefineFunction2 Name=\"f\" RegisterCount=\"3\">\n<BitsField PreloadThis=\"true\" PreloadGlobal=\"1\" />\n"
        "<RegisterParams>\n<RegisterParam Register=\"2\" Name=\"x\" />\n</RegisterParams>\n<Actions>\n<Pop />\n"
        "</Actions>\n</DefineFunction2>",
        "<DefineFunction2 Name=\"f\">\n<Actions>\n<Pop />\n</Actions>\n<BitsField />\n</DefineFunction2>",
        "<With>\n<Actions />\n<Actions>\n<Pop />\n</Actions>\n</With>",
        "<Try CatchInRegister=\"2\">\n<TryActions>\n<Throw />\n</TryActions>\n<CatchActions />\n</Try>",
        "<Try CatchInRegister=\"2\" VarName=\"e\">\n<FinallyActions>\n<Pop />\n</FinallyActions>\n</Try>",
        "<Try VarName=\"e\">\n<CatchActions>\n<Pop />\n</CatchActions>\n<TryActions />\n</Try>",
        "<If Offset=\"1\" />\n<If Offset=\"-3\" />\n<Jump Offset=\"4\" />\n<Push>\n<Integer Value=\"1\" />\n</Push>",
        "<If To=\"a\" />\n<Pop At=\"a b\" />\n<Jump To=\"b\" />\n<WaitForFrame2 To=\"c\" />\n<Pop />\n<Place At=\"c\" "
        "/>",
        "<If To='a' />\n<Pop At=\"b&#97;\" />\n<Pop At = \"a\" />\n<Jump To=\"ba\" />",
        "<Jump To=\"a\" />\n<With>\n<Actions>\n<Pop />\n<Jump To=\"b\" />\n<Odd />\n<Place At=\"a\" />\n</Actions>\n"
        "</With>\n<Try VarName=\"e\">\n<TryActions>\n<Pop At=\"b\" />\n</TryActions>\n<CatchActions />\n"
        "<FinallyActions />\n</Try>\n<Jump To=\"b\" />",
        "<UnknownAction Type=\"143\">\n<Data>\n<![CDATA[AAEC]]>\n</Data>\n</UnknownAction>\n<Jump To=\"a\" />\n"
        "<UnknownAction Type=\"128\">\n<Data>\n<![CDATA[AAEC]]>\n</Data>\n</UnknownAction>\n<Pop At=\"a\" />",
        "<If To=\"nowhere\" />",
        "<Pop At=\"a\" />\n<Pop At=\"a\" />",
        "<If To=\"a\" At=\"a\" Offset=\"-5\" />",
        "<Place />",
        "<Place At=\"\" />",
        "<Place At=\"a\"><Pop /></Place>",
        "<ConstantPool>\n<Constant Name=\"a\" />\n</ConstantPool>\n<Push>\n<Constant Name=\"b\" />\n</Push>",
        "<ConstantPool>\n<Constant Name=\"a\" />\n</ConstantPool>\n<If To=\"x\" />\n<With>\n<Actions>\n<Push>\n"
        "<Constant Name=\"b\" />\n<Constant Name=\"a\" />\n<Oddity />\n</Push>\n<ConstantPool>\n"
        "<Constant Name=\"c\" />\n</ConstantPool>\n<Push>\n<Constant Name=\"d\" />\n<What />\n</Push>\n</Actions>\n"
        "</With>\n<Pop At=\"x\" />",
        "<ConstantPool />\n<Push>\n<Constant Name=\"b\" />\n<Oddity />\n</Push>\n<Push>\n<Constant Name=\"c\" "
        "/>\n</Push>",
        "<Push>\n<Constant Name=\"b\" />\n</Push>",
    };
    for (const char* row : rows) {
        for (const std::string& text : {script(row), script(inFunction(row)), script(inFunction(inFunction(row))),
                                        smallScript(row), smallScript(inFunction(row)), smallScript("", "", row),
                                        smallScript(row, "<Other><Pop /></Other>", "<Actions><Pop /></Actions>"),
                                        smallScript("<Pop />", row, "<Actions Odd=\"1\"><Pop /></Actions>")}) {
            for (const char* form : {"", " Form=\"full\""}) {
                const std::string movie = std::string(text).insert(std::string_view("<Movie").size(), form);
                EXPECT_TRUE(areAlike(movie)) << row << form;
            }
        }
    }
}

// What a block of bytes has no room for, or cannot hold without a warning or an error, stays an object.
TEST(XmlQuickActions, OfAnySizeAreWrittenAlike) {
    for (const size_t length : {30000, 40000, 65534, 65535, 65536, 70000}) {
        const std::string text(length, 'x');
        for (const std::string& row :
             {"<GetURL URL=\"\" Target=\"" + text + "\" />", "<Push><String Name=\"" + text + "\" /></Push>",
              "<DefineFunction Name=\"f\"><Actions><GoToLabel Label=\"" + text + "\" /></Actions></DefineFunction>",
              "<Try VarName=\"e\"><TryActions><SetTarget Name=\"" + text + "\" /><Pop /></TryActions></Try>",
              "<With><Actions><Pop />" + inFunction("<SetTarget Name=\"" + text + "\" />") + "</Actions></With>"})
            for (const std::string& movie : {script(row), smallScript(row)})
                EXPECT_TRUE(compiled(movie, {.toWrite = true}) == compiled(movie)) << length << row.substr(0, 9);
    }
}

TEST(XmlQuickActions, NestAsDeepAsNodesDo) {
    for (const bool isTooDeep : {false, true}) { // by one
        std::string actions = isTooDeep ? "<With>\n<Actions>\n<Pop />\n</Actions>\n</With>" : "<Pop />";
        for (int i = 0; i < 128; ++i) // two bodies each
            actions = inFunction(actions);
        for (const std::string& text : {script(actions), smallScript(actions)}) {
            EXPECT_TRUE(areAlike(text)) << isTooDeep;
            EXPECT_EQ(compiled(text).problem.empty(), !isTooDeep);
        }
    }
}
