#pragma once
// The command line.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zavhost {

enum class Command { kRun, kCheck, kEval, kFunctions, kDistributions, kFormula, kReport, kDoctor };
enum class OutputForm { kTable, kJson, kCsv };

/// Exit codes of the program; the help lists them.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitError = 1;  // a file, formula or add-in that cannot be used; no memory
inline constexpr int kExitViolation = 2;    // the add-in broke a rule for add-ins
inline constexpr int kExitCrash = 3;        // the add-in crashed (kCrashExitCode)
inline constexpr int kExitWorkbook = 4;     // circular references or formulas that cannot be read
inline constexpr int kExitDifferences = 5;  // stored values that are not the computed ones
inline constexpr int kExitTimeout = 6;      // a workbook took longer than it was given
inline constexpr int kExitDoubtful = 7;     // values that may be wrong, for what is not computed
inline constexpr int kExitUsage = 64;

struct CommandLine {
  Command command = Command::kRun;
  OutputForm form = OutputForm::kTable;
  std::filesystem::path add_in;  // empty: the one in the program's folder
  std::string language = "en";
  // run, check
  std::vector<std::filesystem::path> workbooks;  // or folders with workbooks
  std::size_t formula_limit = 1'000'000;
  bool show_every_formula = false;
  unsigned jobs = 0;             // how many at once; 0: one for each processor
  unsigned timeout_seconds = 0;  // for each workbook; 0: no limit
  unsigned memory_megabytes = 0;
  bool part_of_batch = false;  // another process started this one for one workbook
  // run
  std::filesystem::path output;
  std::filesystem::path output_folder;
  bool resume = false;
  bool in_place = false;
  bool values_only = false;
  // check
  int digits = 12;
  // eval
  std::string formula;
  std::filesystem::path data;
  // functions, distributions; report: the columns; formula: the formulas
  std::vector<std::string> names;
  // formula
  std::string from = "en";
  std::string to;
  std::string style = "a1";
  std::string to_style;  // empty: the same
  std::string cell = "A1";
  // report, with `data` and `output`
  bool list_analyses = false;
  std::string analysis;
  std::string by;
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
