#include "XmlConstants.h"

namespace xml2swf {

using namespace libswf;

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
    for (uint32_t i = mark.count; _isLearned && i < _pool->constants.size(); ++i) {
        _indices.erase(i); // it was added, so no other one has this text
        _bytes -= _pool->constants[i].getSize(true);
    }
    _pool->constants.resize(mark.count);
}

void ConstantsInForce::learn() {
    const SwfStrings& constants = _pool->constants;
    _indices = decltype(_indices)(constants.size(), ConstantByText{&constants}, ConstantByText{&constants});
    _bytes = 2;
    for (uint32_t i = 0; i < constants.size(); ++i) {
        _indices.insert(i);
        _bytes += constants[i].getSize(true);
    }
    _isLearned = true;
}

std::optional<uint16_t> ConstantsInForce::indexOf(std::string_view text) {
    if (!_isLearned)
        learn();
    const auto found = _indices.find(text);
    if (found != _indices.end())
        return static_cast<uint16_t>(*found);
    const uint32_t index = _pool->constants.size();
    const SwfString constant(text);
    if (index >= UINT16_MAX || _bytes + constant.getSize(true) > UINT16_MAX)
        return {};
    _bytes += constant.getSize(true);
    _pool->constants.append(constant);
    _indices.insert(index);
    return static_cast<uint16_t>(index);
}

} // namespace xml2swf
