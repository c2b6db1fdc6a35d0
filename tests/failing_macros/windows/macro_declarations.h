#pragma once
// The entry points for macros, as the companion's module declares them.

#include <string>
#include <vector>

namespace zavrel::tests {

struct MacroParameter {
  std::string name;
  std::string type;  // as declared: "ByVal Long", "ByRef Double()"
};

struct MacroDeclaration {
  std::string name;         // in macros
  std::string export_name;  // in the library
  std::vector<MacroParameter> parameters;
  std::string result;  // "Long"; nothing for a Sub
};

/// All of them, in the order of the module.
std::vector<MacroDeclaration> MacroDeclarations();

}  // namespace zavrel::tests
