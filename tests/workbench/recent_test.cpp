#include "workbench/recent.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include "support/path_text.h"

namespace korvex::workbench {
namespace {

TEST(RecentList, MovesInsertsDropsAndIgnoresPathsItCannotReopen) {
    RecentList list;
    for (int i = 0; i < k_recent_count; ++i) updatmff(list, "/f" + std::to_string(i), '/');
    EXPECT_EQ(list[0], "/f11");
    EXPECT_EQ(list[11], "/f0");
    updatmff(list, "/f5", '/');  // found: the entries above it move down one
    EXPECT_EQ(list[0], "/f5");
    EXPECT_EQ(list[1], "/f11");
    EXPECT_EQ(list[6], "/f6");
    EXPECT_EQ(list[7], "/f4");
    updatmff(list, "\\new", '/');  // absent: the last drops
    EXPECT_EQ(list[0], "/new");
    EXPECT_EQ(list[11], "/f1");
    updatmff(list, "relative.typ", '/');
    EXPECT_EQ(list[0], "/new");

    RecentList win;
    updatmff(win, "c:/maps/a.typ", '\\');
    updatmff(win, "\\server\\b.typ", '\\');
    EXPECT_EQ(win[0], "c:\\maps\\a.typ");
    EXPECT_EQ(win[1], "");
}

TEST(RecentList, BlankEntriesHiddenMissingFilesGreyedButKept) {
    const std::string dir = ::testing::TempDir() + "korvex_recent_test";
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/there.typ") << "x";
    std::filesystem::remove(dir + "/gone.typ");
    RecentList list;
    list[0] = dir + "/there.typ";
    list[1] = dir + "/gone.typ";
    list[2] = " ";
    const auto e = recent_entries(list);
    ASSERT_EQ(e.size(), 12u);
    EXPECT_TRUE(e[0].visible);
    EXPECT_FALSE(e[0].greyed);
    EXPECT_TRUE(e[1].visible);
    EXPECT_TRUE(e[1].greyed);
    EXPECT_EQ(e[1].path, testing::preferred(dir + "/gone.typ"));
    EXPECT_FALSE(e[2].visible);
    EXPECT_FALSE(e[11].visible);
}

}  // namespace
}  // namespace korvex::workbench
