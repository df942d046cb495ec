#include "Problems.h"

#include <algorithm>

#include "CharacterIndex.h"
#include "XmlErrors.h"

namespace zelk {

using namespace xml2swf;
using libswf::SwfWarning;

std::string_view kindName(Problem::Kind kind) {
    using enum Problem::Kind;
    switch (kind) {
    case wrongValue: return "wrong-value";
    case strayText: return "stray-text";
    case undefined: return "undefined-id";
    case definedTwice: return "defined-twice";
    case usedTooEarly: return "used-too-early";
    case emptyDepth: return "empty-depth";
    case missingGlyph: return "missing-glyph";
    case missingTables: return "missing-tables";
    case conversion: break;
    }
    return "conversion";
}

std::string_view severityName(Problem::Severity severity) {
    return severity == Problem::Severity::error ? "error" : "warning";
}

std::string lineOf(const Problem& problem, bool isOfMovie) {
    if (problem.kind == Problem::Kind::conversion)
        return problem.warning.text();
    std::string line;
    if (problem.row != 0 && !isOfMovie)
        line = "row " + std::to_string(problem.row) + ", column " + std::to_string(problem.column) + ": ";
    if (!problem.path.empty())
        line += "tag " + problem.path + " (" + problem.tag + "): ";
    else if (!problem.tag.empty())
        line += problem.tag + ": ";
    return line + problem.reason;
}

void Problems::add(Problem problem) {
    (problem.severity == Problem::Severity::error ? errors : warnings) += 1;
    if (items.size() < limit)
        items.push_back(std::move(problem));
    else
        ++more;
}

void Problems::add(const libswf::SwfWarnings& conversion) {
    for (const SwfWarning& warning : conversion.items()) {
        ++warnings;
        if (items.size() == limit) {
            ++more;
            continue;
        }
        Problem& problem = items.emplace_back();
        problem.path = warning.path;
        problem.tag = warning.tagName;
        problem.reason = warning.reason;
        problem.row = warning.row;
        problem.column = warning.column;
        if (warning.row != 0)
            problem.offset = static_cast<size_t>(warning.offset);
        problem.warning = warning;
    }
    const uint64_t beyond = conversion.total() - conversion.items().size();
    warnings += beyond;
    more += beyond;
}

static void placeAll(std::string_view text, Problems& problems) {
    std::ranges::stable_sort(problems.items, {}, &Problem::offset);
    XmlPlaces places(text);
    for (Problem& problem : problems.items) {
        if (problem.offset == Problem::nowhere || problem.row != 0)
            continue;
        const XmlPlace place = places.at(problem.offset);
        problem.row = place.row;
        problem.column = place.column;
    }
}

Problems problemsOfText(std::string_view text, IProgressReporter* progress) {
    Problems problems;
    findValueProblems(text, problems, progress);
    findMovieProblems(text, CharacterIndex(text), problems);
    placeAll(text, problems);
    return problems;
}

Problems problemsOfMovie(std::string_view text, const libswf::SwfWarnings& ofReading) {
    Problems problems;
    findMovieProblems(text, CharacterIndex(text), problems);
    placeAll(text, problems);
    problems.add(ofReading);
    return problems;
}

} // namespace zelk
