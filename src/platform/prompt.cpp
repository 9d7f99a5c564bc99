#include "platform/prompt.h"

#include <cstdio>

namespace korvex::platform {

namespace {

const char* answer_word(Answer a) {
    switch (a) {
        case Answer::yes: return "yes";
        case Answer::no: return "no";
        default: return "cancel";
    }
}

// Messages carry CR LF between their lines; a terminal wants LF.
void print_lines(const char* prefix, const std::string& text, const char* suffix) {
    std::string out;
    out.reserve(text.size());
    for (char c : text)
        if (c != '\r') out += c;
    std::fprintf(stderr, "%s%s%s\n", prefix, out.c_str(), suffix);
}

}  // namespace

void ConsolePrompt::message(const std::string& text) { print_lines("message: ", text, ""); }

bool ConsolePrompt::yes_no(const std::string& text) {
    const Answer a = fixed_ == Answer::cancel ? Answer::no : fixed_;
    print_lines("question: ", text, a == Answer::yes ? " -> yes" : " -> no");
    return a == Answer::yes;
}

Answer ConsolePrompt::yes_no_cancel(const std::string& text) {
    std::string tail = std::string(" -> ") + answer_word(fixed_);
    print_lines("question: ", text, tail.c_str());
    return fixed_;
}

void ConsolePrompt::report(const std::string& title, const std::string& text) {
    print_lines("report: ", title, "");
    print_lines("", text, "");
}

Answer ScriptedPrompt::next() {
    if (answers_.empty()) return fallback_;
    Answer a = answers_.front();
    answers_.pop_front();
    return a;
}

bool ScriptedPrompt::yes_no(const std::string& text) {
    questions.push_back(text);
    return next() == Answer::yes;
}

Answer ScriptedPrompt::yes_no_cancel(const std::string& text) {
    questions.push_back(text);
    return next();
}

}  // namespace korvex::platform
