#include "data/data_argument.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "data/data_key.h"
#include "data/session_caches.h"
#include "data/stacked_argument.h"
#include "data/stacked_data.h"
#include "excel/xxloper.h"

namespace zavrel {
namespace {

// An Excel function has 255 arguments at most.
constexpr std::size_t kMostPieces = 255;

/// Compares the cells that come in with known ones, and collects them once they differ.
class CellCollector final : public CellSink {
 public:
  /// `known` may be null: then everything is new.
  CellCollector(const CellColumns* known, std::size_t expected, std::size_t most)
      : known_(known), expected_(expected), most_(most), comparing_(known != nullptr) {
    if (!comparing_) StartCollecting();
  }

  bool Cells(std::span<const XLOPER12> cells) override {
    if (comparing_) {
      const std::size_t equal = known_->CountEqual(position_, cells);
      position_ += equal;
      if (equal == cells.size()) return true;
      StartCollecting();
      cells = cells.subspan(equal);
    }
    if (cells.size() > most_ - collected_.size()) return false;
    collected_.Append(cells);
    return true;
  }
  bool Blanks(std::size_t count) override {
    if (comparing_) {
      const std::size_t equal = known_->CountBlanks(position_, count);
      position_ += equal;
      if (equal == count) return true;
      StartCollecting();
      count -= equal;
    }
    if (count > most_ - collected_.size()) return false;
    collected_.AppendBlanks(count);
    return true;
  }

  /// Cells of another data set.
  bool Cells(const CellColumns& cells) {
    std::size_t equal = 0;
    if (comparing_) {
      equal = known_->CountEqual(position_, cells);
      position_ += equal;
      if (equal == cells.size()) return true;
      StartCollecting();
    }
    if (cells.size() - equal > most_ - collected_.size()) return false;
    collected_.AppendPart(cells, equal, cells.size() - equal);
    return true;
  }

  /// To be asked once, after the last cell: are the known cells all of them?
  bool AsKnown() {
    if (comparing_ && position_ < known_->size()) StartCollecting();
    return comparing_;
  }
  CellColumns Take() && { return std::move(collected_); }

 private:
  void StartCollecting() {
    comparing_ = false;
    collected_.Reserve(expected_);
    if (position_ > 0) collected_.AppendFirst(*known_, position_);
  }

  const CellColumns* known_;
  std::size_t expected_;
  std::size_t most_;  // no fewer than the known cells that are met again
  bool comparing_;
  std::size_t position_ = 0;  // known cells that were met again
  CellColumns collected_;
};

/// Hands a single cell on, unless its text is the handle of a selection of stacked data.
class HandleCatcher final : public CellSink {
 public:
  explicit HandleCatcher(CellSink& sink) : sink_(sink) {}

  bool Cells(std::span<const XLOPER12> cells) override {
    if (cells.size() == 1) index_ = StackedHandleIndex(TextIn(cells.front()));
    return index_ || sink_.Cells(cells);
  }
  bool Blanks(std::size_t count) override { return sink_.Blanks(count); }

  /// The selection's index, if there was a handle.
  const std::optional<std::size_t>& index() const { return index_; }

 private:
  CellSink& sink_;
  std::optional<std::size_t> index_;
};

using Pieces = std::span<const XLOPER12* const>;

const XLOPER12* OrMissing(const XLOPER12* piece) {
  return piece != nullptr ? piece : &XXloper::Missing().record();
}
bool IsOmitted(const XLOPER12* piece) {
  return piece == nullptr || TypeOf(*piece) == xltypeMissing;
}

DataArgument ReadPieces(Pieces pieces, std::size_t most_cells) {
  std::size_t expected = 0;
  std::size_t all = 0;
  for (const XLOPER12* piece : pieces) {
    expected += ExpectedCells(*piece);
    all += AllCells(*piece);
  }
  if (expected > most_cells) return {};

  std::optional<std::string> key = DataKey(pieces);
  if (!key) return {ReadOutcome::kUncalculated, nullptr};
  ExcelDataCache* cache = SessionExcelDataCache();
  std::shared_ptr<ExcelData> known = cache != nullptr ? cache->Find(*key) : nullptr;
  if (known != nullptr && known->size() > most_cells) known = nullptr;
  CellCollector collector(known ? &known->cells() : nullptr, expected, most_cells);
  for (const XLOPER12* piece : pieces) {
    HandleCatcher catcher(collector);
    const bool one_cell = AllCells(*piece) == 1;
    const ReadOutcome outcome =
        one_cell ? ReadCells(*piece, catcher) : ReadCells(*piece, collector);
    if (outcome != ReadOutcome::kRead) return {outcome, nullptr};
    if (!catcher.index()) continue;

    DataArgument stacked = ReadStackedData(*catcher.index());
    if (stacked.outcome != ReadOutcome::kRead) return stacked;
    if (pieces.size() == 1) return stacked.data->size() <= most_cells ? stacked : DataArgument{};
    if (!collector.Cells(stacked.data->cells())) return {};
    all += stacked.data->size();
    --all;  // the handle's own cell
  }
  if (collector.AsKnown()) return {.outcome = ReadOutcome::kRead, .data = std::move(known)};

  if (known != nullptr) {
    if (DatasetParmCache* parms = SessionDatasetParmCache()) parms->Forget(known.get());
  }
  CellColumns cells = std::move(collector).Take();
  const std::size_t left_out = all - cells.size();
  auto data =
      std::make_shared<ExcelData>(std::move(*key), std::move(cells), left_out, LayoutOf(pieces));
  if (cache != nullptr) cache->Put(data);
  return {.outcome = ReadOutcome::kRead, .data = std::move(data)};
}

}  // namespace

DataArgument ReadDataArgument(Pieces pieces, std::size_t most_cells) {
  while (pieces.size() > 1 && IsOmitted(pieces.back())) pieces = pieces.first(pieces.size() - 1);
  if (pieces.size() > kMostPieces) return {};
  std::array<const XLOPER12*, kMostPieces> given;
  std::size_t count = 0;
  for (const XLOPER12* piece : pieces) given[count++] = OrMissing(piece);
  if (count == 0) given[count++] = OrMissing(nullptr);
  return ReadPieces({given.data(), count}, most_cells);
}

}  // namespace zavrel
