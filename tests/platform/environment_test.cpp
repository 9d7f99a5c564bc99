#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace korvex::platform {
namespace {

// A value beyond ASCII (a user folder "Jürgen") reads as UTF-8 like every
// other path of the program, whatever the system's own page; a missing
// variable reads as empty.
TEST(SystemEnvironment, ValuesReadAsUtf8) {
#ifdef _WIN32
    ASSERT_EQ(_wputenv_s(L"KORVEX_TEST_HOME", L"C:\\Users\\J\u00FCrgen\u0416"), 0);
    const std::string expected = "C:\\Users\\J\xC3\xBCrgen\xD0\x96";
#else
    const std::string expected = "/home/J\xC3\xBCrgen\xD0\x96";
    ASSERT_EQ(setenv("KORVEX_TEST_HOME", expected.c_str(), 1), 0);
#endif
    const SystemEnvironment env;
    EXPECT_EQ(env.get("KORVEX_TEST_HOME"), expected);
    EXPECT_EQ(env.get("KORVEX_TEST_NOT_SET"), "");
}

}  // namespace
}  // namespace korvex::platform
