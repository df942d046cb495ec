// The kinds of file that texts stand in, one by one.
#pragma once

#include "TextFiles.h"

namespace zelk {

std::string writePo(const std::vector<MovieText>& texts, std::string_view movieName);
std::vector<NewText> readPo(std::string_view content);

std::string writeCsv(const std::vector<MovieText>& texts);
std::vector<NewText> readCsv(std::string_view content);

std::string writeJsonTexts(const std::vector<MovieText>& texts, std::string_view movieName);
std::vector<NewText> readJsonTexts(std::string_view content);

} // namespace zelk
