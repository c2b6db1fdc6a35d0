# Header-only libraries from Debian packages, each exposed by its own folder: the cross build must
# never see /usr/include as a whole.
set(ZAVREL_HEADER_LINKS ${PROJECT_SOURCE_DIR}/build/third_party/headers)
function(zavrel_header_library target folder)
  set(source /usr/include/${folder})
  if(NOT EXISTS ${source})
    message(FATAL_ERROR "${source} is missing: run ./dev setup")
  endif()
  file(MAKE_DIRECTORY ${ZAVREL_HEADER_LINKS}/${target})
  file(CREATE_LINK ${source} ${ZAVREL_HEADER_LINKS}/${target}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${ZAVREL_HEADER_LINKS}/${target})
endfunction()
zavrel_header_library(header_doctest doctest)
zavrel_header_library(header_cli11 CLI)
# fmt as a compiled library: header-only it costs most of a file's compile time.
zavrel_header_library(header_fmt fmt)
find_library(FMT_LIBRARY NAMES libfmt.a REQUIRED)
target_link_libraries(header_fmt INTERFACE ${FMT_LIBRARY})
zavrel_header_library(header_json nlohmann)
zavrel_header_library(header_eigen eigen3)
zavrel_header_library(header_boost boost)
# Vectors, and the choice of the processor's best instructions at run time. Its vectors of a size that only the processor
# knows cannot be members of an array, so they are left out; no processor in use ends at SSSE3.
zavrel_header_library(header_hwy hwy)
find_library(HWY_LIBRARY NAMES libhwy.a REQUIRED)
target_link_libraries(header_hwy INTERFACE ${HWY_LIBRARY})
target_compile_definitions(header_hwy INTERFACE  # not for resources, whose compiler has a shell read it
  "$<$<COMPILE_LANGUAGE:CXX>:HWY_DISABLED_TARGETS=(HWY_SSSE3|HWY_SVE|HWY_SVE2|HWY_SVE_256|HWY_SVE2_128)>")
# Letter case by Unicode, the same on every system.
file(MAKE_DIRECTORY ${ZAVREL_HEADER_LINKS}/utf8proc)
file(CREATE_LINK /usr/include/utf8proc.h ${ZAVREL_HEADER_LINKS}/utf8proc/utf8proc.h SYMBOLIC)
find_library(UTF8PROC_LIBRARY NAMES libutf8proc.a utf8proc REQUIRED)
add_library(utf8proc INTERFACE)
target_include_directories(utf8proc SYSTEM INTERFACE ${ZAVREL_HEADER_LINKS}/utf8proc)
target_compile_definitions(utf8proc INTERFACE UTF8PROC_STATIC)
target_link_libraries(utf8proc INTERFACE ${UTF8PROC_LIBRARY})
