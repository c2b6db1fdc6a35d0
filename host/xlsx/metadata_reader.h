#pragma once
// The part that says which array formulas are dynamic.

#include <string_view>
#include <vector>

namespace zavhost {

/// Of each number that a cell can have as its metadata (the first one is 1), whether it marks a
/// dynamic array formula. Throws XmlError.
std::vector<bool> ReadDynamicArrayMarks(std::string_view xml);

}  // namespace zavhost
