// The command line as a process: its exit status, what it says and what it leaves on the disk.
#include <nlohmann/json.hpp>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <set>

#include "ImageCodec.h"
#include "MediaSamples.h"
#include "ProjectFile.h"

namespace {

std::string record(uint16_t code, const std::string& body) {
    if (body.size() < 63)
        return little(uint64_t(code) << 6 | body.size(), 2) + body;
    return little(uint64_t(code) << 6 | 63, 2) + little(body.size(), 4) + body;
}

// An uncompressed movie of 550 by 400 pixels.
std::string movieOf(const std::string& records, char version = 5) {
    const std::string stage("\x78\x00\x05\x5F\x00\x00\x0F\xA0\x00", 9);
    const std::string body = stage + little(12 << 8, 2) + little(1, 2) + records + little(0, 2);
    return std::string("FWS") + version + little(body.size() + 8, 4) + body;
}

const std::string showFrame = record(1, "");
const std::string sprite = record(39, little(7, 2) + little(1, 2) + showFrame + little(0, 2));
const std::string goodMovie = movieOf(record(9, "abc") + sprite + showFrame);
const std::string goodText = "<Movie SwfVersion=\"5\">\n    <ShowFrame/>\n</Movie>";

std::string project(const std::string& text) {
    const std::vector<uint8_t> archive = zelk::projectOfText(text, "test");
    return {archive.begin(), archive.end()};
}

struct Result {
    int status = -1; ///< 128 and more for a crash
    std::string out, err;
};

class ZelkcTest : public testing::Test {
protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::temp_directory_path() / ("zelkc-" + std::string(test->name()) + "-" + std::to_string(getpid()));
        fs::create_directories(folder / "in");
        fs::create_directories(folder / "folder.swf");
        put("good.swf", goodMovie);
        put("good.xml", goodText);
    }
    void TearDown() override { fs::remove_all(folder); }

    void put(const fs::path& name, const std::string& content) {
        std::ofstream(folder / name, std::ios::binary) << content;
    }
    std::string get(const fs::path& name) {
        std::ostringstream text;
        text << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return text.str();
    }
    std::set<std::string> files(const fs::path& name) {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder / name))
            names.insert(entry.path().filename().string());
        return names;
    }
    Result run(const std::string& arguments, const std::string& input = "/dev/null") {
        const std::string command = "cd '" + folder.string() + "' && TMPDIR=in '" + std::string(zelkcPath) + "' " +
                                    arguments + " <'" + input + "' >.out 2>.err";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 255, get(".out"), get(".err")};
    }

    fs::path folder;
};

