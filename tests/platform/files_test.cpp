#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/codepage.h"
#include "platform/files.h"
#include "platform/native_path.h"

using namespace korvex::platform;
namespace fs = std::filesystem;

namespace {

#ifdef _WIN32
const char* const k_null_device = "NUL";
#else
const char* const k_null_device = "/dev/null";
#endif

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

// A name is UTF-8 inside the program and the same characters on disk: on
// Windows it must not pass through the local code page.
TEST_F(Files, NamesBeyondAsciiAreWrittenReplacedAndReadUnderTheirOwnName) {
    const std::string name = "Stra\xC3\x9F" "e \xD0\x94\xE2\x82\xAC.typ";
    const std::string target = utf8_path(dir) + "/" + name;
    ASSERT_TRUE(write_file_atomic(target, "old"));
    ASSERT_TRUE(write_file_atomic(target, "new"));
    EXPECT_TRUE(file_exists(target));
    EXPECT_EQ(read_file(target).value_or(""), "new");
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.push_back(utf8_path(e.path().filename()));
    EXPECT_EQ(names, std::vector<std::string>{name});
    EXPECT_TRUE(fs::exists(native_path(target)));
}

TEST_F(Files, SavingThroughALinkUpdatesTheFileItNames) {
#ifdef _WIN32
    GTEST_SKIP() << "Wine cannot make symbolic links, and Windows only with a privilege";
#endif
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
    EXPECT_TRUE(write_file_atomic(k_null_device, "nothing", &error)) << error;
#ifndef _WIN32
    EXPECT_TRUE(fs::is_character_file(k_null_device));
#endif
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
    AtomicWriter null(k_null_device);
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
