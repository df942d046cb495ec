#include "XmlWriteParts.h"

#include "SwfInOrder.h"
#include "SwfWarnings.h"

namespace xml2swf {

void writeInParts(XmlNode& parent, size_t count,
                  const std::function<void(XmlNode& node, size_t first, size_t end)>& write) {
    constexpr size_t partSize = 2048;
    XmlWriteContext& shared = parent.context();
    if (shared.threads == 1 || count < 8 * partSize)
        return write(parent, 0, count);
    struct Part {
        XmlText text;
        size_t start = 0, end = 0; // of the children in it
        libswf::SwfWarnings warnings;
    };
    std::vector<Part> parts((count + partSize - 1) / partSize);
    XmlFreeTexts texts;
    const XmlWriteContext partContext(shared);
    const auto work = [&](size_t i) {
        Part& part = parts[i];
        XmlWriteContext context(partContext);
        context.warnings = partContext.warnings == nullptr ? nullptr : &part.warnings;
        context.differences = nullptr; // what comes in such numbers is the same in both forms
        part.text = texts.take();
        XmlNode node(part.text, context, parent.depth(), "Part"); // for its depth; its own text is left out
        part.start = part.text.size();
        write(node, i * partSize, std::min((i + 1) * partSize, count));
        part.end = part.text.size();
    };
    const auto take = [&](size_t i) {
        if (shared.warnings != nullptr)
            shared.warnings->add(std::move(parts[i].warnings));
        parent.append(parts[i].text.view().substr(parts[i].start, parts[i].end - parts[i].start));
        texts.giveBack(std::move(parts[i].text));
    };
    libswf::workInOrder({parts.size(), work, take}, shared.threads);
}

} // namespace xml2swf
