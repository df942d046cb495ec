// Payloads of tags that stand in a text or a movie: where they are found, the commands on them, real movies.

#include "Base64.h"
#include "DocumentFixture.h"
#include "Exceptions.h"
#include "ImageCodec.h"
#include "MediaSamples.h"
#include "PayloadCommands.h"
#include "TagPayload.h"
#include "XmlErrors.h"

using namespace libswf;
using namespace samples;
using zelk::guicommand::documentviewtext::ExportPayloadCmd;
using zelk::guicommand::documentviewtext::ImportPayloadCmd;

namespace {

std::string base64(const Bytes& bytes) {
    xml2swf::XmlText text;
    xml2swf::appendBase64(text, bytes);
    return text.take();
}

std::string data(const char* name, const Bytes& bytes) {
    return std::string("<") + name + "><![CDATA[" + base64(bytes) + "]]></" + name + ">";
}

std::string block(const Bytes& bytes) {
    return "<SoundStreamBlock>" + data("StreamSoundData", bytes) + "</SoundStreamBlock>";
}

const std::string streamHead =
    R"(<SoundStreamHead SampleCount="1"><PlaybackInfo SoundFormat="PCM" SoundRate="11025Hz" SoundSize="8Bit" SoundType="Mono"/>)"
    R"(<StreamInfo SoundFormat="PCM" SoundRate="11025Hz" SoundSize="8Bit" SoundType="Mono"/></SoundStreamHead>)";

const std::string movie = R"(<?xml version="1.0"?>
<!-- <Movie SwfVersion="3"> -->
<Movie SwfVersion="9" Width="1" Height="1" FrameRate="1">
    <PlaceObject CharacterId="7" Depth="1"/>
    <DefineBinaryData CharacterId = '7'>)" +
                          data("Data", {1, 2, 3}) + R"(</DefineBinaryData>
    <DefineSprite SpriteId="8" FrameCount="1">
        )" + streamHead + block({9, 9}) +
                          R"(
    </DefineSprite>
    )" + streamHead + block({1}) +
                          "<DefineSprite SpriteId=\"9\">" + block({7}) + "</DefineSprite>" + block({2, 3}) +
                          streamHead + block({8}) + R"(
    <SetBackgroundColor Color="ff"/>
    <DefineBinaryData CharacterId="17">)" +
                          "<Data>!</Data>" + R"(</DefineBinaryData>
    <ShowFrame/>
</Movie>)";

TEST(PayloadInText, IsThatOfTheTagAtThePlace) {
    const struct {
        const char* at;
        size_t behind; ///< bytes
        const char* element;
        Bytes stream;
    } cases[] = {
        {"    <DefineBinaryData", 0, "<DefineBinaryData CharacterId = '7'", {}},
        {"AQID", 2, "<DefineBinaryData CharacterId = '7'", {}},
        {"<DefineSprite SpriteId=\"8\"", 5, "<DefineSprite SpriteId=\"8\"", {}},
        {"        <SoundStreamHead", 0, "<SoundStreamHead", {9, 9}},
        {"    </DefineSprite>\n    <SoundStreamHead", 27, "<SoundStreamHead", {1, 2, 3}},
        {"<ShowFrame/>", 12, "<ShowFrame/>", {}},
        {"<!-- <Movie", 8, nullptr, {}},
        {"<Movie SwfVersion=\"9\"", 9, nullptr, {}},
        {"</Movie>", 8, nullptr, {}},
    };
    for (const auto& each : cases) {
        const auto found = zelk::payloadElementsAt(movie, movie.find(each.at) + each.behind);
        ASSERT_EQ(found.has_value(), each.element != nullptr) << each.at;
        if (!found)
            continue;
        EXPECT_EQ(found->layout.version, 9);
        EXPECT_TRUE(found->element.starts_with(each.element)) << found->element;
        Bytes joined;
        const zelk::TagPayload payload(*found);
        for (const auto* one : payload.context().blocks)
            joined =
                joined + Bytes(one->streamSoundData.data(), one->streamSoundData.data() + one->streamSoundData.size());
        EXPECT_EQ(joined, each.stream) << each.at;
    }
    EXPECT_EQ(zelk::payloadElementsOf(movie, 7)->element.substr(0, 18), "<DefineBinaryData ");
    EXPECT_FALSE(zelk::payloadElementsOf(movie, 8));
    EXPECT_FALSE(zelk::payloadElementsOf(movie, 1)) << "17 is another";
    EXPECT_THROW(zelk::payloadElementsAt("<Movie><End></Movie>", 8), xml2swf::XmlSyntaxError);
}

TEST(PayloadsOfAMovie, AreVisitedWithWhatTheyNeed) {
    std::string text = movie;
    text.replace(text.find("<Data>!</Data>"), 14, data("Data", {4}));
    text.insert(text.find("<ShowFrame/>"), "<DefineBits CharacterId=\"3\">" + data("JPEGData", {5}) +
                                               "</DefineBits><DefineSprite SpriteId=\"4\"><JPEGTables>" +
                                               data("JPEGData", {6}) + "</JPEGTables></DefineSprite>");
    xml2swf::MovieTarget target;
    xmlToSwf(text, target, {});
    std::vector<std::string> found;
    zelk::forEachPayload(target.movie.tags,
                         [&](const SwfTag& tag, const std::string& place, const zelk::PayloadContext& context) {
                             std::string line = place + " " + std::to_string(tag.type) + ":";
                             for (const auto* one : context.blocks)
                                 line += " " + std::to_string(one->streamSoundData.size());
                             found.push_back(context.tables == nullptr ? line : line + " tables");
                         });
    EXPECT_EQ(found, (std::vector<std::string>{"1 87: tables", "2.0 18: 2 tables", "3 18: 1 2 tables", "7 18: 1 tables",
                                               "10 87: tables", "11 6: tables"}));
}

