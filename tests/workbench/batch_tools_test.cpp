// The batch bitmap tools on points: each undone by its reverse over the
// corpus, the limits at their boundary, the points passed over, and the
// refusals that change nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <unistd.h>

#include "ops_fixture.h"
#include "text/load_driver.h"
#include "workbench/canvas_tools.h"
#include "workbench/label_pixel.h"
#include "workbench/night_points.h"
#include "workbench/point_checks.h"
#include "workbench/point_section.h"
#include "workbench/unused_colours.h"

namespace korvex::workbench {
namespace {

namespace fs = std::filesystem;
using namespace korvex::testing;

// The colour of every pixel of a picture, row by row: what it draws,
// whatever its keys.
std::vector<std::string> pixel_colours(const PointPicture& p) {
    std::map<std::string, std::string> value;
    for (const std::string& line : p.colour_lines) {
        const size_t c = line.find(" c ");
        const size_t q = line.find('"', c);
        value[colour_key(line, p.cpp)] = line.substr(c + 3, q - c - 3);
    }
    std::vector<std::string> out;
    for (const std::string& row : p.rows)
        for (size_t k = 0; k + static_cast<size_t>(p.cpp) <= row.size(); k += static_cast<size_t>(p.cpp))
            out.push_back(value[row.substr(k, static_cast<size_t>(p.cpp))]);
    return out;
}

// What a tool may change of a point.
struct PointState {
    std::string col, bmp, nbmp, xpm, txt;
    bool operator==(const PointState&) const = default;
};
PointState state_of(const model::Store& s, int32_t r) {
    const auto i = static_cast<size_t>(r);
    return {s.pt_col[i], s.pt_bmp[i], s.pt_nbmp[i], s.pt_xpm[i], s.pt_txt[i]};
}
std::vector<PointState> all_points(const model::Store& s) {
    std::vector<PointState> out;
    for (int32_t r = 0; r < s.pt_n; ++r) out.push_back(state_of(s, r));
    return out;
}

// A project of points on show, every tool answered Yes.
struct Bench {
    model::Store s;
    Browser b;
    platform::ScriptedPrompt ui{platform::Answer::yes};
    BatchRequest req;
    const integration::Messages& m = english_messages();
    fs::path folder;

    Bench() {
        folder = fs::temp_directory_path() / ("korvex_batch_" + std::to_string(::getpid()));
        fs::create_directories(folder / "system" / "bin");
        req.data_folder = folder.string();
        req.all = true;
    }
    ~Bench() {
        std::error_code ec;
        fs::remove_all(folder, ec);
    }
    void load_text(const std::string& body) {
        platform::QuietPrompt quiet;
        model::newproject(s);
        text::load_txt(s, quiet, "", test::k_head + body, false, false);
        show(model::k_points);
    }
    void load_file(const std::string& path) {
        platform::QuietPrompt quiet;
        if (path.ends_with(".typ"))
            decode_bytes(s, quiet, read_bytes(path));
        else
            text::load_txt(s, quiet, path, read_bytes(path), false, false);
        show(model::k_points);
    }
    void show(int cls) {
        s.curclass = cls;
        s.dirty = false;
        b.set_class(cls);
        b.build_grid(s);
    }
};

// A point of the text form: head w h, the colour lines and rows.
std::string tool_point(const std::string& type, int w, int h, const std::vector<std::string>& colours,
                  const std::vector<std::string>& rows, const std::string& mode = "16", int cpp = 1) {
    std::string t = "[_point]\r\nType=0x" + type + "\r\nString1=0x04,P\r\nDayXpm=\"" + std::to_string(w) + ' ' +
                    std::to_string(h) + ' ' + std::to_string(colours.size()) + ' ' + std::to_string(cpp) +
                    "\" Colormode=" + mode + "\r\n";
    for (const auto& c : colours) t += "\"" + c + "\"\r\n";
    for (const auto& r : rows) t += "\"" + r + "\"\r\n";
    return t + "[end]\r\n";
}

// A square point of n opaque colours (two-character keys from 32 on), every
// colour drawn once, the rest colour 0.
std::string opaque_point(const std::string& type, int n, int side) {
    const int cpp = n >= 32 ? 2 : 1;
    auto key = [&](int i) {
        return cpp == 2 ? std::string{static_cast<char>(36 + i / 16), static_cast<char>(36 + i % 16)}
                        : std::string(1, static_cast<char>(36 + i));
    };
    std::vector<std::string> colours;
    for (int i = 0; i < n; ++i) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "%06X", (i * 0x030507) & 0xFFFFFF);
        colours.push_back(key(i) + " c #" + hex);
    }
    std::vector<std::string> rows;
    for (int y = 0; y < side; ++y) {
        std::string row;
        for (int x = 0; x < side; ++x) row += key(std::min(y * side + x, n - 1) < n ? (y * side + x) % n : 0);
        rows.push_back(row);
    }
    return tool_point(type, side, side, colours, rows, "0", cpp);
}

