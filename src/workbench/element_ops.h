// The element operations of the workbench: new elements of every class, copy
// and paste through the clipboard, Create Copy, renumbering, Delete. Each one
// works on the class in view (s.curclass), keeps the rows in type order, sets
// the dirty flag and has the grid rebuilt through OpsHost. A refusal says its
// message through the Prompt and leaves the tables as they were; a change
// that cannot be undone but by reloading asks first.
//
// Rows are store rows throughout (an active line at ln_n + k, an extra point
// at pt_n + k), as Browser::selected_rows gives them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/prompt.h"
#include "workbench/history.h"
#include "workbench/settings_file.h"

namespace korvex::workbench {

// What the operations ask of the window. Tests record the calls instead.
class OpsHost {
public:
    virtual ~OpsHost() = default;
    // A load runs: every operation does nothing.
    virtual bool loading() const = 0;
    // The polygon draw-order view is on.
    virtual bool draworder_view() const { return false; }
    // The class of a New button comes into view; the grid is rebuilt when
    // it was another.
    virtual void show_class(int cls) = 0;
    // The tables changed: dirty flag and caption, no_multi, the grid rebuilt,
    // row made the current element (-1: none).
    virtual void tables_changed(int32_t row) = 0;
    virtual void log_line(int cls, const std::string& text) = 0;
};

// What the new-element dialogs show and give back. Fields a class does not
// use are left alone.
struct NewElementForm {
    int cls = 0;
    std::string type;         // five hex digits; an extra point's id as typed
    std::string text;         // the label as UTF-8, "" for none
    int level = 1;            // polygon: draw-order level, 0 for none
    int width = 32;           // point: picture size, 1 to 128
    int height = 32;
    bool night = false;       // point: a night picture too
    bool hex = true;          // extra point: the id is typed in hexadecimal
    int activity = -1;        // active line: 0 to 5 in the list of activities
    std::vector<std::string> activities;  // their names, for the dialog
    std::vector<std::string> line_types;  // active line: the ordinary lines' types ("0x00700#label")
};

// The dialogs of the new-element flows (poisizes for polygons, points and
// extra points; the new-line dialog with its activities). False: cancelled.
class ElementDialogs {
public:
    virtual ~ElementDialogs() = default;
    virtual bool poisizes(NewElementForm& form) = 0;
    virtual bool new_line(NewElementForm& form) = 0;
};

// The refusals of a filled form, in the order they are shown; empty when the
// form is fine. The dialogs call it before they close, the flows again.
std::vector<std::string> check_form(const model::Store& s, const NewElementForm& form,
                                    const integration::Messages& msgs);

// The activity code of list index n: (n div 3) * 16 + n mod 3 + 64, in hex
// ("40" .. "42", "50" .. "52"); the English name of a code for the text form.
std::string activity_of_index(int n);
std::string activity_name(const std::string& code);

class ElementOps {
public:
    ElementOps(model::Store& s, platform::Prompt& ui, platform::Clipboard& clip, const integration::Messages& msgs,
               const AppSettings& settings, ElementDialogs& dialogs, OpsHost& host);

    // ---- new elements (the buttons under the grid) ----

    // The New flow of a class: the class comes into view, the dialog runs,
    // the element is made and placed in type order. Returns its row, -1
    // when nothing was made.
    int32_t new_element(int cls);
    // The six default active lines ("Create 6 default activities?").
    bool default_activities();

    // ---- clipboard ----

    // mcopy: the elements of rows (the current one when rows holds one) in
    // their order, as the clipboard form, on the clipboard as Unicode.
    bool mcopy(const std::vector<int32_t>& rows);
    // mcop: text selected in the code panel (UTF-8) on the clipboard.
    void mcop(const std::string& utf8);
    // The paste entries: mpaste (Edit menu, Ctrl+V), mpaste1 (the button
    // under the grid) and mpaste2 (the grid's context menu) take the
    // clipboard's Unicode text, or its code-page text when it has none;
    // mpaste3 takes the code-page text as it is (Paste Plain Text); mpasteu8
    // only Unicode (Paste UTF-8). Returns the row of the last pasted element,
    // -1 when nothing changed.
    int32_t mpaste();
    int32_t mpaste1();
    int32_t mpaste2();
    int32_t mpaste3();
    int32_t mpasteu8();
    // The paste itself, for a text already taken: utf8 says its strings are
    // UTF-8 (else bytes of their pages).
    int32_t paste_text(const std::string& text, bool utf8);
    // paste_act: the clipboard's active line pasted onto the activity of the
    // active line at row.
    int32_t paste_act(int32_t row);

    // mcreatecopy: the element at row again, with the next free number of
    // its class (or subtype, when given: 0 to 0x1f of the row's own type).
    int32_t mcreatecopy(int32_t row, int subtype = -1);

    // ---- delete and renumber ----

    // mdelete: asks, then removes rows (the current one when rows holds
    // one). False when nothing was deleted.
    bool mdelete(const std::vector<int32_t>& rows);
    // Cut: mcopy, then mdelete, as one step.
    bool cut(const std::vector<int32_t>& rows);
    // The type of row changed from old_code (an apply of the code panel): a
    // polygon keeps its layer under the new type, the row moves to its place.
    // Returns its new row.
    int32_t renumbered(int cls, int32_t row, int32_t old_code);

    // ---- imports ----

    // import_krv: asks for a style import file and reads it (import_krv_text).
    bool import_krv(platform::FileDialog& dialogs, const std::string& start);
    // A style import file's text: "<0/>", "<1/>", "<2/>" choose the class,
    // type lines ("<Points>2f05,amenity=yes</Points>") make the wanted types
    // that are new, and the lines behind "NOT in STYLE" list types whose
    // elements get "NOT in STYLE" in their first label. Returns the number
    // of elements made.
    int import_krv_text(const std::string& text);

    // The standing draw-order level of new polygons.
    int standing_level() const { return standing_level_; }

    // Every change becomes a step of history (none: not recorded).
    void set_history(History* history) { history_ = history; }

private:
    bool blocked() const;
    std::string msg(int n) const { return msgs_.get_msg(n); }
    int32_t finish(int cls, int32_t row);
    int32_t new_polygon();
    int32_t new_line(int cls);
    int32_t new_point();
    int32_t new_extra_point();
    int32_t paste_clip(const std::string& text, bool utf8, const char* verb = "Paste");
    bool mark_not_in_style(int cls, const std::string& list);
    std::string as_project(const std::string& section) const;

    model::Store& s_;
    platform::Prompt& ui_;
    platform::Clipboard& clip_;
    const integration::Messages& msgs_;
    const AppSettings& settings_;
    ElementDialogs& dialogs_;
    OpsHost& host_;
    int standing_level_ = 1;
    History* history_ = nullptr;
};

}  // namespace korvex::workbench
