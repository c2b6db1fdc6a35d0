#include "integration/running_add_in.h"

#include <doctest/doctest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/book_builder.h"

namespace zavrel::tests {

using zavhost::Engine;
using zavhost::EngineOptions;

std::filesystem::path AddInFile() {
  return std::filesystem::absolute(ZAVREL_ADD_IN).make_preferred();
}

std::filesystem::path DistributionsFile() {
  return std::filesystem::absolute(ZAVREL_DISTRIBUTIONS_ADD_IN).make_preferred();
}

std::size_t FunctionsDeclared(const char* table) {
  std::ifstream file(ZAVREL_SOURCE_DIR "/src/functions/functions.json");
  return nlohmann::json::parse(file).at("tables").at(table).at("functions").size();
}

std::filesystem::path ScratchFolder() {
  static const zavhost_test::TemporaryFolder folder;  // but for libraries still loaded from it
  return folder.path();
}

std::unique_ptr<Engine> OpenAddIn(zavhost::Workbook workbook, EngineOptions options) {
  if (workbook.sheets.empty()) workbook.sheets.emplace_back(u"Data");
  auto engine = std::make_unique<Engine>(std::move(workbook), std::move(options));
  engine->LoadAddIn(AddInFile());
  return engine;
}

std::unique_ptr<Engine> ServingAddIn(zavhost::Workbook workbook, EngineOptions options) {
  auto engine = OpenAddIn(std::move(workbook), std::move(options));
  engine->Announce(5);
  return engine;
}

void CloseClean(Engine& engine) {
  engine.CloseAddIns();
  for (const zavhost::Violation& violation : engine.judge().violations()) {
    FAIL_CHECK(zavhost::DescribeViolation(violation));
  }
}

void InEachHost(const zavhost::Workbook& workbook, const std::function<void(Engine&)>& check) {
  for (const bool other : {false, true}) {
    CAPTURE(other);
    EngineOptions options;
    options.behaviour.external_references_only = other;
    options.behaviour.clip_whole_columns = other;
    const auto engine = ServingAddIn(workbook, std::move(options));
    engine->LoadAddIn(DistributionsFile());
    check(*engine);
    CloseClean(*engine);
  }
}

void CheckEntered(zavhost::Workbook workbook, std::string_view table) {
  using zavhost::tests::SplitAt;
  std::string cells;
  for (const std::string& text : zavhost::tests::CasesIn(table)) {
    const auto [entered, shown] = SplitAt(text, " ->");
    AddFormulas(workbook, entered);
    cells += SplitAt(entered, " = ").first + " -> " + shown + '\n';
  }
  InEachHost(workbook, [&](Engine& engine) {
    for (const std::string& error : engine.Recalculate().errors) FAIL_CHECK(error);
    CheckCells(engine, cells);
  });
}

}  // namespace zavrel::tests
