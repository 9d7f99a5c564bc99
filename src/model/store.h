// The element store: every element of the open project as rows of parallel
// columns, the counters, the header state and the raw file buffer.
//
// An element is an index, not an object. Each element is held twice on
// purpose: its own text (pg_txt, ln_txt, pt_txt) is the home of all keys that
// have no column, and the columns are the truth for pixels, colours and counts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace korvex::model {

class RowWatch;

// Point pictures switch from one to two symbol characters a pixel here.
constexpr int cpp_limit = 32;

// Element classes, as used in curclass.
enum ElementClass : int {
    k_polygons = 0,
    k_lines = 1,
    k_points = 2,
    k_active_lines = 3,
    k_extra_points = 4,
};

// The saved settings that the codecs and writers consult.
struct Settings {
    bool show_offsets = false;       // "Show Offsets in TXT"
    bool show_garmin_types = false;  // "Show Garmin Types in text"
    int langid = 0;                  // preferred label language
    std::string langname = "unspecified";
    int hdr_def = 110;               // header length of new files
    bool strorder = false;           // preferred-language strings first on save
    bool complete_draworder = true;  // complete the draw order from polygons after a load
    bool utf8_convert = true;        // convert UTF-8 strings of a text on load
    int list_codepage = 1252;        // the code-page list's entry (the "saved list page")
    // Texts holding this host name come from a generator that ends picture
    // rows with a comma; their rows are repaired on load. Empty: off.
    std::string comma_rows_marker;
    std::string version = KORVEX_VERSION;
    // Ask "Reload TYP file to undo changes." / "Continue?" before a change
    // the history could undo too; off answers them Yes unasked.
    bool ask_reload_undo = true;
};

// Which bytes a code page leaves undefined (bytes below 32 always are), for
// the page they were last looked up for; -1 for none yet.
struct UndefinedBytes {
    int codepage = -1;
    bool single_byte = true;
    std::array<bool, 256> undefined{};
};

// Working state of one decoder walk; reset by chk_typ.
struct WalkState {
    bool overrun_noted = false;      // one report line for reads past the end
    std::string flags_seen;          // polygon flag values seen, two hex digits each
    int short_strings = 0;           // strings shorter than 3 (loadutf8)
    bool wrongly_parsed = false;     // UTF-8 bytes found in a code-page string
    std::string wrong_example;       // the first offender
    std::string bad_language;        // a language that could not be read as UTF-8
    std::string no_level_types;      // polygons with subtype and no draw order
    bool has_extended_data = false;  // the file carries data behind the points
    int32_t end_of_standard = 0;     // where the last point record may end
    bool active_possible = false;    // header long enough for active routing
    uint8_t byte122 = 0;             // the unknown header byte, kept for saving
    int64_t point_pixels = 0;        // pixels of the point pictures decoded so far
    int64_t label_bytes = 0;         // bytes of the label blocks read so far
    int64_t line_rows = 0;           // characters of line picture rows made so far
    UndefinedBytes undefined;        // of the labels' code page, looked up once
};

struct Store {
    // polygons
    std::vector<std::string> pg_typ, pg_bmp, pg_col, pg_txt, pg_drw, pg_lab, pg_dayc, pg_xpm;
    std::vector<int32_t> pg_len, pg_pos;
    std::vector<int16_t> pg_ncol;
    std::vector<uint8_t> pg_mode;
    int32_t pg_n = 0;
    int32_t pg_ni = 0;

    // lines: ordinary rows first, active lines behind them at ln_n + k
    std::vector<std::string> ln_bmp, ln_col, ln_txt, ln_lab, ln_dayc, ln_act, ln_xpm;
    std::vector<int32_t> ln_len, ln_pos, ln_code;
    std::vector<int16_t> ln_ncol, ln_wid, ln_bord;
    std::vector<uint8_t> ln_mode;
    int32_t ln_n = 0;
    int32_t ln_nact = 0;

    // points: ordinary rows first, extra points behind them at pt_n + k
    std::vector<std::string> pt_col, pt_bmp, pt_nbmp, pt_txt, pt_typ, pt_lab, pt_cc, pt_xpm;
    std::vector<int32_t> pt_len;
    std::vector<int16_t> pt_ncol, pt_nncol;
    std::vector<uint8_t> pt_mode;  // colour mode digit: 0 opaque, 1 one transparent, 2 alpha
    int32_t pt_n = 0;
    int32_t pt_nx = 0;

    int32_t pg_nnight = 0;
    int32_t pt_nnight = 0;

    std::string drwlist;  // " 0012,1 10f03,2 ..."
    int curclass = k_polygons;
    int32_t curel = 0;
    bool dirty = false;

    // header state
    int32_t hdr_len = 91;
    std::string hdr_caption;  // the header length display: a blank and hex digits
    std::string fid;
    std::string pid = "1";
    int32_t codepage = 1252;
    bool utf8txt = false;
    std::string curfile;
    std::string curf;         // the whole open TYP file, one char a byte
    bool from_family = false;  // opened from an installed map: its first save keeps a copy
    std::string created;      // "Created  d m y h:m" line of the loaded file
    std::string loadrep;
    std::string loadmsg;
    std::string ldopts = "111111";
    std::array<std::string, 6> blocks;
    int32_t extra_offset = 0;  // block 1 offset of the last save
    int cvcp = 1252;           // code page of the last string conversion

    WalkState walk;
    Settings opt;

    // Set while the project's history records a change (row_watch.h); the
    // row operations report to it.
    RowWatch* row_watch = nullptr;

    // Lines of loadrep already noted, so that note_once stays linear on a
    // file that reports every record. Rebuilt when loadrep was changed
    // behind note_once's back.
    struct ReportIndex {
        std::unordered_set<std::string> lines;
        size_t size = 0;
    } report_index;
};

// A corrupt file could report every record; beyond this many lines the
// report says so once and takes no more.
constexpr size_t k_report_limit = 2000;

// Resets the store for a new or freshly opened file (the dirty prompt is the
// caller's business).
void newproject(Store& s);

// Character n (from 1) of the load options.
char chkl(const Store& s, int n);

// Adds text and a line end to the load report unless the report holds it.
void note_once(Store& s, const std::string& text);

// Grows or shrinks one class's columns, keeping contents. Class 0 sizes
// pg_drw one larger. Class 2 sizes the point columns.
void procredim(Store& s, int cls, int32_t count);

}  // namespace korvex::model
