// Hands a file to the program the desktop opens it with (a report to the
// text editor). The logic never starts programs itself.
#pragma once

#include <string>
#include <vector>

namespace korvex::platform {

class Launcher {
public:
    virtual ~Launcher() = default;
    // False when no program could be started.
    virtual bool open(const std::string& path) = 0;
};

// Hands the path to "xdg-open" in the background; on Windows to the shell.
class SystemLauncher : public Launcher {
public:
    bool open(const std::string& path) override;
};

// For tests: remembers what was opened.
class RecordingLauncher : public Launcher {
public:
    bool open(const std::string& path) override {
        opened.push_back(path);
        return true;
    }
    std::vector<std::string> opened;
};

}  // namespace korvex::platform
