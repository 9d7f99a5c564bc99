// A store, a prompt, a clipboard, dialogs and a host for the element
// operations, with a small text project to start from.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/prompt.h"
#include "support/harness.h"
#include "text/load_driver.h"
#include "workbench/element_ops.h"
#include "workbench/settings_file.h"

namespace korvex::workbench::test {

struct RecordingHost : OpsHost {
    model::Store* s = nullptr;
    bool busy = false;
    bool layers = false;
    int32_t current = -2;  // -2: tables_changed never called
    int changes = 0;
    std::vector<int> classes_shown;
    std::vector<std::string> log;
    bool loading() const override { return busy; }
    bool draworder_view() const override { return layers; }
    void show_class(int cls) override {
        classes_shown.push_back(cls);
        s->curclass = cls;
    }
    void tables_changed(int32_t row) override {
        s->dirty = true;
        current = row;
        ++changes;
    }
    void log_line(int, const std::string& text) override { log.push_back(text); }
};

// Each dialog call runs the given function on the form; unset: cancelled.
struct ScriptedDialogs : ElementDialogs {
    std::function<bool(NewElementForm&)> on_poisizes, on_line;
    std::vector<NewElementForm> shown;
    bool poisizes(NewElementForm& f) override {
        shown.push_back(f);
        return on_poisizes ? on_poisizes(f) : false;
    }
    bool new_line(NewElementForm& f) override {
        shown.push_back(f);
        return on_line ? on_line(f) : false;
    }
};

inline const char* const k_head =
    "[_id]\r\nProductCode=1\r\nFID=100\r\nCodePage=1252\r\n[end]\r\n";

// A solid polygon section of a type ("0x03", "0x10f03") and label.
inline std::string polygon(const std::string& type, const std::string& label, const std::string& colour = "FF0000") {
    return "[_polygon]\r\nType=" + type + "\r\nString1=0x04," + label + "\r\nXpm=\"0 0 1 0\"\r\n\"1 c #" + colour +
           "\"\r\n[end]\r\n";
}

inline std::string line(const std::string& type, const std::string& label, const std::string& extra = "") {
    return "[_line]\r\nType=" + type + "\r\n" + extra + "String1=0x04," + label +
           "\r\nLineWidth=2\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n\"0 c #00FF00\"\r\n\"1 c #000000\"\r\n[end]\r\n";
}

inline std::string point(const std::string& type, const std::string& label) {
    return "[_point]\r\nType=" + type + "\r\nString1=0x04," + label +
           "\r\nDayXpm=\"2 2 2 1\" Colormode=0\r\n\"! c #FF0000\"\r\n\"# c #0000FF\"\r\n\"!#\"\r\n\"#!\"\r\n[end]\r\n";
}

struct OpsFixture {
    model::Store s;
    AppSettings settings;
    integration::Messages msgs;
    platform::ScriptedPrompt ui{platform::Answer::yes};
    platform::MemoryClipboard clip;
    ScriptedDialogs dialogs;
    RecordingHost host;
    ElementOps ops{s, ui, clip, msgs, settings, dialogs, host};

    OpsFixture() { host.s = &s; }

    // Loads a text project (head added) and shows a class.
    void load(const std::string& body, int cls = model::k_polygons) {
        model::newproject(s);
        platform::ScriptedPrompt quiet;
        text::load_txt(s, quiet, "", k_head + body, false, false);
        s.curclass = cls;
        s.dirty = false;
    }
    // The whole project as text: what a save would write.
    std::string text() {
        platform::ScriptedPrompt quiet;
        return testing::text_of(s, quiet);
    }
};

}  // namespace korvex::workbench::test
