// Blocks of ActionScript 3 through XML and back: real ones, broken ones and edited ones.
#include "Tests.h"

#include <list>

#include "MovieCompare.h"
#include "SwfAbcCode.h"

using namespace libswf;
using namespace xml2swf;

namespace {

Bytes bytesOf(const SwfBytes& bytes) { return {bytes.data(), bytes.data() + bytes.size()}; }

// The blocks of a list of tags, with a head or without.
void collect(const SwfTags& tags, std::set<Bytes>& blocks) {
    for (const auto& tag : tags.items()) {
        if (const auto* script = dynamic_cast<const SwfTagDoABC*>(tag.get()))
            blocks.insert(bytesOf(script->abcData));
        else if (tag->type == 72 && tag->source.size() > 6)
            blocks.insert(bytesOf(tag->source.part(6, tag->source.size() - 6)));
    }
}

// All different blocks of the corpus, the small ones first.
const std::vector<Bytes>& corpusBlocks() {
    static const std::vector<Bytes> all = [] {
        std::set<Bytes> blocks;
        std::error_code missing;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusDir, missing)) {
            SwfMovieSafe movie;
            if (entry.path().extension() != ".swf")
                continue;
            try {
                movie.parse(readFile(entry.path().string()), {.fullForm = true, .keepRaw = true});
            } catch (const SwfException&) {
                continue;
            }
            collect(movie.tags.tags(), blocks);
        }
        std::vector<Bytes> sorted(blocks.begin(), blocks.end());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const Bytes& a, const Bytes& b) { return a.size() < b.size(); });
        return sorted;
    }();
    return all;
}

struct Shown {
    std::string text;
    uint64_t warnings = 0;
    bool isCode() const { return text.find("<Abc ") != text.npos; }
};

Shown show(const Bytes& block, uint32_t threads = 1) {
    SwfMovie movie(10, 0, 0, 12, false);
    auto tag = std::make_shared<SwfTagDoABC>();
    tag->abcData = SwfBytes::copyOf(block);
    movie.tags.append(tag);
    const SwfVector<uint8_t> file = movie.serialise(0);
    SwfMovieSafe read;
    read.parse({file.begin(), file.end()}, {.fullForm = true, .keepRaw = true});
    SwfWarnings warnings;
    Shown shown;
    shown.text = swfToXml(read, {.keepRaw = true, .warnings = &warnings, .threads = threads});
    shown.warnings = warnings.total();
    return shown;
}

