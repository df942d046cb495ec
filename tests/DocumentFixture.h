// Documents under test: a folder of their own, a user who answers from a list, commands.
#pragma once

#include "Tests.h"

#include <deque>
#include <thread>

#include "DocumentViewCommands.h"

namespace zelk {

// Answers from a list; jobs run on their thread.
class ScriptedUser : public IUserInterface {
public:
    std::deque<std::optional<std::string>> saveNames;
    std::optional<std::string> payloadName; ///< of the file to export to and import from
    std::vector<std::string> payloadKinds;  ///< that were offered for an import
    std::optional<uint32_t> rowAnswer;
    std::deque<std::optional<MovieSettings>> settingsAnswers;
    std::vector<MovieSettings> shownSettings;
    std::vector<Failure> failures;
    std::vector<Message> messages;
    bool cancelsJobs = false, cancelsLate = false; ///< before they begin, after they have ended
    bool replacesChanged = false;
    int position = 0; ///< of the last job's progress at its end
    int replaceQuestions = 0;

    std::optional<std::string> chooseFileToSave(const std::string& name) override {
        proposal = name;
        const auto answer = saveNames.front();
        saveNames.pop_front();
        return answer;
    }
    std::optional<std::string> chooseFileToExport(const std::string& name) override {
        proposal = name;
        return payloadName;
    }
    std::optional<std::string> chooseFileToImport(const std::vector<std::string>& kinds) override {
        payloadKinds = kinds;
        return payloadName;
    }
    SaveAnswer askToSave(const Document&) override { return SaveAnswer::cancel; }
    bool askToReplaceChanged(const Document&, bool) override {
        ++replaceQuestions;
        return replacesChanged;
    }
    std::optional<uint32_t> askForRow(uint32_t, uint32_t) override { return rowAnswer; }
    std::optional<MovieSettings> askForMovieSettings(const MovieSettings& current) override {
        shownSettings.push_back(current);
        const auto answer = settingsAnswers.empty() ? std::nullopt : settingsAnswers.front();
        if (!settingsAnswers.empty())
            settingsAnswers.pop_front();
        return answer;
    }
    void report(const Failure& failure) override { failures.push_back(failure); }
    void inform(const Message& message) override { messages.push_back(message); }
    void runJob(const std::string&, ThreadParams& params, JobWork work) override {
        if (cancelsJobs)
            params.progress.cancel();
        Worker worker(params, work);
        while (!worker.hasEnded())
            std::this_thread::yield();
        worker.finish();
        position = params.progress.position();
        if (cancelsLate)
            params.progress.cancel();
    }
    std::string proposal;
};

class StringView : public ITextView {
public:
    std::string content;
    std::vector<std::string> replaced; ///< what stood where something was replaced
    uint32_t atRow = 1, atColumn = 1;
    void setText(std::string bytes) override { content = std::move(bytes); }
    std::string_view text() override { return content; }
    void replace(size_t start, size_t end, std::string_view bytes) override {
        replaced.push_back(content.substr(start, end - start));
        content.replace(start, end - start, bytes);
    }
    void setSavePoint() override {}
    void gotoPlace(uint32_t row, uint32_t column) override {
        atRow = row;
        atColumn = column;
    }
    uint32_t row() const override { return atRow; }
    uint32_t rowCount() const override { return 6; }
};

class DocumentFixture : public testing::Test {
protected:
    DocumentFixture() {
        folder = std::filesystem::temp_directory_path() / ("zelk-test-" + std::to_string(std::random_device()()));
        std::filesystem::create_directory(folder);
    }
    ~DocumentFixture() override { std::filesystem::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    bool load(Document& document, const std::string& name) {
        guicommand::documentview::LoadFromFileCmd command(session, document, path(name));
        return guicommand::runCommand(session, command);
    }
    bool save(Document& document, const std::string& text, const std::string& name) {
        document.text = text;
        document.fileName = path(name);
        guicommand::documentview::SaveToFileCmd command(session, document);
        return guicommand::runCommand(session, command, &view);
    }
    size_t filesInFolder() const {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
    }

    std::filesystem::path folder;
    ScriptedUser user;
    Session session{user};
    StringView view;
};

} // namespace zelk
