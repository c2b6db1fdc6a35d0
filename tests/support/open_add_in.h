#pragma once
// The exported functions in a host of the tests': what a cell shows.

#include <doctest/doctest.h>

#include "support/fake_excel.h"
#include "support/quiet_services.h"

namespace zavrel::tests {

/// A host with the add-in open in it.
struct OpenAddIn {
  OpenAddIn() { Session::Open(ThisAddIn(), QuietServices()); }
  ~OpenAddIn() { Session::Close(); }
  OpenAddIn(const OpenAddIn&) = delete;
  OpenAddIn& operator=(const OpenAddIn&) = delete;

  FakeExcel excel;
};

inline double Number(const XLOPER12& result) {
  REQUIRE(TypeOf(result) == xltypeNum);
  return result.val.num;
}

}  // namespace zavrel::tests
