// The processes of a batch, and what the user sees of them.
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <iostream>
#include <iterator>
#include <list>
#include <new>
#include <random>
#include <thread>

#include "host/cli/batch.h"
#include "host/cli/commands.h"
#include "host/cli/exhausted_memory.h"
#include "host/cli/system.h"
#include "host/workbook/text.h"
#include "host/workbook/workbook.h"
#include "host/xlsx/unfinished_file.h"
#include "platform/child_process.h"
#include "platform/exhausted_memory.h"
#include "platform/module.h"
#include "platform/temporary_folder.h"

namespace zavhost {
namespace fs = std::filesystem;
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A file or an empty folder of this process for what the others write; deleted at the end.
class ScratchPath {
 public:
  explicit ScratchPath(fs::path path) : path_(std::move(path)) {}
  ~ScratchPath() { Delete(); }
  ScratchPath(const ScratchPath&) = delete;
  ScratchPath& operator=(const ScratchPath&) = delete;
  const fs::path& path() const { return path_; }
  /// Takes no memory.
  void Delete() const noexcept {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }

 private:
  fs::path path_;
};

fs::path MakeScratchFolder() {
  fs::path path = zavrel::TemporaryFolder() / fmt::format("zavhost-{:08x}", std::random_device()());
  std::error_code ignored;
  if (!path.has_parent_path() || !fs::create_directory(path, ignored))
    throw WorkbookError("there is no folder for temporary files");
  fs::permissions(path, fs::perms::owner_all);
  return path;
}

std::string ContentOf(const fs::path& file) {
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) zavrel::ThrowIfNoMemory();
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The last line that is not empty, where a program says why it ended.
std::string LastLine(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return text.substr(text.rfind('\n') + 1);
}

/// One workbook while its process runs.
class Task {
 public:
  Task(const CommandLine& line, BatchItem item, const fs::path& scratch, std::size_t number)
      : output_(scratch / fmt::format("{}.out", number)),
        errors_(scratch / fmt::format("{}.err", number)),
        limit_(line.timeout_seconds) {
    outcome_.item = std::move(item);
    std::error_code ignored;
    const fs::path& target = outcome_.item.output;
    if (!target.empty()) fs::create_directories(fs::absolute(target).parent_path(), ignored);
    std::string problem;
    process_ = zavrel::ChildProcess::Start(
        {zavrel::HostExecutablePath(), Arguments(line), output_.path(), errors_.path()}, &problem);
    if (!process_) {
      outcome_.exit_code = kExitError;
      outcome_.message = "its process cannot be started: " + problem;
    }
  }

  /// Whether the workbook is through, or its time over.
  bool HasEnded() {
    if (!process_) return true;
    if (const auto code = process_->ExitCode()) {
      outcome_.exit_code = *code;
    } else if (limit_ > 0 && SecondsSince(start_) > limit_) {
      process_->Kill();
      outcome_.exit_code = kExitTimeout;
      outcome_.message = fmt::format("no result after {} s", limit_);
    } else {
      return false;
    }
    process_.reset();
    return true;
  }

  BatchOutcome TakeOutcome() {
    outcome_.seconds = SecondsSince(start_);
    outcome_.result = nlohmann::ordered_json::parse(ContentOf(output_.path()), nullptr,
                                                    /*allow_exceptions=*/false);
    if (!outcome_.result.is_object()) outcome_.result = nlohmann::ordered_json::object();
    if (outcome_.message.empty() && outcome_.exit_code != kExitSuccess) Explain();
    if (outcome_.exit_code != kExitSuccess && !outcome_.item.output.empty())
      RemoveRemains(outcome_.item.output);
    return std::move(outcome_);
  }

  /// Deletes what the process has written, without any memory.
  void DeleteFiles() const noexcept {
    output_.Delete();
    errors_.Delete();
  }

 private:
  std::vector<std::string> Arguments(const CommandLine& line) const {
    std::vector<std::string> arguments{line.command == Command::kRun ? "run" : "check",
                                       "--part-of-batch",
                                       "--language",
                                       line.language,
                                       "--max-formulas",
                                       std::to_string(line.formula_limit)};
    const auto add = [&](const char* option, const std::string& value) {
      arguments.insert(arguments.end(), {option, value});
    };
    if (line.show_every_formula) arguments.emplace_back("--all");
    if (line.in_place) arguments.emplace_back("--in-place");
    if (line.values_only) arguments.emplace_back("--values-only");
    if (!line.add_in.empty()) add("--add-in", Utf8FromPath(line.add_in));
    if (line.memory_megabytes > 0) add("--memory", std::to_string(line.memory_megabytes));
    if (line.command == Command::kCheck) add("--digits", std::to_string(line.digits));
    if (!outcome_.item.output.empty() && !line.in_place)
      add("-o", Utf8FromPath(outcome_.item.output));
    // Behind this a name may begin with a minus.
    add("--", Utf8FromPath(outcome_.item.workbook));
    return arguments;
  }

