#pragma once
// Tables of languages: the built-in ones, and those that users put beside the add-in.
//
// A table is a UTF-8 text with one entry on a line, "ENGLISH = OWN". Lines that begin with "# " and
// empty lines mean nothing. The entries may stand in any order:
//
// - decimal = ,  the decimal sign: . or ,
// - list = ;  between arguments: , or ;
// - array column = .  between the elements of an array's row: one of . , ; or the backslash
// - array row = ;  between the rows of an array: ; or |
// - row letter = Z  of references in R1C1 style: one letter
// - column letter = S  the same
// - distance brackets = ()  around the distances in them: () or []
// - #VALUE! = #WERT!  errors, by the English text
// - SUM = SUMME  functions; TRUE and FALSE are the truth values as well
//
// What is missing is as in English. The own names of functions and the errors must differ.
// A table has at most 4,096 lines, a line at most 256 bytes.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "formula/language.h"
#include "platform/variant_copies.h"

namespace formula {

/// Why a table is not used.
struct TableProblem {
  std::size_t line = 0;     // from 1; 0 if lines contradict each other
  std::string_view reason;  // English
};

std::variant<Language, TableProblem> ReadLanguageTable(std::string_view table);

enum class LanguageObstacle {
  kNone,
  kCode,   // not the code of a language
  kFile,   // no table, or one that is empty, too large or cannot be read
  kTable,  // a damaged table
};

/// A language, or why there is none.
struct FoundLanguage {
  std::shared_ptr<const Language> language{};
  LanguageObstacle obstacle = LanguageObstacle::kNone;
  std::filesystem::path file{};  // the table, if there should be one
  TableProblem problem{};        // of a damaged table
};

/// The language with the code ("en", "de", in any case); any other from its table in the folder,
/// "ZavrelFormulas.CODE.txt". A code has 2 to 16 letters, digits and hyphens.
FoundLanguage FindLanguage(std::string_view code, const std::filesystem::path& folder);

}  // namespace formula
