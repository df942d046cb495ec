// What commands ask of the user, and what one run of the program remembers.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Document.h"
#include "EditableText.h"
#include "Job.h"
#include "Messages.h"
#include "MovieLayout.h"
#include "MovieSettings.h"
#include "TemporaryMovies.h"
#include "WrittenFiles.h"

namespace zelk {

enum class SaveAnswer : uint8_t { yes, no, cancel };

/// The user, as commands see him: dialogs in the program, prepared answers in a test. All on the GUI thread.
class IUserInterface {
public:
    virtual ~IUserInterface() = default;

    /// A full path with an extension that tells the kind; none when the user cancels.
    virtual std::optional<std::string> chooseFileToSave(const std::string& proposal) = 0;
    /// A full path, asked about when the file is there already.
    virtual std::optional<std::string> chooseFileToExport(const std::string& /*proposal*/) { return std::nullopt; }
    /// A file of one of these extensions, without dots; "*" is any.
    virtual std::optional<std::string> chooseFileToImport(const std::vector<std::string>& /*kinds*/) {
        return std::nullopt;
    }
    virtual SaveAnswer askToSave(const Document& document) = 0;
    /// Whether a save shall replace what another program made of the document's file, of which a backup stays or not.
    virtual bool askToReplaceChanged(const Document& /*document*/, bool /*keepsBackup*/) { return false; }
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

/// The user, editing one tag.
class ITagEditor {
public:
    virtual ~ITagEditor() = default;
    /// Takes the XML of a tag, or an empty text for a new one. Gives exactly one element that compiles for a
    /// movie of this layout; none when the user cancels.
    virtual std::optional<std::string> editTag(const std::string& element, MovieLayout layout) = 0;
};

/// A movie that is to be shown.
struct PlayRequest {
    std::string fileName;
    std::string title = {};    ///< what the user calls it; may be empty
    int width = 0, height = 0; ///< in pixels; 0 for the movie's own size
    bool isApart = false;      ///< in a window of its own, whatever is shown already
};

/// Shows a movie.
class IPlayer {
public:
    /// Called once on the GUI thread when the player needs the file no more, with what went wrong, if anything did.
    using Ended = std::function<void(std::exception_ptr failure)>;

    virtual ~IPlayer() = default;
    /// Returns while the movie plays. Throws NoPlayerException and PlayerException for what is known at once, and never
    /// calls `ended` then.
    virtual void play(const PlayRequest& request, Ended ended) = 0;
};

/// One run of the program. Lives on the GUI thread.
struct Session {
    explicit Session(IUserInterface& user) : user(user) {}

    IUserInterface& user;
    IPlayer* player = nullptr; ///< null when there is none
    bool fullForm = false;     ///< in which movies are opened and made: the full form, or the classic one
    bool keepsBackups = true;  ///< of files that are saved over (Backup.h)
    /// Whether a document besides this one is of the file; none when there are no others.
    std::function<bool(const Document& document, const std::string& fileName)> isOpenElsewhere = {};
    UntitledNames names;
    WrittenFiles writtenFiles;
    TemporaryMovies temporaryMovies; ///< what is played
};

} // namespace zelk
