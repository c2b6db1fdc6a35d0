#pragma once
// Formulas as files store them.

#include <string>
#include <string_view>

namespace zavhost {

/// The text of a formula, with or without its "=", in UTF-8, with the marks that a file has in
/// front of some functions: _xll. for those of the add-ins, _xlfn. for those that are newer than
/// the file format.
std::string StoredFormula(std::u16string_view formula);

}  // namespace zavhost
