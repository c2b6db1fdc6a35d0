# One set of compiler options for everything that is written here.
add_library(zavrel_options INTERFACE)
target_compile_features(zavrel_options INTERFACE cxx_std_20)
target_compile_options(zavrel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror
  # GCC 12 sees overlaps in std::string's own code that are not there.
  -Wno-restrict
  # A sum must be the same number whatever the compiler fuses; no fast-math anywhere.
  -ffp-contract=off)
if(WIN32)
  target_compile_definitions(zavrel_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 __USE_MINGW_ANSI_STDIO=1)
  target_compile_options(zavrel_options INTERFACE -Wa,-muse-unaligned-vector-move)
  # Unless it is told not to, the linker makes up a library's preferred address from its path.
  target_link_options(zavrel_options INTERFACE
    -static -Wl,--dynamicbase,--nxcompat,--high-entropy-va,--no-insert-timestamp,--disable-auto-image-base)
endif()
if(NOT WIN32 AND NOT ZAVREL_SANITIZE)
  # The C library checks the sizes of buffers that it is given.
  target_compile_definitions(zavrel_options INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
endif()
# The test preset switches off what AddressSanitizer remembers of threads' data in libraries: its search for leaks would
# still look there when the library is unloaded, and crash.
if(ZAVREL_SANITIZE)
  # The sanitizers' checks hide from GCC what is initialised; the other builds keep the warning.
  target_compile_options(zavrel_options INTERFACE -Wno-maybe-uninitialized
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zavrel_options INTERFACE -fsanitize=address,undefined)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
  # Code is held to GCC's warnings, clang only watches it run.
  target_compile_options(zavrel_options INTERFACE -Wno-error -Wno-unknown-warning-option)
endif()
if(ZAVREL_FUZZ)
  target_compile_options(zavrel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
