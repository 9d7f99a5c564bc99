// The map programs' system on Linux: a Wine prefix. Its registry is read
// from the prefix's text files, Windows paths lead into drive_c, imports
// go through the prefix's regedit, and the running programs are the
// Windows programs in the process list.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/map_platform.h"

namespace korvex::platform {

// Runs a program with extra environment values; returns its exit status,
// -1 when it could not start.
using ProcessRunner =
    std::function<int(const std::vector<std::string>& argv, const std::vector<std::pair<std::string, std::string>>& env)>;

class WinePlatform : public MapPlatform {
public:
    // Reads prefix/system.reg and prefix/user.reg; run starts regedit
    // (a real process by default).
    explicit WinePlatform(std::string prefix, ProcessRunner run = {});

    std::vector<std::string> reg_subkeys(Hive hive, const std::string& key) const override;
    RegValues reg_values(Hive hive, const std::string& key) const override;
    std::optional<std::string> reg_value(Hive hive, const std::string& key, const std::string& name) const override;
    bool import_reg(const std::string& reg_file) override;
    bool bit64() const override;
    std::string shortcut_target(const std::string& lnk) const override;
    std::vector<std::string> window_titles() const override;
    bool file_locked(const std::string& local) const override;
    std::string env(const std::string& name) const override;
    std::string local_path(const std::string& windows_path) const override;
    std::string windows_path(const std::string& local) const override;

    const std::string& prefix() const { return prefix_; }

private:
    std::string prefix_;
    ProcessRunner run_;
    RegistryTree hklm_, hkcu_;
};

// $WINEPREFIX, else ~/.wine.
std::string default_wine_prefix(const Environment& env);

// The command lines of the running processes that are Windows programs
// (".exe" in them), from /proc.
std::vector<std::string> wine_process_lines(const std::string& proc_root = "/proc");
// True when a running process has the file open (a descriptor in
// /proc/PID/fd leads to it): Wine keeps a real descriptor for every file a
// Windows program holds.
bool file_open_in_process(const std::string& path, const std::string& proc_root = "/proc");

}  // namespace korvex::platform
