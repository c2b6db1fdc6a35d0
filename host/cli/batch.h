#pragma once
// Many workbooks: each is the work of a process of its own, so that one which crashes, hangs or
// takes too much memory costs nobody else anything.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/cli/command_line.h"
#include "host/cli/json_value.h"

namespace zavhost {

/// Whether the command is for more than one workbook, or has options that need a process for each.
bool IsBatch(const CommandLine& line);

struct BatchItem {
  std::filesystem::path workbook;
  std::filesystem::path output;  // empty: nothing is written
};

/// The workbooks of the command line, those of its folders included, with what becomes of them.
/// Throws WorkbookError if a folder has none, or if an output would be another's or an input.
std::vector<BatchItem> BatchItems(const CommandLine& line);

/// Whether the output is there and not older than its workbook.
bool IsUpToDate(const BatchItem& item);

/// The outcome of one workbook.
struct BatchOutcome {
  BatchItem item;
  int exit_code = 0;
  double seconds = 0;
  std::string message;            // why it failed; one line
  nlohmann::ordered_json result;  // what its process reported; an object
};

/// "done", "failed", ... for an exit code.
const char* StatusWord(int exit_code);
/// The worse of two exit codes: a crash, a broken rule, no time, a file that cannot be used, a
/// workbook's own errors, values in doubt, differences.
int WorseExitCode(int one, int other);

/// Runs the command for every workbook, reports, and returns the worst exit code.
int BatchCommand(const CommandLine& line);

}  // namespace zavhost