std::vector<std::string> tool_corpus_files() {
    std::vector<std::string> files;
    if (!corpus_dir().empty()) {
        files = files_with(corpus_dir() + "/typ", ".typ");
        for (const auto& f : files_with(corpus_dir() + "/txt", ".txt")) files.push_back(f);
    }
    return corpus_params(std::move(files));
}

class BatchToolsCorpus : public ::testing::TestWithParam<std::string> {};

// Over every point of the file: rempxl undoes adpixel, Remove White Space
// after Add Canvas draws what Remove White Space alone draws, and Add Night
// POIs gives a night picture equal to the day one. Points a tool passes over
// stay as they were.
TEST_P(BatchToolsCorpus, EachToolIsUndoneByItsReverse) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    Bench t;
    t.load_file(GetParam());
    const std::vector<PointState> original = all_points(t.s);

    adpixel(t.s, t.ui, t.m, t.b, t.req);
    const std::vector<PointState> marked = all_points(t.s);
    rempxl(t.s, t.ui, t.m, t.b, t.req);
    for (int32_t r = 0; r < t.s.pt_n; ++r) {
        const auto i = static_cast<size_t>(r);
        if (marked[i] == original[i]) continue;  // not accepted by adpixel
        EXPECT_EQ(state_of(t.s, r), original[i]) << t.s.pt_typ[i];
    }

    // Remove White Space alone, on a copy.
    Bench alone;
    alone.load_file(GetParam());
    remborder(alone.s, alone.ui, alone.m, alone.b, alone.req);
    int accepted = 0;
    for (const char side : std::string("LDUR")) {
        Bench t2;
        t2.req.max_size = 255;
        t2.load_file(GetParam());
        adcanvas(t2.s, t2.ui, t2.m, t2.b, t2.req, side);
        const std::vector<PointState> grown = all_points(t2.s);
        remborder(t2.s, t2.ui, t2.m, t2.b, t2.req);
        for (int32_t r = 0; r < t2.s.pt_n; ++r) {
            const auto i = static_cast<size_t>(r);
            if (grown[i] == original[i]) continue;  // not accepted by adcanvas
            ++accepted;
            const PointPicture back = read_point_picture(t2.s, r);
            const PointPicture once = read_point_picture(alone.s, r);
            // A picture of nothing but transparent pixels keeps any size
            // Remove White Space finds it at.
            const auto drawn = pixel_colours(once);
            if (std::count(drawn.begin(), drawn.end(), "none") == static_cast<long>(drawn.size())) continue;
            ASSERT_EQ(back.width, once.width) << side << ' ' << t2.s.pt_typ[i];
            ASSERT_EQ(back.height, once.height) << side << ' ' << t2.s.pt_typ[i];
            EXPECT_EQ(pixel_colours(back), pixel_colours(once)) << side << ' ' << t2.s.pt_typ[i];
        }
    }

    // A file whose every point has opacity, night or no picture gives the
    // tools nothing; any other gives them something.
    int candidates = 0;
    for (int32_t r = 0; r < alone.s.pt_n; ++r) {
        std::string why;
        candidates += chkcanv(alone.s, r, why) ? 0 : 1;
    }
    if (candidates > 0) {
        EXPECT_GT(accepted, 0);
    }

    Bench night;
    night.load_file(GetParam());
    const int added = add_nightpois(night.s, night.ui, night.m, night.b, night.req);
    int nights = 0;
    for (int32_t r = 0; r < night.s.pt_n; ++r) {
        const auto i = static_cast<size_t>(r);
        if (state_of(night.s, r) == original[i]) continue;
        ++nights;
        const std::string& col = night.s.pt_col[i];
        const size_t head = col.find("NightXpm=");
        ASSERT_NE(head, std::string::npos) << night.s.pt_typ[i];
        const std::string day = col.substr(0, head);
        const std::string rest = col.substr(col.find('\n', head) + 1);
        EXPECT_EQ(rest + "\r\n", day.substr(0, day.size() - 2)) << night.s.pt_typ[i];
        EXPECT_EQ(night.s.pt_nbmp[i], night.s.pt_bmp[i]) << night.s.pt_typ[i];
        EXPECT_EQ(night.s.pt_lab[i][0], 1);
    }
    EXPECT_EQ(nights, added);
}

