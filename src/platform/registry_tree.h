// A registry held in memory: keys by path (case-insensitive, as the system's
// registry is), each with its named string values in the order they came.
// The Wine prefix's registry files and the tests' scripted registries are
// read into one of these.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korvex::platform {

using RegValues = std::vector<std::pair<std::string, std::string>>;

class RegistryTree {
public:
    // Creates the key (and the keys above it) when absent.
    void add_key(const std::string& key);
    // Sets a value of key; a value of the same name (any case) is replaced.
    void set(const std::string& key, const std::string& name, const std::string& data);

    bool has_key(const std::string& key) const;
    // Names of the direct sub-keys, in the case they were written.
    std::vector<std::string> subkeys(const std::string& key) const;
    RegValues values(const std::string& key) const;
    std::optional<std::string> value(const std::string& key, const std::string& name) const;
    bool empty() const { return keys_.empty(); }

private:
    struct Node {
        std::string name;  // last part, as written
        RegValues values;
    };
    Node* node(const std::string& key);
    const Node* find(const std::string& key) const;
    std::map<std::string, Node> keys_;  // by the lower-case path, no outer backslashes
};

// The key path in the form the tree keeps: separators single backslashes,
// none at either end, lower case.
std::string registry_key_id(const std::string& key);

}  // namespace korvex::platform
