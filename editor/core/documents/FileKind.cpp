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

std::string_view extensionOf(FileKind kind) {
    switch (kind) {
    case FileKind::xml: return "xml";
    case FileKind::swf: return "swf";
    case FileKind::project: return "zelk";
    }
    return {};
}

} // namespace zelk