// What the tools write is a valid point: saved as a TYP and read back, a
// bordered, label-pixelled point with a night copy draws the same and keeps
// its labels. Unused colours go first, as a user tidies a file, which leaves
// pictures of transparent pixels only for the night copy.
TEST_P(BatchToolsCorpus, ChangedPointsSurviveATypSave) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    Bench t;
    t.req.max_size = 255;
    t.load_file(GetParam());
    redun(t.s, model::k_points);
    adborder(t.s, t.ui, t.m, t.b, t.req, 1);
    adpixel(t.s, t.ui, t.m, t.b, t.req);
    std::vector<bool> day_only;
    for (int32_t r = 0; r < t.s.pt_n; ++r) day_only.push_back(t.s.pt_nbmp[static_cast<size_t>(r)].empty());
    add_nightpois(t.s, t.ui, t.m, t.b, t.req);
    platform::QuietPrompt quiet;
    const std::string bytes = encode(t.s, quiet);
    ASSERT_FALSE(bytes.empty());
    model::Store back;
    decode_bytes(back, quiet, bytes);
    EXPECT_EQ(back.loadrep.find("lang>"), std::string::npos) << back.loadrep;
    // A type the file holds twice cannot say which of the two came back.
    std::map<std::string, int32_t> by_type;
    std::map<std::string, int> times;
    for (int32_t r = 0; r < back.pt_n; ++r) by_type.emplace(back.pt_typ[static_cast<size_t>(r)], r);
    for (int32_t r = 0; r < t.s.pt_n; ++r) ++times[t.s.pt_typ[static_cast<size_t>(r)]];
    for (int32_t r = 0; r < t.s.pt_n; ++r) {
        const auto i = static_cast<size_t>(r);
        if (!day_only[i] || t.s.pt_nbmp[i].empty() || times[t.s.pt_typ[i]] > 1) continue;
        const auto hit = by_type.find(t.s.pt_typ[i]);
        ASSERT_NE(hit, by_type.end()) << t.s.pt_typ[i];
        const PointPicture saved = read_point_picture(back, hit->second);
        const PointPicture made = read_point_picture(t.s, r);
        ASSERT_EQ(saved.width, made.width) << t.s.pt_typ[i];
        ASSERT_EQ(saved.height, made.height) << t.s.pt_typ[i];
        EXPECT_EQ(pixel_colours(saved), pixel_colours(made)) << t.s.pt_typ[i];
        EXPECT_EQ(pixel_colours(read_night_picture(back, hit->second)), pixel_colours(made)) << t.s.pt_typ[i];
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, BatchToolsCorpus, ::testing::ValuesIn(tool_corpus_files()), [](const auto& info) {
    return file_param_name(info.param) + (info.param.ends_with(".typ") ? "_typ" : "_txt");
});

