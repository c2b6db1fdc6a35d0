#include "failing_memory/shipped_library.h"

#include <filesystem>

#include "failing_memory/library_memory.h"
#include "faults/function_calls.h"
#include "platform/export.h"

ZAV_EXPORT int MdCallBack12(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  return zavrel::ExcelCallback()(function, count, arguments, result);
}

namespace zavrel::tests {

ShippedLibrary::ShippedLibrary(const char* file, std::initializer_list<const char*> companions)
    : module_(Watched(file)) {
  Find("xlAutoOpen", open_);
  Find("xlAutoClose", close_);
  Find("InitializeXlaInformationW", announce_);
  Find("UninitializeXlaInformation", withdraw_);
  Find("xlAddInManagerInfo12", tell_);
  for (const char* const companion : companions) Watched(companion);
}

LoadedModule ShippedLibrary::Watched(const char* file) {
  const auto path = std::filesystem::absolute(file).make_preferred();
  loaded_.push_back(Module::Load(path));
  const auto library = LoadedModule::ByName(path.u16string());
  REQUIRE_MESSAGE(library, file);
  LibraryMemory::Watch(*library);
  return *library;
}

OpenLibrary::OpenLibrary(const char* file, std::initializer_list<const char*> companions)
    : shipped_(file, companions) {
  FillSheet(excel);
  REQUIRE(shipped_.Open() == 1);
  shipped_.Announce();
}

}  // namespace zavrel::tests
