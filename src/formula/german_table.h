#pragma once
// The table of German, src/formula/languages/de.txt, which the build compiles in.

#include <string_view>

namespace formula {

std::string_view GermanTable();

}  // namespace formula
