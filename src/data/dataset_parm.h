#pragma once

#include <memory>
#include <span>

#include "data/excel_data.h"

namespace zavrel {

/// A data-set parameter of a statistics function: a data set with a missing-data policy and a
/// treatment of errors. The result of the check and the numbers are kept in the data set, so all
/// its parameters share them.
class DatasetParm {
 public:
  DatasetParm(std::shared_ptr<ExcelData> data, MissingDataPolicy policy, bool propagate_errors)
      : data_(std::move(data)), policy_(policy), propagate_errors_(propagate_errors) {}

  ExcelData& data() const { return *data_; }
  const std::shared_ptr<ExcelData>& shared_data() const { return data_; }
  MissingDataPolicy policy() const { return policy_; }
  bool propagate_errors() const { return propagate_errors_; }

  /// A nil value, or the error that the call must return.
  const XXloper& Acceptance() const { return data_->Acceptance(policy_, propagate_errors_); }
  /// The numbers in the policy's shape.
  std::span<const double> Numbers() const { return data_->Numbers(policy_); }

 private:
  std::shared_ptr<ExcelData> data_;
  MissingDataPolicy policy_;
  bool propagate_errors_;
};

}  // namespace zavrel
