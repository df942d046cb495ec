#include "FileKind.h"

#include <algorithm>

namespace zelk {

namespace {

constexpr FileKind kinds[] = {FileKind::project, FileKind::swf, FileKind::xml};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

std::optional<FileKind> fileKind(std::string_view fileName) {
    const size_t dot = fileName.rfind('.');
    return dot == fileName.npos ? std::nullopt : kindOfExtension(fileName.substr(dot + 1));
}

std::optional<FileKind> kindOfExtension(std::string_view extension) {
    for (FileKind kind : kinds) {
        if (std::ranges::equal(extension, extensionOf(kind), {}, lower))
            return kind;
    }
    return std::nullopt;
}

std::optional<FileKind> kindOfContent(std::string_view start) {
    using namespace std::string_view_literals;
    for (std::string_view signature : {"FWS"sv, "CWS"sv, "ZWS"sv}) {
        if (start.starts_with(signature))
            return FileKind::swf;
    }
    for (std::string_view signature : {"PK\3\4"sv, "PK\5\6"sv}) { // an entry; an archive without any
        if (start.starts_with(signature))
            return FileKind::project;
    }
    for (std::string_view mark : {"\xFF\xFE"sv, "\xFE\xFF"sv}) { // UTF-16
        if (start.starts_with(mark))
            return FileKind::xml;
    }
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (start.starts_with(mark))
        start.remove_prefix(mark.size());
    const size_t first = start.find_first_not_of(" \t\r\n");
    return first != start.npos && start[first] == '<' ? std::optional(FileKind::xml) : std::nullopt;
}

std::string_view extensionOf(FileKind kind) {
    switch (kind) {
    case FileKind::xml: return "xml";
    case FileKind::swf: return "swf";
    case FileKind::project: return "zelk";
    }
    return {};
}

} // namespace zelk
