// Pieces of the texts that mkgmap reads in its own way, read the same way
// here (each checked against mkgmap's TYP of the same text).
#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::text;

namespace {

TEST(MkgmapDialect, StringLanguageIsHexOrDecimalRightUpToTheCommaAndTheTextKeepsLeadingBlanks) {
    model::Store s;
    model::newproject(s);
    const char* const cases[][2] = {{"String=2,Weg", "String1=0x02,Weg"},
                                    {"String=10,Ten", "String1=0x0A,Ten"},
                                    {"String=0x4,  Two", "String1=0x04,  Two"},
                                    {"String=b,bee", "String1=0x00,b,bee"},
                                    {"String=0x04 ,y", "String1=0x00,0x04 ,y"},
                                    {"String=1000,x", "String1=0x00,1000,x"}};
    for (const auto& c : cases) EXPECT_EQ(fnchkstringtxt(s, c[0], 1), c[1]) << c[0];
}

TEST(MkgmapDialect, DrawOrderLevelZeroIsALevelBelowOneAndASecondHeadIsNoEntry) {
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    draworder_fromtxt(s, ui, "[_drawOrder]\nType=0x4b,0\nType=0x10,1\nType=0x38,2\n[end]\n");
    EXPECT_EQ(s.drwlist, " 004B,1 0010,2 0038,3");
    // A commented-out head in front of the real one, as cgpsmapper templates have.
    draworder_fromtxt(s, ui, "[_DRAWORDER]\n;Polygon draw priority\n[_drawOrder]\nType=5,2\n[end]\n");
    EXPECT_EQ(s.drwlist, " 0005,2");
}

TEST(MkgmapDialect, SubtypeAbove1FKeepsItsLowFiveBitsInEveryClassAndIsReported) {
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    const std::string text =
        "[_id]\nFID=1\n[end]\n"
        "[_polygon]\nType=0x2b\nSubType=0x21\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]\n"
        "[_line]\nType=0x1f22\nLineWidth=2\nXpm=\"0 0 1 0\"\n\"a c #102030\"\n[end]\n"
        "[_point]\nType=0x2f20\nXpm=\"1 1 1 1\"\n\"a c #102030\"\n\"a\"\n[end]\n";
    load_txt(s, ui, "a.txt", text, false, true);
    ASSERT_EQ(s.pg_n + s.ln_n + s.pt_n, 3);
    EXPECT_EQ(s.pg_typ[0], "0x2B01");
    EXPECT_EQ(s.ln_code[0], 0x1F02);
    EXPECT_EQ(s.pt_typ[0], "02F00");
    EXPECT_NE(s.pt_txt[0].find("Type=0x2f00"), std::string::npos) << s.pt_txt[0];
    EXPECT_NE(s.loadrep.find("0x2b21 subtype above 0x1f: read as 0x2b01"), std::string::npos) << s.loadrep;
    EXPECT_NE(s.loadrep.find("0x1f22 subtype above 0x1f: read as 0x1f02"), std::string::npos) << s.loadrep;
    EXPECT_NE(s.loadrep.find("0x2f20 subtype above 0x1f: read as 0x2f00"), std::string::npos) << s.loadrep;
}

}  // namespace
