// The system's clipboard, for tags.
#pragma once

#include "Session.h"

namespace zelk {

class SystemClipboard : public IClipboard {
public:
    static constexpr const char* tagsFormat = "application/x-zelk-tags+xml";

    /// Stands beside the tags when they came from a text in the full form.
    static constexpr const char* fullFormat = "application/x-zelk-full-form";

    bool setTags(const std::string& elements, bool fullForm) override;
    std::optional<std::string> tags() override;
    bool tagsAreFull() override;
    std::string plainText() override;
};

} // namespace zelk
