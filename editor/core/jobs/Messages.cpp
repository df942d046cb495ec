#include "Messages.h"

#include <exception>
#include <new>
#include <stdexcept>

#include "Conversion.h"
#include "Exceptions.h"
#include "SwfException.h"
#include "SwfVector.h"

namespace zelk {

namespace {

struct Row {
    const char* text;
    const char* caption;
};

// In the order of the codes, from 1.
constexpr Row rows[] = {
    {"Unable to play .swf file.", "Message"},
    {"Please install a Flash Player.", "Flash Player is not installed."},
    {"Unable to save this file.", "Message"},
    {"Incorrect value of attribute SwfVersion", "Warning"},
    {"Incorrect value of attribute Width", "Warning"},
    {"Incorrect value of attribute Height", "Warning"},
    {"Incorrect Base64 data", "Warning"},
    {"Unable to open ", "Message"},
    {"", "The XML has incorrect format."},
    {"Unexpected Error", "Message"},
    {"", "The XML is no movie."},
    {"Incorrect value of attribute ", "Warning"},
    {"A tag cannot be read or written.", "Warning"},
};

bool takesDetail(MessageCode code) {
    return code == MessageCode::cannotOpen || code == MessageCode::badXml || code == MessageCode::notMovie ||
           code == MessageCode::badValue;
}

struct Invariant {
    std::string_view assertion, words;
};

// Those that a text can break.
constexpr Invariant invariants[] = {
    {"frameCount <= 0xFFFF", "The movie has more than 65535 frames."},
    {"Size <= 0x0F", "A gradient has more than 15 colors."},
};

Failure badXml(std::string_view description, uint32_t row, uint32_t column) {
    std::string details = "Error description: ";
    details.append(description);
    details += "\nRow: " + std::to_string(row) + "\nCol: " + std::to_string(column);
    return {message(MessageCode::badXml, details), {}, row, column};
}

Failure badValue(const std::string& attribute, std::string reason, const xml2swf::XmlPlace& place) {
    const MessageCode code = attribute == "SwfVersion" ? MessageCode::badVersion
                             : attribute == "Width"    ? MessageCode::badWidth
                             : attribute == "Height"   ? MessageCode::badHeight
                                                       : MessageCode::badValue;
    return {message(code, attribute), std::move(reason), place.row, place.column};
}

Failure badTag(std::string reason, uint32_t row = 0, uint32_t column = 0) {
    return {message(MessageCode::badTag), std::move(reason), row, column};
}

// Where nobody said yet what was to become of the file.
Failure badFile(const libswf::SwfFileException& error) {
    if (error.code() == libswf::SwfError::openForReading || error.code() == libswf::SwfError::reading)
        return {message(MessageCode::cannotOpen, error.fileName()), error.problem()};
    return {message(MessageCode::cannotSave), error.fileName() + ": " + error.problem()};
}

Failure unexpected(std::string reason) { return {message(MessageCode::unexpected), std::move(reason)}; }

} // namespace

Message message(MessageCode code, std::string_view detail) {
    const size_t index = static_cast<size_t>(code) - 1; // of code 0 the largest number
    if (index >= std::size(rows))
        return message(MessageCode::unexpected);
    std::string text = rows[index].text;
    if (takesDetail(code))
        text.append(detail);
    return {std::move(text), rows[index].caption};
}

Message noBranches() { return {"There is no branch here to be changed.", "Message"}; }

Message nothingToFormat() { return {"Each element stands on its line already.", "Message"}; }

Message xmlIsCorrect() { return {"The XML is correct.", "The XML is correct."}; }

Message payloadNote(std::string_view note) {
    std::string text(note);
    if (!text.empty())
        text[0] = static_cast<char>(text[0] >= 'a' && text[0] <= 'z' ? text[0] - 'a' + 'A' : text[0]);
    return {text + ".", "Message"};
}

Message saveQuestion() {
    return {"The file has been changed.\nTo save the changes and close, click \"Yes\".\nTo close without saving, click "
            "\"No\".",
            "Message"};
}

std::string brokenInvariant(const std::exception& failure) {
    for (const Invariant& invariant : invariants) {
        if (invariant.assertion == failure.what())
            return std::string(invariant.words);
    }
    return failure.what();
}

Failure describeFailure() {
    try {
        throw;
    } catch (const FileLoadException& error) {
        return {message(MessageCode::cannotOpen, error.fileName()), error.description()};
    } catch (const FileSaveException& error) {
        return {message(MessageCode::cannotSave), error.fileName() + ": " + error.description()};
    } catch (const libswf::SwfFileException& error) {
        return badFile(error);
    } catch (const FileXmlException& error) {
        Failure failure = badXml(error.description(), error.row, error.column);
        failure.reason = error.fileName();
        return failure;
    } catch (const XmlException& error) {
        return badXml(error.description(), error.row, error.column);
    } catch (const xml2swf::XmlSyntaxError& error) {
        return badXml(error.what(), error.place.row, error.place.column);
    } catch (const NotMovieException& error) {
        return {message(MessageCode::notMovie, error.description()), {}, error.row, error.column};
    } catch (const xml2swf::Base64Error& error) {
        return {message(MessageCode::badBase64), {}, error.place.row, error.place.column};
    } catch (const xml2swf::MovieAttributeError& error) {
        return badValue(error.attribute, error.fitting, error.place);
    } catch (const xml2swf::XmlValueError& error) {
        return badValue(error.attribute, error.description(), error.place);
    } catch (const TagException& error) {
        return badTag(error.description(), error.row, error.column);
    } catch (const libswf::SwfException& error) {
        return badTag(error.what());
    } catch (const libswf::SwfAssertionFailure& error) {
        return badTag(brokenInvariant(error));
    } catch (const std::out_of_range& error) {
        return badTag(error.what());
    } catch (const NoPlayerException& error) {
        return {message(MessageCode::noPlayer), error.description()};
    } catch (const PlayerException& error) {
        return {message(MessageCode::cannotPlay), error.description()};
    } catch (const std::bad_alloc&) {
        return unexpected("There is not enough memory.");
    } catch (const std::exception& error) {
        return unexpected(error.what());
    } catch (...) {
        return unexpected({});
    }
}

} // namespace zelk
