# Cross-builds for 64-bit Windows with Debian's mingw-w64 (the POSIX thread
# model, which std::thread and std::mutex need).
#   cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KORVEX_MINGW_PREFIX x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${KORVEX_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KORVEX_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${KORVEX_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${KORVEX_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The runtime goes into each program, so an .exe runs (under Wine too)
# without the compiler's DLLs beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

# Programs the build runs (test discovery) go through Wine.
find_program(KORVEX_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(KORVEX_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${KORVEX_WINE})
endif()