Bytes compile(const std::string& text, SwfWarnings* warnings = nullptr, uint32_t threads = 1) {
    MovieTarget target;
    xmlToSwf(text, target, {.warnings = warnings, .toWrite = true, .threads = threads});
    return bytesOf(dynamic_cast<const SwfTagDoABC&>(*target.movie.tags.items().at(0)).abcData);
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// --- real blocks -----------------------------------------------------------------------------------------------------

TEST(Abc, RealBlocksComeBackAsTheyWere) {
    size_t asBytes = 0;
    for (const Bytes& block : corpusBlocks()) {
        const Shown shown = show(block);
        asBytes += !shown.isCode();
        EXPECT_EQ(shown.warnings, shown.isCode() || block.empty() ? 0 : 1);
        EXPECT_TRUE(compile(shown.text) == block);
        // Of another form than the written one: read as nodes.
        EXPECT_TRUE(compile(replaced(shown.text, " />", "/>")) == block);
    }
    EXPECT_LE(asBytes, 1u); // an empty one
}

TEST(Abc, ThreadsGiveTheSame) {
    if (corpusBlocks().empty())
        GTEST_SKIP() << "no corpus";
    const Bytes& block = corpusBlocks().back();
    const Shown shown = show(block);
    EXPECT_TRUE(show(block, 3).text == shown.text);
    EXPECT_TRUE(compile(shown.text, nullptr, 3) == block);
    EXPECT_TRUE(compile(replaced(shown.text, " />", "/>"), nullptr, 3) == block);
}

// More texts than are looked through one after the other, used in and out of the order in which they stand, by more
// methods than one thread shows or reads.
TEST(Abc, ThreadsFindTextsAmongMany) {
    SwfAbcBlock block;
    std::vector<std::string> texts;
    for (int i = 0; i < 40000; ++i)
        texts.push_back("text " + std::to_string(i));
    block.strings.insert(block.strings.end(), texts.begin(), texts.end());
    std::list<std::vector<uint8_t>> codes(1);
    for (uint32_t i = 1; i <= texts.size(); i += i % 7 == 0 ? 33 : 1) {
        if (codes.back().size() > 2000)
            codes.emplace_back();
        std::vector<uint8_t>& code = codes.back();
        for (uint32_t index : {i, uint32_t(texts.size()) + 1 - i}) {
            code.push_back(0x2C);
            for (; index >= 0x80; index >>= 7)
                code.push_back(static_cast<uint8_t>(index | 0x80));
            code.push_back(static_cast<uint8_t>(index));
        }
    }
    for (const auto& code : codes) {
        SwfAbcBody& body = block.bodies.emplace_back();
        body.method = static_cast<uint32_t>(block.methods.size());
        body.code = code;
        block.methods.emplace_back();
    }
    const Shown shown = show(block.bytes());
    EXPECT_NE(shown.text.find("<PushString Value=\"text 39999\""), shown.text.npos);
    EXPECT_TRUE(show(block.bytes(), 3).text == shown.text);
    for (const uint32_t threads : {1, 3})
        EXPECT_TRUE(compile(shown.text, nullptr, threads) == block.bytes());
    EXPECT_EQ(compile(replaced(shown.text, "text 39999", "new"), nullptr, 3).size(), block.bytes().size() - 7);
}

// --- broken blocks ---------------------------------------------------------------------------------------------------

// Shown as code or as bytes, a block comes back as it is.
void expectKept(const Bytes& block) {
    const Shown shown = show(block);
    ASSERT_TRUE(compile(shown.text) == block) << shown.text.substr(0, 10000);
}

TEST(Abc, BrokenBlocksAreKept) {
    constexpr size_t wanted = 10;
    for (size_t i = 0; i < std::min(wanted, corpusBlocks().size()); ++i) {
        const Bytes& block = corpusBlocks()[i];
        for (size_t length = 0; length < block.size(); ++length)
            expectKept({block.begin(), block.begin() + static_cast<ptrdiff_t>(length)});
        for (size_t at = 0; at < block.size(); ++at) {
            for (const int change : {0x01, 0x80, 0x7F, 0xFF}) {
                Bytes changed = block;
                changed[at] ^= static_cast<uint8_t>(change);
                expectKept(changed);
            }
        }
        if (HasFatalFailure())
            return;
    }
}

// By its name in the layout; each once, in the order of the bytes.
TEST(Abc, ACutBlockTellsTheFieldThatIsMissing) {
    std::string fields;
    for (const char* file : {"names", "members", "methods"}) {
        const Bytes body = *parseCases(std::string(casesDir) + "/abc/" + file + ".case").front().body;
        constexpr size_t start = 5; // behind Flags and Name
        for (size_t end = start; end < body.size(); ++end) {
            try {
                SwfAbcBlock(std::span(body).subspan(start, end - start));
                ADD_FAILURE() << file << " cut at " << end;
            } catch (const SwfException& error) {
                const std::string text = error.what(), field = text.substr(0, text.rfind(": "));
                const std::string name = field.substr(field.rfind(": ") + 2) + ", ";
                fields += (", " + fields).find(", " + name) == fields.npos ? name : "";
            }
        }
    }
    EXPECT_EQ(fields,
              "MinorVersion, MajorVersion, int_count, uint_count, double_count, string_count, string length, "
              "string, namespace_count, namespace kind, namespace name, ns_set_count, ns_set size, "
              "ns_set namespace, multiname_count, multiname kind, multiname namespace, multiname name, "
              "multiname namespace set, multiname type, multiname parameters, multiname parameter, method_count, "
              "metadata_count, class_count, script_count, method_body_count, int, uint, double, param_count, "
              "return_type, method name, method flags, metadata name, item_count, item key, item value, "
              "instance name, super_name, instance flags, protectedNs, intrf_count, interface, iinit, trait_count, "
              "trait name, trait kind, trait id, trait type, trait value, trait value kind, trait index, "
              "trait metadata count, trait metadata, cinit, init, param_type, option_count, option value, "
              "option kind, param_name, body method, max_stack, local_count, init_scope_depth, max_scope_depth, "
              "code_length, code, exception_count, exception from, exception to, exception target, exception type, "
              "exception name, ");
}

// Little bytes that could make much text, or take long.
TEST(Abc, CostsAreBounded) {
    SwfAbcBlock block;
    const std::string longText(200000, 'x');
    block.strings.push_back(longText);
    block.namespaces.push_back({0x05, 1});
    std::vector<uint8_t> code;
    for (int i = 0; i < 50000; ++i) {
        block.namespaces.push_back({0x05, 1});
        code.insert(code.end(), {0x2C, 1});
    }
    block.methods.emplace_back();
    block.bodies.emplace_back().code = code;
    EXPECT_FALSE(show(block.bytes()).isCode());
    expectKept(block.bytes());

    SwfAbcBlock types;
    types.strings.push_back("T");
    types.namespaces.push_back({0x16, 1});
    types.multinames.push_back({SwfAbcMultinameKind::qName, 1, 1, {}});
    for (uint32_t i = 1; i < 64; ++i)
        types.multinames.push_back({SwfAbcMultinameKind::typeName, i, 0, {i, i}});
    EXPECT_FALSE(show(types.bytes()).isCode());
    types.multinames.resize(3);
    types.multinames[2] = {SwfAbcMultinameKind::typeName, 2, 0, {1}}; // of itself
    EXPECT_FALSE(show(types.bytes()).isCode());
}

// --- edited blocks ---------------------------------------------------------------------------------------------------

std::string movieOf(const std::string& content) {
    return "<Movie Form=\"full\" SwfVersion=\"10\">\n<DoABC Flags=\"1\">\n<Abc>\n" + content +
           "\n</Abc>\n</DoABC>\n</Movie>";
}
std::string scriptOf(const std::string& code) {
    return "<Script><Initializer><Code>\n" + code + "\n</Code></Initializer></Script>";
}

// What was inserted moves what stands behind it, and is called by what no pool lists yet.
TEST(Abc, CodeMayBeInsertedAnywhere) {
    const std::string text = movieOf(scriptOf(R"(<Jump To="test" />
<Label At="loop" />
<NewFunction Method="f" />
<Pop />
<IncLocalI At="test" Register="1" />
<GetLocal1 />
<PushByte Value="5" />
<IfLt To="loop" />
<LookupSwitch Default="loop"><Case To="end" /><Case To="test" /></LookupSwitch>
<ReturnVoid At="end" />
<Catch From="loop" Until="test" To="end" />)") +
                                     R"(
<Function Id="f"><Code><ReturnVoid /></Code></Function>)");
    const Shown before = show(compile(text));
    const std::string inserted = R"(                        <PushString Value="new" />
                        <GetLex Name="flash.display::Sprite" />
                        <GetLex Name="@{public}::c" />
                        <PushInt Value="-70000" />
                        <PushUInt Value="4000000000" />
                        <PushDouble Value="0.5" />
                        <IfStrictNe To="L1" />
)";
    std::string edited = before.text;
    const size_t place = edited.find("                        <Pop />");
    ASSERT_NE(place, edited.npos) << before.text;
    edited.insert(place, inserted);
    const Shown after = show(compile(edited));
    const auto withoutConstants = [](const std::string& shown) {
        return replaced(shown.substr(0, shown.find("<Constants")), "MaxStack=\"2\"", "MaxStack=\"1\"");
    };
    EXPECT_EQ(withoutConstants(after.text), withoutConstants(edited));
    for (const char* line : {"<String Value=\"new\" />", "<Multiname Name=\"flash.display::Sprite\" />"})
        EXPECT_NE(after.text.find(line), after.text.npos) << line;
}

