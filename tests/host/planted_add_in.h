#pragma once
// The planted add-in in an engine.

#include <memory>

#include "support/workbooks.h"

namespace zavhost::tests {

/// A workbook of one sheet "Sheet1" with the numbers 1 to 5 in A1:A5, the text "five" in B1, TRUE
/// in B2, #DIV/0! in B3 and the text "12" in B4.
inline Workbook SmallWorkbook() {
  Workbook workbook =
      BookOf({"Sheet1!A: 1 | 2 | 3 | 4 | 5", "Sheet1!B: five | TRUE | #DIV/0! | \"12\""});
  workbook.file_name = u"Book.xlsx";
  return workbook;
}

/// An engine with the planted add-in open.
inline std::unique_ptr<Engine> PlantedEngine(Workbook workbook = SmallWorkbook(),
                                             EngineOptions options = {}) {
  auto engine = std::make_unique<Engine>(std::move(workbook), std::move(options));
  engine->LoadAddIn(PLANTED_FAULTS);
  return engine;
}

}  // namespace zavhost::tests
