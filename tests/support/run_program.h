#pragma once
// Another process, with what it writes.

#include <windows.h>

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zavrel::tests {

struct Outcome {
  DWORD exit_code = ~0u;
  std::string output;
  std::string errors;
};

inline std::string ReadAll(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline HANDLE OpenForChild(const std::filesystem::path& file) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0,
                     nullptr);
}

/// Runs a program with these arguments, quoted as a shell would; at most `seconds`.
inline Outcome RunProgram(const std::filesystem::path& program, const std::wstring& arguments,
                          DWORD seconds = 60) {
  const std::filesystem::path stem = std::filesystem::temp_directory_path() /
                                     ("zavrel-run-" + std::to_string(GetCurrentProcessId()));
  const std::filesystem::path output = stem.string() + ".out", errors = stem.string() + ".err";
  const HANDLE output_handle = OpenForChild(output);
  const HANDLE error_handle = OpenForChild(errors);
  std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output_handle;
  startup.hStdError = error_handle;
  PROCESS_INFORMATION process{};
  REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                         &startup, &process));
  CloseHandle(output_handle);
  CloseHandle(error_handle);
  Outcome outcome;
  if (WaitForSingleObject(process.hProcess, seconds * 1000) == WAIT_OBJECT_0) {
    GetExitCodeProcess(process.hProcess, &outcome.exit_code);
  } else {
    TerminateProcess(process.hProcess, 99);
    FAIL_CHECK("no end within the time");
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  outcome.output = ReadAll(output);
  outcome.errors = ReadAll(errors);
  for (const auto& file : {output, errors}) std::filesystem::remove(file);
  return outcome;
}

}  // namespace zavrel::tests
