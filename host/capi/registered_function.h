#pragma once
// A function as an add-in registered it: all arguments of xlfRegister.

#include <cstdint>
#include <string>
#include <vector>

namespace zavhost {

struct RegisteredFunction {
  double register_id = 0;
  std::u16string module;
  std::u16string procedure;  // the export
  std::u16string type_text;  // result letter, argument letters, suffixes
  std::u16string name;       // as formulas use it
  std::u16string argument_text;
  int macro_type = 1;  // 0 hidden, 1 listed, 2 command
  std::u16string category;
  std::u16string shortcut;
  std::u16string help_topic;
  std::u16string function_help;
  std::vector<std::u16string> argument_helps;  // as given; missing ones are empty
  bool is_volatile = false;
};

}  // namespace zavhost
