#pragma once
// Another process, with what it writes.

#include <filesystem>
#include <string>
#include <vector>

namespace zavrel::tests {

struct Outcome {
  int exit_code = -1;  // of a process that a signal ended: 128 and the signal
  std::string output;  // its lines end in \n
  std::string errors;
};

std::string ReadAll(const std::filesystem::path& file);

/// Runs a program with these arguments, in UTF-8, for at most `seconds`.
Outcome RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   int seconds = 60);

/// The variable that names the folder of the add-in's log.
#ifdef _WIN32
constexpr const char* kTemporaryFolder = "TMP";
#else
constexpr const char* kTemporaryFolder = "TMPDIR";
#endif

/// Sets an environment variable, to UTF-8, for as long as it lives; an empty text removes it.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value);
  ~EnvironmentVariable() { Set(before_); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void Set(const std::string& value) const;

  const char* name_;
  std::string before_;
};

}  // namespace zavrel::tests
