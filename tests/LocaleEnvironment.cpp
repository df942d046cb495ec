// The tests run in the user's locale, as programs with windows do: decimal commas and grouped digits change nothing.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <locale>

namespace {

class UserLocale : public testing::Environment {
    void SetUp() override {
        const char* name = std::setlocale(LC_ALL, "");
#ifndef _WIN32 // The C++ library knows the "C" locale only there.
        if (name != nullptr)
            std::locale::global(std::locale(""));
#endif
        // A locale that is not installed would leave "C" in place, and nothing would be tested.
        if (const char* point = std::getenv("ZELK_DECIMAL_POINT")) {
            ASSERT_NE(name, nullptr);
            ASSERT_STREQ(std::localeconv()->decimal_point, point) << name;
        }
    }
};

[[maybe_unused]] const auto* userLocale = testing::AddGlobalTestEnvironment(new UserLocale);

} // namespace
