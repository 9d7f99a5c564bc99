#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "model/store.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "typ/encoder.h"

using namespace korvex;
using platform::FaultyFileSystem;
namespace fs = std::filesystem;

namespace {

// A save into a folder that holds the user's previous file: whatever fails,
// that file keeps its bytes and the folder holds nothing else.
class SaveFault : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("korvex-faults-" + std::to_string(::getpid()));
        fs::create_directories(dir);
        target = (dir / "map.typ").string();
        ASSERT_TRUE(platform::write_file_atomic(target, k_old));
        s.curf = std::string(100000, 'N');  // large enough to take several writes
    }
    void TearDown() override {
        fs::permissions(dir, fs::perms::owner_all);
        fs::remove_all(dir);
    }
    // The message the user sees, after checking that nothing was lost.
    std::string save_failing(platform::FileSystem& files) {
        platform::ScriptedPrompt ui;
        EXPECT_FALSE(typ::SaveFile(s, ui, target, files));
        EXPECT_EQ(platform::read_file(target).value_or("gone"), k_old);
        size_t entries = 0;
        for (auto& e : fs::directory_iterator(dir)) (void)e, ++entries;
        EXPECT_EQ(entries, 1u) << "a temporary file was left";
        return ui.messages.empty() ? "" : ui.messages.back();
    }
    std::string expected(int err) const { return "Cannot save " + target + ": " + std::strerror(err); }

    const std::string k_old = std::string("the user's work\r\n\0\x01", 19);
    fs::path dir;
    std::string target;
    model::Store s;
};

TEST_F(SaveFault, WriteFailingInTheMiddleKeepsTheOldFile) {
    FaultyFileSystem files(FaultyFileSystem::Op::write, EIO, 4096);
    EXPECT_EQ(save_failing(files), expected(EIO));
}

TEST_F(SaveFault, FullDiskKeepsTheOldFile) {
    FaultyFileSystem files(FaultyFileSystem::Op::write, ENOSPC, 70000);
    EXPECT_EQ(save_failing(files), "Cannot save " + target + ": No space left on device");
}

TEST_F(SaveFault, FlushOrCloseFailingKeepsTheOldFile) {
    FaultyFileSystem sync(FaultyFileSystem::Op::sync, EIO);
    EXPECT_EQ(save_failing(sync), expected(EIO));
    FaultyFileSystem close(FaultyFileSystem::Op::close, ENOSPC);
    EXPECT_EQ(save_failing(close), expected(ENOSPC));
}

TEST_F(SaveFault, RenameFailingKeepsTheOldFile) {
    FaultyFileSystem files(FaultyFileSystem::Op::replace, EBUSY);
    EXPECT_EQ(save_failing(files), expected(EBUSY));
}

TEST_F(SaveFault, ReadOnlyFolderKeepsTheOldFile) {
    fs::permissions(dir, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                             fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
    // Permissions do not stop the superuser; the refusal is then injected.
    const std::string probe = (dir / "probe").string();
    const bool folder_refuses = !std::ofstream(probe);
    fs::remove(probe);
    FaultyFileSystem refusing(FaultyFileSystem::Op::create, EACCES);
    FaultyFileSystem real(FaultyFileSystem::Op::none, 0);
    EXPECT_EQ(save_failing(folder_refuses ? static_cast<platform::FileSystem&>(real) : refusing),
              expected(EACCES));
}

TEST_F(SaveFault, SaveAfterAFailureReplacesTheFileAndKeepsItsPermissions) {
    FaultyFileSystem full(FaultyFileSystem::Op::write, ENOSPC, 10);
    save_failing(full);
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    platform::ScriptedPrompt ui;
    ASSERT_TRUE(typ::SaveFile(s, ui, target));
    EXPECT_EQ(platform::read_file(target).value_or(""), s.curf);
#ifndef _WIN32  // Windows keeps no owner/group/other modes, only a read-only mark
    EXPECT_EQ(fs::status(target).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
#endif
}

}  // namespace
