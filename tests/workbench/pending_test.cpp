#include "workbench/pending.h"

#include <gtest/gtest.h>

namespace korvex::workbench {
namespace {

TEST(PendingFile, QuotesAndLineEndsGoAndOnlyFullPathsCount) {
    EXPECT_EQ(clean_pending("\"c:\\maps\\a.typ\"\r\n", '\\'), "c:\\maps\\a.typ");
    EXPECT_EQ(clean_pending(std::string("c:\\a\0\b.typ", 10), '\\'), "c:\\a.typ");
    EXPECT_EQ(clean_pending("\\maps\\a.typ", '\\'), "");  // no drive
    EXPECT_EQ(clean_pending("\"/maps/a b.typ\"\n", '/'), "/maps/a b.typ");
    EXPECT_EQ(clean_pending("maps/a.typ", '/'), "");
}

}  // namespace
}  // namespace korvex::workbench