// The tools as one list, for what they all share.
using Tool = std::function<int(Bench&)>;
const std::vector<std::pair<const char*, Tool>>& tools() {
    static const std::vector<std::pair<const char*, Tool>> list = {
        {"adcanvas", [](Bench& t) { return adcanvas(t.s, t.ui, t.m, t.b, t.req, 'L'); }},
        {"adborder", [](Bench& t) { return adborder(t.s, t.ui, t.m, t.b, t.req, 2); }},
        {"remborder", [](Bench& t) { return remborder(t.s, t.ui, t.m, t.b, t.req); }},
        {"adpixel", [](Bench& t) { return adpixel(t.s, t.ui, t.m, t.b, t.req); }},
        {"rempxl", [](Bench& t) { return rempxl(t.s, t.ui, t.m, t.b, t.req); }},
        {"add_nightpois", [](Bench& t) { return add_nightpois(t.s, t.ui, t.m, t.b, t.req); }},
    };
    return list;
}

const std::string k_margined = tool_point("2f10", 3, 4, {"A c #FF0000", ". c none"}, {"...", ".A.", ".A.", "..."}) +
                               tool_point("2f11", 3, 4, {"A c #FF0000", ". c none"}, {"...", ".A.", "...", ".A$"});

TEST(BatchTools, AnEmptyClassSaysNoDataAndAnEmptySelectionAsksForOne) {
    for (const auto& [name, tool] : tools()) {
        Bench t;
        t.load_text(tool_point("2f00", 1, 1, {"A c #FF0000"}, {"A"}, "0"));
        t.load_text("");
        EXPECT_EQ(tool(t), 0) << name;
        EXPECT_EQ(t.ui.messages, std::vector<std::string>{"No data."}) << name;

        Bench u;
        u.load_text(k_margined);
        u.req.all = false;
        EXPECT_EQ(tool(u), 0) << name;
        EXPECT_EQ(u.ui.messages.back(), "Please CTRL/SHIFT or CTRL A select.\r\n\r\nCTRL/SHFT  (CTRL A) (Esc = cancel)")
            << name;
        EXPECT_TRUE(u.ui.questions.empty()) << name;
    }
}

TEST(BatchTools, AnythingButYesAtContinueChangesNothing) {
    for (const auto answer : {platform::Answer::no, platform::Answer::cancel}) {
        for (const auto& [name, tool] : tools()) {
            Bench t;
            t.load_text(k_margined);
            const auto before = all_points(t.s);
            t.ui.script(answer);
            EXPECT_EQ(tool(t), 0) << name;
            EXPECT_EQ(t.ui.messages.front(), "Reload TYP file to undo changes.") << name;
            EXPECT_EQ(t.ui.questions, std::vector<std::string>{"Continue?"}) << name;
            EXPECT_EQ(all_points(t.s), before) << name;
            EXPECT_FALSE(t.s.dirty) << name;
        }
    }
}

TEST(BatchTools, PointsToolsWantPointsInView) {
    for (const auto& [name, tool] : tools()) {
        Bench t;
        t.load_text(k_margined + test::polygon("0x03", "A"));
        t.show(model::k_polygons);
        EXPECT_EQ(tool(t), 0) << name;
        EXPECT_EQ(t.ui.messages, std::vector<std::string>{std::string(name) == "add_nightpois" ? "Change to POINTS"
                                                                                              : "Please show POIs"})
            << name;
    }
}

// Night, opacity and no bitmap: every tool lists them (where it keeps a
// list) and leaves them as they were.
TEST(BatchTools, ExcludedPointsAreListedAndUnchanged) {
    const std::string excluded =
        "[_point]\r\nType=0x2f1a\r\nDayXpm=\"2 2 2 1\" Colormode=32\r\n\"A c #FF0000\" alpha=3\r\n\"B c #00FF00\" "
        "alpha=0\r\n\"AB\"\r\n\"BA\"\r\n[end]\r\n"
        "[_point]\r\nType=0x2f1b\r\nDayXpm=\"2 2 2 1\" Colormode=16\r\n\"A c #FF0000\"\r\n\". c none\"\r\n\"..\"\r\n\"A.\"\r\n"
        "NightXpm=\"2 2 2 1\" Colormode=16\r\n\"A c #000000\"\r\n\". c none\"\r\n\"..\"\r\n\"A.\"\r\n[end]\r\n"
        "[_point]\r\nType=0x2f1c\r\nDayXpm=\"0 0 0 0\"\r\n[end]\r\n";
    for (const auto& [name, tool] : tools()) {
        Bench t;
        t.load_text(excluded);
        const auto before = all_points(t.s);
        EXPECT_EQ(tool(t), 0) << name;
        EXPECT_EQ(all_points(t.s), before) << name;
        const std::string n = name;
        if (n == "remborder" || n == "rempxl") continue;
        ASSERT_EQ(t.ui.reports.size(), 1u) << name;
        EXPECT_EQ(t.ui.reports[0].text,
                  "Excluded:\r\n02F1A has opacity\r\n02F1B has night bmp\r\n02F1C has no bitmap\r\n")
            << name;
    }
}