TEST_F(ZelkcTest, TellsWrongUseFromDone) {
    put("MOVIE.SWF", goodMovie);
    put("movie.bin", goodMovie);
    struct Case {
        const char* arguments;
        int status;
        const char* said; ///< on standard output when done, on standard error otherwise
    };
    const Case cases[] = {
        {"", 2, "subcommand"},
        {"explode", 2, ""},
        {"convert good.swf", 2, "one input and one output"},
        {"convert good.swf a.xml b.xml", 2, "one input and one output"},
        {"convert movie.bin a.xml", 2, "movie.bin"},
        {"convert good.swf a.bin", 2, "a.bin"},
        {"convert - a.xml", 2, "--from"},
        {"convert good.swf -", 2, "--to"},
        {"convert --from pdf movie.bin a.xml", 2, "pdf"},
        {"convert --level 10 good.xml a.swf", 2, "--level"},
        {"convert --out-dir many good.swf", 2, "--to"},
        {"convert --form half good.swf a.xml", 2, "--form"},
        {"convert --out-dir many --to xml -", 2, "standard input"},
        {"info", 2, "FILE"},
        {"check movie.bin", 2, "movie.bin"},
        {"--version", 0, "zelkc " ZELK_VERSION},
        {"--help", 0, "convert"},
        {"convert --help", 0, "--drop-unreadable"},
        {"info --help", 0, "--json"},
        {"check --help", 0, "FILE"},
        {"convert MOVIE.SWF A.Xml", 0, ""},
        {"convert --from SWF movie.bin a.xml", 0, ""},
        {"convert good.swf a.swf", 0, ""},
        {"convert good.swf A.ZELK", 0, ""},
        {"convert --from Zelk --to xml A.ZELK b.out", 0, ""},
        {"check A.ZELK", 0, "A.ZELK: ok"},
        {"check good.xml", 0, "good.xml: ok"},
        {"check good.swf", 0, "good.swf: ok"},
    };
    for (const Case& c : cases) {
        const Result result = run(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.arguments << "\n" << result.err;
        EXPECT_NE((c.status == 0 ? result.out : result.err).find(c.said), std::string::npos)
            << c.arguments << "\n"
            << result.out << result.err;
        EXPECT_EQ(c.status == 0, result.err.empty()) << c.arguments << "\n" << result.err;
    }
    EXPECT_FALSE(fs::exists(folder / "many"));
    EXPECT_EQ(get("a.swf"), goodMovie);
    EXPECT_EQ(get("A.Xml"), get("a.xml"));
    EXPECT_EQ(get("b.out"), get("a.xml"));
}

TEST_F(ZelkcTest, ReadsAndWritesInTheFormOfTheTextOrTheOneAskedFor) {
    const auto isFull = [this](const char* name) {
        return get(name).find("<Movie Form=\"full\"") != std::string::npos;
    };
    EXPECT_EQ(run("convert --form full good.swf full.xml").status, 0);
    EXPECT_TRUE(isFull("full.xml"));
    EXPECT_EQ(run("convert full.xml kept.zelk").status, 0);
    EXPECT_EQ(run("convert kept.zelk kept.xml").status, 0);
    EXPECT_EQ(get("kept.xml"), get("full.xml"));
    EXPECT_EQ(run("convert --form classic full.xml classic.xml").status, 0);
    EXPECT_EQ(run("convert good.swf expected.xml").status, 0);
    EXPECT_EQ(get("classic.xml"), get("expected.xml"));
    EXPECT_EQ(run("convert --original good.swf full.xml back.swf").status, 0);
    EXPECT_EQ(get("back.swf"), goodMovie);
    EXPECT_EQ(run("compare good.swf full.xml").status, 0); // both in the full form
    put("bad.xml", "<Movie Form=\"half\"/>");
    const Result bad = run("convert --form full bad.xml out.xml");
    EXPECT_EQ(bad.status, 1);
    EXPECT_NE(bad.err.find("attribute Form"), std::string::npos) << bad.err;
}

TEST_F(ZelkcTest, SaysWhatIsWrongAndLeavesTheTargetAlone) {
    std::string frames;
    for (int i = 0; i < 65536; ++i)
        frames += "<ShowFrame/>";
    const std::string none = "cannot be opened for reading: No such file or directory\n";
    struct Case {
        const char* name;
        std::string content;
        std::string said;
    };
    const Case cases[] = {
        {"tag.xml", "<Movie>\n  <ShowFrame></Movie>",
         "tag.xml: The XML has incorrect format.\nError description: invalid closing tag name\nRow: 2\nCol: "},
        {"cut.xml", "<Movie", "The XML has incorrect format.\nError description: "},
        {"nul.xml", std::string("<Movie>\n\0</Movie>", 17), "Row: 2\nCol: 1\n"},
        {"width.xml", "\n<Movie Width=\"wide\"/>",
         "width.xml: Incorrect value of attribute Width\nWidth: 0 to 53687091\nRow: 2\nCol: "},
        {"base64.xml", "<Movie>\n\n<Unknown TagType=\"99\"><Data>!</Data></Unknown></Movie>",
         "base64.xml: Incorrect Base64 data\nRow: 3\nCol: "},
        {"value.xml", "<Movie><Unknown TagType=\"a\nb\x1b[m\"/></Movie>", "value.xml: Unknown: attribute TagType: \"a"},
        {"other.xml", "<Film/>", "other.xml: The document has no Movie element.\n"},
        {"frames.xml", "<Movie>" + frames + "</Movie>", "frames.xml: The movie has more than 65535 frames.\n"},
        {"missing.xml", "", "Unable to open missing.xml\n" + none},
        {"missing.swf", "", "Unable to open missing.swf\n" + none},
        {"folder.swf", "", "Unable to open folder.swf\ncannot be read: Is a directory\n"},
        {"missing.zelk", "", "Unable to open missing.zelk\n" + none},
        {"movie.zelk", goodMovie, "Unable to open movie.zelk\nit is no zip archive, "},
        {"broken.zelk", project("<Movie"), "broken.zelk: The XML has incorrect format.\nError description: "},
        {"short.swf", "FWS\x05", "Unable to open short.swf\n"},
        {"corrupt.swf", "CWS\x06" + little(500, 4) + "no zlib data", "Unable to open corrupt.swf\n"},
    };
    for (const Case& c : cases) {
        if (!c.content.empty())
            put(c.name, c.content);
        const std::string target = fs::path(c.name).extension() == ".xml" ? "old.zelk" : "old.xml";
        put(target, "old");
        const Result result = run("convert " + std::string(c.name) + " " + target);
        EXPECT_EQ(result.status, 1) << c.name;
        EXPECT_NE(result.err.find(c.said), std::string::npos) << c.name << "\n" << result.err;
        EXPECT_EQ(result.err.find('\x1b'), std::string::npos) << c.name;
        EXPECT_EQ(get(target), "old") << c.name;
        EXPECT_EQ(run("check " + std::string(c.name)).status, 1) << c.name;
    }
    for (const std::string& name : files("."))
        EXPECT_EQ(name.find(".tmp"), std::string::npos) << name;
    for (const std::string name : {"nowhere/a.swf", "nowhere/a.zelk"}) {
        const Result noFolder = run("convert good.xml " + name);
        EXPECT_EQ(noFolder.status, 1);
        EXPECT_EQ(noFolder.err, name + ": cannot be opened for writing: No such file or directory\n");
    }
    EXPECT_EQ(run("convert good.xml folder.swf").err, "folder.swf: cannot be opened for writing: Is a directory\n");
    EXPECT_EQ(run("convert --out-dir good.xml --to swf good.xml").err,
              "good.xml: the folder cannot be made: Not a directory\n");
}

TEST_F(ZelkcTest, ConvertsBothWaysThroughTheStandardStreams) {
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<Movie ";
    const Result text = run("convert - - --from swf --to xml", "good.swf");
    EXPECT_EQ(text.status, 0) << text.err;
    EXPECT_EQ(text.out.substr(0, declaration.size()), declaration);
    EXPECT_EQ(text.out.substr(text.out.size() - 9), "\n</Movie>");
    put("text.xml", text.out);
    EXPECT_EQ(run("convert - - --from xml --to swf", "text.xml").out, goodMovie);
    EXPECT_EQ(run("convert - - --from xml --to xml", "text.xml").out, text.out);
    put("text.zelk", run("convert - - --from xml --to zelk", "text.xml").out);
    EXPECT_EQ(run("convert - - --from zelk --to swf", "text.zelk").out, goodMovie);
    EXPECT_EQ(run("convert - - --from zelk --to swf", "good.swf").err.find("Unable to open standard input\n"), 0u);
    EXPECT_EQ(run("info - --from swf", "/dev/null").status, 1);
#ifdef __linux__
    EXPECT_EQ(run("info good.swf >/dev/full 2>full.err; exit $?").status, 1);
    EXPECT_EQ(get("full.err"), "standard output: cannot be written: No space left on device\n");
#endif
}

TEST_F(ZelkcTest, CompressesAsMuchAsAsked) {
    put("big.swf", movieOf(record(99, std::string(5000, 'x'))));
    run("convert big.swf big.xml");
    std::string text = get("big.xml");
    text.replace(text.find("SwfVersion=\"5\""), 14, "SwfVersion=\"6\"");
    put("big.xml", text);
    run("convert --level 0 big.xml stored.swf");
    run("convert big.xml packed.swf");
    EXPECT_EQ(get("packed.swf").substr(0, 3), "CWS");
    EXPECT_GT(get("stored.swf").size(), 5000u);
    EXPECT_LT(get("packed.swf").size(), 500u);
}

TEST_F(ZelkcTest, KeepsOrDropsUnreadableTags) {
    put("bad.swf", movieOf(record(39, "x") + showFrame));
    const Result kept = run("convert bad.swf kept.xml");
    EXPECT_EQ(kept.status, 0);
    EXPECT_EQ(kept.err.find("warning: bad.swf: kept raw: tag 0 (DefineSprite) at offset 0x1b: SpriteId: "), 0u)
        << kept.err;
    EXPECT_NE(get("kept.xml").find("<Unknown TagType=\"39\""), std::string::npos);
    const Result dropped = run("convert --drop-unreadable bad.swf dropped.xml");
    EXPECT_EQ(dropped.status, 0);
    EXPECT_NE(dropped.err.find("dropped"), std::string::npos);
    EXPECT_EQ(get("dropped.xml").find("Unknown"), std::string::npos);
    EXPECT_EQ(run("convert --quiet bad.swf quiet.xml").err, "");
}

TEST_F(ZelkcTest, ShowsTwentyWarningsAndCountsTheRest) {
    std::string text = "<Movie>\n";
    for (int i = 0; i < 25; ++i)
        text += "<Odd/>\n";
    put("odd.xml", text + "</Movie>");
    const Result result = run("convert odd.xml odd.swf");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 21);
    EXPECT_NE(result.err.find("(Odd) row 21, column 2"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("and 5 more\n"), std::string::npos) << result.err;
    const Result all = run("check odd.xml");
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(std::count(all.err.begin(), all.err.end(), '\n'), 25);
    put("cut.xml", "<Movie><DefineShape><a/><b/><c/><d><Line DX=\"70000\"/></d></DefineShape></Movie>");
    EXPECT_NE(run("check cut.xml").err.find("an edge has deltas of 65,536"), std::string::npos) << "in writing";
}

TEST_F(ZelkcTest, TellsWhatIsWrongWithAMovieThatCompiles) {
    put("warned.xml", "<Movie>\n<RemoveObject2 Depth=\"1\"/></Movie>");
    put("broken.xml", "<Movie>\n<PlaceObject2 Depth=\"1\" CharacterId=\"9\"/></Movie>");
    EXPECT_EQ(run("convert broken.xml broken.swf").status, 0);
    const struct {
        const char* arguments;
        int status;
        const char *out, *err;
    } cases[] = {
        {"warned.xml", 0, "warned.xml: ok (tags 1, ", "warning: warned.xml: row 2, column 1: tag 0 (RemoveObject2): "},
        {"--strict warned.xml", 1, "warned.xml: not ok (", "warning: "},
        {"--quiet warned.xml", 0, "ok", ""},
        {"broken.xml", 1, "broken.xml: not ok (", "error: broken.xml: row 2, column 1: tag 0 (PlaceObject2): nothing"},
        {"broken.swf", 1, "broken.swf: not ok (", "error: broken.swf: tag 0 (PlaceObject2): nothing defines"},
    };
    for (const auto& c : cases) {
        const Result result = run("check " + std::string(c.arguments));
        EXPECT_EQ(result.status, c.status) << c.arguments;
        EXPECT_NE(result.out.find(c.out), std::string::npos) << result.out;
        EXPECT_EQ(result.err.substr(0, std::string_view(c.err).size()), c.err) << c.arguments;
    }
    const auto json = nlohmann::json::parse(run("check --json broken.xml").out);
    EXPECT_EQ(json["ok"], false);
    EXPECT_EQ(json["errors"], 1);
    const auto& problem = json["problems"][0];
    EXPECT_EQ(problem["kind"], "undefined-id");
    EXPECT_EQ(problem["severity"], "error");
    EXPECT_EQ(problem["index"], "0");
    EXPECT_EQ(problem["row"], 2);
    EXPECT_EQ(problem["id"], 9);
}

TEST_F(ZelkcTest, ConvertsManyFiles) {
    put("other.xml", goodText);
    put("broken.xml", "<Movie>");
    put("in/good.xml", goodText);
    put("note.txt", "x");
    put("packed.zelk", project(goodText));
    const Result result =
        run("convert --out-dir out/deep --to swf good.xml broken.xml in/good.xml note.txt other.xml packed.zelk");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(files("out/deep"), (std::set<std::string>{"good.swf", "other.swf", "packed.swf"}));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 3) << result.err;
    for (const char* said :
         {"broken.xml: The XML has incorrect format.; Error description: ", "in/good.xml: the output ", "note.txt: "})
        EXPECT_NE(result.err.find(said), std::string::npos) << result.err;
    const Result inPlace = run("convert --out-dir . --to swf good.xml ./good.swf");
    EXPECT_EQ(inPlace.status, 1);
    EXPECT_EQ(get("good.swf"), goodMovie);

    fs::create_directories(folder / "tree/a");
    for (const char* name : {"tree/a/one.xml", "tree/two.xml", "tree/is.swf", "tree/note.txt"})
        put(name, goodText);
    for (int round = 0; round < 2; ++round) { // the second one does not take the outputs of the first
        EXPECT_EQ(run("convert --to swf --out-dir tree/out tree").status, 0);
        EXPECT_EQ(get("tree/out/a/one.swf"), get("out/deep/other.swf"));
        EXPECT_FALSE(fs::exists(folder / "tree/out/out") || fs::exists(folder / "tree/out/is.swf"));
    }
    put("tree/out/two.swf", "done");
    fs::remove(folder / "tree/out/a/one.swf");
    EXPECT_EQ(run("convert --skip-done --to swf --out-dir tree/out tree").status, 0);
    EXPECT_EQ(get("tree/out/two.swf") + get("tree/out/a/one.swf"), "done" + get("out/deep/other.swf"));
}

