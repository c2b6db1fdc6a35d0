#include "platform/child_process.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <system_error>

#include "platform/exhausted_memory.h"

namespace zavrel {
namespace {

class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  void Open(int target, const std::filesystem::path& file, int flags) {
    if (posix_spawn_file_actions_addopen(&actions_, target, file.c_str(), flags, 0600) != 0)
      ThrowBadAlloc();
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

}  // namespace

std::optional<ChildProcess> ChildProcess::Start(const ChildCommand& command, std::string* problem) {
  SpawnActions actions;
  constexpr int kNew = O_WRONLY | O_CREAT | O_TRUNC;
  actions.Open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.Open(STDOUT_FILENO, command.output, kNew);
  actions.Open(STDERR_FILENO, command.errors, kNew);
  std::vector<std::string> words{command.program.native()};
  words.insert(words.end(), command.arguments.begin(), command.arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t process = 0;
  const int error = posix_spawn(&process, command.program.c_str(), actions.get(), nullptr,
                                pointers.data(), environ);
  if (error == 0) return ChildProcess(process);
  if (problem != nullptr) *problem = std::generic_category().message(error);
  return std::nullopt;
}

std::optional<int> ChildProcess::ExitCode() {
  int status = 0;
  const pid_t ended = waitpid(static_cast<pid_t>(process_), &status, WNOHANG);
  if (ended == 0) return std::nullopt;
  process_ = 0;
  if (ended < 0) return 128 + SIGKILL;  // somebody else has waited for it
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void ChildProcess::Kill() noexcept {
  if (process_ == 0) return;
  const auto process = static_cast<pid_t>(std::exchange(process_, 0));
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

bool LimitOwnMemory(std::uint64_t bytes) noexcept {
  const rlimit limit{bytes, bytes};
  return setrlimit(RLIMIT_AS, &limit) == 0;
}

void EndWithParent() noexcept {
  const pid_t parent = getppid();
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) raise(SIGTERM);  // it ended before the system knew
}

unsigned ProcessorCount() noexcept {
  cpu_set_t processors;
  if (sched_getaffinity(0, sizeof processors, &processors) != 0) return 1;
  return static_cast<unsigned>(CPU_COUNT(&processors));
}

}  // namespace zavrel
