#include <algorithm>
#include <iostream>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/text_table.h"

namespace zavhost {
namespace {

constexpr std::size_t kWidth = 96;

/// The function without the blanks that protect its last argument help in the wizard.
RegisteredFunction WithoutTrailingBlanks(RegisteredFunction function) {
  for (std::u16string& help : function.argument_helps)
    help.resize(help.find_last_not_of(u' ') + 1);  // npos + 1 is 0
  return function;
}

bool HiddenInWizard(const RegisteredFunction& function) { return function.macro_type == 0; }

std::vector<RegisteredFunction> Selected(const CommandLine& line, const Engine& engine) {
  std::vector<RegisteredFunction> selected;
  if (line.names.empty()) {
    for (const RegisteredFunction& function : engine.functions())
      selected.push_back(WithoutTrailingBlanks(function));
    std::stable_sort(selected.begin(), selected.end(), [](const auto& a, const auto& b) {
      return std::tie(a.category, a.name) < std::tie(b.category, b.name);
    });
    return selected;
  }
  for (const std::string& name : line.names) {
    const std::u16string wanted = Utf16FromUtf8(name);
    const auto found = std::find_if(
        engine.functions().begin(), engine.functions().end(),
        [&](const auto& function) { return EqualIgnoringCase(function.name, wanted); });
    if (found == engine.functions().end()) {
      throw WorkbookError("the add-in has no function " + name +
                          "; '" ZAVHOST_NAME " functions' lists all functions");
    }
    selected.push_back(WithoutTrailingBlanks(*found));
  }
  return selected;
}

std::string Signature(const RegisteredFunction& function) {
  return Utf8FromUtf16(function.name) + "(" + Utf8FromUtf16(function.argument_text) + ")";
}

std::vector<std::string> ArgumentNames(const RegisteredFunction& function) {
  std::vector<std::string> names;
  std::string name;
  for (const char c : Utf8FromUtf16(function.argument_text) + ",") {
    if (c != ',') {
      if (c != ' ' || !name.empty()) name += c;
      continue;
    }
    names.push_back(std::move(name));
    name.clear();
  }
  return names;
}

void PrintDetails(const RegisteredFunction& function) {
  std::cout << '\n'
            << Signature(function) << "\n  " << Utf8FromUtf16(function.category)
            << (HiddenInWizard(function) ? ", hidden in the function wizard" : "") << "\n\n";
  for (const std::string& text : WrapWords(Utf8FromUtf16(function.function_help), kWidth - 2))
    std::cout << "  " << text << '\n';
  const std::vector<std::string> names = ArgumentNames(function);
  std::size_t width = 0;
  for (const std::string& name : names) width = std::max(width, DisplayWidth(name));
  // The help of a repeated argument is shown once, with its first name.
  const std::size_t count = std::min(function.argument_helps.size(), names.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0 && function.argument_helps[i] == function.argument_helps[i - 1]) continue;
    std::string indent = "    " + names[i] + std::string(width - DisplayWidth(names[i]) + 2, ' ');
    if (i == 0) std::cout << '\n';
    for (const std::string& text :
         WrapWords(Utf8FromUtf16(function.argument_helps[i]), kWidth - width - 6)) {
      std::cout << indent << text << '\n';
      indent.assign(width + 6, ' ');
    }
  }
}

void PrintList(const std::vector<RegisteredFunction>& functions) {
  std::u16string category;
  for (const RegisteredFunction& function : functions) {
    if (function.category != category || &function == functions.data()) {
      category = function.category;
      std::cout << '\n' << Utf8FromUtf16(category) << '\n';
    }
    std::cout << "\n  " << Signature(function)
              << (HiddenInWizard(function) ? "  [hidden in the wizard]" : "") << '\n';
    for (const std::string& text : WrapWords(Utf8FromUtf16(function.function_help), kWidth - 6)) {
      std::cout << "      " << text << '\n';
    }
  }
  std::cout << '\n'
            << functions.size() << " functions, "
            << std::count_if(functions.begin(), functions.end(), HiddenInWizard)
            << " of them hidden in the function wizard\n";
}

void PrintJson(const std::vector<RegisteredFunction>& functions) {
  auto list = nlohmann::ordered_json::array();
  for (const RegisteredFunction& function : functions) {
    nlohmann::ordered_json entry;
    entry["name"] = Utf8FromUtf16(function.name);
    entry["arguments"] = Utf8FromUtf16(function.argument_text);
    entry["category"] = Utf8FromUtf16(function.category);
    entry["help"] = Utf8FromUtf16(function.function_help);
    entry["argument_helps"] = nlohmann::ordered_json::array();
    for (const auto& help : function.argument_helps)
      entry["argument_helps"].push_back(Utf8FromUtf16(help));
    entry["hidden"] = HiddenInWizard(function);
    entry["export"] = Utf8FromUtf16(function.procedure);
    entry["types"] = Utf8FromUtf16(function.type_text);
    entry["help_topic"] = Utf8FromUtf16(function.help_topic);
    list.push_back(std::move(entry));
  }
  std::cout << JsonText(list, JsonLayout::kIndented) << '\n';
}

void PrintCsv(const std::vector<RegisteredFunction>& functions) {
  std::cout << "name,arguments,category,help,hidden\n";
  for (const RegisteredFunction& function : functions) {
    std::cout << CsvField(Utf8FromUtf16(function.name)) << ','
              << CsvField(Utf8FromUtf16(function.argument_text)) << ','
              << CsvField(Utf8FromUtf16(function.category)) << ','
              << CsvField(Utf8FromUtf16(function.function_help)) << ','
              << (HiddenInWizard(function) ? "TRUE" : "FALSE") << '\n';
  }
}

}  // namespace

int FunctionsCommand(const CommandLine& line) {
  Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  std::unique_ptr<Engine> engine = StartEngine(line, std::move(workbook));
  const std::vector<RegisteredFunction> functions = Selected(line, *engine);
  switch (line.form) {
    case OutputForm::kJson:
      PrintJson(functions);
      break;
    case OutputForm::kCsv:
      PrintCsv(functions);
      break;
    case OutputForm::kTable:
      if (line.names.empty()) {
        PrintList(functions);
      } else {
        for (const RegisteredFunction& function : functions) PrintDetails(function);
      }
  }
  std::cout.flush();
  return FinishEngine(*engine);
}

}  // namespace zavhost
