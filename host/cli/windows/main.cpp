// ZavHost.exe: the command line of the headless host.
#include <new>

#include "host/cli/commands.h"
#include "host/cli/exhausted_memory.h"
#include "host/workbook/text.h"
#include "host/xlsx/unfinished_file.h"
#include "platform/windows/wide.h"

namespace {

/// Leaves no half-written file behind when the user or the system ends the program.
BOOL WINAPI OnConsoleEvent(DWORD) {
  zavhost::DeleteUnfinishedFiles();
  return FALSE;
}

}  // namespace

extern "C" int wmain(int count, wchar_t** arguments) {
  std::set_new_handler(ZavrelMemoryExhausted);
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i)
    texts.push_back(zavrel::Utf8FromUtf16(zavrel::FromWide(arguments[i])));
  return zavhost::RunProgram(std::move(texts));
}
