#include <exception>
#include <iostream>
#include <new>

#include "host/cli/batch.h"
#include "host/cli/commands.h"
#include "platform/child_process.h"

namespace zavhost {
namespace {

int Dispatch(const CommandLine& line) {
  switch (line.command) {
    case Command::kRun:
      return RunCommand(line);
    case Command::kCheck:
      return CheckCommand(line);
    case Command::kEval:
      return EvalCommand(line);
    case Command::kFunctions:
      return FunctionsCommand(line);
    case Command::kDistributions:
      return DistributionsCommand(line);
    case Command::kFormula:
      return FormulaCommand(line);
    case Command::kReport:
      return ReportCommand(line);
    case Command::kDoctor:
      return DoctorCommand(line);
  }
  return kExitUsage;
}

}  // namespace

int RunProgram(std::vector<std::string> arguments) try {
  const ParsedCommandLine parsed = ParseCommandLine(std::move(arguments));
  if (!parsed.command_line) return parsed.exit_code;
  const CommandLine& line = *parsed.command_line;
  if (line.part_of_batch) zavrel::EndWithParent();
  // The processes of a batch have the limit, not the one that starts them.
  const bool is_alone = line.part_of_batch || !IsBatch(line);
  if (line.memory_megabytes > 0 && is_alone &&
      !zavrel::LimitOwnMemory(std::uint64_t{line.memory_megabytes} << 20)) {
    std::cerr << ZAVHOST_NAME ": the system does not limit the memory\n";
    return kExitError;
  }
  const int code = Dispatch(line);
  if (!std::cout.flush()) {
    std::cerr << ZAVHOST_NAME ": the results cannot be written to the output; is the disk full?\n";
    return kExitError;
  }
  return code;
} catch (const std::bad_alloc&) {
  std::cerr << ZAVHOST_NAME ": not enough memory\n";
  return kExitError;
} catch (const std::exception& error) {
  std::cerr << ZAVHOST_NAME ": " << error.what() << '\n';
  return kExitError;
}

}  // namespace zavhost
