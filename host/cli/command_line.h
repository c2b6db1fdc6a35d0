#pragma once
// The command line.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zavhost {

enum class Command { kRun, kEval, kFunctions, kDoctor };
enum class OutputForm { kTable, kJson, kCsv };

/// Exit codes of the program; the help lists them.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitError = 1;      // a file, formula or add-in that cannot be used
inline constexpr int kExitViolation = 2;  // the add-in broke a rule for add-ins
// 3, kCrashExitCode: the add-in crashed
inline constexpr int kExitWorkbook = 4;  // circular references or formulas that cannot be read
inline constexpr int kExitUsage = 64;

struct CommandLine {
  Command command = Command::kRun;
  OutputForm form = OutputForm::kTable;
  std::filesystem::path add_in;  // empty: ZavrelFuncs8_x64.xll in the program's folder
  std::string language = "en";
  // run
  std::filesystem::path workbook;
  std::filesystem::path output;
  std::size_t formula_limit = 500'000;
  bool every_formula = false;
  // eval
  std::string formula;
  std::filesystem::path data;
  // functions
  std::vector<std::string> names;
  bool hidden = false;
};

/// Reads the arguments (UTF-8, without the program's name). If there is nothing else to do (for a
/// request for help, or an error), prints the text and returns an exit code instead.
struct ParsedCommandLine {
  std::optional<CommandLine> command_line;
  int exit_code = kExitSuccess;
};
ParsedCommandLine ParseCommandLine(std::vector<std::string> arguments);

/// The language id for the name of a language.
unsigned LanguageId(const std::string& language);

}  // namespace zavhost
