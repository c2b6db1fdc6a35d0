// One allocation after another fails. The function then gives an error or the right value, and the
// next call the right one.
#include <doctest/doctest.h>

#include <functional>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/vek_exception.h"
#include "faults/open_functions.h"
#include "msexcel/cell_value.h"
#include "numbers/double_matrix.h"
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
    const Variant copied = text;  // NOLINT(performance-unnecessary-copy-initialization)
    return copied.index();
  };
  CHECK_THROWS_AS(copy(), std::bad_alloc);
}

/// The calls of the exports that give matrices as C++ objects.
std::vector<std::function<DoubleMatrix()>> MatrixCalls() {
  using Symmetric = DoubleMatrix(DoubleMatrix);
  using OfTwo = DoubleMatrix(DoubleMatrix, DoubleMatrix);
  using OfVariables = DoubleMatrix(bool, bool, bool, DoubleMatrix);
  const auto found = [](const char* name) {
    void* const address = LoadedModule::HostExecutable().FindExport(name);
    REQUIRE_MESSAGE(address != nullptr, name);
    return address;
  };
  static const DoubleMatrix matrix = {{4, 1, 2}, {1, 3, 0}, {2, 0, 5}};
  std::vector<std::function<DoubleMatrix()>> calls;
  for (const char* const name : {"CalculateCovarianceMatrixC", "CalculateCorrelationMatrixC"})
    calls.emplace_back(
        [of = AsFunction<OfVariables>(found(name))] { return of(true, true, true, matrix); });
  for (const char* const name : {"MatrixAddC", "MatrixMultiplyC"})
    calls.emplace_back([of = AsFunction<OfTwo>(found(name))] { return of(matrix, matrix); });
  calls.emplace_back([of = AsFunction<Symmetric>(found("MatrixInverseC"))] { return of(matrix); });
  calls.emplace_back([of = AsFunction<double(DoubleMatrix)>(found("MatrixDeterminantC"))] {
    return DoubleMatrix{{of(matrix)}};
  });
  return calls;
}

}  // namespace

TEST_CASE("a library that asks for a matrix gets the right one or an exception") {
  for (const auto& call : MatrixCalls()) {
    const DoubleMatrix right = call();
    for (int k = 0;; ++k) {
      std::optional<DoubleMatrix> given;
      until_failure = k;
      try {
        given = call();
      } catch (const std::bad_alloc&) {
      } catch (const VekException&) {
      }
      const bool failed = until_failure < 0;
      until_failure = -1;
      if (!failed) break;
      CHECK((!given || *given == right));
      CHECK(call() == right);
    }
  }
}

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
