// The movies that are measured.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A movie ready to be measured.
struct Movie {
    std::vector<uint8_t> file;  ///< compressed
    std::vector<uint8_t> plain; ///< inflated, header included
    std::string xml;            ///< its document text
    bool fullForm = false;
};

struct Case {
    std::string name;
    std::function<std::vector<uint8_t>()> makeFile;
    bool measureDeflate = false; ///< level 9 takes long on the big ones
    bool fullForm = false;       ///< the form of the XML
};

/// The large corpus movies, when the corpus is there, and generated ones.
const std::vector<Case>& cases();

/// The movie of a case. Only the last one asked for is kept in memory.
const Movie& movieOf(const Case& benchCase);

} // namespace bench
