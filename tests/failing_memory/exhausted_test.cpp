// The memory of the add-ins that ship, and of their companions, is exhausted from the first call
// after the opening on.
#include <doctest/doctest.h>

#include <filesystem>

#include "failing_memory/library_memory.h"
#include "faults/function_calls.h"
#include "platform/export.h"

extern "C" ZAV_EXPORT int MdCallBack12(int function, int count, XLOPER12** arguments,
                                       XLOPER12* result) {
  return zavrel::ExcelCallback()(function, count, arguments, result);
}

namespace zavrel::tests {
namespace {

std::filesystem::path FileOf(const char* file) {
  return std::filesystem::absolute(file).make_preferred();
}

/// An add-in as it ships, open in a host of the tests'; everything is registered.
class OpenLibrary {
 public:
  explicit OpenLibrary(const char* file)
      : owner_(Module::Load(FileOf(file))), library_(*LoadedModule::ByName(FileOf(file).u16string())) {
    FillSheet(excel);
    REQUIRE(Export<std::int32_t()>("xlAutoOpen")() == 1);
    Export<void(void*, void*, std::uint16_t, const char16_t*, std::int32_t, const char16_t*,
                const char16_t*)>("InitializeXlaInformationW")(nullptr, nullptr, 5, nullptr, 9,
                                                               nullptr, nullptr);
    EnterHandle(excel, library_);
    LibraryMemory::Watch(library_);
  }
  ~OpenLibrary() { Export<std::int32_t()>("xlAutoClose")(); }
  OpenLibrary(const OpenLibrary&) = delete;
  OpenLibrary& operator=(const OpenLibrary&) = delete;

  std::vector<RegisteredFunction> functions() const { return FunctionsOf(excel, library_); }

  FakeExcel excel;

 private:
  template <class Function>
  Function* Export(const char* name) {
    void* const found = library_.FindExport(name);
    REQUIRE_MESSAGE(found != nullptr, name);
    return AsFunction<Function>(found);
  }

  std::optional<Module> owner_;
  LoadedModule library_;
};

}  // namespace

TEST_CASE("memory exhausted from the first call on is survived") {
  OpenLibrary add_in(ZAVREL_ADD_IN);
  for (const RegisteredFunction& function : add_in.functions()) {
    std::fprintf(stderr, "%s\n", function.name().c_str());
    const Outcome outcome = function.Call(0, [](bool begins) {
      if (begins) LibraryMemory::RunOut(0, LibraryMemory::Shortage::kLasting);
      else LibraryMemory::Return();
    });
    std::fprintf(stderr, " -> %s\n", outcome.shown.c_str());
  }
}

}  // namespace zavrel::tests
