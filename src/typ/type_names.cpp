#include "typ/type_names.h"
// STUB
namespace korvex::typ {
std::string fnbd(const std::string&, int) { return " -"; }
}
