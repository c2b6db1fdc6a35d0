#pragma once
// A host that fails a call of a function's in every way that a call can fail.

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "faults/function_calls.h"

namespace zavrel::tests {

/// A way in which a call can fail.
struct Fault {
  const char* name;
  int code;
  std::uint32_t type;  // of the answer that is given with success
  enum class Content { kPlain, kOne, kFewer, kMore, kNothing, kForged } content = Content::kPlain;
};
std::span<const Fault> Faults();

/// While it lives, the host fails the call at a place, from 0, in one of these ways, unless it may
/// well be answered so.
class PlantedFault {
 public:
  PlantedFault(FakeExcel& excel, const Fault& fault, int place);
  ~PlantedFault() { excel_.fault = nullptr; }
  PlantedFault(const PlantedFault&) = delete;
  PlantedFault& operator=(const PlantedFault&) = delete;

  bool reached() const { return left_ < 0; }
  bool failed() const { return failed_; }
  /// The calls after a failure that wants no more of them.
  int calls_on() const { return calls_on_; }

 private:
  std::optional<int> Answer(int function, FakeExcel::Arguments arguments, XLOPER12& result);

  FakeExcel& excel_;
  const Fault& fault_;
  int left_;
  bool failed_ = false;
  int calls_on_ = 0;
};

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
