// Branches by label lead to the same action whatever is put in or taken out around them.
#include "Tests.h"

#include "ScriptLabels.h"
#include "SwfAction.h"

using namespace libswf;
using namespace xml2swf;
using namespace zelk;

namespace {

// A script in lines, between any two of which an action may stand. Marks are GoToFrame with a number of their own.
class RandomScript {
public:
    explicit RandomScript(uint32_t seed) : _random(seed) {
        addList(0);
        lines.emplace_back("<Place At=\"end\" />");
        for (size_t line : _branchLines) {
            const uint32_t mark = below(_marks + 1);
            targets.push_back(mark);
            const std::string name = mark == _marks ? "end" : "m" + std::to_string(mark);
            lines[line] = std::string("<") + (below(2) == 0 ? "If" : "Jump") + " To=\"" + name + "\" />";
        }
    }

    // Some actions that no branch leads to come, some go.
    void edit() {
        for (uint32_t edits = 1 + below(12); edits != 0; --edits) {
            const size_t at = below(static_cast<uint32_t>(lines.size()));
            if (isFiller(lines[at]) && below(2) == 0)
                lines.erase(lines.begin() + static_cast<ptrdiff_t>(at));
            else
                lines.insert(lines.begin() + static_cast<ptrdiff_t>(at), filler());
        }
    }

    std::string movie(bool fullForm) const {
        std::string text = std::string("<Movie SwfVersion=\"8\" IsCompressed=\"false\"") +
                           (fullForm ? " Form=\"full\"" : "") + ">\n<DoAction>\n<Actions>\n";
        for (const std::string& line : lines)
            text += line + "\n";
        return text + "</Actions>\n</DoAction>\n</Movie>";
    }

    std::vector<std::string> lines;
    std::vector<uint32_t> targets; // marks that the branches lead to; their number for the end
    uint32_t marks() const { return _marks; }

private:
    uint32_t below(uint32_t n) { return static_cast<uint32_t>(_random() % n); }
    static bool isFiller(const std::string& line) { return line.starts_with("<Push>") || line == "<Pop />"; }
    std::string filler() {
        if (below(2) == 0)
            return "<Pop />";
        std::string text = "<Push><String Name=\"";
        text.append(below(40), 'x');
        return text.append("\" /></Push>");
    }

    void addList(uint32_t depth) {
        for (uint32_t count = 1 + below(10); count != 0; --count) {
            switch (below(depth < 3 ? 6 : 3)) {
            case 0: lines.push_back(filler()); break;
            case 1:
                lines.push_back("<GoToFrame At=\"m" + std::to_string(_marks) + "\" Frame=\"" + std::to_string(_marks) +
                                "\" />");
                ++_marks;
                break;
            case 2:
                _branchLines.push_back(lines.size());
                lines.emplace_back();
                break;
            case 3: addBlock({"<With><Actions>", "</Actions></With>"}, depth); break;
            case 4:
                addBlock({"<DefineFunction2 Name=\"f\"><RegisterParams><RegisterParam Register=\"1\" Name=\"p\" />"
                          "</RegisterParams><Actions>",
                          "</Actions></DefineFunction2>"},
                         depth);
                break;
            default:
                addBlock({"<Try VarName=\"e\"><TryActions>", "</TryActions><CatchActions>",
                          "</CatchActions><FinallyActions>", "</FinallyActions></Try>"},
                         depth);
            }
        }
    }
    void addBlock(std::initializer_list<const char*> parts, uint32_t depth) {
        for (const char* part : parts) {
            lines.emplace_back(part);
            if (part != parts.end()[-1])
                addList(depth + 1);
        }
    }

