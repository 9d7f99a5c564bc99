// korvex-cli run through the shell, and a folder of files for one test.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.h"
#include "support/shell_run.h"

namespace korvex::testing::cli_fixture {

namespace fs = std::filesystem;

using CliRun = ShellRun;

#ifdef _WIN32
// cmd.exe quotes with double quotes only and has no "NAME=value command":
// the variables are set in this process for the child to inherit, and taken
// away again after it.
inline CliRun cli(const std::string& args, bool with_stderr = false, const std::string& env = "") {
    std::string program = korvex::testing::cli_path();
    for (char& c : program)
        if (c == '/') c = '\\';
    std::string quoted = args;
    for (char& c : quoted)
        if (c == '\'') c = '"';
    std::istringstream vars(env);
    std::vector<std::string> names;
    for (std::string var; vars >> var;) {
        const size_t eq = var.find('=');
        names.push_back(var.substr(0, eq));
        _putenv_s(names.back().c_str(), var.substr(eq + 1).c_str());
    }
    CliRun r = run_shell("\"" + program + "\" " + quoted + (with_stderr ? " 2>&1" : " 2>NUL"));
    for (const std::string& name : names) _putenv_s(name.c_str(), "");
    return r;
}
#else
// Runs the tool through the shell; standard error is folded into out when
// asked, else dropped.
inline CliRun cli(const std::string& args, bool with_stderr = false, const std::string& env = "") {
    return run_shell(env + " '" + korvex::testing::cli_path() + "' " + args + (with_stderr ? " 2>&1" : " 2>/dev/null"));
}
#endif

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
