// Map themes (".kmtf"): a list of styles, each a name and its colours, made
// into polygons and lines through a table from style names to Garmin types.
#pragma once

#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// The text form of a theme: a "[_drawOrder]" of the polygons and one section
// a type. theme is the theme file's text, table the type table's (one
// "NAME,type,type..." a line; "NAME,1,type..." names lines). "" when the
// theme holds no style list.
std::string theme_text(const std::string& theme, const std::string& table);

// The new project a theme starts: model::newproject, but beside extra points
// the points and extra points stay, with the header length, code page and
// label blocks they are saved with.
void theme_newproject(model::Store& s);

// loadtheme: reads the theme at path into the tables. The type table is the
// first of tables that exists ("Cannot find T data in " + data_folder when
// none does). The project starts anew (theme_newproject): polygons and lines
// are replaced; points stay only beside extra points ("Merging with Extra
// Points"), else they go too. curfile becomes the
// theme's name with ".typ". False when nothing was read.
bool loadtheme(model::Store& s, platform::Prompt& ui, const std::string& path, const std::vector<std::string>& tables,
               const std::string& data_folder);

}  // namespace korvex::workbench
