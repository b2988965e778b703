// Only in builds with the address sanitizer: cairo's font library keeps font data until the process
// exits, and the leak search cannot follow all of it.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

// The suppression summary must not appear: tests compare the program's output.
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}
