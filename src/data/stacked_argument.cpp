#include "data/stacked_argument.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "data/category_table.h"
#include "data/session_caches.h"
#include "data/stacked_data.h"

namespace zavrel {
namespace {

using Entry = StackedSelections::Entry;

constexpr int kDeepestNesting = 16;

Failure Unreadable() { return Failure(ExcelError::kRef); }

/// The selections that are being read, one within another. Each is read once, however often others
/// use it; one that contains itself cannot be read. Excel's main thread only.
class Readings {
 public:
  /// One level of nesting, while the object lives. The end of the outermost level drops what was
  /// read.
  class Level {
   public:
    Level() { ++depth_; }
    ~Level() {
      if (--depth_ == 0) read_.clear();
    }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
  };

  static bool TooDeep() { return depth_ > kDeepestNesting; }
  /// The result of reading a selection (unreadable until it has been read), and whether it is new
  /// here.
  static std::pair<DataArgument&, bool> Of(std::size_t index) {
    const auto [reading, is_new] = read_.try_emplace(index, Unreadable());
    return {reading->second, is_new};
  }

 private:
  inline static int depth_ = 0;
  inline static std::map<std::size_t, DataArgument> read_;
};

/// The data of a selection: values, category variables.
using Sources = std::vector<std::shared_ptr<ExcelData>>;

OrFailure<Sources> ReadSources(const StackedSelection& selection) {
  Sources sources;
  std::optional<Failure> failure;
  selection.ForEachArgument([&](const KeptArgument& argument) {
    if (failure) return;
    DataArgument read = ReadDataArgument(std::array{&argument.record()});
    if (read.ok()) {
      sources.push_back(*std::move(read));
    } else {
      failure = read.failure();
    }
  });
  if (failure) return *failure;
  const ExcelData& values = *sources.front();
  for (const std::shared_ptr<ExcelData>& data : sources) {
    if (!HaveSameShape(values.layout(), values.size(), data->layout(), data->size()))
      return Unreadable();
  }
  return sources;
}

std::array<std::uint64_t, 3> SerialsOf(const Sources& sources) {
  std::array<std::uint64_t, 3> serials{};
  std::transform(sources.begin(), sources.end(), serials.begin(),
                 [](const std::shared_ptr<ExcelData>& data) { return data->serial(); });
  return serials;
}

using Positions = std::vector<std::int32_t>;

/// The positions of the cells with a name.
OrFailure<Positions> PositionsOf(ExcelData& data, std::u16string_view name) {
  const OrFailure<const CategoryTable*> categories = data.Categories();
  if (!categories.ok()) return categories.failure();
  const Category* category = (*categories)->Find(name);
  if (category == nullptr) return Positions();
  return Positions(category->positions.begin(), category->positions.end());
}

/// The rows that a selection takes, in order.
OrFailure<Positions> SelectedRows(const StackedSelection& selection, const Sources& sources) {
  OrFailure<Positions> rows = PositionsOf(*sources[1], selection.first.name);
  if (!rows.ok() || !selection.second) return rows;
  OrFailure<Positions> others = PositionsOf(*sources[2], selection.second->name);
  if (!others.ok()) return others;
  Positions both;
  std::set_intersection(rows->begin(), rows->end(), others->begin(), others->end(),
                        std::back_inserter(both));
  return both;
}

CellColumns CellsAt(const ExcelData& values, const Positions& rows) {
  CellColumns cells;
  cells.Reserve(rows.size());
  for (const std::int32_t row : rows) {
    const auto position = static_cast<std::size_t>(row);
    if (position < values.size()) {
      cells.AppendPart(values.cells(), position, 1);
    } else {  // of whole columns, the one of the categories is the longer
      cells.AppendBlanks(1);
    }
  }
  return cells;
}

DataArgument Read(std::size_t index) {
  ExcelDataCache* cache = SessionExcelDataCache();
  const std::shared_ptr<Entry> entry =
      cache != nullptr ? cache->stacked_selections().Find(index) : nullptr;
  if (entry == nullptr) return Unreadable();

  const OrFailure<Sources> sources = ReadSources(entry->selection);
  if (!sources.ok()) return sources.failure();
  std::string key = fmt::format("{{Destack,{}}}", index);
  const std::array<std::uint64_t, 3> serials = SerialsOf(*sources);
  std::shared_ptr<ExcelData> known = cache->Find(key);
  if (known != nullptr && known->serial() == entry->selected && serials == entry->sources)
    return known;

  const OrFailure<Positions> rows = SelectedRows(entry->selection, *sources);
  if (!rows.ok()) return rows.failure();
  CellColumns cells = CellsAt(*sources->front(), *rows);
  const CellLayout column{CellLayout::Kind::kComplete, cells.size(), 1};
  auto data = std::make_shared<ExcelData>(std::move(key), std::move(cells), column);
  if (DatasetParmCache* parms = SessionDatasetParmCache(); parms != nullptr && known != nullptr)
    parms->Forget(known.get());
  entry->sources = serials;
  entry->selected = data->serial();
  cache->Put(data);
  return data;
}

}  // namespace

DataArgument ReadStackedData(std::size_t index) {
  const Readings::Level level;
  const auto [reading, is_new] = Readings::Of(index);
  if (is_new && !Readings::TooDeep()) reading = Read(index);
  return reading;
}

}  // namespace zavrel
