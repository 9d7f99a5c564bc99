#include "support/fuzz_entries.h"

#include <cstdlib>
#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/fonts.h"
#include "platform/clock.h"
#include "platform/prompt.h"
#include "text/load_driver.h"
#include "text/maptk_project.h"
#include "text/panel_apply.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "workbench/settings_file.h"

namespace korvex::fuzzing {

namespace {

using integration::Messages;
using model::Store;

const platform::FixedClock k_clock(platform::Stamp{2024, 5, 17, 13, 45, 30});

// Prints and encodes in memory; the sink only counts so a large text is not
// held.
size_t save_both(Store& s, platform::Prompt& ui) {
    size_t printed = 0;
    // A refused identifier is typed in, as the user would, so the text is printed.
    if (!text::save_txt(s, ui, k_clock, 13, [&](std::string_view piece) { printed += piece.size(); })) {
        s.pid = s.fid = "1";
        text::save_txt(s, ui, k_clock, 13, [&](std::string_view piece) { printed += piece.size(); });
    }
    if (s.utf8txt) text::save_txt(s, ui, k_clock, text::k_kind_utf8, [&](std::string_view p) { printed += p.size(); });
    typ::save_typ(s, ui, k_clock, false);
    return printed;
}

// Polygons 0x01 and 0x02, a line, an active line, a point with a night
// picture and an extra point: an element of every class.
const char k_project[] =
    "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n"
    "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,2\r\n[end]\r\n"
    "[_polygon]\r\nType=0x01\r\nString1=0x04,One\r\nXpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"\r\n[end]\r\n"
    "[_polygon]\r\nType=0x02\r\nString1=0x04,Two\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n\"1 c #00FF00\"\r\n"
    "[end]\r\n"
    "[_line]\r\nType=0x02\r\nLineWidth=2\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n\"0 c #00FF00\"\r\n"
    "\"1 c #000000\"\r\n[end]\r\n"
    "[_line]\r\nType=0x10\r\nActivity=1\r\nLineWidth=3\r\nXpm=\"0 0 1 0\"\r\n\"0 c #0000FF\"\r\n[end]\r\n"
    "[_point]\r\nType=0x2f01\r\nDayXpm=\"2 1 2 1\" Colormode=0\r\n\"a c #FF0000\"\r\n\"b c #00FF00\"\r\n"
    "\"ab\"\r\nNightXpm=\"2 1 1 1\" Colormode=0\r\n\"c c #0000FF\"\r\n\"cc\"\r\n[end]\r\n"
    "[_point]\r\nID=0x11b01\r\nXpm=\"0 0 0 0\"\r\n[end]\r\n";

Store sample_project() {
    Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    text::load_txt(s, ui, "/fuzz/panel.txt", k_project, false, true);
    // A sample without an element of some class would fuzz nothing there.
    if (s.pg_n < 1 || s.ln_n < 1 || s.ln_nact < 1 || s.pt_n < 1 || s.pt_nx < 1) std::abort();
    return s;
}

}  // namespace

size_t typ_file(std::string_view bytes) {
    Store s;
    platform::ScriptedPrompt ui;
    model::newproject(s);
    typ::open_typ_bytes(s, ui, std::string(bytes), "/fuzz/file.typ");
    return save_both(s, ui);
}

size_t text_file(std::string_view bytes) {
    Store s;
    platform::ScriptedPrompt ui;
    model::newproject(s);
    // Not identified: a text of a draw order alone still opens, as on the command line.
    return text::load_txt(s, ui, "/fuzz/file.txt", std::string(bytes), false, false) ? save_both(s, ui) : 0;
}

size_t maptk_project(std::string_view bytes) {
    platform::ScriptedPrompt ui;
    // Small blocks cut the project behind many "[end]"s.
    (void)text::translate_prj(ui, bytes, 256);
    Store s;
    model::newproject(s);
    return text::load_prj_data(s, ui, "/fuzz/file.prj", bytes) ? save_both(s, ui) : 0;
}

size_t panel_text(std::string_view bytes) {
    static const Store sample = sample_project();
    size_t printed = 0;
    const std::string panel(bytes);
    for (int cls = 0; cls <= 4; ++cls)
        for (bool night : {false, true}) {
            if (night && cls != model::k_points && cls != model::k_extra_points) continue;
            Store s = sample;
            platform::ScriptedPrompt ui;
            const int32_t row = cls == model::k_active_lines ? s.ln_n : cls == model::k_extra_points ? s.pt_n : 0;
            s.curclass = cls;
            s.curel = row;
            if (text::parsetext(s, ui, panel, cls, row, night).ok) printed += save_both(s, ui);
        }
    return printed;
}

size_t language_file(std::string_view bytes) {
    integration::Messages m;
    m.apply_lang_text("/fuzz/file.lan", bytes);
    size_t shown = 0;
    for (int n = -1; n <= 300; ++n) shown += m.get_msg(n).size();
    for (const char* key : {"mfile", "mopentyp", "msave", "btnapplyX", "getclipY", "mlanguage", "combo3"})
        shown += m.caption(key).size() + Messages::caption_margin(key);
    for (const char* key : {"combo3", "combo4", "combo8"}) shown += m.fill_list(key).size();
    shown += integration::language_name(bytes).size();
    (void)integration::getlang(bytes);
    return shown;
}

size_t settings_file(std::string_view bytes) {
    const workbench::AppSettings defaults = workbench::default_settings("/fuzz/d");
    const platform::FixedFontList fonts({"Arial", "Courier", "DejaVu Sans"});
    std::vector<std::string> notes;
    const workbench::AppSettings read = workbench::read_settings(bytes, defaults, &fonts, &notes);
    // What was written reads back to the same file.
    const std::string written = workbench::write_settings(read);
    const std::string again = workbench::write_settings(workbench::read_settings(written, defaults, &fonts));
    if (again != written) std::abort();
    std::vector<std::string> names;
    if (auto listed = platform::read_fonts_dat(bytes)) names = std::move(*listed);
    return written.size() + names.size();
}

bool run_entry(std::string_view name, std::string_view bytes, size_t& printed) {
    if (name == "typ") printed = typ_file(bytes);
    else if (name == "text") printed = text_file(bytes);
    else if (name == "maptk") printed = maptk_project(bytes);
    else if (name == "panel") printed = panel_text(bytes);
    else if (name == "language") printed = language_file(bytes);
    else if (name == "settings") printed = settings_file(bytes);
    else return false;
    return true;
}

}  // namespace korvex::fuzzing
