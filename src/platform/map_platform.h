// What the installed-map logic asks of the system: the registry, the
// environment, shortcuts, the running map programs, and where Windows paths
// lie on this machine. Windows answers from its own registry, Linux from a
// Wine prefix, macOS from its map folders; tests script every answer.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registry_tree.h"

namespace korvex::platform {

enum class Hive { local_machine, current_user };

class MapPlatform {
public:
    virtual ~MapPlatform() = default;

    // The sub-keys and the values (name, string data) of a key; the 32-bit
    // view of the local machine's software keys is asked first, as the map
    // programs are 32-bit. Empty when the key is absent.
    virtual std::vector<std::string> reg_subkeys(Hive hive, const std::string& key) const = 0;
    virtual RegValues reg_values(Hive hive, const std::string& key) const = 0;
    virtual std::optional<std::string> reg_value(Hive hive, const std::string& key, const std::string& name) const = 0;

    // Imports a REGEDIT4 file (a local path). False when it could not run.
    virtual bool import_reg(const std::string& reg_file) = 0;
    // True when the system's registry editor asks the user before an import
    // itself; otherwise the caller asks first.
    virtual bool import_confirms() const { return false; }

    virtual bool bit64() const = 0;
    // The target of a shortcut file (a local path), "" when it has none.
    virtual std::string shortcut_target(const std::string& lnk) const = 0;
    // Titles of the top-level windows, or the command lines of the running
    // programs where titles cannot be had.
    virtual std::vector<std::string> window_titles() const = 0;
    // True while another program holds the file (a local path) open, so a
    // save over it would fail or be lost. False where this cannot be told.
    virtual bool file_locked(const std::string& /*local*/) const { return false; }
    // AppData, ProgramData: Windows paths, "" when unknown.
    virtual std::string env(const std::string& name) const = 0;

    // A Windows path (as the registry holds it) as a path of this machine,
    // and back; the identity on Windows.
    virtual std::string local_path(const std::string& windows_path) const = 0;
    virtual std::string windows_path(const std::string& local) const = 0;

    // The folders whose sub-folders are installed maps without a registry
    // entry (%ProgramData%\Garmin\Maps), as local paths.
    virtual std::vector<std::string> map_folders() const;
};

// A scripted system for tests: an in-memory registry, environment, window
// list and shortcut table; Windows paths are mapped as in a Wine prefix
// rooted at root. Imported registry files are read into the registry.
class ScriptedMapPlatform : public MapPlatform {
public:
    explicit ScriptedMapPlatform(std::string root = "") : root(std::move(root)) {}
    std::vector<std::string> reg_subkeys(Hive hive, const std::string& key) const override;
    RegValues reg_values(Hive hive, const std::string& key) const override;
    std::optional<std::string> reg_value(Hive hive, const std::string& key, const std::string& name) const override;
    bool import_reg(const std::string& reg_file) override;
    bool import_confirms() const override { return confirms; }
    bool bit64() const override { return is64; }
    std::string shortcut_target(const std::string& lnk) const override;
    std::vector<std::string> window_titles() const override { return titles; }
    // Locked for the next locked_tests tests of a file, free after.
    bool file_locked(const std::string&) const override {
        ++lock_tests;
        if (locked_tests == 0) return false;
        --locked_tests;
        return true;
    }
    std::string env(const std::string& name) const override;
    std::string local_path(const std::string& windows_path) const override;
    std::string windows_path(const std::string& local) const override;

    std::string root;
    RegistryTree hklm, hkcu;
    std::vector<std::pair<std::string, std::string>> environment;
    std::vector<std::string> titles;
    std::vector<std::pair<std::string, std::string>> shortcuts;  // local .lnk, local target
    std::vector<std::string> imported;                            // texts of imported files
    bool is64 = true;
    bool confirms = false;
    bool import_fails = false;
    mutable int locked_tests = 0;
    mutable int lock_tests = 0;  // how often a lock was tested
};

// The key as the 32-bit view sees it on a 64-bit system: keys under
// SOFTWARE\ get "Wow6432Node\" after it; others are unchanged.
std::string wow64_key(const std::string& key);
// Sub-keys, values or one value of a tree, the 32-bit view first.
std::vector<std::string> tree_subkeys(const RegistryTree& tree, const std::string& key);
RegValues tree_values(const RegistryTree& tree, const std::string& key);
std::optional<std::string> tree_value(const RegistryTree& tree, const std::string& key, const std::string& name);

// Windows paths inside a Wine prefix: "C:\x" is prefix/dosdevices/c:/x
// when that link exists, else prefix/drive_c/x; "Z:\x" is /x. A path that
// is no Windows path is returned as it is.
std::string wine_local_path(const std::string& prefix, const std::string& windows_path);
// The other way: under drive_c gives "C:\...", anything else "Z:\...".
std::string wine_windows_path(const std::string& prefix, const std::string& local);

}  // namespace korvex::platform
