#pragma once
// The functions of the add-in that is linked into the test.

#include "faults/function_calls.h"

namespace zavrel::tests {

/// The add-in open in a host of the tests', with a sheet of data; everything is registered.
class OpenFunctions {
 public:
  OpenFunctions();
  ~OpenFunctions();
  OpenFunctions(const OpenFunctions&) = delete;
  OpenFunctions& operator=(const OpenFunctions&) = delete;

  /// Forgets what earlier calls left behind.
  void ClearCaches();

  FakeExcel excel;
};

}  // namespace zavrel::tests
