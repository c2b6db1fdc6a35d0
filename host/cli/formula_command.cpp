#include <iostream>
#include <string_view>

#include "formula/language_table.h"
#include "formula/translate.h"
#include "host/cli/commands.h"
#include "host/workbook/cell_names.h"
#include "host/workbook/terminal_text.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

std::shared_ptr<const formula::Language> LanguageNamed(const std::string& code) {
  const formula::FoundLanguage found = formula::FindLanguage(code, ProgramFolder());
  const std::string file = zavrel::Utf8FromPath(found.file);
  switch (found.obstacle) {
    case formula::LanguageObstacle::kNone:
      break;
    case formula::LanguageObstacle::kCode:
      throw WorkbookError(PrintableUtf8(Utf16FromUtf8(code)) +
                          " is not the code of a language, such as en, de or fr");
    case formula::LanguageObstacle::kFile:
      throw WorkbookError("no table of the language: " + file + " is missing, empty or too large");
    case formula::LanguageObstacle::kTable:
      throw WorkbookError(file + ", line " + std::to_string(found.problem.line) + ": " +
                          std::string(found.problem.reason));
  }
  return found.language;
}

std::string_view TextOf(formula::TranslationFailure reason) {
  switch (reason) {
    case formula::TranslationFailure::kTooLong:
      return "the formula or its translation has more than 8,192 characters";
    case formula::TranslationFailure::kUnclosed:
      return "a text, quoted name or bracket begins that is not closed";
    case formula::TranslationFailure::kUnpaired:
      return "a parenthesis or brace without a partner";
    case formula::TranslationFailure::kOffSheet:
      return "seen from the cell, the reference leaves the sheet";
    case formula::TranslationFailure::kUnreadable:
      break;
  }
  return "this cannot be read in the language and style";
}

formula::ReferenceStyle StyleNamed(const std::string& name) {
  return name == "r1c1" ? formula::ReferenceStyle::kR1C1 : formula::ReferenceStyle::kA1;
}

}  // namespace

int FormulaCommand(const CommandLine& line) {
  const auto from = LanguageNamed(line.from), to = LanguageNamed(line.to);
  const formula::Dialect source{*from, StyleNamed(line.style)};
  const formula::Dialect target{*to,
                                StyleNamed(line.to_style.empty() ? line.style : line.to_style)};
  const auto cell = ParseCellName(line.cell);
  if (!cell) throw WorkbookError(line.cell + " is not the name of a cell");
  for (const std::string& text : line.names) {
    const auto translated = TranslateFormula(Utf16FromUtf8(text), source, target,
                                             formula::BaseCell{cell->row, cell->column});
    if (const auto* problem = std::get_if<formula::TranslationProblem>(&translated)) {
      std::cout.flush();
      throw WorkbookError("character " + std::to_string(problem->position + 1) + " of " +
                          PrintableUtf8(Utf16FromUtf8(text)) + ": " +
                          std::string(TextOf(problem->reason)));
    }
    std::cout << EscapedUtf8(zavrel::Utf8FromUtf16(std::get<std::u16string>(translated))) << '\n';
  }
  return kExitSuccess;
}

}  // namespace zavhost
