// What the user is told, by code, from one table of texts.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace zelk {

enum class MessageCode : uint32_t {
    cannotPlay = 1,
    noPlayer = 2,
    cannotSave = 3,
    badVersion = 4,
    badWidth = 5,
    badHeight = 6,
    badBase64 = 7,
    cannotOpen = 8,  ///< its detail is the file name
    badXml = 9,      ///< for a text that is not well-formed; its detail is the whole text
    unexpected = 10, ///< and every number that is not here
    notMovie = 11,   ///< for a well-formed text that is no movie or tag; its detail is the whole text
    badValue = 12,   ///< its detail is the attribute
    badTag = 13      ///< a tag cannot be written, or its data not be read
};

struct Message {
    std::string text, caption;
    bool operator==(const Message&) const = default;
};

Message message(MessageCode code, std::string_view detail = {});

/// The box after a successful check.
Message xmlIsCorrect();
/// There was no branch to change.
Message noBranches();
Message nothingToFormat();
/// What became of a payload on its way from or to a file, or why nothing did.
Message payloadNote(std::string_view note);
/// The question on closing a modified document.
Message saveQuestion();

/// A failure as it is reported.
struct Failure {
    Message message;
    std::string reason;           ///< what the message does not say; may be empty
    uint32_t row = 0, column = 0; ///< place in the document's text, from 1; 0 for none
};

/// The exception being handled.
Failure describeFailure();

/// The same words for an invariant that a text broke.
std::string brokenInvariant(const std::exception& failure);

} // namespace zelk
