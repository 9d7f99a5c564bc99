#include "platform/launcher.h"

#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace korvex::platform {

bool SystemLauncher::open(const std::string& path) {
    std::string program = "xdg-open";
    std::string argument = path;
    char* argv[] = {program.data(), argument.data(), nullptr};
    pid_t pid = 0;
    if (posix_spawnp(&pid, program.c_str(), nullptr, nullptr, argv, environ) != 0) return false;
    // xdg-open hands the file on and returns at once; reaping it here keeps
    // no zombie behind.
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace korvex::platform
