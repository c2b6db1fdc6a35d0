#include "data/stacked_argument.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "data/category_table.h"
#include "data/session_caches.h"
#include "data/stacked_data.h"

namespace zavrel {
namespace {

using Entry = StackedSelections::Entry;

constexpr int kDeepestNesting = 16;

/// Counts how deep selections are nested while it lives. Excel's main thread only.
class Nesting {
 public:
  Nesting() { ++depth_; }
  ~Nesting() { --depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  static bool TooDeep() { return depth_ > kDeepestNesting; }

 private:
  inline static int depth_ = 0;
};

/// The data of a selection: values, category variables.
struct Sources {
  ReadOutcome outcome = ReadOutcome::kRead;
  std::vector<std::shared_ptr<ExcelData>> data{};
};

Sources ReadSources(const StackedSelection& selection) {
  std::vector<const KeptArgument*> arguments{&selection.values, &selection.first.categories};
  if (selection.second) arguments.push_back(&selection.second->categories);
  Sources sources;
  for (const KeptArgument* argument : arguments) {
    DataArgument read = ReadDataArgument(std::array{&argument->record()});
    if (read.outcome != ReadOutcome::kRead) return {read.outcome};
    sources.data.push_back(std::move(read.data));
  }
  const ExcelData& values = *sources.data.front();
  for (const std::shared_ptr<ExcelData>& data : sources.data) {
    if (!CanPairShorter(values.layout(), values.size(), data->layout(), data->size()))
      return {ReadOutcome::kUnreadable};
  }
  return sources;
}

bool AreTheSame(const Entry& entry, const Sources& sources) {
  for (std::size_t i = 0; i < sources.data.size(); ++i) {
    if (entry.sources[i].lock() != sources.data[i]) return false;
  }
  return true;
}

/// Where the cells of a name stand; nothing when the host wants the call to end.
std::optional<std::vector<std::int32_t>> PositionsOf(ExcelData& data, std::u16string_view name) {
  const CategoryTable* categories = data.Categories();
  if (categories == nullptr) return std::nullopt;
  const Category* category = categories->Find(name);
  if (category == nullptr) return std::vector<std::int32_t>();
  return std::vector<std::int32_t>(category->positions.begin(), category->positions.end());
}

/// The rows that a selection takes, in order.
std::optional<std::vector<std::int32_t>> SelectedRows(const StackedSelection& selection,
                                                      const Sources& sources) {
  auto rows = PositionsOf(*sources.data[1], selection.first.name);
  if (!rows || !selection.second) return rows;
  const auto others = PositionsOf(*sources.data[2], selection.second->name);
  if (!others) return std::nullopt;
  std::vector<std::int32_t> both;
  std::set_intersection(rows->begin(), rows->end(), others->begin(), others->end(),
                        std::back_inserter(both));
  return both;
}

CellColumns CellsAt(const ExcelData& values, const std::vector<std::int32_t>& rows) {
  CellColumns cells;
  cells.Reserve(rows.size());
  const bool open = values.layout().kind == CellLayout::Kind::kOpenEnd;
  for (const std::int32_t row : rows) {
    const auto position = static_cast<std::size_t>(row);
    if (position < values.size()) {
      cells.AppendPart(values.cells(), position, 1);
    } else if (open) {
      cells.AppendBlanks(1);
    }
  }
  return cells;
}

}  // namespace

DataArgument ReadStackedData(std::size_t index) {
  const Nesting nesting;
  ExcelDataCache* cache = SessionExcelDataCache();
  Entry* entry = cache != nullptr ? cache->stacked_selections().Find(index) : nullptr;
  if (entry == nullptr || Nesting::TooDeep()) return {};

  const Sources sources = ReadSources(entry->selection);
  if (sources.outcome != ReadOutcome::kRead) return {sources.outcome, nullptr};
  if (auto known = entry->selected.lock(); known != nullptr && AreTheSame(*entry, sources))
    return {ReadOutcome::kRead, std::move(known)};

  const auto rows = SelectedRows(entry->selection, sources);
  if (!rows) return {ReadOutcome::kUncalculated, nullptr};
  auto data = std::make_shared<ExcelData>(fmt::format("{{Destack,{}}}", index),
                                          CellsAt(*sources.data.front(), *rows));
  std::copy(sources.data.begin(), sources.data.end(), entry->sources);
  entry->selected = data;
  if (DatasetParmCache* parms = SessionDatasetParmCache()) {
    if (const auto old = cache->Find(data->key())) parms->Forget(old.get());
  }
  cache->Put(data);
  return {ReadOutcome::kRead, std::move(data)};
}

}  // namespace zavrel
