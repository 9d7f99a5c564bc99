#include "platform/map_platform.h"

#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/reg_text.h"
#include "platform/shell_link.h"

namespace korvex::platform {

namespace {

char lower_letter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool has_drive(const std::string& p) {
    return p.size() >= 2 && p[1] == ':' && ((p[0] >= 'a' && p[0] <= 'z') || (p[0] >= 'A' && p[0] <= 'Z'));
}

std::string forward_slashes(std::string p) {
    for (char& c : p)
        if (c == '\\') c = '/';
    return p;
}

// Windows names are the same in any case: each part of rest is taken as
// the folder spells it when only the case differs.
std::string matching_case(const std::filesystem::path& base, const std::string& rest) {
    namespace fs = std::filesystem;
    fs::path at = base;
    size_t from = 0;
    while (from <= rest.size()) {
        size_t to = rest.find('/', from);
        if (to == std::string::npos) to = rest.size();
        const std::string part = rest.substr(from, to - from);
        from = to + 1;
        if (part.empty()) continue;
        std::error_code ec;
        fs::path next = at / part;
        if (!fs::exists(next, ec)) {
            std::string want = part;
            for (char& c : want) c = lower_letter(c);
            for (fs::directory_iterator it(at, ec), end; !ec && it != end; it.increment(ec)) {
                std::string name = it->path().filename().string();
                for (char& c : name) c = lower_letter(c);
                if (name == want) {
                    next = it->path();
                    break;
                }
            }
        }
        at = next;
    }
    return at.string();
}

}  // namespace

std::vector<std::string> MapPlatform::map_folders() const {
    std::string data = env("ProgramData");
    if (data.empty()) data = "c:\\programdata";
    return {local_path(data + "\\garmin\\maps")};
}

std::string wow64_key(const std::string& key) {
    const std::string id = registry_key_id(key);
    if (id.rfind("software\\", 0) != 0 || id.rfind("software\\wow6432node", 0) == 0) return key;
    return "SOFTWARE\\Wow6432Node\\" + key.substr(key.find_first_not_of('\\') + 9);
}

std::vector<std::string> tree_subkeys(const RegistryTree& tree, const std::string& key) {
    const std::string k32 = wow64_key(key);
    return tree.has_key(k32) ? tree.subkeys(k32) : tree.subkeys(key);
}

RegValues tree_values(const RegistryTree& tree, const std::string& key) {
    const std::string k32 = wow64_key(key);
    return tree.has_key(k32) ? tree.values(k32) : tree.values(key);
}

std::optional<std::string> tree_value(const RegistryTree& tree, const std::string& key, const std::string& name) {
    if (auto v = tree.value(wow64_key(key), name)) return v;
    return tree.value(key, name);
}

std::string wine_local_path(const std::string& prefix, const std::string& windows_path) {
    if (!has_drive(windows_path)) return windows_path;
    const char drive = lower_letter(windows_path[0]);
    std::string rest = forward_slashes(windows_path.substr(2));
    if (!rest.empty() && rest.front() == '/') rest.erase(0, 1);
    if (drive == 'z') return "/" + rest;
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path link = fs::path(prefix) / "dosdevices" / std::string{drive, ':'};
    const fs::path base = drive != 'c' || fs::exists(link, ec) ? link : fs::path(prefix) / "drive_c";
    return matching_case(base, rest);
}

std::string wine_windows_path(const std::string& prefix, const std::string& local) {
    namespace fs = std::filesystem;
    const std::string c_root = (fs::path(prefix) / "drive_c").lexically_normal().string() + "/";
    const std::string c_link = (fs::path(prefix) / "dosdevices" / "c:").lexically_normal().string() + "/";
    const std::string path = fs::path(local).lexically_normal().string();
    std::string out;
    for (const std::string& root : {c_root, c_link})
        if (path.rfind(root, 0) == 0) out = "C:\\" + path.substr(root.size());
    if (out.empty()) out = "Z:" + path;
    for (char& c : out)
        if (c == '/') c = '\\';
    return out;
}

std::vector<std::string> ScriptedMapPlatform::reg_subkeys(Hive hive, const std::string& key) const {
    return tree_subkeys(hive == Hive::local_machine ? hklm : hkcu, key);
}

RegValues ScriptedMapPlatform::reg_values(Hive hive, const std::string& key) const {
    return tree_values(hive == Hive::local_machine ? hklm : hkcu, key);
}

std::optional<std::string> ScriptedMapPlatform::reg_value(Hive hive, const std::string& key,
                                                          const std::string& name) const {
    return tree_value(hive == Hive::local_machine ? hklm : hkcu, key, name);
}

bool ScriptedMapPlatform::import_reg(const std::string& reg_file) {
    if (import_fails) return false;
    const auto text = read_file(reg_file);
    if (!text) return false;
    imported.push_back(*text);
    read_reg_text(*text, hklm);
    return true;
}

std::string ScriptedMapPlatform::shortcut_target(const std::string& lnk) const {
    for (const auto& [from, to] : shortcuts)
        if (from == lnk) return to;
    return local_path(read_shortcut_file(lnk));
}

std::string ScriptedMapPlatform::env(const std::string& name) const {
    for (const auto& [k, v] : environment)
        if (k == name) return v;
    return {};
}

std::string ScriptedMapPlatform::local_path(const std::string& windows_path) const {
    return wine_local_path(root, windows_path);
}

std::string ScriptedMapPlatform::windows_path(const std::string& local) const { return wine_windows_path(root, local); }

}  // namespace korvex::platform
