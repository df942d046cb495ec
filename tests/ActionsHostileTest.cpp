// Action lists that lie about their sizes, nest without end or are random: read in bounded work, and kept byte for byte
// where nothing may be lost.
#include "Tests.h"

#include "SwfActionsPayload.h"
#include "SwfTagDoAction.h"

using namespace libswf;

namespace {

constexpr uint16_t doAction = 12, placeObject2 = 26;

void append(Bytes& bytes, std::string_view hex) {
    const Bytes more = hexBytes(hex);
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void append16(Bytes& bytes, size_t value) {
    bytes.push_back(static_cast<uint8_t>(value));
    bytes.push_back(static_cast<uint8_t>(value >> 8));
}

Bytes repeated(std::string_view hex, size_t size) {
    const Bytes pattern = hexBytes(hex);
    Bytes bytes;
    while (bytes.size() < size)
        bytes.insert(bytes.end(), pattern.begin(), pattern.end());
    return bytes;
}

// What becomes of a tag's body; empty when the tag is dropped.
Bytes savedBody(uint16_t code, const Bytes& body, bool keepRaw, bool fullForm = false) {
    const Bytes record = recordOf(code, body);
    SwfIStream input(record.data(), record.size());
    input.context.version = 8;
    input.context.fullForm = fullForm;
    input.context.keepRaw = keepRaw;
    SwfTags tags;
    tags.readUntil(input, record.size());
    SwfOStream output(tags.getSize(input.context));
    output.context = input.context;
    tags.write(output);
    if (tags.count() == 0)
        return {};
    return {output.begin() + tags.at(0).headerSize(), output.end() - 2};
}

// The list of a DoAction that was read whole.
std::unique_ptr<SwfTagDoAction> readDoAction(const Bytes& body, bool keepRaw, bool fullForm = false) {
    SwfIStream input(body.data(), body.size());
    input.context.version = 8;
    input.context.fullForm = fullForm;
    input.context.keepRaw = keepRaw;
    input.setBodyEnd(body.size());
    return std::make_unique<SwfTagDoAction>(input);
}

// Whether nothing but single actions of a DoAction is kept as bytes.
bool isShown(const Bytes& body, bool fullForm) {
    SwfIStream input(body.data(), body.size());
    input.context.fullForm = fullForm;
    input.context.keepRaw = true;
    input.setBodyEnd(body.size());
    try {
        const SwfTagDoAction tag(input);
        return input.inexact() == nullptr && input.bodyLeft() == 0;
    } catch (const SwfException&) {
        return false;
    }
}

using Wrap = Bytes (*)(const Bytes& inner);

Bytes inWith(const Bytes& inner) {
    Bytes bytes = hexBytes("94 02 00");
    append16(bytes, inner.size());
    bytes.insert(bytes.end(), inner.begin(), inner.end());
    return bytes;
}

Bytes inFunction(const Bytes& inner) {
    Bytes bytes = hexBytes("9b 05 00 00 00 00");
    append16(bytes, inner.size());
    bytes.insert(bytes.end(), inner.begin(), inner.end());
    return bytes;
}

Bytes inTry(const Bytes& inner) {
    Bytes bytes = hexBytes("8f");
    append16(bytes, inner.size() + 8);
    append(bytes, "00 00");
    append16(bytes, inner.size());
    append(bytes, "00 00 00 00");
    bytes.insert(bytes.end(), inner.begin(), inner.end());
    return bytes;
}

Bytes inFullTry(const Bytes& inner) {
    Bytes bytes = hexBytes("8f 08 00 02 00 00 00 00");
    append16(bytes, inner.size());
    append(bytes, "00");
    bytes.insert(bytes.end(), inner.begin(), inner.end());
    return bytes;
}

uint32_t nesting(const SwfActions& list) {
    uint32_t deepest = 0;
    for (const SwfAction* action : list) {
        if (const auto* block = dynamic_cast<const SwfActionBlock*>(action))
            deepest = std::max(deepest, 1 + nesting(block->body));
        else if (const auto* attempt = dynamic_cast<const SwfActionTry*>(action))
            deepest = std::max(deepest, 1 + std::max(nesting(attempt->tryBody), nesting(attempt->finallyBody)));
    }
    return deepest;
}

TEST(HostileActions, DeepNestingIsCutAndNothingLost) {
    for (Wrap wrap : {inWith, inFunction, inTry, inFullTry}) {
        const bool fullForm = wrap == inFullTry;
        Bytes body;
        for (int level = 0; level < 5000; ++level)
            body = wrap(body);
        for (bool keepRaw : {false, true}) {
            EXPECT_EQ(hexDiff(body, savedBody(doAction, body, keepRaw, fullForm)), "");
            EXPECT_EQ(nesting(readDoAction(body, keepRaw, fullForm)->actions), SwfContext::maxDepth);
        }
    }
}

TEST(HostileActions, SizesThatPassTheirListsCostNoSecondReading) {
    const struct {
        uint16_t code;
        const char* start;
        const char* record;
    } rows[] = {
        {doAction, "", "94 02 00 ff ff"},                                  // With of 64 KB each
        {doAction, "", "9b 05 00 00 00 00 ff ff"},                         // functions
        {doAction, "", "8e 08 00 00 00 00 00 00 00 ff ff"},                //
        {doAction, "", "8f 08 00 00 00 ff ff 00 00 00 00"},                // Try of 64 KB, Length too small
        {doAction, "", "8f ff 7f 00 00 f7 7f 00 00 00 00"},                // Try of 32 KB, Length to match
        {doAction, "", "8f ff ff 80 00 f7 7f 00 80 00 00 94 02 00 ff ff"}, // two bodies
        {doAction, "", "8f 08 00 07 ff ff ff ff ff ff 00"},                // three bodies
        {doAction, "", "88 02 00 ff ff"},                                  // a pool of 65,535 constants in no bytes
        {doAction, "", "8b 00 00 61"},                                     // texts without an end
        {doAction, "", "9b 02 00 61 61 61"},
        {placeObject2, "81 01 00 00 00 01 00 00 00", "01 00 00 00 05 00 00 00 94 02 00 ff ff"}, // clip actions
        {placeObject2, "81 01 00 00 00 01 00 00 00", "01 00 00 00 00 00 00 00"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.record);
        Bytes body = hexBytes(row.start);
        const Bytes records = repeated(row.record, 2'000'000);
        body.insert(body.end(), records.begin(), records.end());
        for (const bool fullForm : {false, true}) {
            EXPECT_EQ(hexDiff(body, savedBody(row.code, body, true, fullForm)), "");
            try {
                savedBody(row.code, body, false, fullForm); // comes to an end
            } catch (const SwfException& error) {
                EXPECT_EQ(error.code(), SwfError::doesNotFit); // bodies that the end of the tag cut
            }
        }
    }
}

// Bodies of records that mostly hold together, with random numbers for sizes and flags.
class RandomActions {
public:
    Bytes body(uint32_t records) {
        static constexpr const char* starts[] = {
            "06",          "9e",          "80",       "16",          "a0",          "81 02 00",    "83 04 00",
            "87 01 00",    "88 05 00",    "8a 03 00", "8b 02 00",    "8c",          "8d 01 00",    "96 03 00",
            "96 09 00 06", "99 02 00",    "9a 01 00", "9d 02 00",    "9f 01 00",    "9f 03 00 c0", "94 02 00",
            "9b 05 00 00", "8f 0a 00 80", "8f",       "96 02 00 08", "8f 08 00 01", "8f 09 00 06"};
        Bytes bytes;
        for (uint32_t i = 0; i < records; ++i) {
            const Bytes start = hexBytes(starts[below(std::size(starts))]);
            const uint32_t missing = start.size() < 3 ? 0 : start[1] + 3 - static_cast<uint32_t>(start.size());
            bytes.insert(bytes.end(), start.begin(), start.end());
            for (uint32_t more = below(8) == 0 ? below(9) : missing; more != 0; --more)
                bytes.push_back(number());
        }
        bytes.push_back(1); // zeros at the end would be let go
        return bytes;
    }
    uint8_t number() { return static_cast<uint8_t>(below(4) == 0 ? below(256) : below(24) == 0 ? 0 : 1 + below(3)); }
    uint32_t below(size_t n) { return static_cast<uint32_t>(_random() % n); }

private:
    std::mt19937 _random{12345};
};

// Here and below: by way of objects, or of bytes wherever they do.
std::string textOf(uint16_t code, const Bytes& body, bool asBytes, bool fullForm) {
    Bytes file = movieFile(8, recordOf(code, body));
    append16(file, 0);
    SwfMovieSafe movie;
    movie.parse(file, {.fullForm = fullForm, .keepRaw = true, .readLater = asBytes});
    return xml2swf::swfToXml(movie, {.keepRaw = true});
}

Bytes bodyOf(const std::string& text, bool asBytes, bool fullForm) {
    xml2swf::MovieTarget target;
    xml2swf::xmlToSwf(text, target, {.toWrite = asBytes});
    SwfContext context;
    context.version = 8;
    context.fullForm = fullForm;
    SwfOStream output(target.movie.tags.getSize(context));
    output.context = context;
    target.movie.tags.write(output);
    return {output.begin() + target.movie.tags.at(0).headerSize(), output.end() - 2};
}

TEST(HostileActions, RandomListsComeBackByteForByte) {
    RandomActions random;
    uint32_t shownAsActions = 0;
    for (int round = 0; round < 4000; ++round) {
        const Bytes body = random.body(1 + random.below(12));
        const bool fullForm = round % 2 != 0;
        ASSERT_EQ(hexDiff(body, savedBody(doAction, body, true, fullForm)), "") << hexText(body);
        const std::string text = textOf(doAction, body, false, fullForm);
        ASSERT_EQ(textOf(doAction, body, true, fullForm), text) << hexText(body);
        for (const bool asBytes : {false, true})
            ASSERT_EQ(hexDiff(body, bodyOf(text, asBytes, fullForm)), "") << hexText(body);
        savedBody(doAction, body, false, fullForm);
        shownAsActions += isShown(body, fullForm);
    }
    EXPECT_GT(shownAsActions, 500u) << "the bodies are too bad to show anything";
}

TEST(HostileActions, RandomClipActionsComeBackByteForByte) {
    RandomActions random;
    for (int round = 0; round < 2000; ++round) {
        Bytes body = hexBytes("81 01 00 00 00");
        append(body, "07 00 02 00"); // all events, as written anew
        const bool single = random.below(2) == 0;
        for (uint32_t i = 0; i < (single ? 1 : 3); ++i) {
            const Bytes list = random.body(random.below(4));
            append(body, i == 0 ? "07 00 02 00" : "01 00 00 00");
            append16(body, list.size() + (i == 0 ? 1 : 0) + random.below(8) / 6);
            append(body, i == 0 ? "00 00 0d" : "00 00");
            body.insert(body.end(), list.begin(), list.end());
        }
        append(body, random.below(4) == 0 ? "" : "00 00 00 00");
        ASSERT_EQ(hexDiff(body, savedBody(placeObject2, body, true)), "") << hexText(body);
        savedBody(placeObject2, body, false);
    }
}

TEST(HostileActions, ATryOver64KBIsReadAgain) {
    Bytes body = hexBytes("8f");
    const Bytes play = repeated("06", 60000);
    append16(body, (8 + 2 * play.size()) & 0xFFFF);
    append(body, "80 00");
    append16(body, play.size());
    append16(body, play.size());
    append16(body, 0);
    body.insert(body.end(), play.begin(), play.end());
    body.insert(body.end(), play.begin(), play.end());
    body.push_back(0);
    for (bool keepRaw : {false, true}) {
        const auto tag = readDoAction(body, keepRaw);
        EXPECT_EQ(tag->actions.size(), 2u);
        EXPECT_EQ(hexDiff(body, savedBody(doAction, body, keepRaw)), "");
    }
}

// The code thrown in writing the list, 0 for none; `written` takes the bytes, `warned` the error or the last warning.
uint32_t failureToWrite(SwfActions& list, Bytes& written, std::string& warned) {
    SwfContext context;
    SwfOStream stream(list.getSize(context));
    SwfWarnings warnings;
    stream.context.warnings = &warnings;
    try {
        list.write(stream);
    } catch (const SwfException& error) {
        EXPECT_EQ(stream.size(), 0u) << "a part of the action is written";
        warned = error.what();
        return error.code();
    }
    written.assign(stream.begin(), stream.end());
    warned = warnings.empty() ? "" : warnings.items().back().reason;
    return 0;
}

void fill(SwfActions& list, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i)
        list.add(std::make_unique<SwfAction>(SwfActionCode::Play));
}

TEST(ActionLimits, CountsAndSizesOver16Bits) {
    for (uint32_t count : {65535u, 65536u}) {
        const uint32_t failure = count > 65535 ? SwfError::doesNotFit : 0;
        const bool isCut = count > 65535;
        Bytes written;
        std::string warned;
        auto failureOf = [&](std::unique_ptr<SwfAction> action) {
            SwfActions list;
            list.add(std::move(action));
            return failureToWrite(list, written, warned);
        };
        auto pool = std::make_unique<SwfActionConstantPool>();
        auto parameters = std::make_unique<SwfActionDefineFunction>();
        auto function = std::make_unique<SwfActionDefineFunction>();
        auto with = std::make_unique<SwfActionWith>();
        auto function2 = std::make_unique<SwfActionDefineFunction2>();
        for (uint32_t i = 0; i < count; ++i) {
            pool->constants.append({});
            parameters->parameters.append({});
            function2->parameters.append({});
        }
        for (SwfActions* body : {&function->body, &with->body})
            fill(*body, count);
        auto expectRefused = [&](std::unique_ptr<SwfAction> action, const std::string& field) {
            EXPECT_EQ(failureOf(std::move(action)), failure);
            EXPECT_EQ(warned.find(field + ": ") != warned.npos, isCut) << warned;
        };
        expectRefused(std::move(pool), "ConstantPool > Count");
        expectRefused(std::move(parameters), "DefineFunction > NumParams");
        expectRefused(std::move(function), "DefineFunction > CodeSize");
        for (const auto& [body, field] : {std::pair(&SwfActionTry::tryBody, "TrySize"),
                                          {&SwfActionTry::catchBody, "CatchSize"},
                                          {&SwfActionTry::finallyBody, "FinallySize"}}) {
            auto attempt = std::make_unique<SwfActionTry>();
            fill(*attempt.*body, count);
            expectRefused(std::move(attempt), field);
        }
        EXPECT_EQ(failureOf(std::move(with)), 0u);
        EXPECT_EQ(hexText(std::span(written).first(5)), isCut ? "94 02 00 00 00" : "94 02 00 ff ff");
        EXPECT_EQ(warned, isCut ? "With: 65536 bytes of body do not fit the 16 bits of their size" : "");
        EXPECT_EQ(failureOf(std::move(function2)), 0u);
        EXPECT_EQ(hexText(std::span(written).subspan(4, 2)), isCut ? "00 00" : "ff ff");
        EXPECT_EQ(warned, isCut ? "DefineFunction2: 65536 parameters do not fit the 16 bits of their number"
                                : "DefineFunction2: 131078 bytes do not fit the 16 bits of its Length");
    }
}

TEST(ActionTable, EveryActionHasACase) {
    std::string shown;
    for (const auto& path : findCases(std::string(casesDir) + "/actions")) {
        for (const CaseFile& each : parseCases(path))
            shown += each.xml.value_or("");
    }
    auto expectShown = [&](const std::string& name) {
        EXPECT_TRUE(shown.find("<" + name + " ") != shown.npos || shown.find("<" + name + ">") != shown.npos) << name;
    };
#define SWF_ACTION(code, name) expectShown(#name);
#define SWF_PAYLOAD_ACTION(code, name, type) expectShown(#name);
#include "SwfActions.def"
}

TEST(ReadAction, TakesOneRecordAndItsBody) {
    const Bytes bytes = hexBytes("94 02 00 02 00 06 07 94 02 00 01 00 81 02 00 05 00 09");
    SwfIStream stream(bytes.data(), bytes.size());
    stream.context.keepRaw = true;
    const auto with = readAction(stream);
    EXPECT_EQ(dynamic_cast<SwfActionWith&>(*with).body.size(), 2u);
    EXPECT_EQ(with->size, 2u) << "what Length says";
    EXPECT_EQ(stream.position(), 7u);
    EXPECT_NE(dynamic_cast<SwfActionUnknown*>(readAction(stream).get()), nullptr);
    EXPECT_EQ(stream.position(), 12u) << "the body of a block kept as bytes is read next";
    stream.actionOptions(0x81) = 1;
    EXPECT_EQ(dynamic_cast<SwfActionUnknown&>(*readAction(stream)).data.size(), 2u);
    readAction(stream);
    EXPECT_THROW(readAction(stream), SwfException);
}

} // namespace
