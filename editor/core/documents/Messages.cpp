#include "Messages.h"

#include <exception>
#include <new>

#include "Conversion.h"
#include "Exceptions.h"
#include "SwfException.h"

namespace zelk {

namespace {

struct Row {
    const char* text;
    const char* caption;
};

// In the order of the codes, from 1. The last row serves every other code.
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
};

Failure placed(Failure failure, const xml2swf::XmlPlace& place) {
    failure.row = place.row;
    failure.column = place.column;
    return failure;
}

Failure badXml(std::string_view description, uint32_t row, uint32_t column) {
    std::string details = "Error description: ";
    details.append(description);
    details += "\nRow: " + std::to_string(row) + "\nCol: " + std::to_string(column);
    return {message(MessageCode::badXml, details), {}, row, column};
}

Failure unexpected(std::string reason) { return {message(MessageCode::unexpected), std::move(reason)}; }

MessageCode codeOfAttribute(std::string_view attribute) {
    if (attribute == "SwfVersion")
        return MessageCode::badVersion;
    if (attribute == "Width")
        return MessageCode::badWidth;
    return attribute == "Height" ? MessageCode::badHeight : MessageCode::unexpected;
}

} // namespace

Message message(MessageCode code, std::string_view detail) {
    const size_t index = static_cast<size_t>(code) - 1; // of code 0 the largest number
    const Row& row = rows[std::min(index, std::size(rows) - 1)];
    std::string text = row.text;
    if (code == MessageCode::cannotOpen || code == MessageCode::badXml)
        text.append(detail);
    return {std::move(text), row.caption};
}

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

Failure describeFailure() {
    try {
        throw;
    } catch (const FileLoadException& error) {
        return {message(MessageCode::cannotOpen, error.fileName()), error.description()};
    } catch (const FileSaveException& error) {
        return {message(MessageCode::cannotSave), error.fileName() + ": " + error.description()};
    } catch (const XmlException& error) {
        return badXml(error.description(), error.row, error.column);
    } catch (const xml2swf::XmlSyntaxError& error) {
        return badXml(error.what(), error.place.row, error.place.column);
    } catch (const xml2swf::Base64Error& error) {
        return placed({message(MessageCode::badBase64), {}}, error.place);
    } catch (const xml2swf::MovieAttributeError& error) {
        const MessageCode code = codeOfAttribute(error.attribute);
        return placed({message(code), code == MessageCode::unexpected ? error.what() : ""}, error.place);
    } catch (const xml2swf::XmlValueError& error) {
        return placed(unexpected(error.description()), error.place);
    } catch (const NoPlayerException& error) {
        return {message(MessageCode::noPlayer), error.description()};
    } catch (const TagException& error) {
        Failure failure = unexpected(error.description());
        failure.row = error.row;
        failure.column = error.column;
        return failure;
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
