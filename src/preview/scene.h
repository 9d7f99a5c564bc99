// A preview scene: a named drawing area in scene units (one unit is one
// device pixel at zoom 1) and the map features drawn on it, each of a Garmin
// type that the open project may or may not style.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvex::preview {

enum class FeatureClass : uint8_t { polygon, line, point };

struct Pt {
    double x = 0, y = 0;
    bool operator==(const Pt&) const = default;
};

struct Feature {
    FeatureClass cls = FeatureClass::polygon;
    // The type as the store's type key holds it: type << 8 | subtype
    // (0x0100 is type 0x01, 0x2a06 type 0x2a subtype 6, 0x10f04 an extended
    // type).
    int32_t code = 0;
    std::string label;  // UTF-8; "" for none
    std::vector<Pt> points;
    // Set by the sampler: the feature stands for this store row of its class
    // (active lines and extra points are rows behind ln_n and pt_n), and its
    // label is the element's own in the preferred language. -1: the feature
    // takes the first row of its type and keeps its own label.
    int32_t row = -1;

    bool operator==(const Feature&) const = default;
};

// The bundled Town scene, under the data folder.
inline constexpr const char* k_town_scene = "preview/town.txt";

struct Scene {
    std::string name;
    double width = 0, height = 0;
    std::vector<Feature> features;  // in file order
};

// Reads a scene text (see "Preview scenes" in the README). A bad line gives
// one report line ("line 7: ...") and is skipped; a feature whose type or
// points are bad is skipped whole. Nothing in the text can make it fail.
struct SceneRead {
    Scene scene;
    std::vector<std::string> report;
};
SceneRead read_scene(const std::string& text);

// The scene file at path; a file that cannot be read gives an empty scene
// and one report line naming the file and the reason.
SceneRead load_scene(const std::string& path);

// The text read_scene reads back to the same scene (rows are not written).
std::string write_scene(const Scene& scene);

// The type as scene files write it: "0x" and two hex digits for a type
// without subtype, four with one, five for an extended type ("0x01",
// "0x2a06", "0x10f04").
std::string scene_type_text(int32_t code);

}  // namespace korvex::preview
