#pragma once
// What a macro calls in the loaded add-in.

#include <string>

#include "integration/running_add_in.h"
#include "support/macro_variant.h"

namespace zavrel::tests {

/// What the add-in exports under the name.
template <class Function>
Function* EntryPoint(const char* name) {
  const HMODULE module = GetModuleHandleW(L"ZavrelFuncs8_x64.xll");
  REQUIRE(module != nullptr);
  auto* found = reinterpret_cast<void*>(GetProcAddress(module, name));
  REQUIRE_MESSAGE(found != nullptr, name);
  return reinterpret_cast<Function*>(found);
}

/// "VekMatrixNotSquare|matrix::eigendata_private|Matrix is ..." of a failure number.
inline std::string Explained(std::uint32_t number) {
  BSTR parts[3] = {};
  CHECK(EntryPoint<std::int32_t(std::uint32_t, BSTR*, BSTR*, BSTR*)>("ZavrelGetExceptionInfoVB")(
            number, &parts[0], &parts[1], &parts[2]) == 1);
  std::string text;
  for (const BSTR part : parts) {
    const std::wstring wide(part, SysStringLen(part));
    if (!text.empty()) text += '|';
    text.append(wide.begin(), wide.end());
    SysFreeString(part);
  }
  return text;
}

inline std::string IdOf(const VARIANT* variant) {
  return Taken(EntryPoint<BSTR(const VARIANT*)>("VariantIdString")(variant));
}

/// What a cell with the formula shows, each "$" in it standing for a text argument.
inline std::string ShownWith(zavhost::Engine& engine, std::string formula,
                             const std::string& text) {
  for (std::size_t at; (at = formula.find('$')) != std::string::npos;)
    formula.replace(at, 1, '"' + text + '"');
  return Shown(engine, formula);
}

}  // namespace zavrel::tests