// A name is the listed one, however a text says it: no pool grows.
TEST(Abc, ANameInOtherWordsIsTheListedOne) {
    const Bytes block = compile(movieOf(scriptOf("<GetLex Name=\"x\" />\n<ReturnVoid />")));
    const std::string text = show(block).text,
                      other = replaced(text, "<GetLex Name=\"x\"", "<GetLex Name=\"public::x\"");
    EXPECT_NE(other, text);
    EXPECT_TRUE(compile(other) == block) << show(compile(other)).text;
}

// Instructions by name, for methods whose code names others by new numbers.
std::string instructionsOf(const SwfAbcBlock& block, uint32_t method) {
    std::string names;
    for (const SwfAbcBody& body : block.bodies) {
        if (body.method != method)
            continue;
        SwfAbcCodeReader reader(body.code);
        for (SwfAbcInstruction instruction; reader.next(instruction);)
            names.append(instruction.opcode->name).append(" ");
    }
    return names;
}

// Methods that are put in leave the others in their order, and named by whoever named them.
TEST(Abc, MethodsMayBePutIn) {
    if (corpusBlocks().empty())
        GTEST_SKIP() << "no corpus";
    const Bytes& bytes = corpusBlocks().back();
    std::string text = show(bytes).text;
    const std::string added = "\n<Function><Code><ReturnVoid /></Code></Function>";
    size_t count = 0;
    for (size_t at = 0; (at = text.find("</Constructor>", at)) != text.npos; at += added.size(), ++count)
        text.insert(at += std::string_view("</Constructor>").size(), added);
    const Bytes edited = compile(text);
    const SwfAbcBlock before(bytes), after(edited);
    ASSERT_EQ(after.methods.size(), before.methods.size() + count);
    ASSERT_EQ(after.bodies.size(), before.bodies.size() + count);
    for (size_t i = 0; i < before.classes.size(); ++i) {
        const SwfAbcClass &a = before.classes[i], &b = after.classes[i];
        EXPECT_EQ(instructionsOf(before, a.constructor), instructionsOf(after, b.constructor));
        for (size_t trait = 0; trait < a.traits.size(); ++trait) {
            if (!a.traits[trait].holdsValue()) {
                EXPECT_EQ(instructionsOf(before, a.traits[trait].index), instructionsOf(after, b.traits[trait].index));
            }
        }
    }
}

