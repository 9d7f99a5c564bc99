#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/codepage.h"
#include "platform/files.h"

using namespace korvex::platform;
namespace fs = std::filesystem;

namespace {

class Files : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("korvex-files-" + std::to_string(::getpid()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    size_t entries() const {
        size_t n = 0;
        for (auto& e : fs::directory_iterator(dir)) (void)e, ++n;
        return n;
    }
    fs::path dir;
};

TEST_F(Files, AbandonedWriteKeepsTheOldFileAndLeavesNoTemporary) {
    const std::string target = (dir / "a.typ").string();
    ASSERT_TRUE(write_file_atomic(target, "old"));
    {
        AtomicWriter w(target);
        w.write("half of the new");
    }  // never committed
    EXPECT_EQ(read_file(target).value_or(""), "old");
    EXPECT_EQ(entries(), 1u);
    ASSERT_TRUE(write_file_atomic(target, "new"));
    EXPECT_EQ(read_file(target).value_or(""), "new");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(Files, MissingFolderFailsWithAReason) {
    std::string error;
    EXPECT_FALSE(write_file_atomic((dir / "no" / "such.typ").string(), "x", &error));
    EXPECT_FALSE(error.empty());
}

TEST_F(Files, SavingThroughALinkUpdatesTheFileItNames) {
    fs::create_directories(dir / "maps");
    ASSERT_TRUE(write_file_atomic((dir / "maps" / "real.typ").string(), "old"));
    fs::create_symlink("maps/real.typ", dir / "link.typ");
    ASSERT_TRUE(write_file_atomic((dir / "link.typ").string(), "new"));
    EXPECT_TRUE(fs::is_symlink(dir / "link.typ"));
    EXPECT_EQ(read_file((dir / "maps" / "real.typ").string()).value_or(""), "new");
    EXPECT_EQ(entries(), 2u);
}

TEST_F(Files, DevicesAreWrittenInPlace) {
    std::string error;
    EXPECT_TRUE(write_file_atomic("/dev/null", "nothing", &error)) << error;
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

// Skipped bytes read as zeros, in the middle and at the end of a file, and
// a device gets them written.
TEST_F(Files, SkippedBytesReadAsZerosWhereverTheyLie) {
    const std::string target = (dir / "holes.img").string();
    AtomicWriter w(target);
    w.write("ab");
    w.skip(100000);
    w.write("c");
    w.skip(70000);
    ASSERT_TRUE(w.commit()) << w.error();
    const std::string got = read_file(target).value_or("");
    EXPECT_EQ(got, "ab" + std::string(100000, '\0') + "c" + std::string(70000, '\0'));
    AtomicWriter null("/dev/null");
    null.skip(70000);
    EXPECT_TRUE(null.commit()) << null.error();
}

TEST(Codepage, ConvertsBetweenPagesAndUtf8) {
    EXPECT_EQ(recode("\xE4", 1252, 65001), "\xC3\xA4");
    EXPECT_EQ(recode("\xC3\xA4", 65001, 1252), "\xE4");
    EXPECT_EQ(recode("\xC4\xE8", 1251, 65001), "\xD0\x94\xD0\xB8");
    // A character outside the page becomes "?".
    EXPECT_EQ(recode("\xE2\x82\xAC\xD0\x94", 65001, 1252), "\x80?");
    EXPECT_EQ(iconv_name(65001), "UTF-8");
    EXPECT_EQ(iconv_name(1250), "CP1250");
    EXPECT_TRUE(is_valid_utf8("Stra\xC3\x9F" "e"));
    EXPECT_FALSE(is_valid_utf8("Stra\xDF" "e"));
    EXPECT_TRUE(is_valid_utf8("\xEF\xBF\xBD"));       // U+FFFD itself is valid
    EXPECT_FALSE(is_valid_utf8("\xC0\xAF"));           // overlong
    EXPECT_FALSE(is_valid_utf8("\xED\xA0\x80"));       // surrogate
    EXPECT_FALSE(is_valid_utf8("\xF4\x90\x80\x80"));   // above U+10FFFF
    EXPECT_FALSE(is_valid_utf8("\xE2\x82"));           // cut short
}

}  // namespace
