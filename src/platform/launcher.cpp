#include "platform/launcher.h"

#ifdef _WIN32

#include <windows.h>
#include <shellapi.h>

#include "platform/native_path.h"

namespace korvex::platform {

// The shell opens the file with the program its type is registered to, and
// returns without waiting for it.
bool SystemLauncher::open(const std::string& path) {
    const std::wstring file = wide_name(path);
    const auto result = reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    // Values above 32 mean success.
    return result > 32;
}

}  // namespace korvex::platform

#else

#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace korvex::platform {

bool SystemLauncher::open(const std::string& path) {
    // Without a desktop, xdg-open runs the editor itself and waits for it;
    // a shell puts it in the background and returns at once, so the window
    // never blocks and no child is left to reap.
    std::string shell = "/bin/sh";
    std::string flag = "-c";
    std::string script = "xdg-open \"$1\" >/dev/null 2>&1 &";
    std::string name = "sh";
    std::string argument = path;
    char* argv[] = {shell.data(), flag.data(), script.data(), name.data(), argument.data(), nullptr};
    pid_t pid = 0;
    if (posix_spawn(&pid, shell.c_str(), nullptr, nullptr, argv, environ) != 0) return false;
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace korvex::platform

#endif
