#pragma once

#include <concepts>
#include <cstddef>
#include <utility>

#include "excel/double_value.h"
#include "excel/or_failure.h"

namespace zavrel {

/// The result of a worksheet function's body: a value for the cell, or the failure shown in its
/// place. A computed double or a count converts to a value implicitly.
class CellResult : public OrFailure<XXloper> {
 public:
  using OrFailure<XXloper>::OrFailure;
  CellResult(OrFailure<XXloper> result)  // NOLINT(google-explicit-constructor)
      : OrFailure<XXloper>(std::move(result)) {}
  /// A number, or what the double's code stands for.
  CellResult(std::same_as<double> auto computed)  // NOLINT(google-explicit-constructor)
      : OrFailure<XXloper>(ToExcelValue(computed)) {}
  CellResult(const OrFailure<double>& computed)  // NOLINT(google-explicit-constructor)
      : OrFailure<XXloper>(computed.ok() ? OrFailure<XXloper>(ToExcelValue(*computed))
                                         : OrFailure<XXloper>(computed.failure())) {}
  CellResult(std::same_as<std::size_t> auto count)  // NOLINT(google-explicit-constructor)
      : OrFailure<XXloper>(XXloper::Number(static_cast<double>(count))) {}

  /// False if the host will call again, since something is not calculated yet.
  bool is_final() const { return ok() || !failure().uncalculated(); }
  /// What the cell shows.
  const XXloper& shown() const { return ok() ? **this : failure().value(); }
};

}  // namespace zavrel
