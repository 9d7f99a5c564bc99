// The open and save dialogs the flows ask through. A filter is the caption
// the user sees with its pattern in brackets, e.g. "Typ files (*.typ)".
#pragma once

#include <deque>
#include <string>
#include <vector>

namespace korvex::platform {

class FileDialog {
public:
    virtual ~FileDialog() = default;
    // The chosen path, or "" when the user cancelled. start is a folder or a
    // proposed file name.
    virtual std::string open_file(const std::string& title, const std::vector<std::string>& filters,
                                  const std::string& start) = 0;
    virtual std::string save_file(const std::string& title, const std::vector<std::string>& filters,
                                  const std::string& proposed) = 0;
};

// For tests: answers in order ("" when the script runs out); every call is
// recorded as title, filters joined by "|", and the start or proposal.
class ScriptedFileDialog : public FileDialog {
public:
    struct Call {
        std::string title, filters, start;
    };
    void script(std::string answer) { answers_.push_back(std::move(answer)); }
    std::string open_file(const std::string& title, const std::vector<std::string>& filters,
                          const std::string& start) override {
        return take(title, filters, start);
    }
    std::string save_file(const std::string& title, const std::vector<std::string>& filters,
                          const std::string& proposed) override {
        return take(title, filters, proposed);
    }
    std::vector<Call> calls;

private:
    std::string take(const std::string& title, const std::vector<std::string>& filters,
                     const std::string& start) {
        std::string joined;
        for (const auto& f : filters) joined += (joined.empty() ? "" : "|") + f;
        calls.push_back({title, joined, start});
        if (answers_.empty()) return {};
        std::string a = std::move(answers_.front());
        answers_.pop_front();
        return a;
    }
    std::deque<std::string> answers_;
};

}  // namespace korvex::platform
