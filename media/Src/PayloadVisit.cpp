#include "Payload.h"
#include "SwfTagDefineSprite.h"

namespace zelk {

using namespace libswf;

namespace {

// The last one in the movie, wherever it stands.
void findTables(const SwfTags& tags, const SwfTagJPEGTables*& found) {
    for (const auto& tag : tags.items()) {
        if (const auto* tables = dynamic_cast<const SwfTagJPEGTables*>(tag.get()))
            found = tables;
        else if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(tag.get()))
            findTables(sprite->tags, found);
    }
}

// The blocks of a head end where the next head stands.
SoundBlocks blocksBehind(const SwfTags& tags, uint32_t head) {
    SoundBlocks blocks;
    for (uint32_t i = head + 1; i < tags.count(); ++i) {
        if (dynamic_cast<const SwfTagSoundStreamHead*>(&tags.at(i)) != nullptr)
            break;
        if (const auto* block = dynamic_cast<const SwfTagSoundStreamBlock*>(&tags.at(i)))
            blocks.push_back(block);
    }
    return blocks;
}

void visitList(const SwfTags& tags, const SwfTagJPEGTables* tables, std::vector<uint32_t>& path,
               const PayloadVisitor& visit) {
    path.push_back(0);
    for (uint32_t i = 0; i < tags.count(); ++i, ++path.back()) {
        const SwfTag& tag = tags.at(i);
        if (const auto* sprite = dynamic_cast<const SwfTagDefineSprite*>(&tag)) {
            visitList(sprite->tags, tables, path, visit);
            continue;
        }
        PayloadContext context;
        context.tables = tables;
        if (dynamic_cast<const SwfTagSoundStreamHead*>(&tag) != nullptr)
            context.blocks = blocksBehind(tags, i);
        if (hasPayload(tag, context))
            visit(tag, tagPathText(path), context);
    }
    path.pop_back();
}

} // namespace

void forEachPayload(const SwfTags& tags, const PayloadVisitor& visit) {
    std::vector<uint32_t> path;
    const SwfTagJPEGTables* tables = nullptr;
    findTables(tags, tables);
    visitList(tags, tables, path, visit);
}

} // namespace zelk
