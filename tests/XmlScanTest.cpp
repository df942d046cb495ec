// The quick look over a text: what it tells of elements is what was written, in one go and in parts.
#include "Tests.h"

#include <tuple>

#include "XmlErrors.h"
#include "xml2swf/Src/bytes/XmlMarks.h"
#include "xml2swf/Src/text/XmlScan.h"

using namespace xml2swf;

namespace {

using Element = std::tuple<size_t, size_t, size_t, size_t, uint32_t>; // start, tagEnd, contentEnd, end, children

// A text of elements in odd surroundings, and where the big ones stand.
class OddText {
public:
    explicit OddText(uint32_t seed) : _random(seed) {
        text = "<?xml version='1.0' ?>\n<!DOCTYPE Movie [<!ENTITY a '>'>]>";
        element("Movie", " Width=\"5\"", 0, 3);
        text += "\n<!-- <Movie> -->\n";
    }

    std::string text;
    std::vector<Element> big;

private:
    size_t below(size_t limit) { return _random() % limit; }

    void element(const std::string& name, const std::string& attributes, int depth, size_t runs) {
        const size_t start = text.size();
        text += "<" + name + attributes + ">";
        const size_t tagEnd = text.size();
        uint32_t children = 0;
        for (size_t run = 0; run < runs; ++run)
            children += content(depth);
        const size_t contentEnd = text.size();
        text += "</" + name + (below(9) == 0 ? "\n>" : ">");
        if (text.size() - start >= windowSize)
            big.emplace_back(start, tagEnd, contentEnd, text.size(), children);
    }

    // Many of a kind, or something that holds more. Gives the number of children.
    uint32_t content(int depth) {
        static const std::string leaves[] = {"<Line DX=\"-12\" DY=\"5\" />",
                                             "<End/>",
                                             "<a b=\"1 > 0\" c='\"' />",
                                             "<a b=\"it's\"/>",
                                             "<a b=\"</a>\" />",
                                             "<a\n\tb='<'\n/>",
                                             "<a><b c=\"/\"/><d e='/' >/</d ></a>"};
        static const std::string others[] = {"5\" > 4' ",   "<!-- \n<Movie> \"' -->", "<![CDATA[\n  <x>\"]]>",
                                             "<?p \n<\"?>", std::string(5000, '"'),   std::string(9000, '\n')};
        text.append(1, '\n').append(static_cast<size_t>(depth), ' ');
        if (depth < 30 && below(3) != 0) {
            element("e" + std::to_string(depth), below(5) == 0 ? " long='" + std::string(below(40000), '"') + "'" : "",
                    depth + 1, below(depth < 4 ? 6 : 3));
            return 1;
        }
        const bool isLeaf = below(4) != 0;
        const std::string& piece = isLeaf ? leaves[below(std::size(leaves))] : others[below(std::size(others))];
        const size_t times = 1 + below(isLeaf ? 4000 : 3);
        for (size_t i = 0; i < times; ++i)
            text += piece + (below(3) == 0 ? "\n   " : "");
        return isLeaf ? static_cast<uint32_t>(times) : 0;
    }

    std::mt19937 _random;
};

std::vector<Element> elementsOf(const XmlStructure& structure) {
    std::vector<Element> elements;
    for (const XmlBlock& block : structure.blocks)
        elements.emplace_back(block.start, block.tagEnd, block.contentEnd, block.end, block.children);
    return elements;
}

// Pieces cover the content and tell how many children stand before them.
void checkPieces(const XmlStructure& structure, const XmlBlock& parent, std::vector<uint32_t>& before) {
    size_t at = parent.tagEnd;
    for (const XmlPiece& piece : parent.pieces) {
        ASSERT_EQ(piece.start, at);
        at = piece.end;
        if (piece.block == XmlPiece::small)
            continue;
        ASSERT_EQ(piece.start, structure.blocks[piece.block].start);
        ASSERT_EQ(piece.end, structure.blocks[piece.block].end);
        before.push_back(piece.firstChild);
        checkPieces(structure, structure.blocks[piece.block], before);
    }
    ASSERT_EQ(at, parent.contentEnd);
}

} // namespace

