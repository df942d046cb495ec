#include "SwfWarnings.h"

#include <cstdio>

#include "SwfStream.h"
#include "SwfTagCodes.h"

namespace libswf {

const char* kindText(SwfWarning::Kind kind) {
    switch (kind) {
    case SwfWarning::Kind::dropped: return "dropped";
    case SwfWarning::Kind::keptRaw: return "kept raw";
    case SwfWarning::Kind::skipped: return "skipped";
    case SwfWarning::Kind::cut: return "cut";
    case SwfWarning::Kind::tooSmall: return "too small";
    case SwfWarning::Kind::astray: return "leads astray";
    default: return "ignored";
    }
}

std::string SwfWarning::text() const {
    std::string result = kindText(kind);
    result += ": ";
    if (!path.empty())
        result += "tag " + path + " ";
    if (!tagName.empty())
        result += path.empty() ? tagName + " " : "(" + tagName + ") ";
    if (row != 0) {
        result += "row " + std::to_string(row) + ", column " + std::to_string(column);
    } else if (offset != noOffset) {
        char place[32];
        std::snprintf(place, sizeof place, "at offset 0x%llx", static_cast<unsigned long long>(offset));
        result += place;
    }
    if (result.back() == ' ')
        result.pop_back();
    result += ": " + reason;
    return targetRow == 0 ? result : result + " of row " + std::to_string(targetRow);
}

void SwfWarnings::add(SwfWarning warning) {
    ++_total;
    if (_items.size() < limit)
        _items.push_back(std::move(warning));
}

void SwfWarnings::add(SwfWarnings&& later, const std::function<void(SwfWarning&)>& finish) {
    const uint64_t total = _total + later._total;
    for (SwfWarning& warning : later._items) {
        if (finish && _items.size() < limit)
            finish(warning);
        add(std::move(warning));
    }
    _total = total;
    later = SwfWarnings();
}

static SwfWarning warningOf(const SwfContext& context, SwfWarning::Kind kind, std::string reason) {
    SwfWarning warning;
    warning.kind = kind;
    warning.tagCode = context.tagType;
    warning.tagName = tagName(context.tagType);
    warning.reason = std::move(reason);
    return warning;
}

void addWarning(const SwfIStream& stream, SwfWarning::Kind kind, std::string reason) {
    if (stream.context.warnings == nullptr)
        return;
    SwfWarning warning = warningOf(stream.context, kind, std::move(reason));
    warning.path = tagPathText(stream.tagPath);
    warning.offset = stream.position();
    stream.context.warnings->add(std::move(warning));
}

void addWarning(const SwfContext& context, SwfWarning::Kind kind, std::string reason) {
    if (context.warnings != nullptr)
        context.warnings->add(warningOf(context, kind, std::move(reason)));
}

} // namespace libswf
