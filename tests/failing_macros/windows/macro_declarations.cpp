#include "failing_macros/windows/macro_declarations.h"

#include <doctest/doctest.h>

#include <fstream>
#include <iterator>
#include <regex>

namespace zavrel::tests {
namespace {

constexpr const char* kModule = ZAVREL_SOURCE_DIR "/companions/macro/ZavrelDeclarations.bas";

/// The module with each statement on one line.
std::string Statements() {
  std::ifstream file(kModule, std::ios::binary);
  REQUIRE(file.is_open());
  const std::string text((std::istreambuf_iterator<char>(file)), {});
  return std::regex_replace(text, std::regex(" _\r\n *"), " ");
}

std::vector<MacroParameter> ParametersIn(const std::string& list) {
  static const std::regex pattern(R"((ByVal|ByRef) (\w+)(\(\))? As (\w+))");
  std::vector<MacroParameter> parameters;
  for (std::sregex_iterator found(list.begin(), list.end(), pattern), end; found != end; ++found)
    parameters.push_back({(*found)[2], found->str(1) + " " + found->str(4) + found->str(3)});
  return parameters;
}

}  // namespace

std::vector<MacroDeclaration> MacroDeclarations() {
  const std::regex pattern(
      "Declare PtrSafe (?:Function|Sub) (\\w+) +Lib \"[^\"]+\"(?: Alias \"(\\w+)\")? "
      "\\((.*?)\\)(?: As (\\w+))?\r\n");
  const std::string statements = Statements();
  std::vector<MacroDeclaration> declarations;
  for (std::sregex_iterator found(statements.begin(), statements.end(), pattern), end; found != end;
       ++found) {
    const std::string name = found->str(1);
    const std::string alias = found->str(2);
    declarations.push_back(
        {name, alias.empty() ? name : alias, ParametersIn(found->str(3)), found->str(4)});
  }
  return declarations;
}

}  // namespace zavrel::tests
