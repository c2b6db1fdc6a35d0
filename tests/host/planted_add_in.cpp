#include "host/planted_add_in.h"

#include "host/workbook/cell_names.h"

namespace zavhost::tests {

Workbook SmallWorkbook() {
  Workbook workbook;
  workbook.file_name = u"Book.xlsx";
  Sheet& sheet = workbook.sheets.emplace_back(u"Sheet1");
  for (int row = 0; row < 5; ++row) sheet.Set(row, 0, row + 1.0);
  sheet.Set(0, 1, Value(u"five"));
  sheet.Set(1, 1, true);
  sheet.Set(2, 1, ErrorCode::kDiv0);
  sheet.Set(3, 1, Value(u"12"));
  return workbook;
}

std::unique_ptr<Engine> PlantedEngine(Workbook workbook, EngineOptions options) {
  auto engine = std::make_unique<Engine>(std::move(workbook), std::move(options));
  engine->LoadAddIn(PLANTED_FAULTS);
  return engine;
}

std::string Shown(const Value& value) {
  if (const double* number = value.number()) return Utf8FromUtf16(GeneralText(*number));
  if (const bool* boolean = value.boolean()) return *boolean ? "TRUE" : "FALSE";
  if (const std::u16string* text = value.text()) return Utf8FromUtf16(*text);
  if (const ErrorCode* error = value.error()) return Utf8FromUtf16(ErrorText(*error));
  return "";
}

std::string Shown(const Operand& operand) {
  if (const Value* value = std::get_if<Value>(&operand)) return Shown(*value);
  const ArrayPtr* array = std::get_if<ArrayPtr>(&operand);
  if (array == nullptr) return "neither a value nor an array";
  std::string text;
  for (std::int32_t row = 0; row < (*array)->rows; ++row) {
    for (std::int32_t column = 0; column < (*array)->columns; ++column)
      text += (column > 0 ? "," : "") + Shown((*array)->At(row, column));
    text += ';';
  }
  return text;
}

std::string Shown(Engine& engine, std::u16string_view formula) {
  return Shown(engine.Evaluate(formula, {0, 1, 7}));
}

void AddFormula(Workbook& workbook, std::u16string_view cell, std::u16string_view text,
                std::string_view array, std::uint32_t sheet) {
  const auto position = ParseCellName(Utf8FromUtf16(cell));
  FormulaCell formula;
  formula.address = {sheet, position->row, position->column};
  formula.origin = formula.address;
  formula.text = static_cast<std::uint32_t>(workbook.formula_texts.size());
  if (!array.empty()) formula.array = ParseRangeName(array);
  workbook.formula_texts.emplace_back(text);
  workbook.formulas.push_back(formula);
}

}  // namespace zavhost::tests