TEST_F(ZelkcTest, TellsHeaderAndTags) {
    using Json = nlohmann::json;
    const Result ofMovie = run("info --json good.swf");
    const Json movie = Json::parse(ofMovie.out);
    EXPECT_EQ(movie["signature"], "FWS");
    EXPECT_EQ(movie["width"], 550);
    EXPECT_EQ(movie["frameSize"]["yMax"], 8000);
    EXPECT_EQ(movie["frameRate"], 12);
    EXPECT_EQ(movie["fileLength"], goodMovie.size());
    EXPECT_EQ(movie["bodyLength"], goodMovie.size() - 8);
    const Json& tags = movie["tags"];
    ASSERT_EQ(tags.size(), 4u);
    EXPECT_EQ(tags[0]["name"], "SetBackgroundColor");
    EXPECT_EQ(tags[0]["bytes"], 3);
    EXPECT_EQ(tags[1], Json::parse(R"({"index":"1","code":39,"name":"DefineSprite","bytes":8,"id":7})"));
    EXPECT_EQ(tags[2]["index"], "1.0");
    EXPECT_EQ(tags[3]["index"], "2");
    const std::string table = run("info good.swf").out;
    for (const char* said : {"550 x 400 pixels", "1.0", "DefineSprite"})
        EXPECT_NE(table.find(said), std::string::npos) << table;

    run("convert good.swf same.xml");
    Json ofText = Json::parse(run("info --json same.xml").out);
    EXPECT_EQ(ofText["kind"], "xml");
    EXPECT_EQ(ofText["tags"], tags);
    fs::copy_file(folder / "good.swf", folder / "\xFF.swf");
    EXPECT_EQ(Json::parse(run("info --json \xFF.swf").out)["tags"], tags);
    run("convert same.xml same.zelk");
    EXPECT_EQ(Json::parse(run("info --json same.zelk").out)["kind"], "zelk");
    EXPECT_EQ(run("compare same.zelk good.swf").status, 0);
    put("empty.xml", "<Movie/>");
    EXPECT_EQ(Json::parse(run("info --json empty.xml").out)["tags"], Json::array());

    put("raw.swf", movieOf(record(41, "abc") + record(9, "abcd") + record(14, {"\1\0\x4F\0\0\0\0", 7}) + showFrame));
    const Json raw = Json::parse(run("info --json raw.swf").out)["tags"];
    EXPECT_EQ(raw[0]["reason"], "only the full form shows it");
    EXPECT_EQ(raw[1]["reason"], "1 bytes are left over after its fields");
    EXPECT_NE(raw[2]["reason"].get<std::string>().find("SoundFormat"), std::string::npos); // 4 has no name
    EXPECT_FALSE(raw[3].contains("reason"));
    EXPECT_NE(run("info --form full raw.swf").out.find("  kept raw: ProductID: data ends here"), std::string::npos);
}

