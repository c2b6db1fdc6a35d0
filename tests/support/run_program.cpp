#include "support/run_program.h"

#include <doctest/doctest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <thread>

#include "platform/child_process.h"
#ifdef _WIN32
#include "platform/utf.h"
#include "platform/windows/wide.h"
#endif

namespace zavrel::tests {

std::string ReadAll(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Outcome RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   int seconds) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string stem = "zavrel-run-" + std::to_string(std::random_device()());
  const std::filesystem::path output = folder / (stem + ".out"), errors = folder / (stem + ".err");
  std::string problem;
  auto process = ChildProcess::Start({program, arguments, output, errors}, &problem);
  REQUIRE_MESSAGE(process, problem);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::optional<int> exit_code;
  while (!(exit_code = process->ExitCode())) {
    if (std::chrono::steady_clock::now() > deadline) {
      process->Kill();
      FAIL_CHECK("no end within the time");
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  Outcome outcome{exit_code.value_or(-1), ReadAll(output), ReadAll(errors)};
  for (std::string* text : {&outcome.output, &outcome.errors}) std::erase(*text, '\r');
  for (const auto& file : {output, errors}) std::filesystem::remove(file);
  return outcome;
}

#ifdef _WIN32
namespace {

std::wstring Wide(const std::string& text) { return ToWide(Utf16FromUtf8(text)); }

}  // namespace

EnvironmentVariable::EnvironmentVariable(const char* name, const std::string& value) : name_(name) {
  const wchar_t* before = _wgetenv(Wide(name).c_str());
  if (before != nullptr) before_ = Utf8FromUtf16(FromWide(before));
  Set(value);
}

void EnvironmentVariable::Set(const std::string& value) const {
  _wputenv_s(Wide(name_).c_str(), Wide(value).c_str());
}
#else
EnvironmentVariable::EnvironmentVariable(const char* name, const std::string& value) : name_(name) {
  const char* before = std::getenv(name);
  if (before != nullptr) before_ = before;
  Set(value);
}

void EnvironmentVariable::Set(const std::string& value) const {
  // NOLINTBEGIN(concurrency-mt-unsafe): no other thread reads the environment meanwhile.
  if (value.empty())
    unsetenv(name_);
  else
    setenv(name_, value.c_str(), 1);
  // NOLINTEND(concurrency-mt-unsafe)
}
#endif

}  // namespace zavrel::tests
