// Roots of the object model.
#pragma once

#include <cstdint>

namespace libswf {

class SwfOStream;
struct SwfContext;

/// Anything with an encoded size. The size is the one last worked out by getSize, in bytes.
class SwfObject {
public:
    /// Recomputes derived fields (counts, flags) before sizes are measured.
    virtual void prepare() {}

    uint32_t size = 0;

protected:
    SwfObject() = default;
    SwfObject(const SwfObject&) = default;
    SwfObject& operator=(const SwfObject&) = default;
    virtual ~SwfObject() = default;
};

/// Base of all records. A record reads itself in a constructor from SwfIStream, measures itself with getSize and writes
/// itself with write.
class SwfStruct : public SwfObject {
protected:
    SwfStruct() = default;
    ~SwfStruct() = default;
    SwfStruct(const SwfStruct&) = default;
    SwfStruct& operator=(const SwfStruct&) = default;
};

} // namespace libswf
