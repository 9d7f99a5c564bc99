// A TYP file of every form the codec knows, in pixels of noise: each polygon
// and line scheme, points of 1 to 200 colours in the three colour modes with
// and without night pictures, labels in two languages, fonts and custom
// colours, several levels, an extra point and an active line. The suites that
// walk TYP files take it beside the bundled sample, whose pictures are drawn
// for people rather than for coverage.
#pragma once

#include <string>

#include "model/store.h"

namespace korvex::testing {

void build_every_form(model::Store& s);

// The file as the encoder writes it.
std::string every_form_typ();

// The name that stands for that file among the paths of a file suite.
inline const std::string k_every_form = "every-form";

// The bytes of a path of a file suite, or of the file of every form.
std::string typ_bytes(const std::string& path_or_name);

}  // namespace korvex::testing
