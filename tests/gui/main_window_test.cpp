#include <gtest/gtest.h>

#include "gui/main_window.h"

namespace {

TEST(MainWindow, Opens) {
    korvex::gui::MainWindow w;
    w.show();
    EXPECT_TRUE(w.isVisible());
}

}  // namespace
