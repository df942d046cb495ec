// What documents rest on: macros, the progress of jobs, recent files.
#include "Tests.h"

#include <cctype>

#include "Command.h"
#include "Exceptions.h"
#include "Job.h"
#include "Messages.h"
#include "RecentFiles.h"

namespace {

using namespace zelk;
using namespace zelk::guicommand;

class RecordedCommand : public ICommand {
public:
    RecordedCommand(std::string& log, char name, bool result) : _log(log), _name(name), _result(result) {}
    bool Execute() override {
        _log += _name;
        return _result;
    }
    bool Unexecute() override {
        _log += static_cast<char>(std::toupper(_name));
        return _result;
    }

private:
    std::string& _log;
    char _name;
    bool _result;
};

TEST(MacroCommand, StopsAtAFailureAndReversesAll) {
    std::string log;
    const auto command = [&log](char name, bool result) {
        return std::make_shared<RecordedCommand>(log, name, result);
    };
    MacroCommand macro;
    EXPECT_TRUE(macro.Execute());
    EXPECT_TRUE(macro.Unexecute());
    macro.append(command('b', true));
    macro.append(command('c', false));
    macro.append(command('d', true));
    macro.insertFront(command('a', true));
    EXPECT_FALSE(macro.Execute());
    EXPECT_EQ(log, "abc");
    EXPECT_TRUE(macro.Unexecute()) << "the result is that of the first command";
    EXPECT_EQ(log, "abcDCBA");
    macro.insertFront(command('x', false));
    EXPECT_FALSE(macro.Unexecute());
}

TEST(Job, TheEstimateComesFromTheFirstReport) {
    struct Case {
        int position;
        int64_t milliseconds;
        const char* text;
    };
    for (const Case& c : {Case{0, 500, ""},
                          {1, 0, "0 sec"},
                          {1, 1000, "99 sec"},
                          {50, 1999, "99 sec"},
                          {100, 9000, "0 sec"},
                          {1, 40'000'000'000, "3960000000 sec"}})
        EXPECT_EQ(estimateText(c.position, c.milliseconds), c.text);
    JobProgress progress;
    EXPECT_EQ(progress.estimate(), "");
    progress.report(0);
    EXPECT_EQ(progress.estimate(), "");
    progress.report(0.5);
    EXPECT_EQ(progress.position(), 50);
    EXPECT_EQ(progress.estimate(), "0 sec");
    progress.cancel();
    EXPECT_THROW(progress.report(0.6), JobCancelled);
}

class MapSettings : public ISettings {
public:
    std::map<std::string, std::string> values;
    std::optional<std::string> value(const std::string& key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setValue(const std::string& key, const std::string& text) override { values[key] = text; }
    void setNumber(const std::string& key, uint32_t number) override { values[key] = std::to_string(number); }
    void remove(const std::string& key) override { values.erase(key); }
};

TEST(RecentFiles, LimitsAndOrder) {
    const std::pair<const char*, size_t> limits[] = {{"0", 2},   {"1", 2},  {"3", 3},     {"16", 16},
                                                     {"17", 16}, {"x", 16}, {nullptr, 16}};
    for (const auto& [count, expected] : limits) {
        MapSettings settings;
        if (count != nullptr)
            settings.values["DocumentCount"] = count;
        FilesRecentList list(settings);
        for (int i = 0; i < 20; ++i)
            list.add("f" + std::to_string(i));
        EXPECT_EQ(list.files().size(), expected);
        EXPECT_EQ(list.files().front(), "f19");
        EXPECT_EQ(settings.values["DocumentCount"], std::to_string(expected));
        EXPECT_EQ(settings.values.size(), expected + 1);
    }
    MapSettings settings;
    settings.values = {{"DocumentCount", "3"},
                       {"Document1", "a"},
                       {"Document2", std::string(260, 'b')},
                       {"Document3", "c"},
                       {"Document16", "old"}};
    FilesRecentList list(settings);
    EXPECT_EQ(list.files(), (std::vector<std::string>{"a", "c"}));
    std::string cyrillic;
    for (int i = 0; i < 259; ++i)
        cyrillic += "\u044B";
    list.add(cyrillic);
    list.add(cyrillic + "\u044B");
    EXPECT_EQ(list.files(), (std::vector<std::string>{cyrillic, "a", "c"}));
    EXPECT_EQ(FilesRecentList(settings).files(), list.files());
    list.remove(cyrillic);
    list.add("c");
    list.add(std::string(260, 'd'));
    list.add(std::string(259, 'e'));
    EXPECT_EQ(list.files(), (std::vector<std::string>{std::string(259, 'e'), "c", "a"}));
    list.remove("c");
    EXPECT_EQ(settings.values, (std::map<std::string, std::string>{
                                   {"DocumentCount", "3"}, {"Document1", std::string(259, 'e')}, {"Document2", "a"}}));
}

} // namespace
