// What the logic asks of the user: messages, questions, progress, status.
// The logic never shows a window; it talks to one of these.
#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

namespace korvex::platform {

enum class Answer { yes, no, cancel };

class Prompt {
public:
    virtual ~Prompt() = default;
    virtual void message(const std::string& text) = 0;
    virtual bool yes_no(const std::string& text) = 0;
    virtual Answer yes_no_cancel(const std::string& text) = 0;
    virtual void progress(int /*percent*/) {}
    virtual void status(const std::string& /*text*/) {}
    // A finished report (lines end in CR LF) for the user to read, copy or
    // save; the window shows it in a viewer that stays open beside it.
    virtual void report(const std::string& /*title*/, const std::string& /*text*/) {}
};

// For the command line: every message and question goes to standard error
// together with the answer taken, which is fixed in advance.
class ConsolePrompt : public Prompt {
public:
    explicit ConsolePrompt(Answer fixed = Answer::yes) : fixed_(fixed) {}
    void message(const std::string& text) override;
    bool yes_no(const std::string& text) override;
    Answer yes_no_cancel(const std::string& text) override;
    void report(const std::string& title, const std::string& text) override;

private:
    Answer fixed_;
};

// Says nothing and answers yes: for housekeeping the user did not ask for
// (a quiet trim) and for benchmarks.
class QuietPrompt : public Prompt {
public:
    void message(const std::string&) override {}
    bool yes_no(const std::string&) override { return true; }
    Answer yes_no_cancel(const std::string&) override { return Answer::yes; }
};

// For tests: answers are scripted in order (a default when the script runs
// out), and everything said is recorded.
class ScriptedPrompt : public Prompt {
public:
    explicit ScriptedPrompt(Answer fallback = Answer::yes) : fallback_(fallback) {}
    void script(Answer a) { answers_.push_back(a); }
    void message(const std::string& text) override { messages.push_back(text); }
    bool yes_no(const std::string& text) override;
    Answer yes_no_cancel(const std::string& text) override;
    void progress(int percent) override {
        last_progress = percent;
        peak_progress = std::max(peak_progress, percent);
    }
    void status(const std::string& text) override { statuses.push_back(text); }
    void report(const std::string& title, const std::string& text) override { reports.push_back({title, text}); }

    std::vector<std::string> messages;
    std::vector<std::string> questions;
    std::vector<std::string> statuses;
    struct Report {
        std::string title, text;
    };
    std::vector<Report> reports;
    int last_progress = -1;
    int peak_progress = -1;

private:
    Answer next();
    std::deque<Answer> answers_;
    Answer fallback_;
};

}  // namespace korvex::platform
