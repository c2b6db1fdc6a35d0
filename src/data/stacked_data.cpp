#include "data/stacked_data.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "data/cell_columns.h"
#include "excel/calling_sheet.h"
#include "excel/reference.h"

namespace zavrel {
namespace {

constexpr std::size_t kHandleDigits = 9;
constexpr std::size_t kPlaces = 1'000'000'000 / StackedSelections::kArguments;
constexpr std::u16string_view kHandleStart = u"\u0001\u0002";

/// A text that only an equal selection has.
std::string DescriptionOf(const StackedSelection& selection) {
  std::string text;
  selection.ForEachArgument([&](const KeptArgument& argument) { argument.AddDescription(text); });
  const auto add = [&](std::u16string_view name) {
    text += std::to_string(name.size());
    text += ':';
    text.append(reinterpret_cast<const char*>(name.data()), name.size() * sizeof(char16_t));
  };
  add(selection.first.name);
  if (selection.second) add(selection.second->name);
  return text;
}

/// FNV-1a, folded: the multiplication carries upwards only.
std::uint64_t HashOf(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325ull;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3ull;
  return hash ^ hash >> 32;
}

}  // namespace

std::optional<KeptArgument> KeptArgument::Of(const XLOPER12& argument) {
  KeptArgument kept;
  if (TypeOf(argument) != xltypeSRef && TypeOf(argument) != xltypeRef) {
    kept.value_ = XXloper::FromArgument(&argument).Owned();
    return kept;
  }
  const auto view = ReferenceView::Of(argument);
  if (!view) throw std::invalid_argument("no reference");
  auto sheet_id = view->sheet_id();
  if (!sheet_id) {
    // Another formula will use the reference, which has to say then which sheet it is on.
    const auto calling_sheet = CallingSheetId(argument);
    if (!calling_sheet.ok()) return std::nullopt;
    sheet_id = *calling_sheet;
  }
  if (!sheet_id) throw std::invalid_argument("no sheet");

  const std::size_t size = offsetof(XLMREF12, reftbl) + view->areas().size() * sizeof(XLREF12);
  kept.areas_ = std::make_unique<std::byte[]>(std::max(size, sizeof(XLMREF12)));
  auto* areas = std::construct_at(reinterpret_cast<XLMREF12*>(kept.areas_.get()));
  areas->count = static_cast<std::uint16_t>(view->areas().size());
  std::memcpy(kept.areas_.get() + offsetof(XLMREF12, reftbl), view->areas().data(),
              view->areas().size_bytes());
  kept.reference_ = std::make_unique<XLOPER12>();
  kept.reference_->xltype = xltypeRef;
  kept.reference_->val.mref.lpmref = areas;
  kept.reference_->val.mref.idSheet = *sheet_id;
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
      value_.Is(xltypeMulti) ? value_.elements() : std::span<const XLOPER12>(&value_.record(), 1);
  add_number(0);  // no areas
  add_number(cells.size());
  if (value_.Is(xltypeMulti))
    add_number(static_cast<std::uint64_t>(value_.record().val.array.columns));
  for (const XLOPER12& cell : cells) {
    const SingleValue value = SingleValueOf(cell);
    text += static_cast<char>(value.tag);
    if (value.IsNumber()) {
      add(&value.number, sizeof value.number);
    } else if (value.tag == CellTag::kText) {
      add_number(value.text.size());
      add(value.text.data(), value.text.size() * sizeof(char16_t));
    } else {
      add(&value.code, sizeof value.code);
    }
  }
}

std::size_t KeptArgument::bytes() const {
  return is_reference() ? ReferenceView::Of(*reference_)->areas().size_bytes()
                        : value_.elements().size_bytes();
}

std::size_t StackedSelections::IndexOf(StackedSelection selection) {
  constexpr std::size_t kOverhead = sizeof(Kept) + sizeof(Entry) + 256;
  bool references = true;
  Kept kept{0, DescriptionOf(selection), kOverhead, nullptr};
  kept.bytes += 2 * kept.description.size();  // and the texts in the values
  selection.ForEachArgument([&](const KeptArgument& argument) {
    references = references && argument.is_reference();
    kept.bytes += argument.bytes();
  });
  const std::size_t index = kept.index = IndexFor(kept.description);
  Shelf& shelf = references ? of_references_ : with_values_;
  if (const auto known = by_index_.find(index); known != by_index_.end()) {
    shelf.kept.splice(shelf.kept.begin(), shelf.kept, known->second);
    return index;
  }
  kept.entry = std::make_shared<Entry>(Entry{std::move(selection)});
  Add(std::move(kept), shelf, references ? budget_.references : budget_.values);
  return index;
}

/// The index that the description has, or a free one.
std::size_t StackedSelections::IndexFor(const std::string& description) const {
  for (std::uint64_t place = HashOf(description) % kPlaces;; place = (place + 1) % kPlaces) {
    const auto known = by_index_.find(place * kArguments);
    if (known == by_index_.end() || known->second->description == description)
      return place * kArguments;
  }
}

void StackedSelections::Add(Kept kept, Shelf& shelf, std::size_t most_bytes) {
  std::list<Kept> one;
  one.push_back(std::move(kept));
  by_index_.emplace(one.front().index, one.begin());
  shelf.bytes += one.front().bytes;
  shelf.kept.splice(shelf.kept.begin(), one);
  while (shelf.bytes > most_bytes && shelf.kept.size() > 1) {
    shelf.bytes -= shelf.kept.back().bytes;
    by_index_.erase(shelf.kept.back().index);
    shelf.kept.pop_back();
  }
}

std::shared_ptr<StackedSelections::Entry> StackedSelections::Find(std::size_t index) const {
  const auto kept = by_index_.find(index);
  return kept != by_index_.end() ? kept->second->entry : nullptr;
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
