#include "distribution_functions/examples.h"

#include <doctest/doctest.h>

#include <variant>

#include "host/capi/native_call.h"

namespace zavrel::tests {
namespace {

constexpr std::size_t kArguments = 13;  // of the function with most
constexpr std::monostate kSample;

}  // namespace

Example::Example(const LoadedModule& add_in, const char* function, const std::vector<Cell>& given,
                 Sample sample, std::int32_t count)
    : function_(function), address_(add_in.FindExport(function)) {
  REQUIRE_MESSAGE(address_ != nullptr, function_);
  for (const Cell& cell : given) Give(cell, sample, count);
  values_.push_back(std::make_unique<Argument>(xltypeMissing));
  arguments_.resize(kArguments, *values_.back());
}

void Example::Give(const Cell& cell, Sample sample, std::int32_t count) {
  if (!std::holds_alternative<std::monostate>(cell)) {
    values_.push_back(std::make_unique<Argument>(cell));
  } else if (sample == Sample::kArray) {
    const std::vector<Cell> numbers = {2.5, 3.5, 1.25, 4.0, 6.5, 5.25, 2.0, 8.0, 7.5, 9.0};
    values_.push_back(std::make_unique<Argument>(
        count, 1, std::vector<Cell>(numbers.begin(), numbers.begin() + count)));
  } else {
    range_ = std::make_unique<Reference>(Area(0, count - 1, 0, 0));
    return arguments_.push_back(*range_);
  }
  arguments_.push_back(*values_.back());
}

Outcome Example::Call(const std::function<void(bool begins)>& around) const {
  zavhost::MachineArguments arguments;
  for (const XLOPER12* argument : arguments_) arguments.AddPointer(argument);
  if (around) around(true);
  const auto word = arguments.CallForInteger(address_);
  if (around) around(false);
  std::string shown = Shown(*reinterpret_cast<const XLOPER12*>(word));
  const bool is_failure = shown.find('#') != std::string::npos;
  return {std::move(shown), is_failure};
}

std::vector<Example> ExamplesOf(Example::Sample sample, const LoadedModule& add_in) {
  std::vector<Example> examples;
  const auto add = [&](const char* function, const std::vector<Cell>& given,
                       std::int32_t count = 10) {
    examples.emplace_back(add_in, function, given, sample, count);
  };
  add("ZavrelDistDensity", {u"gamma", 2.5, 3.0, 1.0});
  add("ZavrelDistDensity", {u"gamma", kSample, 3.0, 1.0});
  add("ZavrelDistCumulative", {u"Kolmogorov", 0.3, 20.0});
  add("ZavrelDistUpperTail", {u"beta", 0.3, 2.0, 3.0});
  add("ZavrelDistQuantile", {u"beta", 0.3, 2.0, 3.0});
  add("ZavrelDistUpperQuantile", {u"gamma", 0.3, 3.0, 1.0});
  add("ZavrelDistProperty", {u"gamma", u"variance", 3.0, 1.0});
  add("ZavrelDistRandom", {u"gamma", 5.0, 3.0, 1.0});
  add("ZavrelDistNames", {u"discrete"});
  for (const char16_t* const name : {u"normal", u"gamma", u"Weibull", u"generalised extreme value"})
    add("ZavrelDistFit", {name, kSample});
  add("ZavrelDistFitTest", {u"gamma", kSample, u"AD", 2.0});
  add("ZavrelDistQQ", {u"gamma", kSample});
  add("ZavrelDistRank", {kSample}, 2);  // fits of one parameter alone, which take less long
  return examples;
}

}  // namespace zavrel::tests