struct Refused {
    const char* content;
    const char* error; // of XmlValueError
    uint32_t row, column;
};

TEST(Abc, ErrorsNameTheirPlace) {
    const std::string inCode = scriptOf("<Nop />\n  $");
    const Refused cases[] = {
        {"<Push />", "Push: no element of this name can stand here", 6, 4},
        {"<Jump To=\"a\" />", "Jump: attribute To: no place here is called \"a\"", 6, 4},
        {"<Jump />", "Jump: attribute To: it does not say where it leads to", 6, 4},
        {"<Nop At=\"a\" /><Nop At=\"b a\" />", "Nop: attribute At: another place is called \"a\" already", 6, 18},
        {"<Nop At=\"\" />", "Nop: attribute At: a place needs a name", 6, 4},
        {"<NewClass Class=\"C\" />", "NewClass: attribute Class: no class is called \"C\"", 6, 4},
        {"<NewFunction Method=\"m\" />", "NewFunction: attribute Method: no method is called \"m\"", 6, 4},
        {"<NewCatch Catch=\"c\" />", "NewCatch: attribute Catch: no Catch here is called \"c\"", 6, 4},
        {"<GetLex />", "GetLex: attribute Name: it is missing", 6, 4},
        {"<GetLex Name=\"a(b)::c\" />", "GetLex: attribute Name: \"a(b)\" is of no kind of namespace", 6, 4},
        {"<GetLex Name=\"{a}::c\" />", "GetLex: attribute Name: \"{a}\" is a set of namespaces that is not there", 6,
         4},
        {"<GetLex Name=\"a:c\" />",
         "GetLex: attribute Name: \"a:c\" has a mark without a \"\\\" before it, or is not listed", 6, 4},
        {"<PushString Value=\"\\q\" />",
         "PushString: attribute Value: \"\\q\" has a \"\\\" before something that means nothing", 6, 4},
        {"<PushInt Value=\"3000000000\" />", "PushInt: attribute Value: \"3000000000\" is not a number in its range", 6,
         4},
        {"<PushByte Value=\"128\" />",
         "PushByte: attribute Value: \"128\" is not a value that fits (Value: -128 to 127)", 6, 4},
        {"<LookupSwitch Default=\"a\"><Label At=\"a\" /></LookupSwitch>",
         "Label: no element of this name can stand here", 6, 30},
        {"<Catch From=\"a\" Until=\"a\" To=\"a\" />", "Catch: no place here is called \"a\"", 6, 4},
    };
    for (const Refused& refused : cases) {
        try {
            compile(movieOf(replaced(inCode, "$", refused.content)));
            ADD_FAILURE() << "compiled: " << refused.content;
        } catch (const XmlValueError& error) {
            EXPECT_EQ(error.description(), refused.error) << refused.content;
            EXPECT_EQ(error.place.row, refused.row) << refused.content;
            EXPECT_EQ(error.place.column, refused.column) << refused.content;
        }
    }
    for (const char* content : {"<Class Name=\"C\"><Static><Initializer /></Static></Class>", "<Script />",
                                "<Skript />", "<Class Name=\"C\"><Constructor /></Class>"})
        EXPECT_THROW(compile(movieOf(content)), XmlValueError) << content;
}

