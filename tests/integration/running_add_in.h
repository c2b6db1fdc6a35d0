#pragma once
// The real add-in in the real host.

#include <filesystem>
#include <functional>
#include <memory>

#include "support/workbooks.h"

namespace zavrel::tests {

using zavhost::tests::AddFormulas;
using zavhost::tests::BookOf;
using zavhost::tests::CheckCells;
using zavhost::tests::CheckFormulas;
using zavhost::tests::Edit;
using zavhost::tests::Number;
using zavhost::tests::Shown;
using zavhost::tests::ShownCells;

/// The add-in's file, beside the others that ship.
std::filesystem::path AddInFile();

/// That of the distributions' add-in.
std::filesystem::path DistributionsFile();

/// The number of functions in a table of functions.json.
std::size_t FunctionsDeclared(const char* table);

/// A folder of this test process' own, made empty at first use.
std::filesystem::path ScratchFolder();

/// An engine with the add-in open, over a workbook of one sheet "Data" unless another is given.
std::unique_ptr<zavhost::Engine> OpenAddIn(zavhost::Workbook workbook = {},
                                           zavhost::EngineOptions options = {});
/// The same, announced for application 5.
std::unique_ptr<zavhost::Engine> ServingAddIn(zavhost::Workbook workbook = {},
                                              zavhost::EngineOptions options = {});

/// Closes the add-in and requires that the judge has nothing to say.
void CloseClean(zavhost::Engine& engine);

/// Has a workbook checked with both add-ins serving it, by hosts that pass references and whole
/// columns in either way.
void InEachHost(const zavhost::Workbook& workbook,
                const std::function<void(zavhost::Engine&)>& check);

/// The same with formulas that are entered and recalculated, and what their cells show then, each
/// as "D1:E2 = ZavMode(A1:A9) -> 1,1;1,1;".
void CheckEntered(zavhost::Workbook workbook, std::string_view table);

}  // namespace zavrel::tests
