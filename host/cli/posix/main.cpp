// zavhost: the command line of the headless host.
#include <csignal>
#include <new>
#include <string>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/exhausted_memory.h"
#include "host/xlsx/unfinished_file.h"

namespace {

/// Ends the program as the signal would, but leaves no half-written file behind.
void OnInterrupt(int number) {
  zavhost::DeleteUnfinishedFiles();
  std::signal(number, SIG_DFL);
  std::raise(number);
}

}  // namespace

int main(int count, char** arguments) {
  std::set_new_handler(ZavrelMemoryExhausted);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    // A parent that ignores a signal (nohup) wants it ignored here, too.
    if (std::signal(number, OnInterrupt) == SIG_IGN) std::signal(number, SIG_IGN);
  }
  // Then it is a write that fails, with a message.
  std::signal(SIGXFSZ, SIG_IGN);
  return zavhost::RunProgram(std::vector<std::string>(arguments + 1, arguments + count));
}
