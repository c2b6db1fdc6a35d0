#pragma once
// Reads a worksheet function's whole argument list.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/dataset_parm.h"
#include "data/scalar_argument.h"
#include "excel/arguments.h"
#include "excel/or_failure.h"
#include "platform/block_pool.h"
#include "platform/variant_copies.h"

namespace zavrel {

/// How the lengths of the data arguments must agree.
enum class Lengths {
  kAny,
  kEqual,   // all have the same length
  kPaired,  // row i of each belongs to row i of the others, as far as all have rows
};

struct ParameterOptions {
  Lengths lengths = Lengths::kAny;
  /// An error cell of a data argument, or an error given for a single value, becomes the call's
  /// result. No worksheet function uses this yet.
  bool propagate_errors = false;
};

/// The arguments of a call, by the position of their kind letters. Reading an argument that was not
/// given, or as another type than its letter's, throws std::bad_variant_access.
class Parameters {
 public:
  /// False for an optional argument that was left out.
  bool given(std::size_t position) const {
    return !std::holds_alternative<std::monostate>(values_[position].value);
  }
  ExcelData& data(std::size_t position) const { return parm(position)->data(); }
  const std::shared_ptr<const DatasetParm>& parm(std::size_t position) const {
    return std::get<std::shared_ptr<const DatasetParm>>(values_[position].value);
  }
  /// The data argument's numbers in the policy's shape. They live as long as this object.
  std::span<const double> numbers(std::size_t position) const;

  double number(std::size_t position) const { return std::get<double>(values_[position].value); }
  double number_or(std::size_t position, double otherwise) const {
    return given(position) ? number(position) : otherwise;
  }
  std::int32_t integer(std::size_t position) const {
    return std::get<std::int32_t>(values_[position].value);
  }
  std::int32_t integer_or(std::size_t position, std::int32_t otherwise) const {
    return given(position) ? integer(position) : otherwise;
  }
  bool boolean(std::size_t position) const { return std::get<bool>(values_[position].value); }
  bool boolean_or(std::size_t position, bool otherwise) const {
    return given(position) ? boolean(position) : otherwise;
  }
  const std::u16string& text(std::size_t position) const {
    return std::get<std::u16string>(values_[position].value);
  }

 private:
  friend class ParameterReader;

  using Value = std::variant<std::monostate, double, std::int32_t, std::u16string, bool,
                             std::shared_ptr<const DatasetParm>>;
  struct Argument {
    Value value;
    /// The numbers with blank cells added at the end; empty if none are needed.
    BlockArray<double> lengthened;
  };

  std::vector<Argument> values_;
};

/// Reads each argument by its kind letter (data/scalar_argument.h lists them), first to last, up to
/// the first that fails:
///
///   R  a data set; an omitted argument is a data set of one omitted value
///   r  a data set; an omitted argument is not given
///   V  one data set of this and all further arguments
///
/// Data sets are checked against the policy. Failures: #REF! for cells that cannot be read; #VALUE!
/// for a data set that the policy does not accept, for a single value of the wrong kind and for
/// data whose lengths do not agree as the options require; with `propagate_errors` an error value
/// is returned as it is. Letters without an argument count as omitted arguments.
///
/// Lengths are those of the numeric shapes. A positional shape of whole columns or of one whole row
/// ends at the last used cell; if another argument is longer, the blank cells that follow are put
/// back. Several columns agree only with the same number of columns. Arguments that were cut down
/// to their used parts in ways that may not match (several whole rows used to different columns, a
/// whole sheet, whole areas among several) are neither equal nor paired.
///
/// Each argument's record is written to the log first (excel/parameter.h).
OrFailure<Parameters> GetParameters(std::string_view kinds, MissingDataPolicy policy,
                                    Arguments arguments, ParameterOptions options = {});

}  // namespace zavrel
