#include "XmlActionRun.h"

#include <typeinfo>

#include "SwfActionsPayload.h"

namespace xml2swf {

using namespace libswf;

ActionRun::ActionRun(XmlReadContext& context, SwfActions& actions)
    : _bytes(context.actionBytes), _start(_bytes != nullptr ? _bytes->_stream.written() : 0), _isFull(context.fullForm),
      _actions(actions) {
    if (_bytes != nullptr)
        _bytes->_stream.context.fullForm = _bytes->_counter.context.fullForm = context.fullForm;
}

ActionRun::~ActionRun() {
    if (_bytes != nullptr)
        _bytes->_stream.rewind(_start);
}

void ActionRun::add(std::unique_ptr<SwfAction> action) {
    const bool takesConstants = _isFull && action->type == SwfActionCode::ConstantPool;
    if (_bytes != nullptr && !takesConstants && write(*action))
        return;
    finish();
    _actions.add(std::move(action));
}

bool ActionRun::write(SwfAction& action) {
    SwfOStream& stream = _bytes->_stream;
    uint64_t before = stream.written();
    try {
        action.measure(_bytes->_counter);
        if (action.size > UINT16_MAX)
            return false; // one of its fields may have to be cut: that is told when the movie is written
        const uint32_t size = action.headerSize(stream.context) + action.size;
        if (size > stream.capacity() - stream.size())
            finish();
        if (size > stream.capacity() - stream.size())
            return false;
        before = stream.written();
        action.write(stream);
        return true;
    } catch (const SwfException&) {
        stream.rewind(before); // the reason is told when the movie is written, with the tag's place
        return false;
    }
}

void ActionRun::finish() {
    if (_bytes == nullptr || _bytes->_stream.written() == _start)
        return;
    const SwfOStream& stream = _bytes->_stream;
    const auto block = std::span(stream.begin(), stream.end()).subspan(_start);
    _actions.add(std::make_unique<SwfActionCompiled>(SwfBytes::copyOf(block)));
    _bytes->_stream.rewind(_start);
}

static bool isBytes(const SwfAction& action) { return typeid(action) == typeid(SwfActionCompiled); }

std::optional<SwfBytes> ActionRun::joined(XmlReadContext& context, const SwfActions& actions) {
    if (actions.empty())
        return SwfBytes();
    if (actions.size() == 1 && isBytes(*actions[0]))
        return static_cast<const SwfActionCompiled&>(*actions[0]).records;
    // Only pools stand between the blocks.
    SwfActions whole;
    {
        ActionRun run(context, whole);
        run._isFull = false;
        for (SwfAction* action : actions) {
            const bool isPool = typeid(*action) == typeid(SwfActionConstantPool);
            if (!(isPool || isBytes(*action)) || !run.write(*action))
                return {};
        }
        run.finish();
    }
    if (whole.size() != 1)
        return {};
    return static_cast<const SwfActionCompiled&>(*whole[0]).records;
}

} // namespace xml2swf
