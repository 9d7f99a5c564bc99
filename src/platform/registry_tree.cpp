#include "platform/registry_tree.h"

#include <algorithm>

namespace korvex::platform {

namespace {

char key_lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool same_value_name(const std::string& a, const std::string& b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return key_lower(x) == key_lower(y); });
}

// The path with doubled and outer separators taken away, case kept.
std::string tidy_key_path(const std::string& key) {
    std::string out;
    for (char c : key) {
        const char d = c == '/' ? '\\' : c;
        if (d == '\\' && (out.empty() || out.back() == '\\')) continue;
        out += d;
    }
    while (!out.empty() && out.back() == '\\') out.pop_back();
    return out;
}

}  // namespace

std::string registry_key_id(const std::string& key) {
    std::string id = tidy_key_path(key);
    std::transform(id.begin(), id.end(), id.begin(), key_lower);
    return id;
}

RegistryTree::Node* RegistryTree::node(const std::string& key) {
    const std::string path = tidy_key_path(key);
    if (path.empty()) return nullptr;
    Node* last = nullptr;
    size_t at = 0;
    while (at != std::string::npos) {
        at = path.find('\\', at + 1);
        const std::string part = path.substr(0, at);
        auto [it, added] = keys_.try_emplace(registry_key_id(part));
        if (added) it->second.name = part.substr(part.rfind('\\') == std::string::npos ? 0 : part.rfind('\\') + 1);
        last = &it->second;
    }
    return last;
}

const RegistryTree::Node* RegistryTree::find(const std::string& key) const {
    const auto it = keys_.find(registry_key_id(key));
    return it == keys_.end() ? nullptr : &it->second;
}

void RegistryTree::add_key(const std::string& key) { node(key); }

void RegistryTree::set(const std::string& key, const std::string& name, const std::string& data) {
    Node* n = node(key);
    if (!n) return;
    for (auto& [k, v] : n->values)
        if (same_value_name(k, name)) {
            v = data;
            return;
        }
    n->values.emplace_back(name, data);
}

bool RegistryTree::has_key(const std::string& key) const { return find(key) != nullptr; }

std::vector<std::string> RegistryTree::subkeys(const std::string& key) const {
    std::vector<std::string> out;
    const std::string prefix = registry_key_id(key) + '\\';
    // The map is sorted, so a key's descendants follow it as one run.
    for (auto it = keys_.lower_bound(prefix); it != keys_.end() && it->first.starts_with(prefix); ++it)
        if (it->first.find('\\', prefix.size()) == std::string::npos) out.push_back(it->second.name);
    return out;
}

RegValues RegistryTree::values(const std::string& key) const {
    const Node* n = find(key);
    return n ? n->values : RegValues{};
}

std::optional<std::string> RegistryTree::value(const std::string& key, const std::string& name) const {
    const Node* n = find(key);
    if (!n) return std::nullopt;
    for (const auto& [k, v] : n->values)
        if (same_value_name(k, name)) return v;
    return std::nullopt;
}

}  // namespace korvex::platform
