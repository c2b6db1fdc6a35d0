#pragma once
// Programs that run beside this one, and what such a program does to itself.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zavrel {

/// A program and where it writes.
struct ChildCommand {
  std::filesystem::path program;
  std::vector<std::string> arguments;  // in UTF-8
  std::filesystem::path output;        // the file for its stdout
  std::filesystem::path errors;        // the file for its stderr
};

/// Owner of a running program, which its destructor ends.
class ChildProcess {
 public:
  /// Nothing if the system cannot start it; `problem` receives its message. The program reads
  /// nothing from this program's stdin, and ends with this program whichever way that ends.
  static std::optional<ChildProcess> Start(const ChildCommand& command,
                                           std::string* problem = nullptr);

  ChildProcess(ChildProcess&& other) noexcept : process_(std::exchange(other.process_, 0)) {}
  ChildProcess& operator=(ChildProcess&& other) noexcept {
    std::swap(process_, other.process_);
    return *this;
  }
  ~ChildProcess() { Kill(); }

  /// Nothing while it runs. Of a program that a signal ended: 128 and the signal's number.
  std::optional<int> ExitCode();
  /// Ends it at once, and waits until it has.
  void Kill() noexcept;

 private:
  explicit ChildProcess(std::intptr_t process) : process_(process) {}

  std::intptr_t process_;  // 0 once it has ended
};

/// Allocations of this process that go beyond this fail. False if the system refuses.
bool LimitOwnMemory(std::uint64_t bytes) noexcept;

/// A program that another one started calls this first, so that it ends with the other one on
/// systems where Start alone cannot arrange that.
void EndWithParent() noexcept;

/// The number of processors that this process may use, at least 1.
unsigned ProcessorCount() noexcept;

}  // namespace zavrel
