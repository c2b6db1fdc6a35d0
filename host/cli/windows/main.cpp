// ZavHost.exe: the command line of the headless host.
#include "host/cli/commands.h"
#include "host/workbook/text.h"
#include "platform/windows/wide.h"

extern "C" int wmain(int count, wchar_t** arguments) {
  SetConsoleOutputCP(CP_UTF8);
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i)
    texts.push_back(zavrel::Utf8FromUtf16(zavrel::FromWide(arguments[i])));
  return zavhost::RunProgram(std::move(texts));
}
