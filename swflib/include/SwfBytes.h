// A run of bytes inside a tag: image, sound, script or raw data.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace libswf {

/// Bytes that do not change while others refer to them. Refers to the buffer of the movie they came from where that
/// buffer is shared, so that a payload is not copied on its way through; copying an SwfBytes never copies the bytes.
class SwfBytes {
public:
    SwfBytes() = default;

    static SwfBytes copyOf(std::span<const uint8_t> bytes) {
        return adopt(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    }
    static SwfBytes adopt(std::vector<uint8_t> bytes) {
        auto owner = std::make_shared<std::vector<uint8_t>>(std::move(bytes));
        SwfBytes result;
        result._size = owner->size();
        const uint8_t* data = owner->data();
        result._data = std::shared_ptr<const uint8_t>(std::move(owner), data);
        result._isAdopted = true;
        return result;
    }
    static SwfBytes share(const std::shared_ptr<const uint8_t>& buffer, const uint8_t* data, size_t size) {
        SwfBytes result;
        result._data = std::shared_ptr<const uint8_t>(buffer, data);
        result._size = size;
        return result;
    }

    const uint8_t* data() const { return _data.get(); }
    size_t size() const { return _size; }
    bool empty() const { return _size == 0; }
    std::span<const uint8_t> span() const { return {_data.get(), _size}; }
    /// To change them: these are a copy from then on, if anyone else may refer to them.
    std::span<uint8_t> own() {
        if (!_isAdopted || _data.use_count() != 1)
            *this = copyOf(span());
        return {const_cast<uint8_t*>(_data.get()), _size};
    }
    SwfBytes part(size_t offset, size_t size) const { return share(_data, _data.get() + offset, size); }

    friend bool operator==(const SwfBytes& a, const SwfBytes& b) {
        return a._size == b._size && (a._size == 0 || std::memcmp(a.data(), b.data(), a._size) == 0);
    }

private:
    std::shared_ptr<const uint8_t> _data;
    size_t _size = 0;
    bool _isAdopted = false; // a block of memory of their own
};

} // namespace libswf
