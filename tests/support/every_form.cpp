#include "support/every_form.h"

#include "platform/prompt.h"
#include "support/harness.h"
#include "support/sample_builder.h"

namespace korvex::testing {

using namespace korvex::samples;

void build_every_form(model::Store& s) {
    new_project(s, "4711", 174);

    // Every polygon scheme.
    const std::vector<Label> forest = {{0x04, "Forest"}, {0x02, "Wald"}};
    add_polygon(s, {0x01, 0, 6, {"#C0C0C0"}, {{0x04, "City"}, {0x02, "Stadt"}}, {"Normal", "", "", ""}});
    add_polygon(s, {0x02, 0, 7, {"#FFE0A0", "#404020"}, {}, {}});
    add_polygon(s, {0x03, 0, 8, {"#208020", "#A0E0A0"}, forest, {"SmallFont", "Day", "#006000", ""}});
    add_polygon(s, {0x04, 0, 9, {"#2020C0", "#8080FF", "#000040", "#202080"}, {}, {}});
    add_polygon(s, {0x05, 0, 11, {"none", "#C08040", "#403020", "#604020"}, {}, {}});
    add_polygon(s, {0x06, 0, 13, {"#E0E0E0", "#808080", "none", "#202020"}, {}, {"Large", "", "", ""}});
    add_polygon(s, {0x07, 0, 14, {"none", "#FF0000"}, {{0x04, "Danger"}}, {}});
    add_polygon(s, {0x10f, 3, 15, {"none", "#00A0FF", "none", "#004060"}, {{0x04, "Glacier"}}, {}});
    add_level(s, 0x01, 0, 1);
    add_level(s, 0x02, 0, 1);
    add_level(s, 0x03, 0, 2);
    add_level(s, 0x04, 0, 2);
    add_level(s, 0x05, 0, 3);
    add_level(s, 0x06, 0, 3);
    add_level(s, 0x07, 0, 4);
    add_level(s, 0x10f, 3, 4);

    // Lines with and without bitmap.
    add_line(s, {0x01, 0, {"#E00000", "#600000"}, 0, 5, 1, true, {{0x04, "Motorway"}, {0x02, "Autobahn"}}, {"Normal", "", "", ""}, ""});
    add_line(s, {0x02, 0, {"#FF8000"}, 0, 3, 0, true, {}, {}, ""});
    add_line(s, {0x03, 0, {"#FFFF00", "#303000"}, 0, 2, 0, true, {}, {}, ""});
    add_line(s, {0x04, 0, {"#000000", "#FFFFFF", "#FFFFFF", "#000000"}, 0, 4, 1, true, {}, {}, ""});
    add_line(s, {0x05, 0, {"#808080", "#F0F0F0"}, 3, 0, 0, true, {{0x04, "Track"}}, {"SmallFont", "DayAndNight", "#202020", "#E0E0E0"}, ""});
    add_line(s, {0x06, 0, {"#0000FF", "none"}, 2, 0, 0, false, {}, {}, ""});
    add_line(s, {0x07, 0, {"#00FF00", "#004000", "#00FF00", "#00C000"}, 4, 0, 0, true, {}, {}, ""});
    add_line(s, {0x08, 0, {"#A00000", "none", "#FF8080", "none"}, 1, 0, 0, true, {}, {}, ""});
    add_line(s, {0x10e, 1, {"#8000FF", "none", "#400080", "#200040"}, 5, 0, 0, true, {{0x04, "Ferry"}}, {}, ""});
    add_line(s, {0x16, 0, {"#A05020", "#FFFFFF"}, 0, 2, 1, true, {{0x04, "Hiking trail"}}, {}, "41"});

    // Points: the three colour modes, night pictures, many colour counts.
    const int counts[] = {1, 2, 3, 15, 16, 31, 32, 200};
    unsigned seed = 10;
    int sub = 0;
    auto icon = [&](int type, int w, int h, int colours, int mode) {
        PointSpec p;
        p.type = type;
        p.subtype = sub++ % 32;
        p.width = w;
        p.height = h;
        p.colours = colours;
        p.mode = mode;
        p.seed = seed++;
        return p;
    };
    for (int c : counts) {
        PointSpec p = icon(0x2f, c >= 31 ? 24 : 13 + (c % 5), c >= 31 ? 20 : 11, c, 0);
        p.labels = {{0x04, "Shop " + std::to_string(c)}, {0x02, "Laden " + std::to_string(c)}};
        add_point(s, p);
    }
    for (int c : {1, 2, 3, 14, 15, 40}) {
        PointSpec p = icon(0x30, 15, 9, c, 16);
        p.night_colours = c == 3 ? 2 : 0;
        add_point(s, p);
    }
    for (int c : {1, 3, 7, 16, 48}) {
        PointSpec p = icon(0x11a, 17, 12, c, 32);
        p.night_colours = c == 7 ? 5 : 0;
        p.font = {"SmallFont", "Day", "#102030", ""};
        add_point(s, p);
    }
    PointSpec extra;
    extra.type = 0x11b;
    extra.subtype = 1;
    extra.width = 8;
    extra.height = 8;
    extra.colours = 2;
    extra.mode = 16;
    extra.labels = {{0x04, "Extra point"}};
    add_point(s, extra, true);
}

std::string every_form_typ() {
    static const std::string bytes = [] {
        model::Store s;
        platform::ScriptedPrompt ui;
        build_every_form(s);
        return encode(s, ui);
    }();
    return bytes;
}

std::string typ_bytes(const std::string& path_or_name) {
    return path_or_name == k_every_form ? every_form_typ() : read_bytes(path_or_name);
}

}  // namespace korvex::testing
