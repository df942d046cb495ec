// Reading of action lists.
#include <array>
#include <optional>
#include <typeinfo>

#include "SwfActionRefusal.h"
#include "SwfActionsPayload.h"
#include "SwfScriptOutline.h"
#include "SwfTagCodes.h"
#include "SwfWarnings.h"

namespace libswf {

namespace {

using Creator = std::unique_ptr<SwfAction> (*)(SwfIStream&);

template <class Action>
std::unique_ptr<SwfAction> create(SwfIStream& stream) {
    return std::make_unique<Action>(stream);
}

Creator creatorOf(uint8_t code) {
    static const std::array<Creator, 256> creators = [] {
        std::array<Creator, 256> table{};
#define SWF_PAYLOAD_ACTION(code, name, type) table[code] = create<type>;
#include "SwfActions.def"
        return table;
    }();
    return creators[code];
}

bool isBlock(uint32_t code) {
    return code == SwfActionCode::DefineFunction || code == SwfActionCode::DefineFunction2 ||
           code == SwfActionCode::With;
}

// Notes what in one payload is inexact. Under keepRaw its strings and counted items end where it does.
class PayloadScope {
public:
    PayloadScope(SwfIStream& stream, uint64_t end)
        : outerEnd(stream.bodyEnd()), _stream(stream), _outerInexact(stream.inexact()),
          _outerDepth(stream.context.actionDepth) {
        if (stream.context.keepRaw)
            stream.setBodyEnd(std::min(outerEnd, end));
        stream.setInexact(nullptr);
    }
    ~PayloadScope() {
        _stream.setBodyEnd(outerEnd);
        _stream.setInexact(_outerInexact);
        _stream.context.actionDepth = _outerDepth;
    }
    PayloadScope(const PayloadScope&) = delete;
    PayloadScope& operator=(const PayloadScope&) = delete;

    const uint64_t outerEnd;

private:
    SwfIStream& _stream;
    const char* _outerInexact;
    uint16_t _outerDepth;
};

// Notes in the outline of the context, if it has one, where actions and lists stand. What a list is read as is what is
// written of it, so that these are the places when it is written, too.
class OutlineNotes {
public:
    explicit OutlineNotes(SwfIStream& stream)
        : _outline(stream.context.keepRaw ? stream.context.outline : nullptr), _start(stream.position()) {
        if (_outline == nullptr)
            return;
        constexpr uint64_t usualRecord = 3; // bytes
        _outline->clear();
        _outline->places.reserve(stream.bodyLeft() / usualRecord);
        _outline->startList(SwfScriptOutline::none, 0);
    }

    bool areTaken() const { return _outline != nullptr; }
    /// Something is not as it was noted.
    void spoil() { _isSpoilt = true; }

    void place(uint64_t start) { _outline->places.push_back(offset(start)); }
    // Whether an action of this code is more than a place.
    static bool hasMore(uint32_t code) {
        constexpr uint32_t first = SwfActionCode::ConstantPool;
        constexpr uint32_t codes = 1u << (SwfActionCode::ConstantPool - first) |
                                   1u << (SwfActionCode::WaitForFrame - first) |
                                   1u << (SwfActionCode::WaitForFrame2 - first) | 1u << (SwfActionCode::Jump - first) |
                                   1u << (SwfActionCode::If - first);
        return code - first < 32 && (codes >> (code - first) & 1) != 0;
    }
    // Of the action whose place came last.
    void more(const SwfAction& action, uint32_t list, uint64_t end) {
        const auto place = static_cast<uint32_t>(_outline->places.size() - 1);
        if (typeid(action) == typeid(SwfActionIf) || typeid(action) == typeid(SwfActionJump)) {
            const int32_t distance = static_cast<const SwfActionBranch&>(action).branchOffset;
            _outline->branches.push_back({list, place, offset(end), int64_t(offset(end)) + distance});
        } else if (action.type == SwfActionCode::ConstantPool) {
            _outline->pools.push_back(_outline->places[place]);
        } else if (action.type == SwfActionCode::WaitForFrame || action.type == SwfActionCode::WaitForFrame2) {
            spoil(); // what it skips is not read yet
        }
    }
    uint32_t startList(uint32_t parent, uint64_t start) {
        return _outline == nullptr ? 0 : _outline->startList(parent, offset(start));
    }
    void endList(uint32_t list, uint64_t end) {
        if (_outline != nullptr)
            _outline->endList(list, offset(end));
    }
    void finish(const SwfActions& script, uint64_t end) {
        endList(0, end);
        if (_outline != nullptr && !_isSpoilt)
            _outline->script = &script;
    }

private:
    uint32_t offset(uint64_t position) const { return static_cast<uint32_t>(position - _start); }

