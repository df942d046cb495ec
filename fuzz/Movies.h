// What the fuzz targets share.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "Conversion.h"
#include "SwfWarnings.h"

namespace fuzz {

using Bytes = std::vector<uint8_t>;

inline void parse(libswf::SwfMovieSafe& movie, Bytes file, bool keepRaw, libswf::SwfWarnings* warnings = nullptr,
                  bool readLater = false, bool fullForm = false) {
    libswf::SwfLoadOptions options;
    options.fullForm = fullForm;
    options.keepRaw = keepRaw;
    options.warnings = warnings;
    options.readLater = readLater;
    movie.parse(std::move(file), options);
}

inline std::string toXml(libswf::SwfMovieSafe& movie, bool keepRaw) {
    xml2swf::ConversionOptions options;
    options.keepRaw = keepRaw;
    return swfToXmlDocument(movie, options);
}

template <class Movie>
Bytes serialise(Movie& movie) {
    movie.isCompressed = false;
    const libswf::SwfVector<uint8_t> file = movie.serialise(1);
    return {file.begin(), file.end()};
}

/// Bad input may be refused in the system's own ways; anything else is a fault.
template <class Act>
void refusable(Act act) {
    try {
        act();
    } catch (const libswf::SwfException&) {
    } catch (const libswf::SwfAssertionFailure& failure) {
        if (std::string(failure.what()).find("written <= size") == 0 ||
            std::string(failure.what()) == "Size <= Capacity")
            throw; // a record's measure and its write disagree
    } catch (const std::out_of_range&) {
    } catch (const rapidxml::parse_error&) {
    } catch (const boost::bad_lexical_cast&) {
    } catch (const xml2swf::Base64Error&) {
    } catch (const xml2swf::MovieAttributeError&) {
    }
}

} // namespace fuzz
