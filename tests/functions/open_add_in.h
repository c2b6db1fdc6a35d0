#pragma once
// The exported functions on a host of the tests': what a cell shows.

#include <doctest/doctest.h>

#include "data/fake_excel.h"
#include "frame/session.h"

namespace zavrel::tests {

inline SessionServices QuietServices() {
  SessionServices services = SessionServices::OfThisMachine();
  services.memory_load = [] { return 60u; };
  services.machine_text = [](const std::u16string&, const std::u16string&) { return std::nullopt; };
  services.write_user_number = [](const std::u16string&, const std::u16string&, std::uint32_t) {};
  return services;
}

/// A host with the add-in open in it.
struct OpenAddIn {
  OpenAddIn() { Session::Open(ThisAddIn(), QuietServices()); }
  ~OpenAddIn() { Session::Close(); }
  OpenAddIn(const OpenAddIn&) = delete;
  OpenAddIn& operator=(const OpenAddIn&) = delete;

  FakeExcel excel;
};

inline double Number(const XLOPER12& result) {
  REQUIRE((result.xltype & xltypeMask) == xltypeNum);
  return result.val.num;
}
inline std::int32_t Error(const XLOPER12& result) {
  REQUIRE((result.xltype & xltypeMask) == xltypeErr);
  return result.val.err;
}

}  // namespace zavrel::tests
