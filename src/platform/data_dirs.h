// Where the program finds the data it ships with (languages, palettes, the
// theme table, the sample, preview scenes, word lists): share/korvex beside
// its prefix once installed, the checkout's data/ for a program run from its
// build folder. Nothing here knows where the checkout was at compile time, so
// an installed copy never reaches into it.
#pragma once

#include <string>

namespace korvex::platform {

// The folder of the running program: the system's word for it (/proc/self/exe,
// the module's file name on Windows), else argv0's folder; "" when neither tells.
std::string program_folder(const std::string& argv0 = {});

// The bundled data of a program that lies in exe_folder. A build folder (one
// whose CMakeCache.txt names a source folder that still has data/) gives that
// data/; anything else gives the installed layout, exe_folder/../share/korvex
// (the exe's own folder on Windows), even when it is missing, so that a
// lookup that fails names the place it looked.
std::string bundled_data_folder(const std::string& exe_folder);

// A file or folder of the bundled data, e.g. "themes/tdat" or "preview".
std::string bundled_path(const std::string& bundled, const std::string& relative);

}  // namespace korvex::platform
