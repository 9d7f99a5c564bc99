// korvex-cli run through the shell, and a folder of files for one test.
#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/harness.h"

namespace korvex::testing::cli_fixture {

namespace fs = std::filesystem;

struct CliRun {
    int status = -1;
    std::string out;
};

// Runs the tool through the shell; standard error is folded into out when
// asked, else dropped.
inline CliRun cli(const std::string& args, bool with_stderr = false, const std::string& env = "") {
    std::string cmd = env + " '" + korvex::testing::cli_path() + "' " + args + (with_stderr ? " 2>&1" : " 2>/dev/null");
    CliRun r;
    FILE* p = popen(cmd.c_str(), "r");
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
    int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

class CliTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("korvex-cli-" + std::to_string(::getpid()));
        fs::create_directories(dir);
        sample = source_dir() + "/data/samples/sample.typ";
    }
    void TearDown() override { fs::remove_all(dir); }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    // Puts the bytes into a file of the test's folder.
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream f(path(name), std::ios::binary | std::ios::trunc);
        f << bytes;
    }
    fs::path dir;
    std::string sample;
};

}  // namespace korvex::testing::cli_fixture
