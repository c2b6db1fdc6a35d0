#include "host/cli/exhausted_memory.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "host/cli/command_line.h"
#include "host/xlsx/unfinished_file.h"

void ZavrelMemoryExhausted() {
  static std::atomic<bool> is_ending{false};
  while (is_ending.exchange(true)) std::this_thread::yield();
  zavhost::DeleteUnfinishedFiles();
  std::fputs(ZAVHOST_NAME ": not enough memory\n", stderr);
  std::_Exit(zavhost::kExitError);
}
