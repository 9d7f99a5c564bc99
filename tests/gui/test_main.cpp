// The window tests need one QApplication for the whole run; without a display
// they draw offscreen.
#include <QApplication>
#include <cstring>

#include <gtest/gtest.h>

// Under the leak checker: allocations Qt, fontconfig and the graphics stack
// keep until the process ends are theirs, not the tests'.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n"
           "leak:libQt6Core\n"
           "leak:libQt6Gui\n"
           "leak:libQt6Widgets\n"
           "leak:libqoffscreen\n"
           "leak:libglib\n"
           "leak:libdbus\n";
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    // Listing the tests (the build does it to register them) needs no window system.
    if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