TEST_F(ZelkcTest, ComparesMovies) {
    using Json = nlohmann::json;
    put("a.swf", movieOf(sprite + record(77, std::string("x\x1b\xff\0", 4)) + showFrame));
    put("b.swf", movieOf(showFrame + sprite + record(77, std::string("y\0", 2)) + showFrame));
    run("convert a.swf a.xml");
    const Result same = run("compare a.swf a.xml");
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out, "4 identical, 0 same meaning, 0 different, 0 only in A, 0 only in B; 0 header fields differ\n");
    EXPECT_EQ(run("compare --from swf - a.xml", "a.swf").out, same.out);
    const Result all = run("compare --all a.swf a.xml");
    EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 5) << all.out;

    const Result other = run("compare a.swf b.swf");
    EXPECT_EQ(other.status, 1);
    for (const char* said : {"only in B     -          0          ShowFrame", "Metadata/Data: x?\xff / y\n",
                             "3 identical, 0 same meaning, 1 different, 0 only in A, 1 only in B"})
        EXPECT_NE(other.out.find(said), std::string::npos) << other.out;
    const Json json = Json::parse(run("compare --json a.swf b.swf").out);
    EXPECT_EQ(json["same"], false);
    EXPECT_EQ(json["counts"]["only in B"], 1);
    ASSERT_EQ(json["tags"].size(), 2u);
    EXPECT_EQ(json["tags"][1]["b"], Json::parse(R"({"index":"2","bytes":2})"));
    EXPECT_EQ(json["tags"][1]["field"]["b"], "y");

    EXPECT_EQ(run("compare - -").status, 2);
    EXPECT_EQ(run("compare a.swf").status, 2);
    const Result missing = run("compare missing.swf nothing.xml");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("missing.swf"), std::string::npos);
    EXPECT_NE(missing.err.find("nothing.xml"), std::string::npos);
}

