// What a conversion gives, as a whole: to compare ways that must give the same.
#pragma once

#include "Tests.h"

/// The result or the error, and the warnings with their places. Whoever listens to the progress adds it.
struct Outcome {
    std::string result, problem;
    std::vector<std::string> warnings;
    uint64_t warningsInAll = 0;
    std::vector<double> reports;

    bool operator==(const Outcome&) const = default;
};

inline std::string placeText(const auto& place) {
    return " in row " + std::to_string(place.row) + ":" + std::to_string(place.column);
}

inline void note(const libswf::SwfWarnings& warnings, Outcome& outcome) {
    for (const libswf::SwfWarning& warning : warnings.items())
        outcome.warnings.push_back(warning.path + " " + warning.tagName + " " + warning.reason +
                                   (warning.row != 0 ? placeText(warning) : " at " + std::to_string(warning.offset)));
    outcome.warningsInAll += warnings.total();
}

/// Runs `convert`, which gives the result or throws.
template <class Convert>
Outcome outcomeOf(xml2swf::ConversionOptions options, Convert convert) {
    Outcome outcome;
    libswf::SwfWarnings warnings;
    options.warnings = &warnings;
    try {
        outcome.result = convert(options);
    } catch (const xml2swf::XmlValueError& error) {
        outcome.problem = error.description() + placeText(error.place);
    } catch (const xml2swf::XmlSyntaxError& error) {
        outcome.problem = error.what() + placeText(error.place);
    } catch (const std::exception& error) {
        outcome.problem = error.what();
    }
    note(warnings, outcome);
    return outcome;
}

/// The movie's file, not compressed. Warnings of writing are among the others.
inline Outcome compiled(const std::string& text, xml2swf::ConversionOptions options = {}) {
    return outcomeOf(options, [&](const xml2swf::ConversionOptions& all) {
        xml2swf::MovieTarget target;
        xml2swf::xmlToSwf(text, target, all);
        target.movie.isCompressed = false;
        const auto file = target.movie.serialise(0, all.warnings);
        return std::string(file.begin(), file.end());
    });
}