    std::mt19937 _random;
    uint32_t _marks = 0;
    std::vector<size_t> _branchLines;
};

Bytes compiled(const std::string& text, bool toWrite) {
    MovieTarget target;
    xmlToSwf(text, target, {.toWrite = toWrite});
    const auto file = target.movie.serialise(1);
    return {file.begin(), file.end()};
}

uint32_t word(const Bytes& bytes, size_t at) { return bytes[at] | uint32_t(bytes[at + 1]) << 8; }

// The marks that the branches of the only tag lead to, read from its records one behind the other; `none` for a place
// that is no mark's.
std::vector<uint32_t> targetsIn(const Bytes& file, bool fullForm, uint32_t marks) {
    constexpr uint32_t none = UINT32_MAX;
    SwfMovieSafe movie;
    movie.parse(file, {.fullForm = fullForm, .keepRaw = true});
    const SwfBytes record = movie.tags.at(0)->source;
    const size_t start = (record.data()[0] & 0x3F) == 0x3F ? 6 : 2;
    const Bytes bytes(record.data() + start, record.data() + record.size());
    std::map<size_t, uint32_t> markAt{{bytes.size(), marks}};
    std::vector<int64_t> places;
    for (size_t at = 0; at < bytes.size();) {
        const uint8_t code = bytes[at];
        size_t next = at + (code < 0x80 ? 1 : 3 + word(bytes, at + 1));
        if (code == SwfActionCode::GoToFrame)
            markAt[at] = word(bytes, at + 3);
        if (code == SwfActionCode::Jump || code == SwfActionCode::If)
            places.push_back(static_cast<int64_t>(next) + static_cast<int16_t>(word(bytes, at + 3)));
        if (code == SwfActionCode::Try && !fullForm) // name "e", sizes; the bodies are counted in the length
            next = at + 3 + 1 + 2 + 6;
        at = next;
    }
    std::vector<uint32_t> targets;
    for (int64_t place : places) {
        const auto found = markAt.find(static_cast<size_t>(place));
        targets.push_back(found == markAt.end() ? none : found->second);
    }
    return targets;
}

TEST(ScriptLabels, LeadToTheSameActionAfterAnyEdit) {
    uint32_t branches = 0;
    for (uint32_t seed = 0; seed < 150; ++seed) {
        RandomScript script(seed);
        branches += static_cast<uint32_t>(script.targets.size());
        for (int round = 0; round < 4; ++round) {
            for (const bool fullForm : {false, true}) {
                const std::string text = script.movie(fullForm);
                const Bytes file = compiled(text, false);
                ASSERT_EQ(targetsIn(file, fullForm, script.marks()), script.targets) << text;
                ASSERT_EQ(hexDiff(file, compiled(text, true)), "") << text;
                if (!fullForm)
                    continue;
                SwfMovieSafe movie;
                movie.parse(file, {.fullForm = true, .keepRaw = true});
                ASSERT_EQ(hexDiff(file, compiled(swfToXml(movie, {.keepRaw = true}), true)), "") << text;
            }
            script.edit();
        }
    }
    EXPECT_GT(branches, 500u) << "the scripts branch too little to show anything";
}

std::string changed(BranchTargets targets, const std::string& text, size_t start = 0, size_t end = 0) {
    const std::vector<TextChange> changes = changeBranches(targets, text, TagIndex(text), start, end);
    std::string result = text;
    for (size_t i = changes.size(); i-- > 0;) {
        EXPECT_TRUE(changes[i].start <= changes[i].end && (i == 0 || changes[i - 1].end <= changes[i].start));
        result.replace(changes[i].start, changes[i].end - changes[i].start, changes[i].text);
    }
    return result;
}

TEST(ScriptLabels, ComeAndGoInTheText) {
    size_t labels = 0;
    for (uint32_t seed = 0; seed < 60; ++seed) {
        const std::string typed = RandomScript(seed).movie(seed % 2 == 0);
        const Bytes file = compiled(typed, false);
        const std::string unlabelled = changed(BranchTargets::numbers, typed);
        ASSERT_EQ(unlabelled.find(" To="), std::string::npos) << unlabelled;
        ASSERT_EQ(hexDiff(file, compiled(unlabelled, false)), "") << unlabelled;
        const std::string again = changed(BranchTargets::labels, unlabelled);
        ASSERT_EQ(again.find(" Offset="), std::string::npos) << again;
        ASSERT_EQ(hexDiff(file, compiled(again, false)), "") << again;

        SwfMovieSafe movie;
        movie.parse(file, {.keepRaw = true});
        const std::string written = swfToXml(movie, {.keepRaw = true});
        const std::string labelled = changed(BranchTargets::labels, written);
        ASSERT_EQ(hexDiff(compiled(written, true), compiled(labelled, true)), "") << labelled;
        ASSERT_EQ(lineDiff(written, changed(BranchTargets::numbers, labelled)), "");
        labels += static_cast<size_t>(labelled != written);
    }
    EXPECT_GT(labels, 30u);
}

TEST(ScriptLabels, LeaveAllElseAsItIsTyped) {
    const struct {
        const char *numbers, *labels;
    } cases[] = {
        {"<DoAction><Actions><Jump  Offset = '1'/><Play/><Stop /></Actions></DoAction>",
         "<DoAction><Actions><Jump  To=\"L1\"/><Play/><Stop At=\"L1\" /></Actions></DoAction>"},
        {"<DoAction>\n <Actions>\n  <!-- <If/> -->\n  <If Offset=\"0\" />\n </Actions>\n</DoAction>",
         "<DoAction>\n <Actions>\n  <!-- <If/> -->\n  <If To=\"L1\" />\n  <Place At=\"L1\" />\n "
         "</Actions>\n</DoAction>"},
        {"<DoAction><Actions><Jump Offset=\"-5\"/><If Offset=\"1\"/><Push><Null/></Push></Actions></DoAction>",
         "<DoAction><Actions><Jump At=\"L1\" To=\"L1\"/><If Offset=\"1\"/><Push><Null/></Push></Actions></DoAction>"},
        {"<DoInitAction><Actions><WaitForFrame Frame=\"2\" SkipCount=\"1\"/><Play/><Stop/></Actions></DoInitAction>",
         "<DoInitAction><Actions><WaitForFrame Frame=\"2\" To=\"L1\"/><Play/><Stop "
         "At=\"L1\"/></Actions></DoInitAction>"},
        {"<DefineSprite><DefineButton><Actions><Jump Offset=\"0\"/></Actions></DefineButton></DefineSprite>",
         "<DefineSprite><DefineButton><Actions><Jump To=\"L1\"/><Place At=\"L1\" "
         "/></Actions></DefineButton></DefineSprite>"},
        {"<FrameLabel Name=\" At=\"/><DoAction><Actions><Jump Offset=\"9\"/></Actions></DoAction>", nullptr},
    };
    for (const auto& c : cases) {
        const auto movie = [](const char* tag) {
            std::string text("<Movie SwfVersion=\"8\">\n");
            return text.append(tag).append("\n</Movie>");
        };
        const std::string numbers = movie(c.numbers), labels = movie(c.labels == nullptr ? c.numbers : c.labels);
        EXPECT_EQ(changed(BranchTargets::labels, numbers), labels);
        EXPECT_EQ(hexDiff(compiled(numbers, true), compiled(labels, true)), "");
        if (numbers.find('\'') == numbers.npos) {
            EXPECT_EQ(changed(BranchTargets::numbers, labels), numbers);
        }
    }
    // Names that are there are used, and no other is called like them.
    const std::string own =
        "<Movie><DoAction><Actions><Jump Offset=\"0\"/><Play At=\"L1\"/><Jump Offset=\"0\"/><Stop/>"
        "</Actions></DoAction><DoAction><Actions><Jump Offset=\"-5\"/></Actions></DoAction></Movie>";
    const size_t second = own.rfind("<DoAction>");
    EXPECT_EQ(changed(BranchTargets::labels, own, 0, second - 20),
              "<Movie><DoAction><Actions><Jump To=\"L1\"/><Play At=\"L1\"/><Jump To=\"L2\"/><Stop At=\"L2\"/>" +
                  own.substr(second - 21))
        << "only the scripts that are touched";
}

} // namespace
