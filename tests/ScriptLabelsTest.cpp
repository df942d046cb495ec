// Branches by label lead to the same action whatever is put in or taken out around them.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "CaseFile.h"
#include "Conversion.h"
#include "SwfAction.h"
#include "SwfMovie.h"

using namespace libswf;
using namespace xml2swf;

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

} // namespace