TEST_F(ZelkcTest, ExtractsAndReplacesPayloads) {
    const std::string binary = record(87, little(4, 2) + little(0, 4) + "abc");
    const std::string twice = record(87, little(4, 2) + little(0, 4) + "<?xml again");
    const std::string broken = record(36, little(6, 2) + "\x05" + little(9, 2) + little(9, 2) + "no zlib");
    const std::string unknown = record(544, "raw");
    const std::string inSprite = record(39, little(7, 2) + little(1, 2) + unknown + little(0, 2));
    const std::string rest = broken + unknown + inSprite + showFrame;
    put("a.swf", movieOf(binary + twice + rest));
    Result result = run("extract a.swf --unknown --out-dir out");
    EXPECT_EQ(result.status, 1) << "one cannot be read";
    EXPECT_NE(result.err.find("(DefineBitsLossless2, id 6): "), std::string::npos) << result.err;
    EXPECT_EQ(result.out, "a.swf: 4 of 5 payloads extracted\n");
    EXPECT_EQ(files("out"), (std::set<std::string>{"4-DefineBinaryData.bin", "4-DefineBinaryData.xml", "3-Tag544.bin",
                                                   "4.0-Tag544.bin"}));
    EXPECT_EQ(get("out/4-DefineBinaryData.bin"), "abc");
    put("out/4-DefineBinaryData.bin", "mine");
    EXPECT_EQ(run("extract a.swf --tag 4 --out-dir out").status, 1);
    EXPECT_EQ(get("out/4-DefineBinaryData.bin"), "mine");
    EXPECT_EQ(run("extract a.swf --tag 4 --out-dir out --force").status, 0);
    EXPECT_EQ(get("out/4-DefineBinaryData.bin"), "abc");
    result = run("extract a.swf --tag 4 --list");
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
    EXPECT_EQ(run("extract a.swf --list").out, result.out) << "without the unknown ones";
    EXPECT_EQ(run("extract a.swf --tag 5 --list").status, 1);
    EXPECT_EQ(run("extract a.swf").status, 2);

    put("new.txt", "defg");
    EXPECT_EQ(run("replace a.swf --tag 4 new.txt b.swf").status, 0);
    EXPECT_EQ(get("b.swf"), movieOf(binary + record(87, little(4, 2) + little(0, 4) + "defg") + rest));
    EXPECT_EQ(run("replace a.swf --form full --tag 4 new.txt full.xml").status, 0);
    EXPECT_NE(get("full.xml").find("<Movie Form=\"full\""), std::string::npos);
    put("a.xml",
        "<Movie SwfVersion=\"5\"><!-- kept -->\n<DefineBinaryData CharacterId=\"4\"/>\n  <ShowFrame />  </Movie>");
    EXPECT_EQ(run("replace a.xml --tag 4 new.txt b.zelk").status, 0);
    EXPECT_EQ(
        run("convert b.zelk b2.swf && '" + std::string(zelkcPath) + "' replace --to xml a.xml --tag 4 new.txt b.xml")
            .status,
        0);
    EXPECT_TRUE(get("b.xml").starts_with("<Movie SwfVersion=\"5\"><!-- kept -->\n<DefineBinaryData "));
    EXPECT_TRUE(get("b.xml").ends_with("</DefineBinaryData>\n  <ShowFrame />  </Movie>"));
    EXPECT_NE(get("b2.swf").find("defg"), std::string::npos);
    EXPECT_EQ(run("replace a.swf --tag 6 new.txt c.swf").err,
              "a.swf: new.txt: the file is no JPEG, PNG or GIF picture (code 2)\n");
    for (const char* wrong : {"--tag 5 new.txt", "--tag 6 new.txt", "--tag 4 none.txt"})
        EXPECT_EQ(run(std::string("replace a.swf ") + wrong + " c.swf").status, 1) << wrong;
    EXPECT_FALSE(fs::exists(folder / "c.swf"));
}