TEST(XmlScan, TellsOfBigElementsInOneGoAndInParts) {
    size_t elements = 0, bytes = 0;
    for (uint32_t seed = 0; seed < 60; ++seed) {
        OddText odd(seed);
        std::sort(odd.big.begin(), odd.big.end());
        elements += odd.big.size();
        bytes += odd.text.size();
        std::vector<uint32_t> positions[2];
        for (const uint32_t threads : {1u, 3u}) {
            const XmlStructure structure = scanXml(odd.text, 1000, nullptr, threads);
            std::vector<Element> found = elementsOf(structure);
            std::sort(found.begin(), found.end());
            ASSERT_TRUE(structure.regular) << "seed " << seed;
            ASSERT_EQ(found, odd.big) << "seed " << seed << ", threads " << threads;
            const size_t start = odd.text.find("<Movie W");
            EXPECT_EQ(structure.movie.start, start);
            EXPECT_EQ(odd.text.substr(structure.movie.contentEnd, 7), "</Movie");
            EXPECT_EQ(structure.movie.end, odd.text.find('>', structure.movie.contentEnd) + 1);
            checkPieces(structure, structure.document, positions[threads / 3]);
        }
        EXPECT_EQ(positions[0], positions[1]);
    }
    EXPECT_GT(elements, 200u);
    EXPECT_GT(bytes, 30000000u);
}

TEST(XmlScan, LooksAtNothingBehindTheText) {
    for (size_t size = 1; size < 200; ++size) {
        const std::vector<char> text(size, '\n'); // of just this size, for the sanitizer
        for (const char* tail : {"<", "</", "<a", "<!", "<a b=\"", "<a>", "<a/>"}) {
            std::vector<char> ended = text;
            ended.insert(ended.end(), tail, tail + std::strlen(tail));
            ended.shrink_to_fit();
            EXPECT_EQ(scanXml({ended.data(), ended.size()}, 1000, nullptr).regular, std::string_view(tail) == "<a/>");
        }
    }
}

TEST(XmlScan, FindsTheSameMarksOnAnyProcessor) {
    if (!canBeWide())
        GTEST_SKIP() << "one way only";
    const std::string text = OddText(7).text.substr(0, 400000);
    XmlMarks usual(false), wide(true);
    const char *end = text.data() + text.size(), *stop = nullptr;
    size_t count = 0;
    for (const char* at = text.data(); at < end; at = std::max(stop, at + 1)) {
        const char* limit = end - std::min(end - at, (at - text.data()) % 128);
        stop = usual.find(at, limit, end);
        ASSERT_EQ(wide.find(at, limit, end), stop);
        ASSERT_TRUE(std::equal(usual.begin(), usual.end(), wide.begin(), wide.end()));
        count += static_cast<size_t>(usual.end() - usual.begin());
    }
    EXPECT_GT(count, 5000u);
}

TEST(XmlScan, RefusesAndPassesOverTheSameInOneGoAndInParts) {
    const std::string line = "\n    <Line DX=\"1\" DY=\"2\" />", many = [&] {
        std::string text;
        for (int i = 0; i < 30000; ++i)
            text += line;
        return text;
    }();
    std::string opened, closed;
    for (int i = 0; i < 600; ++i) {
        opened += "\n<a>";
        closed += "\n</a>";
    }
    struct {
        std::string text, problem;
        bool isRegular;
    } const cases[] = {
        {"<Movie>" + many + "</Movie>", "", true},
        {"<Movie/>" + many + line, "", true},
        {"<Movie>" + many + "</Movie>" + many, "", true},
        {many + "<Movie>" + many, "", false},
        {"<Movie>" + many + "</Movie></Movie>" + many, "", false},
        {"<Movie>" + many + "<a>" + many + "</b></Movie>", "", false},
        {"<Movie>" + many + "<!-- " + many + "</Movie>", "", false},
        {"<Movie>" + many + "<!-- " + many + "--></Movie>", "", true},
        {"<Movie>" + many + "<a b=\"" + many + "</Movie>", "", false},
        {"<Movie>" + many + std::string(1, '\0') + many + "</Movie>", "unexpected end of data", true},
        {"<Movie>" + many + "<a>" + std::string(1, '\0') + many + "</Movie>", "unexpected end of data", true},
        {"<Movie>" + opened + many + opened + closed + closed + "</Movie>", "elements nested more", true},
    };
    for (const auto& c : cases) {
        std::vector<Element> first;
        for (const uint32_t threads : {1u, 3u}) {
            std::string problem;
            try {
                const XmlStructure structure = scanXml(c.text, 1000, nullptr, threads);
                EXPECT_EQ(structure.regular, c.isRegular) << &c - cases;
                std::vector<Element> elements = elementsOf(structure);
                std::sort(elements.begin(), elements.end());
                first = threads == 1 ? elements : first;
                EXPECT_EQ(elements, first) << &c - cases;
                EXPECT_EQ(structure.movie.start, structure.regular ? c.text.find("<Movie") : structure.movie.start);
            } catch (const XmlSyntaxError& error) {
                problem = error.what();
                EXPECT_TRUE(problem.starts_with("elements") || error.place.offset == c.text.find('\0'));
            }
            EXPECT_EQ(problem.substr(0, c.problem.size()), c.problem) << &c - cases;
            EXPECT_EQ(problem.empty(), c.problem.empty());
        }
    }
}
