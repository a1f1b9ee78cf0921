# Toolchain: 64-bit Windows programs and DLLs built on Linux with MinGW-w64
# GCC (posix threads, for std::thread), run under Wine.
#   cmake -S . -B build-windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(TVAPIC_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${TVAPIC_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TVAPIC_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${TVAPIC_MINGW_TRIPLET}-windres)

# Libraries and packages come from the cross environment only; programs
# (Python, the generator) from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${TVAPIC_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The C++ runtime, libgcc and winpthreads linked into every program and DLL,
# so nothing but the system's own DLLs is needed beside them.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

# Test programs (and GoogleTest's discovery of their cases) run under Wine.
# Its prefix lives in the build tree, so a build never touches ~/.wine; Mono
# and Gecko are not wanted, and Wine's own diagnostics stay quiet.
find_program(TVAPIC_WINE NAMES wine)
if(TVAPIC_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR
      env WINEDEBUG=-all "WINEDLLOVERRIDES=mscoree,mshtml=" WINEPREFIX=${CMAKE_BINARY_DIR}/wine ${TVAPIC_WINE})
endif()
