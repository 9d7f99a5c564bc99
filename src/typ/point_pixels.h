// Palettes and pixel rows of point icons, both directions.
//
// Palette, by colour mode:
//   0, 16   n entries of 3 bytes: blue, green, red
//   32      n entries of 28 bits (blue, green, red, 4 bits of alpha), lowest
//           bit first, padded to whole bytes: 3n + (n + 1) / 2 bytes
// Pixels: rows from the top, b bits a pixel, lowest bits first, every row
// padded to whole bytes. b is the smallest of 1, 2, 4, 8 with room for the
// palette; mode 16 needs room for one more value, n, the transparent pixel.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::typ {

constexpr int k_mode_opaque = 0;
constexpr int k_mode_transparent = 16;
constexpr int k_mode_alpha = 32;

constexpr int k_symbol_base = 36;  // "$", the symbol of colour 0

// Bits per pixel for n colours in a colour mode.
int point_bpp(int n, int mode);

// Bytes of the pixel data of a w x h icon.
int64_t point_pixel_bytes(int w, int h, int n, int mode);

// Bytes of an n-entry palette.
int64_t point_palette_bytes(int n, int mode);

// The rule of modes 0 and 32, kept under its familiar name.
inline int64_t sizebmp(int w, int h, int n) { return point_pixel_bytes(w, h, n, k_mode_opaque); }

// Sizes of the mode 16 and mode 32 pixel data (the same byte-aligned rule).
inline int64_t drawpic_1(int w, int h, int n) { return point_pixel_bytes(w, h, n, k_mode_transparent); }
inline int64_t drawpic_2(int w, int h, int n) { return point_pixel_bytes(w, h, n, k_mode_alpha); }

// Byte count the no-palette test compares (can be -1 for tiny icons).
int fnzero_sz(int w, int h);

// Canonical symbol of colour index v: one character below cpp_limit colours,
// else two. A one-character symbol past the character range is "$".
void append_symbol(std::string& out, int v, int cpp);

// Characters a pixel for a table of `colours` lines.
int symbol_width(int colours);

// One palette colour as the record holds it.
struct PaletteEntry {
    uint8_t r = 0, g = 0, b = 0;
    int alpha = 0;        // mode 32 only, 0 to 15
    bool none = false;    // the transparent colour of mode 16
};

// Value of four bits, lowest first, starting at bit `bit` of data.
int alph(std::string_view data, int64_t bit);

// Palette of n entries from the record bytes (data starts at the palette).
std::vector<PaletteEntry> read_palette(std::string_view data, int n, int mode);

// The colour lines of a palette: "<sym> c #RRGGBB" [alpha=a], "<sym> c none".
std::string palette_lines(const std::vector<PaletteEntry>& pal, int mode);
void append_palette_lines(std::string& out, const std::vector<PaletteEntry>& pal, int mode);

// The colour lines of the n-entry palette in the record bytes (data starts at
// the palette), with the "none" line of mode 16 behind them: what
// palette_lines prints for read_palette's entries, without the vector.
void append_record_palette(std::string& out, std::string_view data, int n, int mode);

// Mode 32 palette lines, printed from the 28-bit stream.
std::string alphacols(std::string_view data, int n);

// Pixel rows of an icon in canonical symbols, each row ending in CR LF.
// data starts at the pixel bytes and may be short (missing bytes read as 0).
std::string drawbmp(std::string_view data, int w, int h, int n, int mode, int cpp);
// Rows (as append_rows writes them) whose pixels name a colour past the
// table's colours entries take colour 0 there. True when any did; a table of
// no colours has none to give.
bool pixels_within_palette(std::string& rows, int colours, int cpp);
void append_rows(std::string& out, std::string_view data, int w, int h, int n, int mode, int cpp);

// One colour line to 28 bits (blue, green, red, alpha), as a number.
uint32_t fnpoi32(std::string_view line);

// Mode 32 palette bytes from 28-bit entries.
std::string alphacol32(const std::vector<uint32_t>& entries);

// Packs pixel values (w * h of them, row by row) into byte-aligned rows of
// bpp bits, lowest bits first; padding bits are 0.
std::string compressibmp(const std::vector<uint8_t>& values, int w, int h, int bpp);

// Values of the canonical symbol rows. remap turns a table index into the
// value stored in the file; an unknown symbol is reported through `bad`
// (row, column, value) and stored as 0. Missing rows and pixels are 0.
struct BadPixel {
    int row = 0, col = 0, value = 0;
};
std::vector<uint8_t> pixel_values(std::string_view rows, int w, int h, int cpp, const std::vector<int>& remap,
                                  std::vector<BadPixel>* bad);

}  // namespace korvex::typ
