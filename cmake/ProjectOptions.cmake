# project_hardening: flags for every object, ours or not. project_options: further flags for our code.
set(PQ_SANITIZE "" CACHE STRING "Sanitizers for everything built here, as -fsanitize= takes them")
option(PQ_COVERAGE "Count executed lines, for llvm-cov; needs clang")
option(PQ_FUZZ "Build the fuzz targets, and nothing that they don't need; needs clang")

add_library(project_hardening INTERFACE)
target_compile_options(project_hardening INTERFACE -fstack-protector-strong
                       -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
target_link_options(project_hardening INTERFACE -Wl,-z,relro,-z,now)
if(PQ_SANITIZE)
  # PQ_PRELOADED marks libraries that are preloaded, also into programs built without a sanitizer: such
  # a library must neither call nor load the sanitizer's run-time library.
  set(sanitized $<NOT:$<BOOL:$<TARGET_PROPERTY:PQ_PRELOADED>>>)
  target_compile_options(project_hardening INTERFACE
                         $<${sanitized}:-fsanitize=${PQ_SANITIZE}>
                         $<${sanitized}:-fno-sanitize-recover=all> -fno-omit-frame-pointer)
  target_link_options(project_hardening INTERFACE $<${sanitized}:-fsanitize=${PQ_SANITIZE}>)
else()
  target_compile_options(project_hardening INTERFACE $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                         $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
if(PQ_COVERAGE)
  set(counted $<NOT:$<BOOL:$<TARGET_PROPERTY:PQ_PRELOADED>>>)
  target_compile_options(project_hardening INTERFACE
                         $<${counted}:-fprofile-instr-generate> $<${counted}:-fcoverage-mapping>)
  target_link_options(project_hardening INTERFACE $<${counted}:-fprofile-instr-generate>)
  if(NOT PQ_FUZZ)
    # The counters can be a mapped file, so that a killed daemon counts, too.
    target_compile_options(project_hardening INTERFACE
                           "$<${counted}:SHELL:-mllvm -runtime-counter-relocation>")
  endif()
endif()
if(PQ_FUZZ)
  # Tracing of comparisons is off, because it takes half of the time and the mutators already know the
  # meaning of inputs.
  target_compile_options(project_hardening INTERFACE
                         -fsanitize-coverage=inline-8bit-counters,pc-table)
endif()
if(CMAKE_SYSTEM_PROCESSOR STREQUAL aarch64)
  target_compile_options(project_hardening INTERFACE -mbranch-protection=standard)
  target_link_options(project_hardening INTERFACE -Wl,-z,max-page-size=16384)
endif()

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
# Sign conversions are not checked: clang includes them in this warning, g++ does not.
target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                       -Wno-sign-conversion -Wformat=2 -Wnon-virtual-dtor -Werror)
target_link_libraries(project_options INTERFACE project_hardening)

# For everything except the daemon: under sanitizers it builds in half the time and runs fast enough.
add_library(project_quick_build INTERFACE)
if(PQ_SANITIZE)
  target_compile_options(project_quick_build INTERFACE -O0)
endif()
