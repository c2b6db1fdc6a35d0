// The entry points that a macro add-in calls, by GetProcAddress on the loaded add-in.
#include "integration/entry_point.h"
#include "integration/host_process.h"

namespace zavrel::tests {
namespace {

std::size_t ProcessBytes() {
  PROCESS_HEAP_ENTRY entry{};
  std::size_t bytes = 0;
  const HANDLE heap = GetProcessHeap();
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
  }
  HeapUnlock(heap);
  return bytes;
}

}  // namespace

TEST_CASE("the log is written when its marker file is there, and an old one goes when it is not") {
  const std::filesystem::path folder = ScratchFolder() / "log";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "VekZavrelFuncs8.log") << "of an earlier session";
  const auto serve = [] {
    auto engine = ServingAddIn();
    CheckFormulas(*engine, "ZavMean(1,2,3) -> 2");
    CloseClean(*engine);
  };
  {
    const EnvironmentVariable temporary("TMP", folder.string());
    serve();
  }
  CHECK(!std::filesystem::exists(folder / "VekZavrelFuncs8.log"));

  const std::string log = LogOf(folder, serve);
  std::size_t at = 0;
  for (const char* line :
       {"Exe fileName=", "DLL fileName=", "DLL fileVersion=8.0.0.",
        "Windows=", "xlAutoOpen, Excel version=", "Memory stats:load=",
        "===== InitializeXlaInformationPrivate (", ") enter =====", "===== ZavrelMean enter =====",
        "{ inParam=XLOPER of type 1: 3, acceptableTypes=0DDF, range=(-inf, inf), outParam=? }",
        "{ numTotalData=3, numUsedData=3, numErrs=0, numFiltered=0, min=1, ",
        "===== ZavrelMean () = XLOPER of type 1: 2 exit =====", "===== xlAutoClose enter =====",
        "xlAutoClose: About to close log file with logFile.reset ()."}) {
    const std::size_t found = log.find(line, at);
    CHECK_MESSAGE(found != std::string::npos, line << " is missing or out of order in\n" << log);
    if (found != std::string::npos) at = found;
  }
}

TEST_CASE("twenty openings and announcements leave no memory behind") {
  auto engine = OpenAddIn();
  const auto round = [&] {
    engine->Announce(5);
    engine->Withdraw(5);
    engine->CloseAddIns(false);
    engine->LoadAddIn(AddInFile());
  };
  for (int i = 0; i < 5; ++i) round();
  const std::size_t before = ProcessBytes();
  for (int i = 0; i < 20; ++i) round();
  const std::size_t after = ProcessBytes();
  CHECK_MESSAGE(after < before + std::size_t{64} * 1024, before << " bytes became " << after);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
