// One allocation after another fails. The functions of distributions then give an error or the
// right value, and the next call the right one.
#include <doctest/doctest.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "host/capi/native_call.h"
#include "platform/module.h"
#include "support/counted_allocations.h"
#include "support/open_add_in.h"

namespace zavrel::tests {
namespace {

constexpr std::size_t kArguments = 13;  // of the function with most
constexpr std::monostate kSample;       // stands for an array of numbers

/// A call by the function's exported name. Rankings are left out: they take minutes here, and are
/// fits one after another.
class Example {
 public:
  Example(const char* function, const std::vector<Cell>& given) : function_(function) {
    for (const Cell& cell : given) arguments_.push_back(ArgumentOf(cell));
    while (arguments_.size() < kArguments)
      arguments_.push_back(std::make_unique<Argument>(xltypeMissing));
  }

  const char* function() const { return function_; }

  /// What the cell shows; the allocation after `succeeding` others fails, if that is not negative.
  std::string Call(int succeeding = -1) const {
    zavhost::MachineArguments arguments;
    for (const auto& argument : arguments_)
      arguments.AddPointer(static_cast<const XLOPER12*>(*argument));
    void* const address = LoadedModule::HostExecutable().FindExport(function_);
    REQUIRE(address != nullptr);
    until_failure = succeeding;
    const auto word = arguments.CallForInteger(address);
    failed_ = succeeding >= 0 && until_failure < 0;
    until_failure = -1;
    return Shown(*reinterpret_cast<const XLOPER12*>(word));
  }
  /// Whether the latest call made the allocation that was to fail.
  bool failed() const { return failed_; }

 private:
  static std::unique_ptr<Argument> ArgumentOf(const Cell& cell) {
    if (!std::holds_alternative<std::monostate>(cell)) return std::make_unique<Argument>(cell);
    const std::vector<Cell> numbers = {2.5, 3.5, 1.25, 4.0, 6.5, 5.25, 2.0, 8.0, 7.5, 9.0};
    return std::make_unique<Argument>(static_cast<std::int32_t>(numbers.size()), 1, numbers);
  }

  const char* function_;
  std::vector<std::unique_ptr<Argument>> arguments_;
  mutable bool failed_ = false;
};

bool IsError(const std::string& shown) { return shown.find('#') != std::string::npos; }

}  // namespace

TEST_CASE("whichever allocation fails, no wrong number of a distribution is shown") {
  OpenAddIn add_in;
  add_in.excel.caller = Area(20, 25, 0, 1);
  const auto forget = [] { Session::Current()->KeepUpCaches(UpkeepMode::kClearAll); };
  std::vector<Example> examples;
  examples.emplace_back("ZavrelDistDensity", std::vector<Cell>{u"gamma", 2.5, 3.0, 1.0});
  examples.emplace_back("ZavrelDistCumulative", std::vector<Cell>{u"Kolmogorov", 0.3, 20.0});
  examples.emplace_back("ZavrelDistQuantile", std::vector<Cell>{u"beta", 0.3, 2.0, 3.0});
  examples.emplace_back("ZavrelDistProperty", std::vector<Cell>{u"gamma", u"variance", 3.0, 1.0});
  examples.emplace_back("ZavrelDistRandom", std::vector<Cell>{u"gamma", 5.0, 3.0, 1.0});
  examples.emplace_back("ZavrelDistNames", std::vector<Cell>{u"discrete"});
  for (const char16_t* const name : {u"normal", u"gamma", u"Weibull", u"generalised extreme value"})
    examples.emplace_back("ZavrelDistFit", std::vector<Cell>{name, kSample});
  examples.emplace_back("ZavrelDistFitTest", std::vector<Cell>{u"gamma", kSample, u"AD", 2.0});
  examples.emplace_back("ZavrelDistQQ", std::vector<Cell>{u"gamma", kSample});
  for (const Example& example : examples) {
    forget();
    const std::string right = example.Call();
    INFO(example.function(), ": ", right);
    CHECK_FALSE(IsError(right));
    // A fit makes thousands of distributions; of its later allocations only some fail.
    for (int k = 0;; k += 1 + k / 200) {
      forget();
      const std::string shown = example.Call(k);
      if (!example.failed()) break;
      if (!IsError(shown) && shown != right) FAIL_CHECK("allocation ", k, ": ", shown);
      if (example.Call() != right) FAIL_CHECK("after allocation ", k);
    }
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
}

}  // namespace zavrel::tests
