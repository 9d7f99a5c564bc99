// Small projects for the preview's tests, made from text as a user writes it.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/prompt.h"
#include "preview/scene.h"
#include "text/load_driver.h"

namespace korvex::preview_test {

inline std::string solid_polygon(const std::string& type, const std::string& rgb, const std::string& extra = "") {
    return "[_polygon]\r\nType=" + type + "\r\n" + extra + "Xpm=\"0 0 1 0\"\r\n\"1 c #" + rgb + "\"\r\n[end]\r\n";
}

// A project of the sections behind an [_id] of code page 1252.
inline model::Store project(const std::string& sections) {
    model::Store s;
    model::newproject(s);
    platform::ScriptedPrompt ui;
    text::load_txt(s, ui, "preview.txt", "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n" + sections,
                   false, false);
    return s;
}

inline preview::Feature feature(preview::FeatureClass cls, int32_t code, std::vector<preview::Pt> pts,
                                std::string label = "") {
    preview::Feature f;
    f.cls = cls;
    f.code = code;
    f.points = std::move(pts);
    f.label = std::move(label);
    return f;
}

inline preview::Feature square(int32_t code, double x, double y, double side = 10) {
    return feature(preview::FeatureClass::polygon, code, {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}});
}

inline preview::Scene scene_of(std::vector<preview::Feature> features) {
    preview::Scene sc;
    sc.name = "test";
    sc.width = 100;
    sc.height = 100;
    sc.features = std::move(features);
    return sc;
}

}  // namespace korvex::preview_test
