# Sourced by scripts/test and scripts/demo: the release build in build/,
# configured with clang, which compiles the generated exports about a third
# faster than GCC (the Windows build keeps exercising GCC); CC and CXX choose
# otherwise. CMake keeps the compilers a build folder was first configured
# with, so a build/ configured with others is configured afresh.
release_build=build

release_configure() {
  local cc cxx cache=$release_build/CMakeCache.txt
  cc=$(command -v "${CC:-clang}") && cxx=$(command -v "${CXX:-clang++}") ||
    { echo "release_configure: no compiler ${CC:-clang} or ${CXX:-clang++} (scripts/setup installs clang)" >&2; return 1; }
  if [ -f "$cache" ]; then
    local was_cc was_cxx
    was_cc=$(sed -n 's/^CMAKE_C_COMPILER:[A-Z]*=//p' "$cache")
    was_cxx=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$cache")
    if [ "$(readlink -f "$was_cc")" != "$(readlink -f "$cc")" ] ||
       [ "$(readlink -f "$was_cxx")" != "$(readlink -f "$cxx")" ]; then
      echo "$release_build/ was configured with $was_cc and $was_cxx: configuring it with $cc and $cxx"
      rm -rf "$release_build/CMakeCache.txt" "$release_build/CMakeFiles"
    fi
  fi
  CC=$cc CXX=$cxx cmake -S . -B "$release_build" -G Ninja >/dev/null
}
