// What the commands have in common.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/cli/system.h"
#include "host/workbook/terminal_text.h"
#include "platform/module.h"

namespace zavhost {

nlohmann::ordered_json ToJson(const Value& value) {
  if (const double* number = value.number()) return *number;
  if (const bool* boolean = value.boolean()) return *boolean;
  if (const std::u16string* text = value.text()) return Utf8FromUtf16(*text);
  if (const ErrorCode* error = value.error()) return {{"error", Utf8FromUtf16(ErrorText(*error))}};
  return nullptr;
}

std::string JsonText(const nlohmann::ordered_json& json, JsonLayout layout) {
  const std::string text = json.dump(layout == JsonLayout::kIndented ? 2 : -1, ' ', false,
                                     nlohmann::json::error_handler_t::replace);
  return EscapedUtf8(text);
}

std::filesystem::path ProgramFolder() { return zavrel::HostExecutablePath().parent_path(); }

std::function<void(std::size_t, std::size_t)> ProgressToTerminal() {
  if (!StderrIsTerminal()) return {};
  using Clock = std::chrono::steady_clock;
  return [start = Clock::now(), next = Clock::now() + std::chrono::seconds(1), shown = false](
             std::size_t done, std::size_t total) mutable {
    const auto now = Clock::now();
    if (done == total && shown) {
      std::fprintf(stderr, "\r%60s\r", "");
      shown = false;
    } else if (now >= next && done < total) {
      std::fprintf(stderr, "\rRecalculating: %zu of %zu formulas, %lld s ", done, total,
                   static_cast<long long>(
                       std::chrono::duration_cast<std::chrono::seconds>(now - start).count()));
      next = now + std::chrono::milliseconds(250);
      shown = true;
    }
  };
}

std::string DisplayText(const Value& value) { return Utf8FromUtf16(GeneralText(value)); }

std::string ExactText(const Value& value) {
  const double* number = value.number();
  return number == nullptr ? DisplayText(value) : fmt::format("{}", *number);
}

std::string Plural(std::size_t count, std::string_view what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string CsvField(const std::string& field) {
  std::string text = EscapedUtf8(field);
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + "\"";
}

namespace {

/// The one that was asked for, or those that stand in the program's folder.
std::vector<std::filesystem::path> AddIns(const CommandLine& line) {
  if (!line.add_in.empty()) return {line.add_in};
  std::vector<std::filesystem::path> add_ins = {ProgramFolder() / ZAVHOST_ADD_IN};
  const std::filesystem::path distributions = ProgramFolder() / ZAVHOST_DISTRIBUTIONS_ADD_IN;
  std::error_code ignored;
  if (std::filesystem::exists(distributions, ignored)) add_ins.push_back(distributions);
  return add_ins;
}

}  // namespace

// Characters. A million lines take more memory than a million formulas, and nobody reads them.
constexpr std::size_t kMostListed = 8'000'000;

std::unique_ptr<Engine> StartEngine(const CommandLine& line, Workbook workbook) {
  EngineOptions options;
  options.language = LanguageId(line.language);
  options.formula_limit = line.formula_limit;
  options.report_every_formula = line.show_every_formula;
  if (line.command == Command::kRun && !line.show_every_formula)
    options.report_limit = line.part_of_batch ? 0 : kMostListed;
  options.progress = ProgressToTerminal();
  auto engine = std::make_unique<Engine>(std::move(workbook), std::move(options));
  for (const std::filesystem::path& add_in : AddIns(line)) engine->LoadAddIn(add_in);
  engine->Announce(5);
  return engine;
}

int FinishEngine(Engine& engine) {
  engine.CloseAddIns();
  const Judge& judge = engine.judge();
  if (judge.count() == 0) return kExitSuccess;
  std::cerr << ZAVHOST_NAME ": the add-in broke rules of the Excel C API "
            << Plural(judge.count(), "time") << ":\n";
  constexpr std::size_t kShown = 20;
  for (std::size_t i = 0; i < std::min(kShown, judge.violations().size()); ++i) {
    std::cerr << "  " << DescribeViolation(judge.violations()[i]) << '\n';
  }
  if (judge.count() > kShown) std::cerr << "  and " << judge.count() - kShown << " more\n";
  return kExitViolation;
}

}  // namespace zavhost
