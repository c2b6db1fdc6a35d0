# Generates the source of the message library from the text files:
#   cmake -D FOLDER=texts -D LANGUAGES=de,en -D OUTPUT=messages.rc -P generate_messages.cmake
# If the output ends in .rc, it is a resource script with a string table for each language. If it ends in .cpp,
# it defines ZavrelMessageTable() of message_table.h.
#
# The texts never become elements of a CMake list, so they may contain semicolons and brackets.

cmake_minimum_required(VERSION 3.25)
set(message_line "\n([0-9]+) = ([^\n]+)")

# Reads one file into language_<name> (the primary language id) and texts_<name> (lines "id = text").
function(read_texts name)
  set(file ${FOLDER}/${name}.txt)
  file(READ ${file} texts)
  string(REPLACE "\r" "" texts "\n${texts}")
  string(REGEX REPLACE "\n#[^\n]*" "" texts "${texts}")
  string(REGEX REPLACE "\n+" "\n" texts "${texts}")
  if(NOT texts MATCHES "^\nlanguage_id = ([0-9]+)\n")
    message(FATAL_ERROR "${file}: the first line is not \"language_id = NUMBER\"")
  endif()
  set(language ${CMAKE_MATCH_1})
  string(REGEX REPLACE "^\nlanguage_id = [0-9]+" "" texts "${texts}")

  string(REGEX REPLACE "${message_line}" "" rest "${texts}")
  string(STRIP "${rest}" rest)
  if(NOT rest STREQUAL "")
    message(FATAL_ERROR "${file}: neither a comment nor \"id = text\": ${rest}")
  endif()

  string(REGEX MATCHALL "\n[0-9]+ = " ids "${texts}")
  set(ordered_ids ${ids})
  list(REMOVE_DUPLICATES ordered_ids)
  list(SORT ordered_ids COMPARE NATURAL)
  if(NOT ids STREQUAL ordered_ids)
    message(FATAL_ERROR "${file}: the ids do not ascend, or one stands twice")
  endif()
  set(language_${name} ${language} PARENT_SCOPE)
  set(texts_${name} "${texts}" PARENT_SCOPE)
endfunction()

string(REPLACE "," ";" names "${LANGUAGES}")
set(order "")
foreach(name IN LISTS names)
  read_texts(${name})
  list(APPEND order "${language_${name}} ${name}")
endforeach()
list(SORT order COMPARE NATURAL)
list(TRANSFORM order REPLACE "^[0-9]+ " "" OUTPUT_VARIABLE names)

set(source "")
foreach(name IN LISTS names)
  set(language ${language_${name}})
  string(REPLACE "\\" "\\\\" texts "${texts_${name}}")
  if(OUTPUT MATCHES "\\.rc$")
    string(REPLACE "\"" "\"\"" texts "${texts}")
    string(REGEX REPLACE "${message_line}" "\n  \\1 \"\\2\"" texts "${texts}")
    string(APPEND source "\nLANGUAGE ${language}, 0\nSTRINGTABLE\nBEGIN${texts}END\n")
  else()
    string(REPLACE "\"" "\\\"" texts "${texts}")
    string(REGEX REPLACE "${message_line}" "\n    {${language}, \\1, u\"\\2\"}," texts "${texts}")
    string(APPEND source "${texts}")
  endif()
endforeach()

set(notice "// Made by generate_messages.cmake; change the files of texts instead.\n")
if(OUTPUT MATCHES "\\.rc$")
  file(WRITE ${OUTPUT} "${notice}#pragma code_page(65001)\n${source}")
else()
  file(WRITE ${OUTPUT} "${notice}#include \"contracts/message_table.h\"

namespace zavrel::messages {
namespace {

constexpr Message kMessages[] = {${source}};

constexpr MessageTable kTable{kMessages, sizeof kMessages / sizeof kMessages[0]};

}  // namespace

extern \"C\" __attribute__((visibility(\"default\"))) const MessageTable* ZavrelMessageTable() { return &kTable; }

}  // namespace zavrel::messages
")
endif()