// The program loads the codecs that the tests have linked: the same pixels, and the same words for what is broken.
TEST_F(ZelkcTest, LoadsTheCodecs) {
    const auto text = [](const auto& bytes) { return std::string(bytes.begin(), bytes.end()); };
    const Bytes gif = samples::gifFile(), jpeg = samples::jpegOf(8, 8, 9, 9, 9).file;
    const std::string pixel = text(samples::zlibData({255, 1, 2, 3}).span());
    put("a.swf", movieOf(record(36, little(6, 2) + "\x05" + little(1, 2) + little(1, 2) + pixel)));
    put("a.gif", text(gif));
    EXPECT_EQ(
        run("replace a.swf --tag 6 a.gif b.swf && '" + std::string(zelkcPath) + "' extract b.swf --out-dir out").err,
        "");
    const std::string png = get("out/6-DefineBitsLossless2.png");
    EXPECT_EQ(zelk::decodeImage({reinterpret_cast<const uint8_t*>(png.data()), png.size()}).rgba,
              zelk::decodeImage(gif).rgba);
    for (const std::string& whole : {text(gif), text(jpeg), png}) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size()) / 2);
        put("cut", text(cut));
        try {
            zelk::decodeImage(cut);
            ADD_FAILURE();
        } catch (const libswf::SwfException& error) {
            EXPECT_EQ(run("replace a.swf --tag 6 cut c.swf").err, std::string("a.swf: cut: ") + error.what() + "\n");
        }
    }
}