// What a listed name refers to need not be listed itself.
TEST(Abc, ListedNamesBringTheirParts) {
    const auto listing = [](const std::string& first) {
        return movieOf("<Constants>\n" + first + "\n<Multiname Name=\"p::n\" />\n</Constants>");
    };
    const std::string text = show(compile(listing("<Multiname Name=\"q::n\" />"))).text;
    for (const char* line : {"<String Value=\"p\" />", "<String Value=\"n\" />", "<Namespace Name=\"q\" />",
                             "<Multiname Name=\"p::n\" />", "<Multiname Name=\"q::n\" />"})
        EXPECT_NE(text.find(line), text.npos) << line << text;
    for (const char* wrong :
         {"<Multiname Name=\"a(b)::c\" />", "<String Value=\"\\q\" />", "<Int Value=\"3000000000\" />"}) {
        try {
            compile(listing(wrong));
            ADD_FAILURE() << "compiled: " << wrong;
        } catch (const XmlValueError& error) {
            EXPECT_EQ(error.place.row, 5u) << error.description();
        }
    }
}

// Limits are kept as given, and warned of when the code needs more.
TEST(Abc, LimitsThatAreTooSmallAreWarnedOf) {
    const std::string code = "<GetLocal Register=\"4\" />\n<PushScope />\n<PushNull />\n<Dup />\n<ReturnValue />";
    SwfWarnings warnings;
    const std::string given =
        replaced(scriptOf(code), "<Code>", R"(<Code MaxStack="1" LocalCount="9" MaxScopeDepth="0">)");
    EXPECT_NE(show(compile(movieOf(given), &warnings)).text.find(R"(MaxStack="1" LocalCount="9")"), std::string::npos);
    ASSERT_EQ(warnings.total(), 2u);
    EXPECT_TRUE(warnings.items()[0].text().starts_with("too small: ")) << warnings.items()[0].text();
    EXPECT_EQ(warnings.items()[0].reason, "MaxStack is 1, but the code needs 2");
    EXPECT_EQ(warnings.items()[1].reason, "MaxScopeDepth is 0, but the code needs 1");
    // Of a call that no pool names yet, too; what it takes by name it takes from the stack.
    const char* call =
        "<GetLocal0 /><PushNull /><PushNull />\n<CallPropVoid Name=\"{*}::[]\" Arguments=\"1\" />\n"
        "<FindPropStrict Name=\"new\" /><PushNull /><PushNull /><CallPropVoid Name=\"new\" Arguments=\"2\" />";
    for (const auto& [stack, isWarned] : {std::pair("2", true), {"3", false}}) {
        SwfWarnings ofCall;
        compile(movieOf(replaced(scriptOf(call), "<Code>", "<Code MaxStack=\"" + std::string(stack) + "\">")), &ofCall);
        EXPECT_EQ(ofCall.total(), isWarned) << stack;
    }
    // What is not given is worked out.
    EXPECT_NE(show(compile(movieOf(scriptOf(code))))
                  .text.find(R"(MaxStack="2" LocalCount="5" InitScopeDepth="0" MaxScopeDepth="1")"),
              std::string::npos);
}

// A comparison goes down to the method and the first instruction that differs.
TEST(Abc, ComparisonNamesMethodAndInstruction) {
    const std::string text = movieOf(R"(<Class Name="a::C"><Constructor><Code><ReturnVoid /></Code></Constructor>
<Method Name="run"><Code><PushNull /><Nop /><PushByte Value="1" /><PushByte Value="2" /><ReturnVoid /></Code></Method>
<Static><Initializer><Code><ReturnVoid /></Code></Initializer></Static></Class>
<Function Id="f"><Code><ReturnVoid /></Code></Function>)");
    const auto difference = [&](const std::string& edited) {
        SwfMovieSafe movies[2];
        for (size_t i = 0; i < 2; ++i) {
            MovieTarget target;
            xmlToSwf(i == 0 ? text : edited, target, {});
            const SwfVector<uint8_t> file = target.movie.serialise(0);
            movies[i].parse({file.begin(), file.end()}, {.keepRaw = true});
        }
        const FieldDifference field = compareMovies(movies[0], movies[1]).tags.at(0).field.value_or(FieldDifference());
        return field.path + ": " + field.a.value_or("-") + " / " + field.b.value_or("-");
    };
    EXPECT_EQ(difference(replaced(text, "Value=\"2\"", "Value=\"3\"")),
              "DoABC/Abc/Class[a::C]/Method[run]/Code/PushByte[2]/@Value: 2 / 3");
    EXPECT_EQ(difference(replaced(text, "\"run\"", "\"go\"")), "DoABC/Abc/Class[a::C]/Method[run]: Method[run] / -");
    EXPECT_EQ(difference(replaced(text, "Name=\"a::C\"", "Name=\"a::C\" Final=\"true\"")),
              "DoABC/Abc/Class[a::C]/@Final: - / true");
}

} // namespace
