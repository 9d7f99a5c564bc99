// The label block (strings in several languages) and the font byte with its
// custom colours, shared by the three record classes, both directions.
//
//   length code (1, 2 or 3 bytes) | language | text [0 language text]... | 0
//   font byte | [day colour BGR] | [night colour BGR]
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

// Reads the length code at base + position and returns L, the number of bytes
// between the first language byte and the terminator. position advances past
// the code. A first byte of 0 or a negative position gives 0 and moves nothing.
int32_t lengthbyte(Store& s, int64_t base, int32_t& position);

// The length code for L as the writer emits it (1, 2 or 3 bytes).
std::string length_code(int32_t L);

struct DecodedLabels {
    std::string lines;   // "String1=0x04,text\r\n" ..., numbered from 1
    std::string label;   // display label: preferred, else default, else fallback
    int32_t next = 0;    // record-relative offset behind the terminator
    int strings = 0;     // number of String lines written
};

// Decodes the label block whose length code stands at record + offset.
// cls is the element class (points report language bytes above 46 with the
// record size); type names the element in report lines.
DecodedLabels decode_labels(Store& s, int64_t record, int32_t offset, int cls, int32_t record_size,
                            const std::string& type);

struct DecodedFont {
    std::string lines;              // "ExtendedLabels=Y\r\nFontStyle=...\r\n" ...
    std::string colours = "000000"; // colour column text, file byte order (BBGGRR);
                                    // points: day digits then night digits
    int32_t consumed = 0;           // bytes read: 1, 4 or 7 (more for points with opacity)
    bool stopped = false;           // an unknown custom value ended the read
    bool day_line = false;          // a DaycustomColor line was written
};

// chk_fontcc: reads the font byte at pos. hasfont says a font byte is present;
// custom says the class allows custom colours. name names the element in report
// lines.
DecodedFont chk_fontcc(Store& s, int64_t pos, bool hasfont, bool custom, int cls,
                       const std::string& name);

struct EncodedLabels {
    std::string block;      // length code, language, text, 0 ... (empty: no block)
    std::string font;       // font byte and custom colour bytes (empty: none)
    bool has_block() const { return !block.empty(); }
    bool has_font() const { return !font.empty(); }
};

// Builds the label block and font bytes from an element's text: its "String"
// lines, its "FontStyle=" line and its "CustomColor"/custom colour lines.
EncodedLabels encode_labels(Store& s, const std::string& element_text, int cls);

// Moves strings of the preferred language to the front when that option is on.
std::string strorder(const Store& s, const std::string& text);

// Language number of a string line: the two hex digits behind the "x".
int getlang(const std::string& line);

}  // namespace korvex::typ
