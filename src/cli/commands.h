#pragma once

#include <cstdio>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"
#include "text/file_kind.h"

namespace korvex::cli {

constexpr int k_ok = 0;
constexpr int k_failed = 1;
constexpr int k_usage = 2;

int run(int argc, char** argv);
// korvex-cli img list|extract|replace.
int run_img(int argc, char** argv);

// The usage of every command.
const char* usage_text();

// Reads a TYP, a text or a MapTK project into s (a new project) as every
// command does; false, said through ui or on stderr, when it cannot.
bool load_input(model::Store& s, platform::Prompt& ui, const std::string& path, text::FileKind* kind = nullptr);
// Encodes s into s.curf with the checks of the window's TYP save.
bool encode_store(model::Store& s, platform::Prompt& ui);
// The lines of a load or save report, each as "report: ...".
void print_report(const std::string& report, std::FILE* to);

}  // namespace korvex::cli
