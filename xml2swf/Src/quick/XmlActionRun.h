// Actions being read, which may become bytes at once: a fifth faster than objects that are written later (README.md).
#pragma once

#include <memory>
#include <optional>

#include "SwfAction.h"
#include "XmlElement.h"

namespace xml2swf {

/// Where the actions of one document become bytes, for one thread.
class ActionBytes {
public:
    ActionBytes() : _counter(libswf::SwfOStream::counter({})) {}

private:
    friend class ActionRun;
    static constexpr uint32_t capacity = 32 * 1024;
    libswf::SwfOStream _stream{capacity};
    libswf::SwfOStream _counter;
};

/// A list being filled. Where the context has room for bytes, actions are written there and let go, and the list gets
/// them as blocks; one that cannot be written, or only with a warning, stays as it is until the movie is written. So
/// does a pool that may still take constants by their text.
class ActionRun {
public:
    ActionRun(XmlReadContext& context, libswf::SwfActions& actions);
    /// What was not finished is forgotten.
    ~ActionRun();
    ActionRun(const ActionRun&) = delete;
    ActionRun& operator=(const ActionRun&) = delete;

    void add(std::unique_ptr<libswf::SwfAction> action);
    /// After the last one.
    void finish();

    /// The bytes of a finished list; nothing when it holds what stays an object until the movie is written.
    static std::optional<libswf::SwfBytes> joined(XmlReadContext& context, const libswf::SwfActions& actions);

private:
    bool write(libswf::SwfAction& action);

    ActionBytes* const _bytes;
    const uint64_t _start; // of what was not handed to the list yet
    bool _isFull;
    libswf::SwfActions& _actions;
};

} // namespace xml2swf