// Good and broken files of folders in a line each; a run that was cut off goes on where it was.
TEST_F(ZelkcTest, PrintsALineForEachOfManyMovies) {
    fs::create_directories(folder / "many" / "deep");
    for (int i = 0; i < 9; ++i)
        put("many/deep/" + std::to_string(i) + ".swf", i == 5 ? "FWS" : goodMovie);
    put("many/text.xml", goodText);
    put("many/notes.txt", "no movie");
    const auto linesOf = [](const std::string& text) {
        std::map<std::string, nlohmann::json> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            const nlohmann::json json = nlohmann::json::parse(line, nullptr, false);
            if (json.is_object()) {
                EXPECT_TRUE(lines.emplace(json["file"], json).second) << "twice: " << line;
            }
        }
        return lines;
    };
    for (const char* command : {"info", "check"}) {
        const std::string start = std::string(command) + " --json-lines ";
        const Result all = run(start + "many good.swf none.swf");
        EXPECT_EQ(all.status, 1);
        const auto lines = linesOf(all.out);
        ASSERT_EQ(lines.size(), 12u) << all.out;
        for (const auto& [file, line] : lines)
            EXPECT_EQ(line["ok"], file != "none.swf" && file != "many/deep/5.swf") << line;
        EXPECT_EQ(run(start + "many/text.xml good.swf").status, 0);
        put("done.jsonl", all.out.substr(0, all.out.size() / 2));
        const Result rest = run(start + "--skip-done done.jsonl many good.swf none.swf");
        EXPECT_EQ(linesOf(get("done.jsonl") + rest.out).size(), 12u) << rest.out;
        EXPECT_EQ(run(start + "--skip-done all.jsonl good.swf").status, 0) << "there need not be one";
        EXPECT_EQ(run(std::string(command) + " good.swf good.xml").status, 2);
        EXPECT_EQ(run(std::string(command) + " --skip-done done.jsonl good.swf").status, 2);
    }
    const nlohmann::json line = nlohmann::json::parse(run("info --json-lines good.swf").out);
    EXPECT_EQ(line["version"], 5);
    EXPECT_EQ(line["tags"], 4);
    EXPECT_EQ(line["tagCounts"]["ShowFrame"], 2);
}

} // namespace
