#pragma once
// The program and its commands. Each writes its result to stdout and everything else to stderr, and
// returns the program's exit code.

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/calc/engine.h"
#include "host/cli/command_line.h"

namespace zavhost {

/// The whole program. The arguments are in UTF-8, without the program's name.
int RunProgram(std::vector<std::string> arguments);

// The caller reports any WorkbookError or FormulaError of a command.
int RunCommand(const CommandLine& line);
int CheckCommand(const CommandLine& line);
int EvalCommand(const CommandLine& line);
int FunctionsCommand(const CommandLine& line);
int DistributionsCommand(const CommandLine& line);
int FormulaCommand(const CommandLine& line);
int ReportCommand(const CommandLine& line);
int DoctorCommand(CommandLine line);

/// Creates an engine, and loads and announces the command line's add-in.
std::unique_ptr<Engine> StartEngine(const CommandLine& line, Workbook workbook);
/// Closes the add-in and reports what the judge found on stderr; the exit code that follows from
/// it.
int FinishEngine(Engine& engine);

/// The folder of this program.
std::filesystem::path ProgramFolder();
/// Progress on stderr once work takes longer than a moment, when stderr is a terminal; else empty.
std::function<void(std::size_t, std::size_t)> ProgressToTerminal();

/// A value as text in General format.
std::string DisplayText(const Value& value);
/// The same, with numbers in their shortest exact form.
std::string ExactText(const Value& value);
/// "1 formula", "2 formulas".
std::string Plural(std::size_t count, std::string_view what);
/// One field of comma-separated output, with EscapedUtf8.
std::string CsvField(const std::string& field);

}  // namespace zavhost
