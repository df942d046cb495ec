#include "AttributeText.h"
#include "DocumentFiles.h"
#include "DocumentViewTextCommands.h"
#include "PlayMovie.h"

namespace zelk::guicommand::documentviewtext {

namespace {

constexpr int width = 225, height = 200; // of the player

// One line; 17 blanks stand before each piece.
constexpr std::string_view blanks = "                 ";
constexpr std::string_view pieces[] = {
    R"(<?xml version="1.0" encoding="UTF-8" ?>)",
    R"(<Movie SwfVersion="7" Width="550" Height="400" FrameRate="12">)",
    R"(<SetBackgroundColor Color="{COLOR}" />)",
    R"(<ShowFrame />)",
    R"(<End />)",
    R"(</Movie>)",
};

std::string movieOf(std::string_view color) {
    constexpr std::string_view place = "{COLOR}";
    std::string text;
    for (std::string_view piece : pieces)
        text.append(blanks).append(piece);
    return text.replace(text.find(place), place.size(), escapedAttribute(color));
}

} // namespace

bool ShowColorCmd::Execute() {
    if (_color.empty())
        return false;
    CompileParams params;
    params.text = movieOf(_color);
    playMovie(_session, compileDocument(params), {"", "", width, height, true});
    return true;
}

} // namespace zelk::guicommand::documentviewtext
