#pragma once
// The planted add-in in an engine, and how its answers are looked at.

#include <memory>
#include <string>
#include <string_view>

#include "host/calc/engine.h"

namespace zavhost::tests {

/// A workbook of one sheet "Sheet1" with the numbers 1 to 5 in A1:A5, the text "five" in B1, TRUE
/// in B2, #DIV/0! in B3 and the text "12" in B4.
Workbook SmallWorkbook();

/// An engine with the planted add-in open.
std::unique_ptr<Engine> PlantedEngine(Workbook workbook = SmallWorkbook(),
                                      EngineOptions options = {});

/// A formula's value, evaluated in cell H2: numbers in General format, texts as they are, errors by
/// their text; arrays with "," between elements and ";" behind rows.
std::string Shown(Engine& engine, std::u16string_view formula);
std::string Shown(const Operand& operand);
std::string Shown(const Value& value);

/// Adds a formula to a sheet; `array` gives an array formula's range.
void AddFormula(Workbook& workbook, std::u16string_view cell, std::u16string_view text,
                std::string_view array = {}, std::uint32_t sheet = 0);

}  // namespace zavhost::tests