  /// Why the process ended as it did.
  void Explain() {
    const int code = outcome_.exit_code;
    if (code == kExitDifferences) return;
    if (code == kExitWorkbook || code == kExitDoubtful) {
      ExplainBy(code == kExitWorkbook ? "errors" : "warnings");
      return;
    }
    outcome_.message = LastLine(ContentOf(errors_.path()));
    for (const std::string_view program : {ZAVHOST_NAME ": ", "ZavHost: "}) {
      if (outcome_.message.starts_with(program)) outcome_.message.erase(0, program.size());
    }
    if (outcome_.message.empty()) {
      outcome_.message = code > 128 ? fmt::format("its process was ended by signal {}", code - 128)
                                    : fmt::format("its process ended with code {}", code);
    }
  }

  /// By the first of the lines that it reported.
  void ExplainBy(const char* kind) {
    const auto lines = outcome_.result.find(kind);
    if (lines == outcome_.result.end() || lines->empty()) return;
    outcome_.message = lines->front().get<std::string>();
    if (lines->size() > 1) outcome_.message += fmt::format(" (and {} more)", lines->size() - 1);
  }

  BatchOutcome outcome_;
  ScratchPath output_;
  ScratchPath errors_;
  unsigned limit_;
  Clock::time_point start_ = Clock::now();
  std::optional<zavrel::ChildProcess> process_;
};

std::size_t CountIn(const nlohmann::ordered_json& result, const char* key) {
  const auto found = result.find(key);
  if (found == result.end()) return 0;
  return found->is_array() ? found->size() : found->get<std::size_t>();
}

/// What the user sees, in the form asked for.
class BatchReport {
 public:
  BatchReport(const CommandLine& line, std::size_t total, std::size_t skipped)
      : line_(line),
        total_(total),
        skipped_(skipped),
        bar_(line.form == OutputForm::kTable && StderrIsTerminal()) {}

  void Add(const BatchOutcome& outcome) {
    ++done_;
    worst_ = WorseExitCode(worst_, outcome.exit_code);
    if (outcome.exit_code != kExitSuccess) ++failed_;
    formulas_ += CountIn(outcome.result, "formulas");
    if (line_.form == OutputForm::kJson) {
      std::cout << JsonLine(outcome) << std::flush;
      return;
    }
    // A terminal shows the bar, and what went wrong above it.
    if (bar_ && outcome.exit_code == kExitSuccess) return;
    if (bar_) ClearBar();
    std::cout << TextLines(outcome) << std::flush;
  }

  void ShowProgress() {
    const auto now = Clock::now();
    if (!bar_ || now < next_) return;
    next_ = now + std::chrono::milliseconds(200);
    constexpr std::size_t kWidth = 24;
    const std::size_t filled = kWidth * done_ / std::max<std::size_t>(total_, 1);
    std::string text =
        fmt::format("[{:#<{}}{:-<{}}] {} of {}", "", filled, "", kWidth - filled, done_, total_);
    if (failed_ > 0) text += fmt::format(", {} failed", failed_);
    if (done_ > 0) {
      const double left =
          SecondsSince(start_) / static_cast<double>(done_) * static_cast<double>(total_ - done_);
      text += fmt::format(", {:.0f} s left", left);
    }
    std::fprintf(stderr, "\r%-70s", text.c_str());
    shown_ = true;
  }

  int Finish() {
    ClearBar();
    std::string text =
        Plural(total_ + skipped_, "workbook") + ": " + fmt::format("{} done", done_ - failed_);
    if (skipped_ > 0) text += fmt::format(", {} already up to date", skipped_);
    if (failed_ > 0) text += fmt::format(", {} not (the worst {})", failed_, StatusWord(worst_));
    text += fmt::format("; {} in {:.1f} s.\n", Plural(formulas_, "formula"), SecondsSince(start_));
    (line_.form == OutputForm::kJson ? std::cerr : std::cout) << text << std::flush;
    return worst_;
  }

 private:
  void ClearBar() {
    if (shown_) std::fprintf(stderr, "\r%70s\r", "");
    shown_ = false;
  }

