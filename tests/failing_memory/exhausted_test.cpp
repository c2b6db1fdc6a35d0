// The memory of the add-ins that ship is exhausted: at once, or after some requests more, for the
// rest of a call or for one request. A function then gives an error or the right value, and the
// next call the right one.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <optional>

#include "distribution_functions/examples.h"
#include "failing_memory/library_memory.h"
#include "failing_memory/shipped_library.h"
#include "faults/function_calls.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

/// A call that can be made again and again.
struct RepeatedCall {
  std::string name;
  bool is_volatile = false;
  std::function<Outcome(const std::function<void(bool begins)>& around)> call;
};

/// Makes a call without memory, and holds what it gives against what it gives with memory.
class Trial {
 public:
  explicit Trial(const RepeatedCall& repeated) : repeated_(repeated) {}

  /// Memory stays exhausted for the rest of the call, and comes back only when each request was
  /// the first to fail: what the library takes memory for once has none either.
  void WithoutMemory() {
    std::vector<Outcome> outcomes;
    for (std::int64_t k = 0;; k = After(k)) {
      const auto outcome = CallWithout(k, Shortage::kLasting);
      if (!outcome) break;
      outcomes.push_back(*outcome);
    }
    right_ = Call();
    for (const Outcome& outcome : outcomes) Require(outcome, "without memory");
    failures_ += outcomes.size();
  }

  /// One request after another fails, and each time the next call is right.
  void WithoutOneRequest() {
    right_ = Call();
    for (std::int64_t k = 0;; k = After(k), ++failures_) {
      const auto outcome = CallWithout(k, Shortage::kOneRequest);
      if (!outcome) break;
      Require(*outcome, "without request " + std::to_string(k));
      const Outcome next = Call();
      if (!IsRight(next)) FAIL_CHECK(repeated_.name, ": ", next.shown, " afterwards");
    }
  }

  static std::size_t failures() { return failures_; }

 private:
  Outcome Call() const { return repeated_.call({}); }
  /// Nothing if the call makes no more than `granted` requests.
  std::optional<Outcome> CallWithout(std::int64_t granted, Shortage shortage) const {
    bool failed = false;
    Outcome outcome = repeated_.call([&](bool begins) {
      if (begins) {
        LibraryMemory::RunOut(granted, shortage);
      } else {
        failed = LibraryMemory::Return();
      }
    });
    return failed ? std::optional(std::move(outcome)) : std::nullopt;
  }
  /// A fit makes thousands of requests, of which not all fail.
  static std::int64_t After(std::int64_t k) { return k + 1 + k / 100; }
  bool IsRight(const Outcome& outcome) const {
    return repeated_.is_volatile || outcome.shown == right_.shown;
  }
  void Require(const Outcome& outcome, const std::string& when) const {
    if (!outcome.is_failure && !IsRight(outcome))
      FAIL_CHECK(repeated_.name, " ", when, ": ", outcome.shown, " in the place of ", right_.shown);
  }

  inline static std::size_t failures_ = 0;

  const RepeatedCall& repeated_;
  Outcome right_;
};

/// The number of calls that compute something in the end.
std::ptrdiff_t MakeTrials(const OpenLibrary& add_in, const std::vector<RepeatedCall>& calls) {
  for (const RepeatedCall& call : calls) Trial(call).WithoutMemory();
  for (const RepeatedCall& call : calls) Trial(call).WithoutOneRequest();
  CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  const auto computes = [](const RepeatedCall& call) { return !call.call({}).is_failure; };
  return std::ranges::count_if(calls, computes);
}

}  // namespace

TEST_CASE("whenever memory is exhausted, a function gives an error or the right value") {
  const OpenLibrary add_in(ZAVREL_ADD_IN, {PDFLIB_FILE, NONPARAMETRIC_TESTS_FILE, EUTILITY_FILE});
  const std::vector<RegisteredFunction> functions = FunctionsOf(add_in.excel, add_in.library());
  std::ptrdiff_t made = 0;
  std::ptrdiff_t computing = 0;
  for (std::size_t shape = 0; shape < RegisteredFunction::kShapes; shape += 5) {
    std::vector<RepeatedCall> calls;
    calls.reserve(functions.size());
    for (const RegisteredFunction& function : functions)
      calls.push_back({function.name() + ", shape " + std::to_string(shape), function.is_volatile(),
                       [&, shape](const auto& around) { return function.Call(shape, around); }});
    made += std::ssize(calls);
    computing += MakeTrials(add_in, calls);
  }
  CHECK(Trial::failures() > 10'000);
  CHECK(2 * computing > made);  // fewer if what was missing once stays so
}

TEST_CASE("whenever memory is exhausted, no wrong number of a distribution is shown") {
  const std::size_t before = Trial::failures();
  const OpenLibrary add_in(ZAVREL_DISTRIBUTIONS_ADD_IN, {});
  const std::vector<Example> examples = ExamplesOf(Example::Sample::kRange, add_in.library());
  std::vector<RepeatedCall> calls;
  calls.reserve(examples.size());
  for (const Example& example : examples)
    calls.push_back(
        {example.name(), false, [&](const auto& around) { return example.Call(around); }});
  CHECK(4 * MakeTrials(add_in, calls) > std::ssize(calls));
  CHECK(Trial::failures() - before > 2'000);
}

}  // namespace zavrel::tests
