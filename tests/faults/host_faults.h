#pragma once
// A host that fails a call of a function's in every way that a call can fail.

#include <functional>
#include <string>

#include "faults/function_calls.h"

namespace zavrel::tests {

/// A call of a function that can be made again and again.
struct RepeatedCall {
  std::string name;  // says what is called, and how
  std::function<Outcome()> call;
  std::function<void()> forget;  // what earlier calls left behind
  bool is_volatile = false;      // gives another result at each call
};

/// Has one call into the host after another fail, and then freeing. Requires that the function
/// gives an error or the right value each time, calls no more after "not calculated yet" and
/// "abort", and gives the right value afterwards. The number of failures.
int FailEachCallback(FakeExcel& excel, const RepeatedCall& repeated);

}  // namespace zavrel::tests
