#include "integration/running_add_in.h"

#include <doctest/doctest.h>

#ifdef _WIN32
#include <process.h>
#define getpid _getpid
#else
#include <unistd.h>
#endif

namespace zavrel::tests {

using zavhost::ArrayPtr;
using zavhost::Engine;
using zavhost::Value;

std::filesystem::path AddInFile() {
#ifdef _WIN32
  return std::filesystem::absolute(ZAVREL_OUT "/ZavrelFuncs8_x64.xll").make_preferred();
#else
  return std::filesystem::read_symlink("/proc/self/exe");
#endif
}

std::filesystem::path ScratchFolder() {
  static const std::filesystem::path folder = [] {
    auto made =
        std::filesystem::temp_directory_path() / ("zavrel-test-" + std::to_string(getpid()));
    std::filesystem::remove_all(made);
    std::filesystem::create_directories(made);
    return made;
  }();
  return folder;
}

std::unique_ptr<Engine> OpenAddIn(zavhost::Workbook workbook, std::uint32_t language) {
  if (workbook.sheets.empty()) workbook.sheets.emplace_back(u"Data");
  zavhost::EngineOptions options;
  options.language = language;
  auto engine = std::make_unique<Engine>(std::move(workbook), std::move(options));
  engine->LoadAddIn(AddInFile());
  return engine;
}

std::unique_ptr<Engine> ServingAddIn(zavhost::Workbook workbook) {
  auto engine = OpenAddIn(std::move(workbook));
  engine->Announce(5);
  return engine;
}

namespace {

std::string ShownValue(const Value& value) {
  if (const double* number = value.number())
    return zavhost::Utf8FromUtf16(zavhost::GeneralText(*number));
  if (const bool* boolean = value.boolean()) return *boolean ? "TRUE" : "FALSE";
  if (const std::u16string* text = value.text()) return zavhost::Utf8FromUtf16(*text);
  if (const zavhost::ErrorCode* error = value.error())
    return zavhost::Utf8FromUtf16(zavhost::ErrorText(*error));
  return "";
}

}  // namespace

std::string Shown(Engine& engine, std::u16string_view formula) {
  const zavhost::Operand result = engine.Evaluate(formula, {0, 0, 20});
  if (const Value* value = std::get_if<Value>(&result)) return ShownValue(*value);
  const ArrayPtr* array = std::get_if<ArrayPtr>(&result);
  REQUIRE(array != nullptr);
  std::string shown;
  for (std::int32_t row = 0; row < (*array)->rows; ++row) {
    for (std::int32_t column = 0; column < (*array)->columns; ++column) {
      if (column > 0) shown += ',';
      shown += ShownValue((*array)->At(row, column));
    }
    shown += ';';
  }
  return shown;
}

double Number(Engine& engine, std::u16string_view formula) {
  const zavhost::Operand result = engine.Evaluate(formula, {0, 0, 20});
  const Value* value = std::get_if<Value>(&result);
  REQUIRE(value != nullptr);
  CAPTURE(zavhost::Utf8FromUtf16(formula));
  REQUIRE_MESSAGE(value->number() != nullptr, ShownValue(*value));
  return *value->number();
}

void CloseClean(Engine& engine) {
  engine.CloseAddIn();
  for (const zavhost::Violation& violation : engine.judge().violations()) {
    FAIL_CHECK(zavhost::DescribeViolation(violation));
  }
}

}  // namespace zavrel::tests
