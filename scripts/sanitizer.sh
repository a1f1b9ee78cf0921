# Sourced by scripts/test --sanitize and fuzz/run: one clang build with
# AddressSanitizer, UndefinedBehaviorSanitizer and libFuzzer's coverage serves
# both the sanitizer suite and the request fuzzers.
sanitizer_build=build-asan

# Configures build-asan/ unless it is configured already. -O1 with line tables
# (the build type's flags when TVAPIC_SANITIZE is on) keeps stack traces
# readable; clang compiles the generated code about three times faster than
# GCC does with the sanitizers. The benchmarks, the C# binding and the API
# reference are left out: nothing in this build exercises them.
sanitizer_configure() {
  if [ ! -f "$sanitizer_build/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S . -B "$sanitizer_build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DTVAPIC_SANITIZE=ON -DTVAPIC_FUZZ=ON -DTVAPIC_BENCH=OFF -DTVAPIC_DOTNET=OFF -DTVAPIC_DOCS=OFF >/dev/null
  fi
}

# The library's own rules leave some blocks for ever: tests/lsan.supp says which.
export ASAN_OPTIONS="detect_leaks=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
