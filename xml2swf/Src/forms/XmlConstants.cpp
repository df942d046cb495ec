#include "XmlConstants.h"

#include <algorithm>
#include <iterator>

#include "TextHash.h"

namespace xml2swf {

using namespace libswf;

std::optional<uint32_t> ConstantIndices::find(std::string_view text, const SwfStrings& constants) const {
    if (_slots.empty())
        return {};
    const uint32_t hash = hashOfText(text);
    for (size_t at = hash; _slots[at &= _slots.size() - 1].index != free; ++at) {
        if (_slots[at].hash == hash && constants[_slots[at].index].view() == text)
            return _slots[at].index;
    }
    return {};
}

void ConstantIndices::put(Slot slot) {
    size_t at = slot.hash;
    while (_slots[at &= _slots.size() - 1].index != free)
        ++at;
    _slots[at] = slot;
}

void ConstantIndices::add(std::string_view text, uint32_t index) {
    if (++_count > _slots.size() / 2) {
        std::vector<Slot> taken;
        std::ranges::copy_if(_slots, std::back_inserter(taken), [](const Slot& slot) { return slot.index != free; });
        std::ranges::sort(taken, {}, &Slot::index); // the last one stays the one that no other one had to pass
        _slots.assign(std::max<size_t>(64, 2 * _slots.size()), {});
        for (const Slot& slot : taken)
            put(slot);
    }
    put({hashOfText(text), index});
}

void ConstantIndices::takeBack(std::string_view text, uint32_t index) {
    size_t at = hashOfText(text);
    while (_slots[at &= _slots.size() - 1].index != index)
        ++at;
    _slots[at] = {};
    --_count;
}

void ConstantsInForce::set(SwfActionConstantPool& pool) {
    _pool = &pool;
    _isLearned = false;
    ++_changes;
}

void ConstantsInForce::rewind(const Mark& mark) {
    if (_pool != mark.pool)
        _isLearned = false;
    _pool = mark.pool;
    _changes = mark.changes;
    if (_pool == nullptr)
        return;
    const SwfStrings& constants = _pool->constants;
    for (uint32_t i = constants.size(); _isLearned && i-- > mark.count;) {
        _indices.takeBack(constants[i].view(), i); // it was added, so no other one has this text
        _bytes -= constants[i].getSize(true);
    }
    _pool->constants.resize(mark.count);
}

void ConstantsInForce::learn() {
    const SwfStrings& constants = _pool->constants;
    _indices.clear();
    _bytes = 2;
    for (uint32_t i = 0; i < constants.size(); ++i) {
        if (!_indices.find(constants[i].view(), constants))
            _indices.add(constants[i].view(), i);
        _bytes += constants[i].getSize(true);
    }
    _isLearned = true;
}

std::optional<uint16_t> ConstantsInForce::indexOf(std::string_view text) {
    if (!_isLearned)
        learn();
    if (const auto found = _indices.find(text, _pool->constants))
        return static_cast<uint16_t>(*found);
    const uint32_t index = _pool->constants.size();
    const SwfString constant(text);
    if (index >= UINT16_MAX || _bytes + constant.getSize(true) > UINT16_MAX)
        return {};
    _bytes += constant.getSize(true);
    _pool->constants.append(constant);
    _indices.add(text, index);
    return static_cast<uint16_t>(index);
}

} // namespace xml2swf
