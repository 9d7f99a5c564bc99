// Scene text from a scene: the form read_scene reads, eight coordinates a line.
#include "preview/scene.h"

#include <charconv>
#include <cstdio>

namespace korvex::preview {

namespace {

constexpr int k_points_per_line = 8;

// The shortest text that reads back to the same number.
std::string number_text(double v) {
    char buf[32];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return ec == std::errc() ? std::string(buf, end) : std::string("0");
}

const char* class_word(FeatureClass c) {
    switch (c) {
        case FeatureClass::polygon: return "polygon";
        case FeatureClass::line: return "line";
        case FeatureClass::point: return "point";
    }
    return "point";
}

}  // namespace

std::string scene_type_text(int32_t code) {
    char buf[16];
    if (code > 0xffff) std::snprintf(buf, sizeof buf, "0x%05x", static_cast<unsigned>(code));
    else if ((code & 0xff) == 0) std::snprintf(buf, sizeof buf, "0x%02x", static_cast<unsigned>(code >> 8));
    else std::snprintf(buf, sizeof buf, "0x%04x", static_cast<unsigned>(code));
    return buf;
}

std::string write_scene(const Scene& scene) {
    std::string out = "scene " + scene.name + " " + number_text(scene.width) + " " + number_text(scene.height) + "\n";
    for (const Feature& f : scene.features) {
        out += class_word(f.cls);
        out += ' ';
        out += scene_type_text(f.code);
        if (!f.label.empty()) {
            out += " \"";
            for (const char c : f.label) {
                if (c == '"' || c == '\\') out += '\\';
                // A line end would end the head line; the reader has no escape for it.
                out += c == '\n' ? ' ' : c;
            }
            out += '"';
        }
        for (size_t k = 0; k < f.points.size(); ++k) {
            out += k % k_points_per_line == 0 ? "\n  " : " ";
            out += number_text(f.points[k].x) + "," + number_text(f.points[k].y);
        }
        out += '\n';
    }
    return out;
}

}  // namespace korvex::preview
