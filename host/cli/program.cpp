#include <exception>
#include <iostream>
#include <new>

#include "host/cli/commands.h"

namespace zavhost {
namespace {

int Dispatch(const CommandLine& line) {
  switch (line.command) {
    case Command::kRun:
      return RunCommand(line);
    case Command::kEval:
      return EvalCommand(line);
    case Command::kFunctions:
      return FunctionsCommand(line);
    case Command::kDoctor:
      return DoctorCommand(line);
  }
  return kExitUsage;
}

}  // namespace

int RunProgram(std::vector<std::string> arguments) {
  const ParsedCommandLine parsed = ParseCommandLine(std::move(arguments));
  if (!parsed.command_line) return parsed.exit_code;
  try {
    return Dispatch(*parsed.command_line);
  } catch (const std::bad_alloc&) {
    std::cerr << "ZavHost: not enough memory\n";
  } catch (const std::exception& error) {
    std::cerr << "ZavHost: " << error.what() << '\n';
  }
  return kExitError;
}

}  // namespace zavhost
