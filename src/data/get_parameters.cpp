#include "data/get_parameters.h"

#include <algorithm>
#include <utility>

#include "data/data_argument.h"
#include "data/session_caches.h"
#include "numbers/error_double.h"

namespace zavrel {
namespace {

using Pieces = std::span<const XLOPER12* const>;

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

  Parameters Read(std::string_view kinds, Pieces arguments) {
    parameters_.values_.resize(kinds.size());
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      const Pieces rest = arguments.subspan(std::min(i, arguments.size()));
      if (!ReadOne(kinds[i], rest, parameters_.values_[i].value)) return std::move(parameters_);
    }
    parameters_.accepted_ = !options_.equal_lengths || EqualLengths();
    return std::move(parameters_);
  }

 private:
  /// The first of `rest`, or all of them.
  bool ReadOne(char kind, Pieces rest, Parameters::Value& value) {
    switch (kind) {
      case 'V':
        return ReadData(rest, value);
      case 'r':
        if (IsOmitted(rest)) return true;
        [[fallthrough]];
      case 'R':
        return ReadData(rest.first(std::min<std::size_t>(rest.size(), 1)), value);
      default:
        return ReadSingle(kind, XXloper::FromArgument(rest.empty() ? nullptr : rest.front()),
                          value);
    }
  }

  static bool IsOmitted(Pieces rest) {
    return rest.empty() || rest.front() == nullptr || TypeOf(*rest.front()) == xltypeMissing;
  }

  bool ReadData(Pieces pieces, Parameters::Value& value) {
    const DataArgument argument = ReadDataArgument(pieces);
    if (argument.outcome != ReadOutcome::kRead) {
      parameters_.uncalculated_ = argument.outcome == ReadOutcome::kUncalculated;
      return Fail(XXloper::Error(ExcelError::kRef));
    }
    const auto parm = ParmOf(argument.data, policy_, options_.propagate_errors);
    if (const XXloper& acceptance = parm->Acceptance(); acceptance.type() != xltypeNil)
      return Fail(acceptance);
    value = parm;
    return true;
  }

  bool ReadSingle(char letter, const XXloper& argument, Parameters::Value& value) {
    const auto kind = ScalarKindOf(letter);
    if (!kind) return Fail(XXloper::Error(ExcelError::kValue));
    const Scalar<ScalarValue> scalar = ReadScalar(*kind, argument);
    switch (scalar.status) {
      case ScalarStatus::kGiven:
        std::visit([&](const auto& content) { value = content; }, scalar.value);
        return true;
      case ScalarStatus::kNotGiven:
        return true;
      case ScalarStatus::kUncalculated:
        parameters_.uncalculated_ = true;
        return Fail(XXloper::Error(ExcelError::kRef));
      case ScalarStatus::kFailed:
        break;
    }
    return Fail(options_.propagate_errors && scalar.error ? XXloper::ErrorByCode(*scalar.error)
                                                          : XXloper::Error(ExcelError::kValue));
  }

  bool Fail(const XXloper& failure) {
    parameters_.failure_ = failure;
    return false;
  }

  bool EqualLengths() {
    std::size_t longest = 0;
    for (std::size_t i = 0; i < parameters_.values_.size(); ++i) {
      if (!IsData(i)) continue;
      longest = std::max(longest, parameters_.numbers(i).size());
      for (std::size_t j = 0; j < i; ++j) {
        if (IsData(j) && !AreEqual(i, j)) return false;
      }
    }
    for (std::size_t i = 0; i < parameters_.values_.size(); ++i) {
      if (!IsData(i)) continue;
      const std::span<const double> numbers = parameters_.numbers(i);
      if (numbers.size() < longest)
        parameters_.values_[i].lengthened = Lengthened(numbers, longest);
    }
    return true;
  }

  /// Equally long, or to be made so at an open end.
  bool AreEqual(std::size_t i, std::size_t j) const {
    const std::size_t i_size = parameters_.numbers(i).size();
    const std::size_t j_size = parameters_.numbers(j).size();
    if (!IsPositional(policy_)) return i_size == j_size;
    return CanPair(parameters_.data(i).layout(), i_size, parameters_.data(j).layout(), j_size);
  }

  bool IsData(std::size_t position) const {
    return std::holds_alternative<std::shared_ptr<const DatasetParm>>(
        parameters_.values_[position].value);
  }

  MissingDataPolicy policy_;
  ParameterOptions options_;
  Parameters parameters_;
};

Parameters GetParameters(std::string_view kinds, MissingDataPolicy policy, Pieces arguments,
                         ParameterOptions options) {
  return ParameterReader(policy, options).Read(kinds, arguments);
}

}  // namespace zavrel
