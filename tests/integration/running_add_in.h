#pragma once
// The real add-in in the real host: the built XLL on Windows, the same entry points linked into the
// test program elsewhere.

#include <filesystem>
#include <memory>
#include <string>

#include "host/calc/engine.h"

namespace zavrel::tests {

/// The add-in's file: build/out on Windows, this program elsewhere.
std::filesystem::path AddInFile();

/// A folder of this test process' own, made empty at first use.
std::filesystem::path ScratchFolder();

/// An engine with the add-in open, over a workbook of one sheet "Data" unless another is given.
std::unique_ptr<zavhost::Engine> OpenAddIn(zavhost::Workbook workbook = {},
                                           std::uint32_t language = 9);

/// The same, announced for application 5.
std::unique_ptr<zavhost::Engine> ServingAddIn(zavhost::Workbook workbook = {});

/// A formula's value as a cell shows it: "2.5", "#N/A", "TRUE", an empty text for an empty cell. An
/// array's elements are divided by "," and its rows by ";".
std::string Shown(zavhost::Engine& engine, std::u16string_view formula);
/// A formula's number; fails the test when it gives none.
double Number(zavhost::Engine& engine, std::u16string_view formula);

/// Closes the add-in and requires that the judge has nothing to say.
void CloseClean(zavhost::Engine& engine);

}  // namespace zavrel::tests
