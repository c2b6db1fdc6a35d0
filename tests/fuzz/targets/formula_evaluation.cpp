// Formulas, read and evaluated by the engine: an error with its place, or a value that a cell can
// hold, the same each time and in a recalculation.
#include <cmath>
#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "host/calc/engine.h"
#include "host/workbook/text.h"

namespace zavrel::tests {
namespace {

using zavhost::Engine;
using zavhost::Operand;
using zavhost::Value;

zavhost::Workbook SmallBook() {
  zavhost::Workbook book;
  zavhost::Sheet& data = book.sheets.emplace_back(u"Data");
  for (std::int32_t row = 0; row < 6; ++row) {
    data.Set(row, 0, row + 1.5);
    data.Set(row, 1, row % 2 == 0 ? Value(u"text") : Value(u"12"));
  }
  data.Set(0, 2, true);
  data.Set(1, 2, zavhost::ErrorCode::kNA);
  data.Set(2, 2, 45000.25);
  data.HideRow(4);
  book.sheets.emplace_back(u"Other sheet").Set(0, 0, 7.0);
  book.names = {
      {u"Known", u"Data!$A$1:$A$6", {}}, {u"Above", u"A1048576", {}}, {u"Loop", u"Loop+1", {}}};
  book.tables = {{u"Table1", 0, {0, 0, 5, 1}, 1, 0, {u"First", u"Second col"}}};
  return book;
}

zavhost::EngineOptions Options() {
  zavhost::EngineOptions options;
  options.now = 45000.5;
  return options;
}

void CheckValue(const Value& value) {
  if (const double* number = value.number())
    Require(std::isfinite(*number), "a value that is not finite");
  if (const std::u16string* text = value.text())
    Require(text->size() <= zavhost::kLongestText, "a text that no cell holds");
}

void CheckOperand(const Operand& operand) {
  if (const Value* value = std::get_if<Value>(&operand)) return CheckValue(*value);
  const auto* array = std::get_if<zavhost::ArrayPtr>(&operand);
  Require(array != nullptr && *array != nullptr, "a result that is neither value nor array");
  Require((*array)->rows >= 1 && (*array)->columns >= 1 &&
              (*array)->values.size() == static_cast<std::size_t>((*array)->rows) *
                                             static_cast<std::size_t>((*array)->columns),
          "an array of another size than it says");
  for (const Value& value : (*array)->values) CheckValue(value);
}

bool AreSame(const Operand& one, const Operand& other) {
  const auto* array = std::get_if<zavhost::ArrayPtr>(&one);
  if (array == nullptr) return std::get<Value>(one) == std::get<Value>(other);
  const auto* second = std::get_if<zavhost::ArrayPtr>(&other);
  return second != nullptr && (*array)->rows == (*second)->rows &&
         (*array)->values == (*second)->values;
}

void Evaluate(const std::u16string& text) {
  Engine engine(SmallBook(), Options());
  engine.NotComputed(text);
  const zavhost::CellAddress cell{0, 8, 4};
  try {
    const Operand result = engine.Evaluate(text, cell);
    CheckOperand(result);
    // The next random number of a formula is another one.
    const bool by_chance = zavhost::LowerCase(text).find(u"rand") != std::u16string::npos;
    if (!by_chance)
      Require(AreSame(result, engine.Evaluate(text, cell)), "another result the second time");
    if (const auto reference = engine.FindReference(text))
      Require(reference->sheet < 2 && !reference->areas.empty(), "a reference to nothing");
  } catch (const zavhost::FormulaError& error) {
    Require(error.position() <= text.size() && *error.what() != '\0', "an error without its place");
  }
}

void Recalculate(const std::u16string& text, bool as_array) {
  zavhost::Workbook book = SmallBook();
  book.formula_texts = {text, u"E9"};
  const zavhost::CellAddress cell{0, 8, 4};
  zavhost::FormulaCell formula{cell, 0, cell, std::nullopt, false};
  if (as_array) {
    formula.array = {8, 4, 9, 5};
    formula.is_dynamic = text.size() % 2 == 0;
  }
  book.formulas = {formula, {{0, 30, 9}, 1, {0, 30, 9}, std::nullopt, false}};
  Engine engine(std::move(book), Options());
  const zavhost::RecalculationReport report = engine.Recalculate();
  Require(report.computed + report.kept + report.errors.size() >= 1,
          "a formula is not accounted for");
  const zavhost::Sheet& sheet = engine.workbook().sheets[0];
  CheckValue(sheet.At(8, 4));
  Require(engine.judge().count() == 0, "the judge found something without an add-in");
}

void Run(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const std::size_t way = bytes.Below(4);
  const std::u16string text = zavhost::Utf16FromUtf8(bytes.Rest());
  if (way < 2) {
    Evaluate(text);
  } else {
    Recalculate(text.starts_with(u'=') ? text.substr(1) : text, way == 3);
  }
}

const FuzzTarget target("formula_evaluation", Run);

}  // namespace
}  // namespace zavrel::tests
