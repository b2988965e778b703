// Only in builds with the address sanitizer: cairo's font library keeps what it has read about
// fonts until the end of the process, and not all of it in a way that the leak search can follow.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

// Programs are compared by what they print.
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}
