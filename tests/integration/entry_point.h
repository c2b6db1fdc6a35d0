#pragma once

#include <windows.h>

#include <doctest/doctest.h>

namespace zavrel::tests {

/// What the loaded add-in exports under the name.
template <class Function>
Function* EntryPoint(const char* name) {
  const HMODULE module = GetModuleHandleW(L"ZavrelFuncs8_x64.xll");
  REQUIRE(module != nullptr);
  auto* found = reinterpret_cast<void*>(GetProcAddress(module, name));
  REQUIRE_MESSAGE(found != nullptr, name);
  return reinterpret_cast<Function*>(found);
}

}  // namespace zavrel::tests
