#include "cli/commands.h"

#ifdef _WIN32

#include <windows.h>
#include <shellapi.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/native_path.h"

// Windows hands main its arguments in the local code page, which cannot
// spell every file name: the wide command line is taken instead, as UTF-8
// like everywhere else in the program. Output goes out as the same bytes
// as on other systems, a TYP file on standard output included.
int main(int, char**) {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    int argc = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &argc);
    std::vector<std::string> args;
    for (int i = 0; i < argc; ++i) args.push_back(korvex::platform::narrow_name(wide[i]));
    LocalFree(wide);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    return korvex::cli::run(argc, argv.data());
}

#else

int main(int argc, char** argv) { return korvex::cli::run(argc, argv); }

#endif