    SwfScriptOutline* const _outline;
    const uint64_t _start; // of the script
    bool _isSpoilt = false;
};

// Reads one list together with the bodies that its blocks open. Bodies lie between the records of the list, so all
// records are read one after the other, each once, whatever the sizes claim: a block takes the records of its bodies
// out of _items when they end where its sizes say. Otherwise, under keepRaw, it is turned into bytes and its bodies
// stay behind as records of the list around it.
class ActionReader {
public:
    enum class Stop : uint8_t { atEndAction, atEnd, afterOne };

    explicit ActionReader(SwfIStream& stream)
        : _stream(stream), _outline(stream),
          _mostReadAgain(std::max<uint64_t>({1024, stream.context.tagSize, stream.bodyLeft()})) {}

    void read(uint64_t end, Stop stop) {
        bool done = false;
        for (;;) {
            closeBodies();
            if (_open.empty() && (done || _stream.position() >= end))
                return;
            if (!readRecord()) {
                _outline.spoil();
                return;
            }
            const bool isEnd = _items.back()->type == SwfActionCode::End;
            if (_open.empty())
                done = stop == Stop::afterOne || (stop == Stop::atEndAction && isEnd);
            openBodies(end);
        }
    }

    void moveTo(SwfActions& list) {
        moveTail(0, list);
        _outline.finish(list, _stream.position());
    }

    // The first action; the stream is left behind it. Empty when nothing was read.
    std::unique_ptr<SwfAction> takeFirst() {
        if (_items.size() > 1) // a block kept raw, and what was taken for its body
            _stream.seek(_firstEnd);
        return _items.empty() ? nullptr : std::move(_items.front());
    }

private:
    struct OpenBody {
        SwfActions* list = nullptr;
        uint64_t end = 0;
        size_t first = 0; // of its records in _items
    };
    struct OpenBlock {
        size_t index;     // of the block in _items; its bodies' records stand behind it
        uint64_t payload; // where the block's own payload starts
        uint16_t length;  // and its size
        std::array<OpenBody, 3> bodies = {};
        uint32_t count = 0, current = 0;
        uint32_t outer = 0, list = 0; // in the outline: the list around the block, the body being read

        const OpenBody& body() const { return bodies[current]; }
    };

    // False when the list cannot be read on, and is kept as bytes with what holds it.
    bool readRecord() {
        const uint64_t start = _stream.position();
        SwfContext& context = _stream.context;
        const uint8_t code = _stream.readUI8("ActionCode");
        const uint16_t length = code >= 0x80 ? _stream.readUI16("Length") : 0;
        context.actionCode = code;
        context.actionLength = length;
        _payload = _stream.position();
        if (context.keepRaw && _payload + length > _stream.limit()) {
            _stream.markInexact("an action passes the end of its tag");
            _stream.seek(_stream.limit());
            return false;
        }
        if (code == 0x80 && !context.fullForm)
            _stream.markInexact("an action of code 128 is written without its length");

        const bool marked = (_stream.actionOptions(code) & 1) != 0;
        std::unique_ptr<SwfAction> action;
        if (creatorOf(code) != nullptr && !marked)
            action = readPayload(start);
        else if (length == 0 && !marked)
            action = std::make_unique<SwfAction>(code);
        else
            action = std::make_unique<SwfActionUnknown>(_stream);
        action->size = length;
        if (_outline.areTaken()) {
            _outline.place(start);
            if (OutlineNotes::hasMore(code)) [[unlikely]]
                _outline.more(*action, _open.empty() ? 0 : _open.back().list, _payload + length);
        }
        if (_items.empty())
            _firstEnd = _payload + length;
        _items.push_back(std::move(action));
        return true;
    }

