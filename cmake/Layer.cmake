# zavrel_layer(TARGET FOLDER LIBRARIES...): the static library of a folder. What stands in its subfolder windows/
# or posix/ belongs to that system alone; a main.cpp there is a program's and not in the library, and exception_memory.cpp
# belongs to each library that ships (Shipped.cmake). A folder may use
# those among its LIBRARIES and, through them, what they use; a test reads the includes (tests/layers).
if(WIN32)
  set(ZAVREL_SYSTEM windows)
else()
  set(ZAVREL_SYSTEM posix)
endif()
function(zavrel_layer target folder)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/${ZAVREL_SYSTEM}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/(main|exception_memory)\\.cpp$")
  if(NOT sources)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${target}_empty.cpp "")
    set(sources ${CMAKE_CURRENT_BINARY_DIR}/${target}_empty.cpp)
  endif()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} PUBLIC zavrel_options ${ARGN})
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${ZAVREL_UNITY} UNITY_BUILD_BATCH_SIZE 6)
endfunction()

# zavrel_function_tables(TARGET DATA): the tables of an add-in's functions, made of its functions.json, in the layer
# that defines the functions.
function(zavrel_function_tables target data)
  set(frame ${PROJECT_SOURCE_DIR}/src/frame)
  set(tables ${CMAKE_CURRENT_BINARY_DIR}/${target}_tables.cpp)
  add_custom_command(OUTPUT ${tables}
    COMMAND ${PYTHON3} -B ${frame}/function_tables.py ${data} ${tables}
    DEPENDS ${frame}/function_tables.py ${frame}/function_data.py ${frame}/entry_points.json ${data}
    VERBATIM)
  target_sources(${target} PRIVATE ${tables})
endfunction()
