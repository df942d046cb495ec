// The system's clipboard, for tags.
#pragma once

#include "Session.h"

namespace zelk {

class SystemClipboard : public IClipboard {
public:
    static constexpr const char* tagsFormat = "application/x-zelk-tags+xml";

    bool setTags(const std::string& elements) override;
    std::optional<std::string> tags() override;
    std::string plainText() override;
};

} // namespace zelk
