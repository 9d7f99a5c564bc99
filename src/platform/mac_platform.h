// The map programs' system on macOS: no registry; installed maps are
// ".gmap" bundles in the Garmin Maps folders of the user and of the machine.
#pragma once

#include "platform/map_platform.h"

namespace korvex::platform {

class MacMapPlatform : public MapPlatform {
public:
    // home: the user's home folder; root: "" on a real system, a test
    // tree's folder otherwise (both Maps folders lie under it).
    explicit MacMapPlatform(std::string home, std::string root = "") : home_(std::move(home)), root_(std::move(root)) {}

    std::vector<std::string> reg_subkeys(Hive, const std::string&) const override { return {}; }
    RegValues reg_values(Hive, const std::string&) const override { return {}; }
    std::optional<std::string> reg_value(Hive, const std::string&, const std::string&) const override {
        return std::nullopt;
    }
    bool import_reg(const std::string&) override { return false; }
    bool bit64() const override { return true; }
    std::string shortcut_target(const std::string&) const override { return {}; }
    std::vector<std::string> window_titles() const override { return {}; }
    std::string env(const std::string&) const override { return {}; }
    std::string local_path(const std::string& windows_path) const override { return windows_path; }
    std::string windows_path(const std::string& local) const override { return local; }
    std::vector<std::string> map_folders() const override;

private:
    std::string home_, root_;
};

}  // namespace korvex::platform
