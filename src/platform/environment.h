// The environment values the program reads (where the data folder lives).
#pragma once

#include <map>
#include <string>

namespace korvex::platform {

class Environment {
public:
    virtual ~Environment() = default;
    // The value of the variable, "" when it is unset.
    virtual std::string get(const std::string& name) const = 0;
};

// The process environment.
class SystemEnvironment : public Environment {
public:
    std::string get(const std::string& name) const override;
};

// For tests: the values given, nothing else.
class MapEnvironment : public Environment {
public:
    MapEnvironment() = default;
    explicit MapEnvironment(std::map<std::string, std::string> values) : values_(std::move(values)) {}
    void set(const std::string& name, const std::string& value) { values_[name] = value; }
    std::string get(const std::string& name) const override;

private:
    std::map<std::string, std::string> values_;
};

// The separator of paths on this platform.
#ifdef _WIN32
constexpr char k_path_sep = '\\';
#else
constexpr char k_path_sep = '/';
#endif

// a + separator + b, without doubling a separator at the join.
std::string join_path(const std::string& a, const std::string& b);

}  // namespace korvex::platform
