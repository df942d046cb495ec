// The growable array that every collection of the object model is built on.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace libswf {

/// An internal invariant that does not hold. Checked in every build, because edited XML can reach the invariants; the
/// text is the expression that failed.
class SwfAssertionFailure : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

[[noreturn]] void assertionFailed(const char* expression);

inline void swfAssert(bool holds, const char* expression) {
    if (!holds) [[unlikely]]
        assertionFailed(expression);
}

/// How attach() takes over a buffer.
enum class SwfAttach : uint8_t {
    borrow = 0, ///< the caller keeps the buffer and frees it
    adopt = 1,  ///< this object frees the buffer, which came from new[]
    copy = 2    ///< the contents are copied into a buffer of its own
};

/// Array of T in one block from new[]. Sizes are in elements and fit 32 bits.
template <class T>
class SwfVector {
public:
    SwfVector() = default;
    SwfVector(const SwfVector&) = delete;
    SwfVector& operator=(const SwfVector&) = delete;
    SwfVector(SwfVector&& other) noexcept { swap(other); }
    SwfVector& operator=(SwfVector&& other) noexcept {
        swap(other);
        return *this;
    }
    virtual ~SwfVector() { freeBuffer(); }

    /// Releases the elements; the array is empty afterwards.
    virtual void clear() {
        freeBuffer();
        _data = nullptr;
        _size = _capacity = 0;
        _owned = false;
    }

    uint32_t size() const { return _size; }
    uint32_t capacity() const { return _capacity; }
    bool empty() const { return _size == 0; }
    bool owned() const { return _owned; }
    T* data() { return _data; }
    const T* data() const { return _data; }
    T* begin() { return _data; }
    T* end() { return _data + _size; }
    const T* begin() const { return _data; }
    const T* end() const { return _data + _size; }

    T& operator[](uint64_t index) {
        checkIndex(index);
        return _data[index];
    }
    const T& operator[](uint64_t index) const {
        checkIndex(index);
        return _data[index];
    }

    /// Makes room for exactly `count` elements; never shrinks.
    void reserve(uint64_t count) {
        if (count <= _capacity)
            return;
        swfAssert(count <= UINT32_MAX, "Size <= Capacity");
        std::unique_ptr<T[]> grown(new T[static_cast<size_t>(count)]);
        std::move(_data, _data + _size, grown.get());
        freeBuffer();
        _data = grown.release();
        _capacity = static_cast<uint32_t>(count);
        _owned = true;
    }

    void resize(uint64_t count) {
        reserve(count);
        _size = static_cast<uint32_t>(count);
        swfAssert(_size <= _capacity, "Size <= Capacity");
    }

    /// Appends one element; room grows by half, so that a long list costs linear time.
    T& append(T value) {
        if (_size == _capacity)
            reserve(std::max<uint64_t>(4, uint64_t(_capacity) + _capacity / 2));
        _data[_size] = std::move(value);
        return _data[_size++];
    }

    void attach(T* data, uint32_t length, SwfAttach mode) {
        clear();
        if (mode == SwfAttach::copy) {
            reserve(length);
            std::copy(data, data + length, _data);
        } else {
            _data = data;
            _capacity = length;
            _owned = mode == SwfAttach::adopt;
        }
        _size = length;
    }

    /// Hands the block to the caller, who frees it with delete[].
    T* detach() {
        T* data = _data;
        _data = nullptr;
        _size = _capacity = 0;
        _owned = false;
        return data;
    }

protected:
    void swap(SwfVector& other) noexcept {
        std::swap(_data, other._data);
        std::swap(_size, other._size);
        std::swap(_capacity, other._capacity);
        std::swap(_owned, other._owned);
    }

    T* _data = nullptr;
    uint32_t _size = 0;
    uint32_t _capacity = 0;
    bool _owned = false;

private:
    void freeBuffer() {
        if (_owned)
            delete[] _data;
    }
    void checkIndex(uint64_t index) const {
        swfAssert(_data != nullptr, "Data");
        swfAssert(index < _size, "index < Size");
    }
};

/// Array that owns what its pointers point to.
template <class P>
class SwfPtrVector : public SwfVector<P> {
public:
    using Item = std::remove_pointer_t<P>;

    SwfPtrVector() = default;
    SwfPtrVector(SwfPtrVector&& other) noexcept : SwfVector<P>(std::move(other)) {}
    SwfPtrVector& operator=(SwfPtrVector&& other) noexcept {
        this->swap(other);
        return *this;
    }
    ~SwfPtrVector() override { deleteItems(); }

    void clear() override {
        deleteItems();
        SwfVector<P>::clear();
    }

    Item& add(std::unique_ptr<Item> item) {
        SwfVector<P>::append(item.get());
        return *item.release();
    }

private:
    using SwfVector<P>::append;

    // The last one first: its memory may be the one that was asked for last.
    void deleteItems() {
        for (uint32_t i = this->size(); i != 0; --i)
            delete this->data()[i - 1];
    }
};

} // namespace libswf
