// The map programs' own system: the Windows registry, environment, shell
// and window list. Built on Windows only.
#pragma once

#ifdef _WIN32

#include "platform/map_platform.h"

namespace korvex::platform {

class WindowsMapPlatform : public MapPlatform {
public:
    std::vector<std::string> reg_subkeys(Hive hive, const std::string& key) const override;
    RegValues reg_values(Hive hive, const std::string& key) const override;
    std::optional<std::string> reg_value(Hive hive, const std::string& key, const std::string& name) const override;
    // Hands the file to regedit, which asks the user itself.
    bool import_reg(const std::string& reg_file) override;
    bool import_confirms() const override { return true; }
    bool bit64() const override;
    std::string shortcut_target(const std::string& lnk) const override;
    std::vector<std::string> window_titles() const override;
    // Opening the file for writing with no sharing fails while a program holds it.
    bool file_locked(const std::string& local) const override;
    std::string env(const std::string& name) const override;
    std::string local_path(const std::string& windows_path) const override { return windows_path; }
    std::string windows_path(const std::string& local) const override { return local; }
};

}  // namespace korvex::platform

#endif
