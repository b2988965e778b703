# Debian's cross compiler for 64-bit Arm, with the libraries of Debian's architecture arm64 installed
# next to the machine's own (tools/packages, group arm64). Programs run under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
find_program(CMAKE_CROSSCOMPILING_EMULATOR NAMES qemu-aarch64-static qemu-aarch64 REQUIRED)

# Without this, pkg-config finds the machine's own libraries.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