TEST(BatchTools, AddCanvasPadsTheNamedSideWithTransparency) {
    struct Case {
        char side;
        int w, h;
        std::vector<std::string> rows;
    };
    const std::vector<Case> cases = {
        {'L', 4, 1, {"..AB"}},
        {'R', 4, 1, {"AB.."}},
        {'U', 2, 2, {"..", "AB"}},
        {'D', 2, 2, {"AB", ".."}},
    };
    for (const Case& c : cases) {
        Bench t;
        t.load_text(tool_point("2f03", 2, 1, {"A c #FF0000", "B c #0000FF"}, {"AB"}, "0"));
        EXPECT_EQ(adcanvas(t.s, t.ui, t.m, t.b, t.req, c.side), 1) << c.side;
        const PointPicture p = read_point_picture(t.s, 0);
        EXPECT_EQ(p.width, c.w) << c.side;
        EXPECT_EQ(p.height, c.h) << c.side;
        EXPECT_EQ(p.mode, "16");
        std::vector<std::string> want;
        for (const std::string& row : c.rows)
            for (const char k : row) want.push_back(k == 'A' ? "#FF0000" : k == 'B' ? "#0000FF" : "none");
        EXPECT_EQ(pixel_colours(p), want) << c.side;
        EXPECT_TRUE(t.s.dirty);
    }
}

TEST(BatchTools, AddBorderGrowsEverySideByN) {
    Bench t;
    t.load_text(tool_point("2f04", 1, 1, {"A c #FF0000"}, {"A"}, "0"));
    EXPECT_EQ(canvas(t.s, t.ui, t.m, t.b, t.req, 'M', 2), 1);
    const PointPicture p = read_point_picture(t.s, 0);
    EXPECT_EQ(p.width, 5);
    EXPECT_EQ(p.height, 5);
    const auto px = pixel_colours(p);
    EXPECT_EQ(std::count(px.begin(), px.end(), "none"), 24);
    EXPECT_EQ(px[12], "#FF0000");
    // Remove White Space takes it back off.
    t.ui.messages.clear();
    EXPECT_EQ(remborder(t.s, t.ui, t.m, t.b, t.req), 1);
    EXPECT_EQ(t.ui.messages.back(), "Pois reduced:1");
    EXPECT_EQ(pixel_colours(read_point_picture(t.s, 0)), std::vector<std::string>{"#FF0000"});
}

// Max Size: a point that reaches it is changed, one that would pass it is
// listed once and stays.
TEST(BatchTools, MaxSizeAtTheLimitAndOneAbove) {
    for (const int side : {32, 33}) {
        Bench t;
        t.load_text(opaque_point("2f0a", 2, side) + opaque_point("2f0b", 2, side));
        const auto before = all_points(t.s);
        const int changed = adcanvas(t.s, t.ui, t.m, t.b, t.req, 'R');
        if (side == 32) {
            EXPECT_EQ(changed, 2);
            EXPECT_EQ(read_point_picture(t.s, 0).width, 64);
            EXPECT_TRUE(t.ui.reports.empty());
        } else {
            EXPECT_EQ(changed, 0);
            EXPECT_EQ(all_points(t.s), before);
            ASSERT_EQ(t.ui.reports.size(), 1u);
            EXPECT_EQ(t.ui.reports[0].text,
                      "Excluded:\r\n02F0A Max width/height set to 64.Change in Settings\r\n02F0B Max width/height set "
                      "to 64.Change in Settings\r\n");
            EXPECT_FALSE(t.s.dirty);
        }
    }
}

