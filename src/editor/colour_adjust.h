// The colour adjustments of the icon editor: brightness, contrast, hue,
// lightness and saturation, colour balance and vibrance, worked on the
// element's palette, or on the pixels of a true-colour icon. Every slider
// move recomputes the colours from origpal, the colours as they stood when
// the panel opened, so a slider back at 0 gives them back exactly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The adjustments, each on a list of colours. Entries of the transparent
// marker stay; with `only` (an entry from 1) the others stay too.
struct AdjustScope {
    uint32_t marker = k_transparent_magenta;
    int only = 0;  // onecolour: the one entry that changes; 0 for all
};

// Each channel plus Int(value x 0.9), half to even, kept within 0..255.
std::vector<uint32_t> change_brightness(const std::vector<uint32_t>& pal, int value, const AdjustScope& scope);
// Each channel moved away from (value above 0) or towards the mean of its
// channel over the opaque entries: mean + (channel - mean) x (100 + value) / 100.
std::vector<uint32_t> change_contrast(const std::vector<uint32_t>& pal, int value, const AdjustScope& scope);
// Hue turned by hue degrees; lightness and saturation multiplied by
// (slider + 100) / 100, each capped at its full value.
std::vector<uint32_t> change_hls(const std::vector<uint32_t>& pal, int hue, int lightness, int saturation,
                                 const AdjustScope& scope);
// Colour balance: red, green, blue add to their channel; cyan, magenta and
// yellow take from red, green and blue.
std::vector<uint32_t> change_cols(const std::vector<uint32_t>& pal, int red, int green, int blue, int cyan, int magenta,
                                  int yellow, const AdjustScope& scope);
// Each channel below the largest moves towards it by |max - mean| / 127 x
// amount / 100.
std::vector<uint32_t> vibrance(const std::vector<uint32_t>& pal, int amount, const AdjustScope& scope);

// The positions of the panel's sliders; all 0 leaves the colours as they are.
struct Sliders {
    int brightness = 0, contrast = 0;
    int hue = 0, lightness = 0, saturation = 0;
    int red = 0, green = 0, blue = 0, cyan = 0, magenta = 0, yellow = 0;
    int vibrance = 0;
    bool operator==(const Sliders&) const = default;
};
// All adjustments in turn, from origpal.
std::vector<uint32_t> adjusted(const std::vector<uint32_t>& origpal, const Sliders& s, const AdjustScope& scope);
// The caption of a slider with its value, e.g. "Brightness 12".
std::string slider_label(const std::string& name, int value);

// The panel's life: opened on the palette (or a true-colour icon's
// pixels), moved, then applied or cancelled. While it is open the canvas
// is blocked and the picture shows the adjusted colours.
class ColourAdjuster {
public:
    // Takes origpal and keeps the picture for Ctrl+Z and "Restore Image".
    void open(EditorSession& e);
    bool is_open() const { return open_; }
    // "Apply Filter to 1 colour ": only the selected entry changes.
    void set_onecolour(EditorSession& e, bool on);
    bool onecolour() const { return onecolour_; }
    // A slider moved: the picture shows the colours adjusted from origpal.
    void move(EditorSession& e, const Sliders& s);
    const Sliders& sliders() const { return sliders_; }
    // "Restore Image": the picture as the panel found it, sliders at 0.
    void restore(EditorSession& e);
    // Apply: the adjusted colours stay (setpal); bit 64 of changes2, and
    // bit 32 when the brightness moved. The panel closes.
    void apply(EditorSession& e);
    // Cancel: the colours go back to origpal (setorigpal); the panel closes.
    void cancel(EditorSession& e);
    const std::vector<uint32_t>& origpal() const { return origpal_; }

private:
    void show(EditorSession& e, const std::vector<uint32_t>& colours) const;
    bool open_ = false;
    bool onecolour_ = false;
    bool truecolour_ = false;
    std::vector<uint32_t> origpal_;
    Sliders sliders_;
};

// minvert: each opaque entry takes its complement. A true-colour icon is
// refused with "Convert to 256 Colours first.". The palette is kept first,
// so Ctrl+Z takes it back.
bool minvert(EditorSession& e, platform::Prompt& ui);
// mdesat: each opaque entry (each pixel of a true-colour icon) becomes the
// grey of its channels' mean, half to even.
bool mdesat(EditorSession& e);

}  // namespace korvex::editor
