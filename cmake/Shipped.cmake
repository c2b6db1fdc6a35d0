# What the files that ship have in common.

# zavrel_version(TARGET FILE_NAME DESCRIPTION): gives a binary its version, in a resource on Windows, elsewhere in a
# note. The number comes from project() and nowhere else.
function(zavrel_version target file_name description)
  set(VERSION_FILE_NAME ${file_name})
  set(VERSION_DESCRIPTION ${description})
  if(NOT WIN32)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version_note.cpp.in ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.cpp @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.cpp)
    return()
  endif()
  if(file_name MATCHES "\\.exe$")
    set(VERSION_FILE_TYPE VFT_APP)
  else()
    set(VERSION_FILE_TYPE VFT_DLL)
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
endfunction()

# How a library of the suite is named, by its product and major version: the code's own rule (LibraryFileName).
if(WIN32)
  set(ZAVREL_LIBRARY_PREFIX "")
  set(ZAVREL_LIBRARY_SUFFIX "_x64.DLL")
else()
  set(ZAVREL_LIBRARY_PREFIX "lib")
  set(ZAVREL_LIBRARY_SUFFIX ".so")
endif()

set(ZAVREL_LINK_MAPS ${CMAKE_BINARY_DIR}/link-maps)
file(MAKE_DIRECTORY ${ZAVREL_LINK_MAPS})

# zavrel_shipped(TARGET FOLDER): stands in a folder of the output, without symbols, and needs no other file of ours.
function(zavrel_shipped target folder)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${ZAVREL_OUT}/${folder}" LIBRARY_OUTPUT_DIRECTORY "${ZAVREL_OUT}/${folder}")
  # The map says what is linked in: packaging/make-notices looks for the licences of all of it.
  target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-s> -Wl,-Map,${ZAVREL_LINK_MAPS}/${target}.map)
  if(NOT WIN32 AND NOT ZAVREL_SANITIZE)
    # Each binary has the C++ library in it, so that it runs on any machine with glibc, and shares none of its symbols.
    # What it calls is looked up at once, and the table of it is read-only from then on.
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc -Wl,-z,now
      -Wl,--exclude-libs,libstdc++.a:libgcc.a:libgcc_eh.a:libfmt.a:libmd.a:libutf8proc.a)
  endif()
endfunction()

# zavrel_shipped_library(TARGET NAME DESCRIPTION [FOLDER name] [SUFFIX suffix] [WITHOUT_CODE])
function(zavrel_shipped_library target name description)
  cmake_parse_arguments(PARSE_ARGV 3 library WITHOUT_CODE "FOLDER;SUFFIX" "")
  if(NOT library_SUFFIX)
    set(library_SUFFIX ${ZAVREL_LIBRARY_SUFFIX})
  endif()
  zavrel_shipped(${target} "${library_FOLDER}")
  set_target_properties(${target} PROPERTIES
    PREFIX "${ZAVREL_LIBRARY_PREFIX}" OUTPUT_NAME ${name} SUFFIX ${library_SUFFIX})
  if(NOT WIN32)
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  endif()
  if(NOT library_WITHOUT_CODE)
    # Not in the layer's library, since nobody would refer to it there.
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src/platform/${ZAVREL_SYSTEM}/exception_memory.cpp)
    target_link_options(${target} PRIVATE $<$<BOOL:${WIN32}>:-Wl,--wrap=malloc>)
  endif()
  zavrel_version(${target} ${ZAVREL_LIBRARY_PREFIX}${name}${library_SUFFIX} "${description}")
endfunction()
