// What commands ask of the user, of a document's text view, and what one run of the program remembers.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Document.h"
#include "Job.h"
#include "Messages.h"
#include "MovieSettings.h"
#include "WrittenFiles.h"

namespace zelk {

enum class SaveAnswer : uint8_t { yes, no, cancel };

/// The user, as commands see him: dialogs in the program, prepared answers in a test. All on the GUI thread.
class IUserInterface {
public:
    virtual ~IUserInterface() = default;

    /// A full path with an extension that tells the kind; none when the user thinks better of it.
    virtual std::optional<std::string> chooseFileToSave(const std::string& proposal) = 0;
    /// A full path, asked about when the file is there already.
    virtual std::optional<std::string> chooseFileToExport(const std::string& /*proposal*/) { return std::nullopt; }
    /// A file of one of these extensions, without dots; "*" is any.
    virtual std::optional<std::string> chooseFileToImport(const std::vector<std::string>& /*kinds*/) {
        return std::nullopt;
    }
    virtual SaveAnswer askToSave(const Document& document) = 0;
    /// Whether a save shall replace what another program made of the document's file. A backup keeps that.
    virtual bool askToReplaceChanged(const Document& /*document*/) { return false; }
    /// Whether the unsaved changes shall go, for what another program made of the document's file.
    virtual bool askToReload(const Document& /*document*/) { return false; }
    /// A row from 1 to `rows`.
    virtual std::optional<uint32_t> askForRow(uint32_t current, uint32_t rows) = 0;
    virtual std::optional<MovieSettings> askForMovieSettings(const MovieSettings& current) = 0;
    /// A warning box.
    virtual void report(const Failure& failure) = 0;
    virtual void inform(const Message& message) = 0;
    /// Runs the work on a thread of its own, shows its progress, returns when it has ended. Throws what it threw.
    virtual void runJob(const std::string& title, ThreadParams& params, JobWork work) = 0;
};

/// The same for a function that takes the job's own kind of params: `runJob<loadDocument>(user, title, params)`.
template <auto work, class Params>
void runJob(IUserInterface& user, const std::string& title, Params& params) {
    user.runJob(title, params, [](ThreadParams& all) { work(static_cast<Params&>(all)); });
}

/// The text of a document where it is edited.
class ITextView {
public:
    virtual ~ITextView() = default;

    virtual void setText(std::string bytes) = 0;
    /// Valid until the text changes.
    virtual std::string_view text() = 0;
    /// One step of undo.
    virtual void replace(size_t start, size_t end, std::string_view bytes) = 0;
    /// What stands there now is what the file holds.
    virtual void setSavePoint() = 0;
    /// Row and column count from 1, the column in characters.
    virtual void gotoPlace(uint32_t row, uint32_t column) = 0;
    virtual uint32_t row() const = 0;
    virtual uint32_t rowCount() const = 0;
};

/// A text that commands change. It has one history, which the user goes through in the text view as well.
class IEditableText : public ITextView {
public:
    /// Makes all of them as one step of undo. Ascending; none overlaps another.
    virtual void replaceAll(std::span<const TextChange> changes) = 0;
    /// Takes the last step back, whoever made it. False when there is none.
    virtual bool undo() = 0;
    virtual bool redo() = 0;
    /// Another number after every change, undo and redo included.
    virtual uint64_t changeCount() const = 0;
};

/// Where tags are on their way between documents and programs.
class IClipboard {
public:
    virtual ~IClipboard() = default;
    /// XML elements, UTF-8, as tags and as plain text. False when it cannot be done.
    virtual bool setTags(const std::string& elements) = 0;
    /// What setTags put there, if it is what stands there.
    virtual std::optional<std::string> tags() = 0;
    /// With its bytes when a text view put it there.
    virtual std::string plainText() = 0;
};

/// The user, editing one tag.
class ITagEditor {
public:
    virtual ~ITagEditor() = default;
    /// Takes the XML of a tag, or an empty text for a new one. Gives exactly one element that compiles for this SWF
    /// version; none when the user thinks better of it.
    virtual std::optional<std::string> editTag(const std::string& element, uint8_t version) = 0;
};

/// Shows a movie.
class IPlayer {
public:
    /// Called once on the GUI thread when the player needs the file no more, with what went wrong, if anything did.
    using Ended = std::function<void(std::exception_ptr failure)>;

    virtual ~IPlayer() = default;
    /// Returns while the movie plays. Width and height in pixels; 0 for the movie's own size. Throws NoPlayerException
    /// and PlayerException for what is known at once, and never calls `ended` then.
    virtual void play(const std::string& fileName, int width, int height, Ended ended) = 0;
};

/// Files that are removed when they have been played, and at the latest when the program ends.
class TemporaryMovies {
public:
    TemporaryMovies() = default;
    TemporaryMovies(const TemporaryMovies&) = delete;
    TemporaryMovies& operator=(const TemporaryMovies&) = delete;
    ~TemporaryMovies();

    /// Gives the name of a new file with these bytes. Throws SwfFileException.
    std::string create(std::span<const uint8_t> movie);
    void remove(const std::string& name);

private:
    std::vector<std::string> _names;
};

/// One run of the program. Lives on the GUI thread.
struct Session {
    explicit Session(IUserInterface& user) : user(user) {}

    IUserInterface& user;
    IPlayer* player = nullptr; ///< null when there is none
    bool fullForm = false; ///< in which movies are opened and made: the full form, or the classic one
    UntitledNames names;
    WrittenFiles writtenFiles;
    TemporaryMovies temporaryMovies; ///< what is played
};

} // namespace zelk
