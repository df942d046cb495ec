// Reads a movie, shows it as XML and compiles that: movie-info FILE
#include <cstdio>
#include <exception>

#include "Conversion.h"

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    try {
        libswf::SwfLoadOptions reading;
        reading.keepRaw = true;
        libswf::SwfMovieSafe movie;
        movie.load(argv[1], reading);

        xml2swf::ConversionOptions options;
        options.keepRaw = true;
        const std::string xml = xml2swf::swfToXml(movie, options);
        xml2swf::MovieTarget compiled;
        const bool isMovie = xml2swf::xmlToSwf(xml, compiled, options);

        std::printf("version %u, %u tags, %zu bytes of XML\n", movie.version, movie.tags.count(), xml.size());
        const bool isSame = isMovie && compiled.movie.serialise(6).size() == movie.serialise(6).size();
        std::puts(isSame ? "compiles to a movie of the same size" : "compiles to another movie");
        return isSame ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
        return 1;
    }
}