    // An action with a class of its own, or its bytes.
    std::unique_ptr<SwfAction> readPayload(uint64_t recordStart) {
        const uint8_t code = _stream.context.actionCode;
        const uint16_t length = _stream.context.actionLength;
        const bool keepRaw = _stream.context.keepRaw;
        const bool bodiesFollow = isBlock(code) || (code == SwfActionCode::Try && _stream.context.fullForm);
        const bool nests = bodiesFollow || code == SwfActionCode::Try;
        uint64_t end = _payload + length;
        uint64_t offset = recordStart;
        std::string reason;
        try {
            if (nests && _stream.context.actionDepth + _open.size() >= SwfContext::maxDepth) {
                reason = "nested more than 256 deep";
            } else {
                PayloadScope scope(_stream, end);
                std::unique_ptr<SwfAction> action = creatorOf(code)(_stream);
                if (code == SwfActionCode::Try && bodiesFollow)
                    checkTry(static_cast<SwfActionTry&>(*action));
                else if (code == SwfActionCode::Try)
                    readTryBodies(static_cast<SwfActionTry&>(*action), scope, end);
                if (!keepRaw) {
                    if (!nests)
                        goBack(end);
                    else if (!bodiesFollow && _stream.position() < end)
                        _stream.seek(end); // a Try that passes its Length is not read twice
                    return action;         // bodies that follow lie outside Length
                }
                if (_stream.inexact() != nullptr)
                    reason = _stream.inexact();
                else if (_stream.position() != end)
                    reason = "its fields do not end where its length says";
                else
                    return action;
            }
        } catch (SwfException& error) {
            if (!keepRaw) {
                error.addPlace(actionName(code));
                throw;
            }
            offset = error.offset().value_or(offset);
            reason = error.reasonInTag();
        }
        warnKeptRaw(code, offset, reason);
        return bytes(code, _payload, end);
    }

    // The next action stands where Length says, also when fields were read from behind there. Bounded, since each byte
    // is then read by more than one action.
    void goBack(uint64_t end) {
        SwfContext& context = _stream.context;
        context.readAgain += _stream.position() > end ? _stream.position() - end : 0;
        if (context.readAgain > _mostReadAgain)
            _stream.fail("Length", "the actions overlap");
        _stream.seek(end);
    }

    // A body without its flag has no form.
    void checkTry(const SwfActionTry& action) {
        const bool catchFits = action.hasCatch(true) || action.catchSize == 0;
        const bool finallyFits = action.hasFinally(true) || action.finallySize == 0;
        if (_stream.context.keepRaw && !(catchFits && finallyFits))
            _stream.markInexact("its flags and sizes disagree");
    }

    // The classic form. `end` becomes the true end of a Try whose sizes add up, for its Length is cut to 16 bits.
    void readTryBodies(SwfActionTry& action, const PayloadScope& scope, uint64_t& end) {
        const bool hasCatch = action.hasCatch(false), hasFinally = action.hasFinally(false);
        _stream.setBodyEnd(scope.outerEnd);
        if (_stream.context.keepRaw) {
            // Settled before the bodies are read, so that a record of another layout costs no second reading.
            const uint64_t bodiesEnd = _stream.position() + action.trySize + action.catchSize + action.finallySize;
            const bool flagsFit = (action.flags & SwfActionTry::bits(false).reserved) == 0 &&
                                  hasCatch == (action.catchSize != 0) && hasFinally == (action.finallySize != 0);
            if (!flagsFit || bodiesEnd > _stream.limit() || ((bodiesEnd - end) & 0xFFFF) != 0) {
                _stream.markInexact("its flags and sizes are of another layout");
                return;
            }
            end = bodiesEnd;
            _stream.setBodyEnd(end);
        }
        _stream.context.actionDepth = static_cast<uint16_t>(_stream.context.actionDepth + _open.size() + 1);
        action.tryBody.readSized(_stream, action.trySize);
        if (hasCatch)
            action.catchBody.readSized(_stream, action.catchSize);
        if (hasFinally)
            action.finallyBody.readSized(_stream, action.finallySize);
    }

