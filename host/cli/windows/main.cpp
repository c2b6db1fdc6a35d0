// ZavHost.exe: the command line of the headless host.
#include <io.h>
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>

#include "host/cli/commands.h"
#include "host/formula/evaluate.h"

namespace zavhost {

std::filesystem::path ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return std::filesystem::path(path).parent_path();
    }
    path.resize(path.size() * 2);
  }
}

std::function<void(std::size_t, std::size_t)> ProgressToTerminal() {
  if (_isatty(_fileno(stderr)) == 0) return {};
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

int Main(std::vector<std::string> arguments) {
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

}  // namespace
}  // namespace zavhost

extern "C" int wmain(int count, wchar_t** arguments) {
  SetConsoleOutputCP(CP_UTF8);
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i) {
    texts.push_back(zavhost::Utf8FromUtf16(reinterpret_cast<const char16_t*>(arguments[i])));
  }
  return zavhost::Main(std::move(texts));
}
