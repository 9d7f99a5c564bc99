// The message catalogue: every fixed text the user sees has a number and a
// built-in English text; a language file (.lan) replaces messages and menu
// captions while the program runs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::integration {

// The activity names of active lines until a language replaces them.
inline constexpr const char* k_default_activities =
    "Walking,Hiking,Mountaineering,Cycling,Tour Cycling,Mountain Biking,";

// One entry of the language menu: the file's own name ("mlanguage=") and
// the file.
struct LanguageEntry {
    std::string name;
    std::string path;
};

class Messages {
public:
    Messages();

    // The text of message n in the current language; the built-in English
    // text when the language file has none, "" for a number without a text.
    // "$" of a text is a line break (CR LF).
    std::string get_msg(int n) const;

    // Loads a language file; false (and nothing changes) when the path is
    // "" or the file cannot be read.
    bool apply_lang(const std::string& path);
    // The same for a file's text already in memory; path becomes lanfile.
    // Any bytes are safe here.
    void apply_lang_text(const std::string& path, std::string_view text);
    // Back to the built-in English texts and captions. When one of the
    // language folders holds a file "english" (or "english.lan") its
    // captions are applied, so that a menu returns to its own wording; the
    // messages are the built-in ones either way. The activities are reset.
    void use_english(const std::vector<std::string>& language_folders = {});

    // Fills the language file's messages from its text (CR already gone):
    // the lines between "<messages>" and "<end of messages>", "n:text",
    // with n from 1 to below the number of lines of the block.
    void load_msgs(std::string_view text);

    // The caption a language file gives a menu or button key ("mfile",
    // "btnapplyX"); "" when it gives none and the built-in caption stays.
    // A key ending in "X" or "Y" names a flat button: the letter is not part
    // of the key in the file.
    std::string caption(const std::string& key) const;
    // The left margin of a flat button's text: 7 for an "X" key, 17 for a
    // "Y" key, 0 for a plain key.
    static int caption_margin(const std::string& key);

    // The items of a list key ("combo3=a, b,,c"): split at commas, trimmed,
    // blank items skipped; empty when the language gives none.
    std::vector<std::string> fill_list(const std::string& key) const;

    // The activity names of active lines, in order.
    const std::vector<std::string>& activities() const { return activities_; }
    // Replaces them from a comma-separated list (blank items skipped).
    void set_activities(std::string_view list);

    const std::string& lanfile() const { return lanfile_; }
    // The language file's text from its "<language>" marker on, CR removed.
    const std::string& lantxt() const { return lantxt_; }

private:
    // One translated message: its number and its text in arena_ (with "$"
    // still in it). Sorted by number, one entry a number.
    struct Msg {
        int n;
        uint32_t off;
        uint32_t len;
    };
    const Msg* find(int n) const;

    std::string lanfile_;
    std::string lantxt_;
    std::string arena_;
    std::vector<Msg> msgs_;
    std::vector<std::string> activities_;
};

// The built-in English text of message n, "" for a number without a text.
// "$" is kept as it stands.
const std::string& builtin_msg(int n);
// How many numbers have a built-in text.
int builtin_msg_count();

// The text with every "$" replaced by CR LF.
std::string expand_breaks(std::string_view text);

// A language number from a "0xNN" text: the two characters behind the first
// "x" read as hexadecimal; 0 when there are none.
int getlang(std::string_view text);

// The language files of the folders ("*.lan", each folder sorted by name)
// that name themselves with "mlanguage="; a file name met in an earlier
// folder hides the same name in a later one.
std::vector<LanguageEntry> loadlanguages(const std::vector<std::string>& folders);

// The menu name a language file's text gives itself: the value of
// "mlanguage=" up to the line end, CR removed; "" when it has none.
std::string language_name(std::string_view text);

}  // namespace korvex::integration
