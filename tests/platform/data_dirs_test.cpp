#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "platform/data_dirs.h"
#include "support/harness.h"

namespace {

namespace fs = std::filesystem;
using korvex::platform::bundled_data_folder;

class BundledData : public ::testing::Test {
protected:
    void SetUp() override {
        root = fs::temp_directory_path() / ("korvex-data-dirs-" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root);
    }
    void TearDown() override { fs::remove_all(root); }
    // A folder under root, created.
    std::string folder(const std::string& relative) {
        fs::create_directories(root / relative);
        return (root / relative).string();
    }
    void write(const std::string& relative, const std::string& text) {
        std::ofstream(root / relative, std::ios::binary) << text;
    }
    // Where an install puts the data of a program in exe_folder.
    static fs::path installed(const fs::path& exe_folder) {
#ifdef _WIN32
        return exe_folder;
#else
        return (exe_folder / ".." / "share" / "korvex").lexically_normal();
#endif
    }
    fs::path root;
};

// The installed layouts: a prefix's bin/ finds its share/korvex, whatever the
// prefix, with or without a trailing separator, and whether or not the data
// is there (a missing folder still names the place looked at).
TEST_F(BundledData, APrefixFindsItsShareFolderPresentOrMissing) {
    const std::string usr_bin = folder("usr/bin");
    folder("usr/share/korvex/languages");
    const std::string opt_bin = folder("opt/korvex/bin");
    for (const std::string& exe : {usr_bin, opt_bin, opt_bin + "/"}) {
        SCOPED_TRACE(exe);
        EXPECT_EQ(fs::path(bundled_data_folder(exe)), installed(fs::path(exe).lexically_normal()));
    }
    EXPECT_FALSE(fs::exists(root / "opt/korvex/share")) << "a lookup created the folder";
    const std::string gone = (root / "nowhere/bin").string();
    EXPECT_EQ(fs::path(bundled_data_folder(gone)), installed(gone));
    EXPECT_EQ(bundled_data_folder(""), "");
}

// The source tree is reached only from a build folder whose checkout still
// has its data: a moved checkout, a cache without its source entry, or a
// cache that only mentions the entry inside another line all give the
// installed layout.
TEST_F(BundledData, TheSourceTreeIsOnlyTheFallbackOfABuildFolder) {
    const std::string checkout = folder("src/korvex");
    folder("src/korvex/data/pal");
    const std::string build = folder("src/korvex/build");
    write("src/korvex/build/CMakeCache.txt",
          "# This is the CMakeCache file.\nCMAKE_BUILD_TYPE:STRING=Release\r\nCMAKE_HOME_DIRECTORY:INTERNAL=" +
              checkout + "\r\nCMAKE_INSTALL_PREFIX:PATH=/usr\n");
    EXPECT_TRUE(fs::equivalent(bundled_data_folder(build), fs::path(checkout) / "data"));

    const std::string moved = folder("moved/build");
    write("moved/build/CMakeCache.txt", "CMAKE_HOME_DIRECTORY:INTERNAL=" + (root / "gone").string() + "\n");
    EXPECT_EQ(fs::path(bundled_data_folder(moved)), installed(moved));

    const std::string odd = folder("odd/build");
    write("odd/build/CMakeCache.txt", "OTHER_CMAKE_HOME_DIRECTORY:INTERNAL=" + checkout + "\n");
    EXPECT_EQ(fs::path(bundled_data_folder(odd)), installed(odd));
}

// The real thing: the tests run from their build folder, beside the CLI, and
// find the checkout's data.
TEST(ProgramFolder, TheTestsRunFromTheBuildFolderThatFindsTheCheckoutsData) {
    const std::string here = korvex::platform::program_folder();
    ASSERT_FALSE(here.empty());
    EXPECT_TRUE(fs::equivalent(here, fs::path(korvex::testing::cli_path()).parent_path()));
    EXPECT_TRUE(fs::equivalent(bundled_data_folder(here), fs::path(korvex::testing::source_dir()) / "data"));
}

}  // namespace

namespace {

// A bundled file named either way, with "/" or "\", is found under the
// system's own separator.
TEST(BundledPath, EitherSeparatorBecomesTheSystemsOwn) {
    const std::string sep(1, fs::path::preferred_separator);
    for (const char* relative : {"themes/tdat", "themes\\tdat"})
        EXPECT_EQ(korvex::platform::bundled_path("share" + sep + "korvex", relative),
                  "share" + sep + "korvex" + sep + "themes" + sep + "tdat")
            << relative;
}

}  // namespace
