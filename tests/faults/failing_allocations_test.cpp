// One allocation after another fails. The function then gives an error or the right value, and the
// next call the right one.
#include <doctest/doctest.h>

#include <new>
#include <string>

#include "diagnostics/vek_exception.h"
#include "faults/open_functions.h"
#include "msexcel/cell_value.h"
#include "support/counted_allocations.h"

namespace zavrel::tests {
namespace {

// A function allocates alike for most shapes.
constexpr std::size_t kShapeStep = 5;

/// Calls with the k-th allocation failing; false if the call makes no more than k.
bool Fails(OpenFunctions& add_in, const RegisteredFunction& function, std::size_t shape, int k,
           const Outcome& right) {
  add_in.ClearCaches();
  bool failed = false;
  const Outcome outcome = function.Call(shape, [&](bool begins) {
    if (!begins) failed = until_failure < 0;
    until_failure = begins ? k : -1;
  });
  if (!failed) return false;
  const auto is_right = [&](const Outcome& given) {
    return function.is_volatile() || given.shown == right.shown;
  };
  INFO(function.name(), ", shape ", shape, ", allocation ", k, ": ", outcome.shown);
  if (!outcome.is_failure && !is_right(outcome)) FAIL_CHECK("a wrong value");
  if (!is_right(function.Call(shape))) FAIL_CHECK("a wrong value afterwards");
  return true;
}

/// What is not copied for lack of memory must not be destroyed either.
template <class Variant>
void RequireNoCopy() {
  const Variant text = std::u16string(40, u'x');
  const auto copy = [&] {
    until_failure = 0;
    const Variant copied = text;
    return copied.index();
  };
  CHECK_THROWS_AS(copy(), std::bad_alloc);
}

}  // namespace

TEST_CASE("a value of one kind or another, with a text, that finds no memory for its copy") {
  RequireNoCopy<MessageArgument>();
  RequireNoCopy<MsExcel::CellValue>();
}

TEST_CASE("whichever allocation fails, a function gives an error or the right value") {
  OpenFunctions add_in;
  int failures = 0;
  for (const RegisteredFunction& function : FunctionsOf(add_in.excel)) {
    for (std::size_t shape = 0; shape < RegisteredFunction::kShapes; shape += kShapeStep) {
      add_in.ClearCaches();
      const Outcome right = function.Call(shape);
      for (int k = 0; Fails(add_in, function, shape, k, right); ++k) ++failures;
    }
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
  CHECK(failures > 1'000);
}

}  // namespace zavrel::tests
