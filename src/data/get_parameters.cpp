#include "data/get_parameters.h"

#include <algorithm>
#include <utility>

#include "data/data_argument.h"
#include "data/session_caches.h"
#include "diagnostics/log.h"
#include "excel/parameter.h"
#include "numbers/error_double.h"

namespace zavrel {
namespace {

/// The record of an argument that is read by this letter.
Parameter RecordOf(char letter, const XLOPER12* argument) {
  constexpr std::uint16_t kAllTypes = xltypeNum | xltypeStr | xltypeBool | xltypeRef | xltypeErr |
                                      xltypeMulti | xltypeMissing | xltypeNil | xltypeSRef |
                                      xltypeInt;
  Parameter record{
      .input = argument == nullptr ? XXloper::Missing() : XXloper::FromArgument(argument),
      .acceptable_types = kAllTypes};
  if (const auto kind = ScalarKindOf(letter)) {
    record.acceptable_types = kind->AcceptableTypes();
    record.range = kind->Range();
  }
  return record;
}

/// Writes the record of each argument to the log, if that is enabled. V stands for all arguments up
/// to the last given one.
void LogRecords(std::string_view kinds, Arguments arguments) noexcept {
  if (EnabledLog() == nullptr) return;
  while (arguments.size() > kinds.size() && IsOmitted(arguments.back()))
    arguments = arguments.first(arguments.size() - 1);
  if (kinds.empty()) return;
  for (std::size_t i = 0; i < std::max(kinds.size(), arguments.size()); ++i) {
    const XLOPER12* const argument = i < arguments.size() ? arguments[i] : nullptr;
    LogComposedLine(
        [&] { return RecordOf(kinds[std::min(i, kinds.size() - 1)], argument).Text(); });
  }
}

std::shared_ptr<const DatasetParm> ParmOf(const std::shared_ptr<ExcelData>& data,
                                          MissingDataPolicy policy, bool propagate_errors) {
  if (DatasetParmCache* cache = SessionDatasetParmCache())
    return cache->Get(data, policy, propagate_errors);
  return std::make_shared<const DatasetParm>(data, policy, propagate_errors);
}

BlockArray<double> Lengthened(std::span<const double> numbers, std::size_t length) {
  BlockArray<double> longer;
  longer.Reserve(length);
  double* next = longer.Extend(length);
  std::fill(std::copy(numbers.begin(), numbers.end(), next), next + length, kMissingValue);
  return longer;
}

}  // namespace

std::span<const double> Parameters::numbers(std::size_t position) const {
  const BlockArray<double>& lengthened = values_[position].lengthened;
  if (lengthened.size() > 0) return {lengthened.data(), lengthened.size()};
  return parm(position)->Numbers();
}

class ParameterReader {
 public:
  ParameterReader(MissingDataPolicy policy, ParameterOptions options)
      : policy_(policy), options_(options) {}

  OrFailure<Parameters> Read(std::string_view kinds, Arguments arguments) {
    parameters_.values_.resize(kinds.size());
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      const Arguments rest = arguments.subspan(std::min(i, arguments.size()));
      OrFailure<Value> value = ReadOne(kinds[i], rest);
      if (!value.ok()) return value.failure();
      parameters_.values_[i].value = *std::move(value);
    }
    if (!GoTogether()) return Failure(ExcelError::kValue);
    if (options_.lengths == Lengths::kEqual) Lengthen();
    return std::move(parameters_);
  }

 private:
  using Value = Parameters::Value;

  /// Reads the first of `rest`, or all of them.
  OrFailure<Value> ReadOne(char letter, Arguments rest) const {
    const Arguments first = rest.first(std::min<std::size_t>(rest.size(), 1));
    const XLOPER12* const argument = first.empty() ? nullptr : first.front();
    switch (letter) {
      case 'V':
        return ReadData(rest);
      case 'r':
        if (IsOmitted(argument)) return Value();
        [[fallthrough]];
      case 'R':
        return ReadData(first);
      default:
        return ReadSingle(letter, argument);
    }
  }

  OrFailure<Value> ReadData(Arguments arguments) const {
    const DataArgument data = ReadDataArgument(arguments);
    if (!data.ok()) return data.failure();
    std::shared_ptr<const DatasetParm> parm = ParmOf(*data, policy_, options_.propagate_errors);
    if (const XXloper& acceptance = parm->Acceptance(); acceptance.type() != xltypeNil)
      return Failure(acceptance);
    return Value(std::move(parm));
  }

  OrFailure<Value> ReadSingle(char letter, const XLOPER12* argument) const {
    const auto kind = ScalarKindOf(letter);
    if (!kind) return Failure(ExcelError::kValue);
    OrFailure<ScalarValue> scalar = ReadScalar(*kind, argument);
    if (scalar.ok())
      return std::visit(
          [](auto&& content) { return Value(std::forward<decltype(content)>(content)); },
          *std::move(scalar));
    if (scalar.failure().uncalculated() || options_.propagate_errors) return scalar.failure();
    return Failure(ExcelError::kValue);
  }

  bool GoTogether() const {
    for (std::size_t i = 0; i < parameters_.values_.size(); ++i) {
      for (std::size_t j = 0; IsData(i) && j < i; ++j) {
        if (IsData(j) && !GoTogether(i, j)) return false;
      }
    }
    return true;
  }

  bool GoTogether(std::size_t i, std::size_t j) const {
    const CellLayout& i_layout = parameters_.data(i).layout();
    const CellLayout& j_layout = parameters_.data(j).layout();
    const std::size_t i_size = parameters_.numbers(i).size();
    const std::size_t j_size = parameters_.numbers(j).size();
    switch (options_.lengths) {
      case Lengths::kAny:
        return true;
      case Lengths::kPaired:
        return CanPairShorter(i_layout, i_size, j_layout, j_size);
      case Lengths::kEqual:
        break;
    }
    return IsPositional(policy_) ? CanPair(i_layout, i_size, j_layout, j_size) : i_size == j_size;
  }

  /// Makes all data equally long: adds the blank cells that an open end left out.
  void Lengthen() {
    std::size_t longest = 0;
    for (std::size_t i = 0; i < parameters_.values_.size(); ++i) {
      if (IsData(i)) longest = std::max(longest, parameters_.numbers(i).size());
    }
    for (std::size_t i = 0; i < parameters_.values_.size(); ++i) {
      if (!IsData(i)) continue;
      const std::span<const double> numbers = parameters_.numbers(i);
      if (numbers.size() < longest)
        parameters_.values_[i].lengthened = Lengthened(numbers, longest);
    }
  }

  bool IsData(std::size_t position) const {
    return std::holds_alternative<std::shared_ptr<const DatasetParm>>(
        parameters_.values_[position].value);
  }

  MissingDataPolicy policy_;
  ParameterOptions options_;
  Parameters parameters_;
};

OrFailure<Parameters> GetParameters(std::string_view kinds, MissingDataPolicy policy,
                                    Arguments arguments, ParameterOptions options) {
  LogRecords(kinds, arguments);
  return ParameterReader(policy, options).Read(kinds, arguments);
}

}  // namespace zavrel
