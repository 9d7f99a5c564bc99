// korvex --render-preview FILE [--scene town|sampler|SCENE.txt] [--night]
// [--zoom N] -o OUT.png: the map preview of a project as a picture, made
// without a window, for style authors' pipelines and the README's pictures.
#pragma once

#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::gui {

constexpr const char* k_render_preview_flag = "--render-preview";

struct RenderArgs {
    std::string input;
    std::string scene = "town";  // "town", "sampler" or a scene file
    std::string output;
    bool night = false;
    int zoom = 1;  // 1, 2 or 3 device pixels a map pixel
    std::string error;  // why the arguments are unusable; "" when they are fine
};

// True when the arguments (argv[1..]) ask for a rendered preview.
bool wants_render_preview(int argc, char** argv);

// The arguments after the program's name.
RenderArgs parse_render_args(const std::vector<std::string>& args);

// Reads a TYP, a text or a MapTK project into s as the window opens it;
// false with the reason in error when the file cannot be read.
bool load_preview_project(model::Store& s, platform::Prompt& ui, const std::string& path, std::string* error);

// Renders as the arguments say. 0 on success; 2 for unusable arguments and 1
// when the project or scene cannot be read or the picture cannot be written,
// each with a message on stderr.
int run_render_preview(int argc, char** argv);

// The rendering of run_render_preview, in a running Qt GUI application.
int render_preview(const RenderArgs& args);

}  // namespace korvex::gui
