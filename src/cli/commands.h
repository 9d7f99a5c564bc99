#pragma once
namespace korvex::cli {
int run(int argc, char** argv);
}
