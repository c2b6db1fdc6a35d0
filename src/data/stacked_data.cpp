#include "data/stacked_data.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include "data/cell_columns.h"
#include "excel/coerce.h"
#include "excel/reference.h"

namespace zavrel {
namespace {

constexpr std::size_t kHandleDigits = 9;
constexpr std::u16string_view kHandleStart = u"\u0001\u0002";

}  // namespace

std::optional<KeptArgument> KeptArgument::Of(const XLOPER12& argument) {
  KeptArgument kept;
  if (TypeOf(argument) != xltypeSRef && TypeOf(argument) != xltypeRef) {
    kept.value_ = XXloper::FromArgument(&argument).Owned();
    return kept;
  }
  // Another formula will use the reference: it has to say which sheet it stands on.
  const ExcelResult full = CoerceTo(XXloper::FromArgument(&argument), xltypeRef);
  if (WantsReturn(full)) return std::nullopt;
  const auto view = ReferenceView::Of(full.value.record());
  if (!full.ok() || !view || !view->sheet_id()) throw std::invalid_argument("no reference");

  const std::size_t size = offsetof(XLMREF12, reftbl) + view->areas().size() * sizeof(XLREF12);
  kept.areas_ = std::make_unique<std::byte[]>(std::max(size, sizeof(XLMREF12)));
  auto* areas = new (kept.areas_.get()) XLMREF12{};
  areas->count = static_cast<std::uint16_t>(view->areas().size());
  std::memcpy(kept.areas_.get() + offsetof(XLMREF12, reftbl), view->areas().data(),
              view->areas().size_bytes());
  kept.reference_ = std::make_unique<XLOPER12>();
  kept.reference_->xltype = xltypeRef;
  kept.reference_->val.mref.lpmref = areas;
  kept.reference_->val.mref.idSheet = *view->sheet_id();
  return kept;
}

const XLOPER12& KeptArgument::record() const {
  return reference_ != nullptr ? *reference_ : value_.record();
}

void KeptArgument::AddDescription(std::string& text) const {
  const auto add = [&](const void* bytes, std::size_t size) {
    text.append(static_cast<const char*>(bytes), size);
  };
  const auto add_number = [&](std::uint64_t number) { add(&number, sizeof number); };
  if (reference_ != nullptr) {
    const ReferenceView view = *ReferenceView::Of(*reference_);
    add_number(view.areas().size());
    add_number(*view.sheet_id());
    add(view.areas().data(), view.areas().size_bytes());
    return;
  }
  const std::span<const XLOPER12> cells =
      is_array() ? value_.elements() : std::span<const XLOPER12>(&value_.record(), 1);
  add_number(0);  // no areas
  add_number(cells.size());
  for (const XLOPER12& cell : cells) {
    const SingleValue value = SingleValueOf(cell);
    add_number(static_cast<std::uint64_t>(value.tag));
    add(&value.number, sizeof value.number);
    add(&value.code, sizeof value.code);
    add_number(value.text.size());
    add(value.text.data(), value.text.size() * sizeof(char16_t));
  }
}

/// A text from which nothing but the same selection can come.
static std::string DescriptionOf(const StackedSelection& selection) {
  std::string text;
  const auto add = [&](const StackedSelection::Condition& condition) {
    condition.categories.AddDescription(text);
    text += std::to_string(condition.name.size());
    text += ':';
    text.append(reinterpret_cast<const char*>(condition.name.data()),
                condition.name.size() * sizeof(char16_t));
  };
  selection.values.AddDescription(text);
  add(selection.first);
  if (selection.second) add(*selection.second);
  return text;
}

std::optional<std::size_t> StackedSelections::IndexOf(StackedSelection selection) {
  const std::string description = DescriptionOf(selection);
  const auto known = by_description_.find(description);
  return known != by_description_.end() ? known->second : Add(description, std::move(selection));
}

std::optional<std::size_t> StackedSelections::Add(const std::string& description,
                                                  StackedSelection selection) {
  const std::size_t index = entries_.size() * kArguments;
  if (index > kLastIndex) return std::nullopt;
  const bool has_array = selection.HasArray();
  if (has_array && with_arrays_.size() >= kMostWithArrays) {
    const auto oldest = by_description_.find(with_arrays_.front());
    entries_[oldest->second / kArguments].reset();
    by_description_.erase(oldest);
    with_arrays_.pop_front();
  }
  entries_.push_back(std::make_unique<Entry>(Entry{std::move(selection)}));
  by_description_.emplace(description, index);
  if (has_array) with_arrays_.push_back(description);
  return index;
}

StackedSelections::Entry* StackedSelections::Find(std::size_t index) const {
  const std::size_t place = index / kArguments;
  return index % kArguments == 0 && place < entries_.size() ? entries_[place].get() : nullptr;
}

std::string StackedHandle(std::size_t index) {
  return fmt::format("\x01\x02{:0{}}", index, kHandleDigits);
}

std::optional<std::size_t> StackedHandleIndex(std::u16string_view text) {
  if (text.size() != kHandleStart.size() + kHandleDigits || !text.starts_with(kHandleStart))
    return std::nullopt;
  std::size_t index = 0;
  for (const char16_t unit : text.substr(kHandleStart.size())) {
    if (unit < u'0' || unit > u'9') return std::nullopt;
    index = index * 10 + static_cast<std::size_t>(unit - u'0');
  }
  return index;
}

}  // namespace zavrel
