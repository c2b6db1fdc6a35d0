#include "data/excel_data.h"

#include <algorithm>
#include <utility>

#include "numbers/error_double.h"
#include "stats/sort_ascending.h"

namespace zavrel {
namespace {

bool IsBlankOrMissing(CellTag tag) { return tag == CellTag::kBlank || tag == CellTag::kMissing; }

}  // namespace

bool BelongsTo(CellTag tag, CellClass cell_class) {
  switch (cell_class) {
    case CellClass::kEvery:
      return true;
    case CellClass::kNumber:
      return tag == CellTag::kNumber;
    case CellClass::kNonBlank:
      return !IsBlankOrMissing(tag);
    case CellClass::kNonBlankNonNumber:
      return !IsBlankOrMissing(tag) && tag != CellTag::kNumber;
    case CellClass::kBlank:
      break;
  }
  return IsBlankOrMissing(tag);
}

ExcelData::ExcelData(std::string key, CellColumns cells, CellLayout layout)
    : key_(std::move(key)), cells_(std::move(cells)), layout_(layout) {}

std::size_t ExcelData::CountOfClass(CellClass cell_class) const {
  std::size_t count = 0;
  for (std::size_t i = 0; i < kCellTags; ++i) {
    const auto tag = static_cast<CellTag>(i);
    if (BelongsTo(tag, cell_class)) count += cells_.count(tag);
  }
  return count;
}

const XXloper& ExcelData::Acceptance(MissingDataPolicy policy, bool propagate_errors) {
  std::optional<XXloper>& result =
      acceptance_[propagate_errors ? 1 : 0][static_cast<std::size_t>(policy)];
  if (!result) result = CheckAcceptance(policy, propagate_errors);
  return *result;
}

// Under kOneRun the accepted layouts are: blanks, numbers, at most one cell that is neither blank
// nor a number, blanks. An omitted argument among several counts as such a cell, not as a blank
// one.
XXloper ExcelData::CheckAcceptance(MissingDataPolicy policy, bool propagate_errors) const {
  const bool every = policy == MissingDataPolicy::kNumbersRequired;
  const bool run = policy == MissingDataPolicy::kOneRun;
  const bool look_for_errors = propagate_errors && cells_.count(CellTag::kError) > 0;
  if (cells_.AllNumbers() || (!every && !run && !look_for_errors)) return XXloper::Nil();

  enum { kBefore, kWithin, kAfter } state = kBefore;
  bool invalid = false;
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    const CellTag tag = cells_.tag(i);
    if (look_for_errors && tag == CellTag::kError) return XXloper::ErrorByCode(cells_[i].code);
    if (tag == CellTag::kBlank) {
      invalid |= every;
      if (state == kWithin) state = kAfter;
      continue;
    }
    if (state == kBefore) {
      state = kWithin;
    } else if (state == kAfter) {
      invalid |= run;
    }
    if (tag != CellTag::kNumber) {
      invalid |= every;
      if (state == kWithin) state = kAfter;
    }
  }
  return invalid ? XXloper::Error(ExcelError::kValue) : XXloper::Nil();
}

std::span<const double> ExcelData::Numbers(MissingDataPolicy policy) {
  if (IsOmitted()) return {};
  if (cells_.AllNumbers()) return cells_.payloads();
  const bool with_errors = policy == MissingDataPolicy::kPositionalWithErrors;
  Shape& shape = !IsPositional(policy) ? numbers_only_
                 : with_errors         ? positional_with_errors_
                                       : positional_;
  if (!shape) shape = IsPositional(policy) ? Positional(with_errors) : NumbersOnly();
  return {shape->data(), shape->size()};
}

BlockArray<double> ExcelData::NumbersOnly() const {
  BlockArray<double> numbers;
  const std::size_t count = NumberCount();
  if (count == 0) return numbers;
  numbers.Reserve(count);
  double* next = numbers.Extend(count);
  const std::span<const double> payloads = cells_.payloads();
  const std::span<const CellTag> tags = cells_.tags();
  for (std::size_t i = 0; i < tags.size(); ++i) {
    if (tags[i] == CellTag::kNumber) *next++ = payloads[i];
  }
  return numbers;
}

BlockArray<double> ExcelData::Positional(bool with_errors) const {
  BlockArray<double> numbers;
  numbers.Reserve(size());
  double* next = numbers.Extend(size());
  const std::span<const double> payloads = cells_.payloads();
  const std::span<const CellTag> tags = cells_.tags();
  for (std::size_t i = 0; i < tags.size(); ++i) {
    if (tags[i] == CellTag::kNumber) {
      next[i] = payloads[i];
    } else if (with_errors && tags[i] == CellTag::kError) {
      next[i] = ErrorCodedNaN(cells_[i].code);
    } else {
      next[i] = kMissingValue;
    }
  }
  return numbers;
}

std::span<const double> ExcelData::SortedNumbers() {
  if (!sorted_) sorted_ = Sorted();
  return {sorted_->data(), sorted_->size()};
}

OrFailure<const CategoryTable*> ExcelData::Categories() {
  if (!categories_) {
    OrFailure<CategoryTable> made = CategoryTable::Of(cells_);
    if (!made.ok()) return made.failure();
    categories_.emplace(*std::move(made));
  }
  return &*categories_;
}

const IsDiscrete& ExcelData::Discreteness() {
  if (!discreteness_) discreteness_.emplace(SortedNumbers());
  return *discreteness_;
}

BlockArray<double> ExcelData::Sorted() {
  BlockArray<double> sorted;
  const std::span<const double> numbers = Numbers(MissingDataPolicy::kNumbersOnly);
  if (numbers.empty()) return sorted;
  sorted.Reserve(numbers.size());
  std::copy(numbers.begin(), numbers.end(), sorted.Extend(numbers.size()));
  SortAscending(sorted.elements());
  return sorted;
}

std::size_t ExcelData::bytes() const {
  std::size_t bytes = sizeof *this + key_.capacity() + cells_.bytes();
  for (const Shape* shape : {&positional_, &positional_with_errors_, &numbers_only_, &sorted_}) {
    if (*shape) bytes += (*shape)->bytes();
  }
  if (categories_) bytes += categories_->bytes();
  return bytes;
}

}  // namespace zavrel
