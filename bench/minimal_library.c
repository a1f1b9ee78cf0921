/* The load benchmark's baseline: a shared library with one export and
   nothing else to load, relocate or initialise. */
#if defined(_WIN32)
__declspec(dllexport)
#else
__attribute__((visibility("default")))
#endif
int minimal_export(void) { return 1; }