class PayloadCommands : public zelk::DocumentFixture {
protected:
    PayloadCommands() { view.content = movie; }

    template <class Cmd>
    bool run(const char* at) {
        Cmd command(session, view, movie.find(at));
        return runCommand(session, command, &view);
    }

    const std::string file = path("x.bin");
    const char* const binary = "<DefineBinaryData CharacterId = '7'";
};

TEST_F(PayloadCommands, WriteAFileAndPutOneInItsPlace) {
    EXPECT_FALSE(run<ExportPayloadCmd>(binary)) << "thinks better of it";
    EXPECT_EQ(user.proposal, "7-DefineBinaryData.bin");
    user.payloadName = file;
    EXPECT_TRUE(run<ExportPayloadCmd>(binary));
    EXPECT_EQ(readFile(file), (Bytes{1, 2, 3}));
    EXPECT_FALSE(run<ImportPayloadCmd>(binary));
    EXPECT_EQ(user.messages.size(), 1u) << "says that nothing changes";
    EXPECT_EQ(view.content, movie);

    writeFile(file, Bytes{4, 5});
    EXPECT_TRUE(run<ImportPayloadCmd>(binary));
    EXPECT_EQ(user.payloadKinds, std::vector<std::string>{"*"});
    ASSERT_EQ(view.replaced.size(), 1u);
    const std::string& old = view.replaced[0];
    EXPECT_TRUE(old.starts_with(binary) && old.ends_with("</DefineBinaryData>")) << old;
    const size_t start = movie.find(old), behind = movie.size() - start - old.size();
    EXPECT_EQ(view.content.substr(0, start), movie.substr(0, start));
    EXPECT_EQ(view.content.substr(view.content.size() - behind), movie.substr(start + old.size()));
    EXPECT_TRUE(run<ExportPayloadCmd>(binary));
    EXPECT_EQ(readFile(file), (Bytes{4, 5}));
    EXPECT_TRUE(user.failures.empty());
}

TEST_F(PayloadCommands, SayWhatKeepsThem) {
    user.payloadName = file;
    const std::pair<const char*, const char*> told[] = {
        {"<Movie SwfVersion=\"9\"", "There is no tag at this place."},
        {"<ShowFrame", "ShowFrame has no data that could be a file."},
    };
    for (const auto& [at, text] : told) {
        EXPECT_FALSE(run<ExportPayloadCmd>(at));
        EXPECT_EQ(user.messages.back().text, text);
    }
    EXPECT_FALSE(run<ImportPayloadCmd>("<ShowFrame"));
    EXPECT_EQ(user.messages.back().text, "The data of ShowFrame cannot be replaced by a file.");
    EXPECT_TRUE(user.failures.empty());

    EXPECT_FALSE(run<ExportPayloadCmd>("<DefineBinaryData CharacterId=\"17\""));
    EXPECT_EQ(user.failures.back().message.text, "Incorrect Base64 data");
    EXPECT_EQ(view.atRow, std::count(movie.begin(), movie.begin() + long(movie.find("<Data>!")), '\n') + 1);
    EXPECT_FALSE(run<ImportPayloadCmd>(binary)) << "there is no such file";
    EXPECT_TRUE(user.failures.back().message.text.starts_with("Unable to open "));
    user.payloadName = (folder / "none" / "x.bin").string();
    EXPECT_FALSE(run<ExportPayloadCmd>(binary));
    EXPECT_TRUE(user.failures.back().message.text.starts_with("Unable to save this file."));
    EXPECT_EQ(view.content, movie);
}

TEST(PayloadsOfTheCorpus, ComeOutOrSayWhyNot) {
    std::error_code missing;
    for (const auto& entry : fs::recursive_directory_iterator(corpusDir, missing)) {
        if (entry.path().extension() != ".swf")
            continue;
        SwfMovieSafe corpusMovie;
        try {
            corpusMovie.load(entry.path().string(), {.keepRaw = true});
        } catch (const SwfException&) {
            continue; // broken on purpose
        }
        zelk::forEachPayload(corpusMovie.tags.tags(),
                             [&](const SwfTag& tag, const std::string& place, const zelk::PayloadContext& context) {
                                 try {
                                     const zelk::Payload payload = zelk::exportPayload(tag, context);
                                     EXPECT_FALSE(payload.bytes.empty());
                                     if (zelk::isBitmap(tag)) {
                                         const zelk::Image image = zelk::decodeBitmap(tag, context.tables);
                                         EXPECT_EQ(zelk::decodeImage(payload.bytes).rgba, image.rgba);
                                     }
                                     if (!zelk::importKinds(tag).empty()) {
                                         EXPECT_EQ(zelk::importPayload(tag, context, payload.bytes).tag, nullptr);
                                     }
                                 } catch (const SwfException& error) {
                                     EXPECT_STRNE(error.what(), "") << place;
                                 }
                             });
    }
}

} // namespace
