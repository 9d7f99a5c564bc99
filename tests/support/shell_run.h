// A command run through the system's shell (sh, or cmd.exe on Windows),
// its standard output captured as bytes.
#pragma once

#include <cstdio>
#include <string>

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace korvex::testing {

struct ShellRun {
    int status = -1;  // the exit code; -1 when the command did not end normally
    std::string out;
};

inline ShellRun run_shell(const std::string& command) {
    ShellRun r;
#ifdef _WIN32
    // cmd.exe takes one pair of quotes off the whole line.
    FILE* p = _popen(("\"" + command + "\"").c_str(), "rb");
#else
    FILE* p = popen(command.c_str(), "r");
#endif
    if (!p) return r;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) r.out.append(buf, n);
#ifdef _WIN32
    r.status = _pclose(p);
#else
    const int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
#endif
    return r;
}

}  // namespace korvex::testing
