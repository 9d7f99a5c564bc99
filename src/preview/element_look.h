// How one element of the project looks in the preview, worked out once a
// build and shared by every feature of its type: its picture, line widths,
// draw-order level and label style.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/store.h"
#include "preview/draw_list.h"

namespace korvex::preview {

struct ElementLook {
    bool ready = false;
    // polygons
    bool has_level = false;
    int level = 0;
    // polygons and lines: a solid colour or a picture; points: the picture
    bool solid = false;
    uint32_t colour = 0;
    std::shared_ptr<const Raster> raster;
    // lines without a bitmap
    bool bitmap = false;
    int width = 0, border = 0;
    uint32_t fill = 0, border_colour = 0;
    bool oriented = false;
    // the label
    std::string label;         // UTF-8 in the preferred language, else the type
    bool no_label = false;     // FontStyle=NoLabel
    FontStyle style = FontStyle::normal;
    bool has_label_colour = false;
    uint32_t label_colour = 0;
};

// The looks of the rows of one project for one build.
class LookCache {
public:
    LookCache(model::Store& s, const DrawOptions& options);
    // store_class is a model::ElementClass; row must be a row of it.
    const ElementLook& look(int store_class, int32_t row);
    // A polygon row's draw-order level, without painting it; false for none.
    bool level(int32_t row, int& level) const;

private:
    void fill(ElementLook& l, int store_class, int32_t row);
    model::Store& s_;
    DrawOptions options_;
    std::unordered_map<std::string, int> levels_;  // first level of a draw-order code
    std::vector<ElementLook> polygons_, lines_, points_;
};

// The label of an element's section text: the last string of the language,
// else of language 0, else the first; "" without strings. Bytes as held.
std::string choose_label(const std::string& section, int language);

// The section's FontStyle= value: none for NoLabel, small, large, else normal.
// Returns false for NoLabel.
bool read_font_style(const std::string& section, FontStyle& style);

// The section's custom label colour of day or night as 0xFFRRGGBB.
bool read_label_colour(const std::string& section, bool night, uint32_t& argb);

}  // namespace korvex::preview