  std::string TextLines(const BatchOutcome& outcome) const {
    std::string text = PrintablePath(outcome.item.workbook) + ": ";
    if (outcome.exit_code != kExitSuccess) text += StatusWord(outcome.exit_code);
    const std::size_t formulas = CountIn(outcome.result, "formulas");
    if (!outcome.message.empty()) text += ": " + outcome.message;
    if (outcome.message.empty() && outcome.exit_code != kExitSuccess) text += ": ";
    if (outcome.message.empty()) {
      text += Plural(formulas, "formula");
      text +=
          line_.command == Command::kRun
              ? fmt::format(", {} changed", CountIn(outcome.result, "changed"))
              : fmt::format(", {}", Plural(CountIn(outcome.result, "differences"), "difference"));
    }
    text += fmt::format(" ({:.2f} s)\n", outcome.seconds);
    return text + DifferenceLines(outcome.result);
  }

  static std::string DifferenceLines(const nlohmann::ordered_json& result) {
    constexpr std::size_t kShown = 20;
    std::string text;
    const std::size_t count = CountIn(result, "differences");
    for (std::size_t i = 0; i < std::min(count, kShown); ++i) {
      const auto part = [&](const char* key) {
        const auto& value = result["differences"][i].at(key).get_ref<const std::string&>();
        return PrintableUtf8(Utf16FromUtf8(value));
      };
      text += fmt::format("  {}!{}  {}  is stored as {} but gives {}\n", part("sheet"),
                          part("cell"), part("formula"), part("stored"), part("computed"));
    }
    if (count > kShown)
      text += fmt::format("  and {} more; --json lists all of them\n", count - kShown);
    return text;
  }

  static std::string JsonLine(const BatchOutcome& outcome) {
    nlohmann::ordered_json line;
    line["workbook"] = Utf8FromPath(outcome.item.workbook);
    if (!outcome.item.output.empty() && outcome.result.contains("written"))
      line["output"] = Utf8FromPath(outcome.item.output);
    line["status"] = StatusWord(outcome.exit_code);
    line["exit_code"] = outcome.exit_code;
    line["seconds"] = outcome.seconds;
    if (!outcome.message.empty()) line["message"] = outcome.message;
    for (const auto& [key, value] : outcome.result.items()) {
      if (key != "written") line[key] = value;
    }
    return JsonText(line, JsonLayout::kOneLine) + "\n";
  }

  const CommandLine& line_;
  std::size_t total_;
  std::size_t skipped_;
  bool bar_;
  bool shown_ = false;
  std::size_t done_ = 0;
  std::size_t failed_ = 0;
  std::size_t formulas_ = 0;
  int worst_ = kExitSuccess;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_;
};

/// The processes that run, and their folder.
class Processes {
 public:
  Processes() {
    current_ = this;
    std::set_new_handler(EndWithoutMemory);
  }
  ~Processes() { std::set_new_handler(ZavrelMemoryExhausted); }
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;

  std::size_t count() const { return running_.size(); }
  void Start(const CommandLine& line, BatchItem item) {
    running_.emplace_back(line, std::move(item), scratch_.path(), started_++);
  }
  void ReportEnded(BatchReport& report) {
    for (auto task = running_.begin(); task != running_.end();) {
      if (!task->HasEnded()) {
        ++task;
        continue;
      }
      report.Add(task->TakeOutcome());
      task = running_.erase(task);
    }
  }

 private:
  /// The processes end with this one.
  static void EndWithoutMemory() {
    for (const Task& task : current_->running_) task.DeleteFiles();
    current_->scratch_.Delete();
    ZavrelMemoryExhausted();
  }

  inline static Processes* current_ = nullptr;

  ScratchPath scratch_{MakeScratchFolder()};
  std::list<Task> running_;
  std::size_t started_ = 0;
};

}  // namespace

int BatchCommand(const CommandLine& line) {
  if (line.form == OutputForm::kCsv) {
    std::cerr << ZAVHOST_NAME ": --csv shows the formulas of one workbook; use --json\n";
    return kExitUsage;
  }
  std::vector<BatchItem> items = BatchItems(line);
  const std::size_t all = items.size();
  if (line.resume) std::erase_if(items, IsUpToDate);
  BatchReport report(line, items.size(), all - items.size());
  const std::size_t jobs = line.jobs > 0 ? line.jobs : zavrel::ProcessorCount();
  Processes running;
  for (std::size_t next = 0; next < items.size() || running.count() > 0;) {
    while (next < items.size() && running.count() < jobs) running.Start(line, items[next++]);
    running.ReportEnded(report);
    report.ShowProgress();
    if (running.count() == jobs || next == items.size())
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return report.Finish();
}

}  // namespace zavhost
