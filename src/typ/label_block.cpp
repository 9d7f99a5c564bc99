#include "typ/label_block.h"
// STUB: to be implemented
namespace korvex::typ {
int32_t lengthbyte(Store&, int64_t, int32_t&) { return 0; }
std::string length_code(int32_t) { return {}; }
DecodedLabels decode_labels(Store&, int64_t, int32_t offset, int, int32_t, const std::string&) { DecodedLabels d; d.next = offset; return d; }
DecodedFont chk_fontcc(Store&, int64_t, bool, bool, int, const std::string&) { return {}; }
EncodedLabels encode_labels(Store&, const std::string&, int) { return {}; }
std::string strorder(const Store&, const std::string& text) { return text; }
int getlang(const std::string&) { return 0; }
}
