// The message catalogue: every fixed text the user sees has a number and a
// built-in English text; a language file (.lan) replaces messages and menu
// captions while the program runs.
#pragma once

#include <string>
#include <vector>

namespace korvex::integration {

class Messages {
public:
    // The text of message n in the current language; the built-in English
    // text when the language file has none, "" for a number without a text.
    // "$" of a text is a line break (CR LF).
    std::string get_msg(int n) const;

    // Loads a language file; false (and nothing changes) when the path is
    // "" or the file cannot be read.
    bool apply_lang(const std::string& path);
    // Back to the built-in English texts and captions.
    void use_english();

    // Fills the language file's messages from its text.
    void load_msgs(const std::string& text);

    // The caption a language file gives a menu or button key ("mfile",
    // "btnapplyX"); "" when it gives none and the built-in caption stays.
    std::string caption(const std::string& key) const;

    const std::string& lanfile() const { return lanfile_; }

private:
    std::string lanfile_;
    std::string lantxt_;
    std::vector<std::string> msgs_;
};

// The built-in English text of message n, "" for a number without a text.
const std::string& builtin_msg(int n);

}  // namespace korvex::integration
