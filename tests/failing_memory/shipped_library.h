#pragma once
// An add-in as it ships, loaded and its memory watched, with its companions.

#include <doctest/doctest.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <vector>

#include "excel/xloper12.h"
#include "platform/module.h"
#include "support/fake_excel.h"

namespace zavrel::tests {

class ShippedLibrary {
 public:
  ShippedLibrary(const char* file, std::initializer_list<const char*> companions);

  const LoadedModule& module() const { return module_; }

  std::int32_t Open() const { return open_(); }
  void Close() const { close_(); }
  /// Announces application 5, for which all functions are registered.
  void Announce() const { announce_(nullptr, nullptr, 5, nullptr, 9, nullptr, nullptr); }
  void Withdraw() const { withdraw_(5); }
  const XLOPER12* Tell(const XLOPER12* what) const { return tell_(what); }

 private:
  LoadedModule Watched(const char* file);
  template <class Function>
  void Find(const char* name, Function*& function) {
    void* const found = module_.FindExport(name);
    REQUIRE_MESSAGE(found != nullptr, name);
    function = AsFunction<Function>(found);
  }

  std::vector<std::optional<Module>> loaded_;
  LoadedModule module_;
  std::int32_t (*open_)();
  std::int32_t (*close_)();
  void (*announce_)(void*, void*, std::uint16_t, const char16_t*, std::int32_t, const char16_t*,
                    const char16_t*);
  void (*withdraw_)(std::uint16_t);
  const XLOPER12* (*tell_)(const XLOPER12*);
};

/// The same, open in a host of the tests'; everything is registered.
class OpenLibrary {
 public:
  OpenLibrary(const char* file, std::initializer_list<const char*> companions);
  ~OpenLibrary() { shipped_.Close(); }
  OpenLibrary(const OpenLibrary&) = delete;
  OpenLibrary& operator=(const OpenLibrary&) = delete;

  const LoadedModule& library() const { return shipped_.module(); }

  FakeExcel excel;

 private:
  ShippedLibrary shipped_;
};

}  // namespace zavrel::tests
