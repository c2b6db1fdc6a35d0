#include "host/cli/batch.h"

#include <algorithm>
#include <array>
#include <map>
#include <system_error>

#include "host/workbook/text.h"
#include "host/workbook/workbook.h"
#include "platform/exhausted_memory.h"

namespace zavhost {
namespace fs = std::filesystem;
namespace {

/// A workbook, but not the note that an office program leaves beside one that is open.
bool IsWorkbook(const fs::path& file) {
  const std::string name = Utf8FromPath(file.filename());
  return EqualIgnoringCase(Utf16FromPath(file.extension()), u".xlsx") && !name.starts_with("~$") &&
         !name.starts_with(".");
}

/// The workbooks in a folder and below it, but not those below `output`, in the order of names.
std::vector<fs::path> WorkbooksIn(const fs::path& folder, const fs::path& output) {
  std::vector<fs::path> found;
  std::error_code error;
  fs::recursive_directory_iterator next(folder, fs::directory_options::skip_permission_denied,
                                        error);
  for (; !error && next != fs::recursive_directory_iterator(); next.increment(error)) {
    std::error_code ignored;
    if (next->is_directory(ignored)) {
      if (!output.empty() && fs::equivalent(next->path(), output, ignored))
        next.disable_recursion_pending();
    } else if (IsWorkbook(next->path())) {
      found.push_back(next->path());
    }
  }
  if (error)
    throw WorkbookError(PrintablePath(folder) + ": the folder cannot be read: " + error.message());
  if (found.empty()) throw WorkbookError(PrintablePath(folder) + ": no workbooks in this folder");
  std::ranges::sort(found);
  return found;
}

/// For comparing paths of files that may not exist yet.
fs::path Resolved(const fs::path& file) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(file, error);
  zavrel::ThrowIfNoMemory(error);
  return error ? file.lexically_normal() : resolved;
}

}  // namespace

bool IsBatch(const CommandLine& line) {
  if (line.part_of_batch || (line.command != Command::kRun && line.command != Command::kCheck))
    return false;
  std::error_code ignored;
  return line.command == Command::kCheck || line.workbooks.size() > 1 || line.jobs > 0 ||
         line.timeout_seconds > 0 || !line.output_folder.empty() ||
         fs::is_directory(line.workbooks.at(0), ignored);
}

std::vector<BatchItem> BatchItems(const CommandLine& line) {
  std::vector<BatchItem> items;
  std::map<fs::path, fs::path> workbook_of;  // by output
  const auto add = [&](const fs::path& workbook, const fs::path& name) {
    BatchItem item{workbook, line.output_folder.empty() ? line.output : line.output_folder / name};
    if (line.in_place) item.output = workbook;
    if (!item.output.empty()) {
      const fs::path output = Resolved(item.output);
      if (output == Resolved(workbook) && !line.in_place)
        throw WorkbookError(PrintablePath(workbook) + ": the output would replace the workbook" +
                            (line.output_folder.empty() ? "; --in-place does that" : ""));
      const auto [other, is_new] = workbook_of.emplace(output, workbook);
      if (!is_new) {
        throw WorkbookError(PrintablePath(workbook) + ": the output would be that of " +
                            PrintablePath(other->second));
      }
    }
    items.push_back(std::move(item));
  };
  std::error_code ignored;
  if (!line.output.empty() &&
      (line.workbooks.size() > 1 || fs::is_directory(line.workbooks.at(0), ignored)))
    throw WorkbookError("-o names the output of one workbook; --output-folder takes several");
  for (const fs::path& named : line.workbooks) {
    if (!fs::is_directory(named, ignored)) {
      add(named, named.filename());
      continue;
    }
    for (const fs::path& workbook : WorkbooksIn(named, line.output_folder))
      add(workbook, workbook.lexically_relative(named));
  }
  return items;
}

bool IsUpToDate(const BatchItem& item) {
  std::error_code error;
  const auto written = fs::last_write_time(item.output, error);
  if (error) return false;
  const auto changed = fs::last_write_time(item.workbook, error);
  return !error && written >= changed;
}

namespace {

struct ExitStatus {
  int code;
  const char* word;
};

/// From the worst to the best. A process that a signal ended is as bad as a crash.
constexpr std::array kStatuses{
    ExitStatus{kExitCrash, "crashed"},        ExitStatus{kExitViolation, "broke a rule"},
    ExitStatus{kExitTimeout, "out of time"},  ExitStatus{kExitError, "failed"},
    ExitStatus{kExitWorkbook, "with errors"}, ExitStatus{kExitDoubtful, "in doubt"},
    ExitStatus{kExitDifferences, "differs"},  ExitStatus{kExitSuccess, "done"}};

const ExitStatus* StatusOf(int exit_code) {
  const auto found = std::ranges::find(kStatuses, exit_code, &ExitStatus::code);
  return found == kStatuses.end() ? kStatuses.begin() : found;
}

}  // namespace

const char* StatusWord(int exit_code) { return StatusOf(exit_code)->word; }

int WorseExitCode(int one, int other) { return std::min(StatusOf(one), StatusOf(other))->code; }

}  // namespace zavhost