// 255 colours after the tool pass; the transparent colour that would be the
// 256th is refused. 31 colours and a new one re-key to two characters.
TEST(BatchTools, ColourLimitAndKeyChangeAtTheirBoundaries) {
    for (const int n : {31, 254, 255}) {
        Bench t;
        t.req.max_size = 128;
        t.load_text(opaque_point("2f05", n, 16));
        const auto before = all_points(t.s);
        const auto pixels = pixel_colours(read_point_picture(t.s, 0));
        const int changed = adborder(t.s, t.ui, t.m, t.b, t.req, 1);
        if (n == 255) {
            EXPECT_EQ(changed, 0);
            EXPECT_EQ(all_points(t.s), before);
            ASSERT_EQ(t.ui.reports.size(), 1u);
            EXPECT_EQ(t.ui.reports[0].text, "Excluded:\r\n02F05 colours exceeds 255\r\n");
            continue;
        }
        ASSERT_EQ(changed, 1) << n;
        EXPECT_EQ(t.s.pt_ncol[0], n + 1);
        const PointPicture p = read_point_picture(t.s, 0);
        EXPECT_EQ(p.cpp, 2) << n;
        // The old pixels, framed by one transparent pixel.
        std::vector<std::string> inner;
        const auto px = pixel_colours(p);
        for (int y = 1; y <= 16; ++y)
            for (int x = 1; x <= 16; ++x) inner.push_back(px[static_cast<size_t>(y * 18 + x)]);
        EXPECT_EQ(inner, pixels) << n;
    }
}

TEST(BatchTools, AOneByOneTransparentPointTrimsToNothingAndStays) {
    Bench t;
    t.load_text(tool_point("2f06", 1, 1, {"A c #FF0000", ". c none"}, {"."}) + tool_point("2f07", 1, 1, {". c none"}, {"."}));
    const auto before = all_points(t.s);
    EXPECT_EQ(remborder(t.s, t.ui, t.m, t.b, t.req), 0);
    EXPECT_EQ(t.ui.messages.back(), "Pois reduced:0");
    EXPECT_EQ(all_points(t.s), before);
    EXPECT_FALSE(t.s.dirty);
}

TEST(BatchTools, LabelPixelGoesAQuarterDownAndOnlyWhereTheColumnIsFree) {
    Bench t;
    // Rows 0..4: the pixel goes to row 1 (5 / 4); the second point's last
    // column is taken.
    t.load_text(tool_point("2f08", 2, 5, {"A c #FF0000", ". c none"}, {"A.", "A.", "A.", "A.", "A."}) +
                tool_point("2f09", 2, 4, {"A c #FF0000", ". c none"}, {"A.", "AA", "A.", "A."}));
    EXPECT_EQ(adpixel(t.s, t.ui, t.m, t.b, t.req), 1);
    EXPECT_EQ(t.ui.messages.back(), "Pixels added:1");
    const auto px = pixel_colours(read_point_picture(t.s, 0));
    EXPECT_EQ(px[3], "#FF0000");  // colour "$" of the point: its first
    EXPECT_EQ(std::count(px.begin(), px.end(), "none"), 4);
    ASSERT_EQ(t.ui.reports.size(), 1u);
    EXPECT_EQ(t.ui.reports[0].text, "Excluded:\r\n02F09\r\n");
    EXPECT_TRUE(fs::exists(t.folder / "system" / "adpxl"));
    EXPECT_TRUE(t.s.dirty);

    // Two label pixels are no label pixel, and a row ending in another
    // colour stops the walk: rempxl leaves such points.
    Bench u;
    u.load_text(tool_point("2f0c", 2, 4, {"A c #FF0000", ". c none"}, {"A.", "AA", "AA", "A."}) +
                tool_point("2f0d", 2, 4, {"A c #FF0000", "B c #00FF00", ". c none"}, {"A.", "AA", "AB", "A."}));
    const auto before = all_points(u.s);
    EXPECT_EQ(rempxl(u.s, u.ui, u.m, u.b, u.req), 0);
    EXPECT_EQ(u.ui.messages.back(), "Pixels removed : 0");
    EXPECT_EQ(all_points(u.s), before);
    EXPECT_FALSE(u.s.dirty);
}

}  // namespace
}  // namespace korvex::workbench