    void openBodies(uint64_t listEnd) {
        SwfAction* opener = _items.back().get();
        if (!isBlock(opener->type) && opener->type != SwfActionCode::Try)
            return;
        OpenBlock opened{_items.size() - 1, _payload, _stream.context.actionLength};
        uint64_t end = _stream.position();
        const auto add = [&](SwfActions& list, uint16_t size) {
            end += size;
            opened.bodies[opened.count++] = {&list, std::min(end, _stream.limit()), _items.size()};
        };
        if (isBlock(opener->type)) {
            if (auto* block = dynamic_cast<SwfActionBlock*>(opener))
                add(block->body, block->codeSize);
        } else if (opener->type == SwfActionCode::Try && _stream.context.fullForm) {
            if (auto* attempt = dynamic_cast<SwfActionTry*>(opener)) {
                add(attempt->tryBody, attempt->trySize);
                add(attempt->catchBody, attempt->catchSize);
                add(attempt->finallyBody, attempt->finallySize);
            }
        }
        if (opened.count == 0)
            return;
        if (_stream.context.keepRaw && end > (_open.empty() ? listEnd : _open.back().body().end))
            return turnIntoBytes(opened, "its body is longer than the list around it");
        opened.outer = _open.empty() ? 0 : _open.back().list;
        opened.list = _outline.startList(opened.outer, _stream.position());
        _open.push_back(opened);
    }

    void closeBodies() {
        while (!_open.empty() && _stream.position() >= _open.back().body().end) {
            OpenBlock& open = _open.back();
            const bool passesEnd = _stream.context.keepRaw && _stream.position() > open.body().end;
            _outline.endList(open.list, _stream.position());
            if (!passesEnd && open.current + 1 < open.count) {
                open.bodies[++open.current].first = _items.size();
                open.list = _outline.startList(open.outer, _stream.position());
                continue;
            }
            const OpenBlock closed = open;
            _open.pop_back();
            if (passesEnd)
                turnIntoBytes(closed, "the last action passes the end of its body");
            for (uint32_t i = closed.count; !passesEnd && i-- != 0;)
                moveTail(closed.bodies[i].first, *closed.bodies[i].list);
        }
    }

    void moveTail(size_t from, SwfActions& list) {
        list.reserve(uint64_t(list.size()) + _items.size() - from);
        for (size_t i = from; i < _items.size(); ++i)
            list.add(std::move(_items[i]));
        _items.resize(from);
    }

    void turnIntoBytes(const OpenBlock& block, const char* reason) {
        _outline.spoil();
        std::unique_ptr<SwfAction>& item = _items[block.index];
        warnKeptRaw(item->type, block.payload - item->headerSize(_stream.context), reason);
        const uint64_t position = _stream.position();
        item = bytes(item->type, block.payload, block.payload + block.length);
        _stream.seek(position);
    }

    std::unique_ptr<SwfAction> bytes(uint32_t code, uint64_t start, uint64_t end) {
        _stream.seek(start);
        return std::make_unique<SwfActionUnknown>(code, _stream.readPayload(end - start, "data"));
    }

    void warnKeptRaw(uint32_t code, uint64_t offset, const std::string& reason) {
        const SwfContext& context = _stream.context;
        if (context.warnings == nullptr)
            return;
        SwfWarning warning;
        warning.kind = SwfWarning::Kind::keptRaw;
        warning.tagCode = context.tagType;
        warning.tagName = tagName(context.tagType) + " > " + actionName(code);
        warning.path = tagPathText(_stream.tagPath);
        warning.offset = offset;
        warning.reason = reason;
        context.warnings->add(std::move(warning));
    }

    SwfIStream& _stream;
    OutlineNotes _outline;
    const uint64_t _mostReadAgain; // bytes, of all actions of the tag
    std::vector<std::unique_ptr<SwfAction>> _items;
    std::vector<OpenBlock> _open;
    uint64_t _payload = 0;  // where the payload of the record just read starts
    uint64_t _firstEnd = 0; // where the first record ends
};

} // namespace

std::unique_ptr<SwfAction> readAction(SwfIStream& stream) {
    ActionReader reader(stream);
    reader.read(stream.limit(), ActionReader::Stop::afterOne);
    std::unique_ptr<SwfAction> action = reader.takeFirst();
    if (action == nullptr)
        stream.fail("ActionCode", "data ends here");
    return action;
}

void SwfActions::readUntilEnd(SwfIStream& stream) {
    using Stop = ActionReader::Stop;
    ActionReader reader(stream);
    reader.read(stream.limit(), stream.context.fullForm ? Stop::atEnd : Stop::atEndAction);
    reader.moveTo(*this);
}

void SwfActions::readSized(SwfIStream& stream, uint64_t length) {
    const uint64_t end = std::min(stream.position() + length, stream.limit());
    ActionReader reader(stream);
    reader.read(end, ActionReader::Stop::atEnd);
    reader.moveTo(*this);
    if (stream.position() > end)
        stream.markInexact("the last action passes the end of its list");
}

} // namespace libswf
