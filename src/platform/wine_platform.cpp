// POSIX only: the Windows build has no Wine prefix to read.
#ifndef _WIN32
#include "platform/wine_platform.h"

#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/reg_text.h"
#include "platform/shell_link.h"

extern char** environ;

namespace korvex::platform {

namespace {

constexpr const char* k_shell_folders = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// Starts argv[0] from the PATH with the extra values set and waits for it.
int spawn_and_wait(const std::vector<std::string>& argv, const std::vector<std::pair<std::string, std::string>>& extra) {
    std::vector<std::string> env_text;
    for (char** e = environ; *e; ++e) env_text.emplace_back(*e);
    for (const auto& [k, v] : extra) env_text.push_back(k + "=" + v);
    std::vector<char*> env_ptrs, arg_ptrs;
    for (auto& e : env_text) env_ptrs.push_back(e.data());
    env_ptrs.push_back(nullptr);
    std::vector<std::string> args = argv;
    for (auto& a : args) arg_ptrs.push_back(a.data());
    arg_ptrs.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, args[0].c_str(), nullptr, nullptr, arg_ptrs.data(), env_ptrs.data()) != 0) return -1;
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

WinePlatform::WinePlatform(std::string prefix, ProcessRunner run) : prefix_(std::move(prefix)), run_(std::move(run)) {
    if (!run_) run_ = spawn_and_wait;
    namespace fs = std::filesystem;
    if (const auto text = read_file((fs::path(prefix_) / "system.reg").string())) read_reg_text(*text, hklm_);
    if (const auto text = read_file((fs::path(prefix_) / "user.reg").string())) read_reg_text(*text, hkcu_);
}

std::vector<std::string> WinePlatform::reg_subkeys(Hive hive, const std::string& key) const {
    return tree_subkeys(hive == Hive::local_machine ? hklm_ : hkcu_, key);
}

RegValues WinePlatform::reg_values(Hive hive, const std::string& key) const {
    return tree_values(hive == Hive::local_machine ? hklm_ : hkcu_, key);
}

std::optional<std::string> WinePlatform::reg_value(Hive hive, const std::string& key, const std::string& name) const {
    return tree_value(hive == Hive::local_machine ? hklm_ : hkcu_, key, name);
}

bool WinePlatform::import_reg(const std::string& reg_file) {
    const int status = run_({"wine", "regedit", windows_path(reg_file)}, {{"WINEPREFIX", prefix_}});
    if (status != 0) return false;
    // What regedit wrote is in the registry files only once wine has
    // flushed them; the imported text is what they now hold.
    if (const auto text = read_file(reg_file)) read_reg_text(*text, hklm_);
    return true;
}

bool WinePlatform::bit64() const {
    std::error_code ec;
    return std::filesystem::is_directory(std::filesystem::path(prefix_) / "drive_c" / "windows" / "syswow64", ec);
}

std::string WinePlatform::shortcut_target(const std::string& lnk) const { return local_path(read_shortcut_file(lnk)); }

std::vector<std::string> WinePlatform::window_titles() const { return wine_process_lines(); }

bool WinePlatform::file_locked(const std::string& local) const { return file_open_in_process(local); }

std::string WinePlatform::env(const std::string& name) const {
    if (name == "AppData") {
        if (auto v = hkcu_.value(k_shell_folders, "AppData")) return *v;
        return {};
    }
    if (name == "ProgramData") {
        if (auto v = hklm_.value(k_shell_folders, "Common AppData")) return *v;
        return "C:\\ProgramData";
    }
    return {};
}

std::string WinePlatform::local_path(const std::string& windows_path) const {
    return wine_local_path(prefix_, windows_path);
}

std::string WinePlatform::windows_path(const std::string& local) const { return wine_windows_path(prefix_, local); }

std::string default_wine_prefix(const Environment& env) {
    const std::string prefix = env.get("WINEPREFIX");
    if (!prefix.empty()) return prefix;
    return join_path(env.get("HOME"), ".wine");
}

std::vector<std::string> wine_process_lines(const std::string& proc_root) {
    namespace fs = std::filesystem;
    std::vector<std::string> lines;
    std::error_code ec;
    for (fs::directory_iterator it(proc_root, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.empty() || !std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; })) continue;
        auto cmd = read_file((it->path() / "cmdline").string());
        if (!cmd) continue;
        std::replace(cmd->begin(), cmd->end(), '\0', ' ');
        std::string low = *cmd;
        std::transform(low.begin(), low.end(), low.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (low.find(".exe") != std::string::npos) lines.push_back(*cmd);
    }
    return lines;
}

bool file_open_in_process(const std::string& path, const std::string& proc_root) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path target = fs::canonical(path, ec);
    if (ec) return false;
    for (fs::directory_iterator it(proc_root, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.empty() || !std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; })) continue;
        std::error_code fd_ec;  // a process we may not look into is skipped
        for (fs::directory_iterator fd(it->path() / "fd", fd_ec), fd_end; !fd_ec && fd != fd_end; fd.increment(fd_ec)) {
            std::error_code link_ec;
            const fs::path to = fs::read_symlink(fd->path(), link_ec);
            if (!link_ec && to == target) return true;
        }
    }
    return false;
}

}  // namespace korvex::platform

#endif
