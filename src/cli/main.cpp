#include "cli/commands.h"

int main(int argc, char** argv) { return korvex::cli::run(argc, argv); }
