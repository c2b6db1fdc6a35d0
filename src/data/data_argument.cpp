#include "data/data_argument.h"

#include <array>
#include <boost/container/static_vector.hpp>
#include <optional>
#include <string>
#include <utility>

#include "data/argument_piece.h"
#include "data/cell_reader.h"
#include "data/data_key.h"
#include "data/session_caches.h"
#include "data/stacked_argument.h"
#include "data/stacked_data.h"

namespace zavrel {
namespace {

Failure Unreadable() { return Failure(ExcelError::kRef); }

/// Compares incoming cells with known ones, and collects them once they differ. Of a piece of one
/// cell, takes the handle of a selection of stacked data instead.
class CellCollector final : public CellSink {
 public:
  /// If `known` is null, every cell is new.
  CellCollector(const CellColumns* known, std::size_t expected, std::size_t most)
      : known_(known), expected_(expected), most_(most), comparing_(known != nullptr) {
    if (!comparing_) StartCollecting();
  }

  /// Before each piece.
  void Begin(bool one_cell) {
    one_cell_ = one_cell;
    handle_index_.reset();
  }

  bool Expect(std::size_t cells) override {
    expected_ += cells;
    if (expected_ > most_) return false;
    // Of many areas not each has the earlier ones moved.
    if (!comparing_ && collected_.size() == 0) collected_.Reserve(expected_);
    return true;
  }

  bool Cells(std::span<const XLOPER12> cells) override {
    if (one_cell_) handle_index_ = StackedHandleIndex(TextIn(cells.front()));
    if (handle_index_) return true;
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

  /// The index of the selection whose handle the piece was.
  const std::optional<std::size_t>& handle_index() const { return handle_index_; }

  /// Takes the cells of another data set.
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

  /// True if the cells taken were exactly the known ones. To be called once, after the last cell.
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
  std::size_t most_;  // at least as many as the known cells
  bool comparing_;
  bool one_cell_ = false;
  std::optional<std::size_t> handle_index_;
  std::size_t position_ = 0;  // known cells met again so far
  CellColumns collected_;
};

DataArgument ReadPieces(Pieces pieces, std::size_t most_cells) {
  std::size_t expected = 0;
  for (const ArgumentPiece& piece : pieces) {
    expected += ExpectedCells(piece);
  }
  if (expected > most_cells) return Unreadable();

  ExcelDataCache* cache = SessionExcelDataCache();
  std::optional<SheetIds> unknown;  // only made where no session keeps them
  std::optional<std::string> key =
      DataKey(pieces, cache != nullptr ? cache->sheet_ids() : unknown.emplace());
  if (!key) return Failure::Uncalculated();
  std::shared_ptr<ExcelData> known = cache != nullptr ? cache->Find(*key) : nullptr;
  if (known != nullptr && known->size() > most_cells) known = nullptr;
  CellCollector collector(known ? &known->cells() : nullptr, expected, most_cells);
  for (const ArgumentPiece& piece : pieces) {
    collector.Begin(IsOneCell(piece));
    const ReadOutcome outcome = ReadCells(piece, collector);
    if (outcome == ReadOutcome::kUncalculated) return Failure::Uncalculated();
    if (outcome == ReadOutcome::kUnreadable) return Unreadable();
    if (!collector.handle_index()) continue;

    DataArgument stacked = ReadStackedData(*collector.handle_index());
    if (!stacked.ok()) return stacked;
    const ExcelData& selected = **stacked;
    if (pieces.size() == 1) return selected.size() <= most_cells ? stacked : Unreadable();
    if (!collector.Cells(selected.cells())) return Unreadable();
  }
  if (collector.AsKnown()) return known;

  if (known != nullptr) {
    if (DatasetParmCache* parms = SessionDatasetParmCache()) parms->Forget(known.get());
  }
  CellColumns cells = std::move(collector).Take();
  auto data = std::make_shared<ExcelData>(std::move(*key), std::move(cells), LayoutOf(pieces));
  if (cache != nullptr) cache->Put(data);
  return data;
}

}  // namespace

DataArgument ReadDataArgument(Arguments arguments, std::size_t most_cells) {
  while (arguments.size() > 1 && IsOmitted(arguments.back()))
    arguments = arguments.first(arguments.size() - 1);
  if (arguments.size() > kMostPieces) return Unreadable();
  boost::container::static_vector<ArgumentPiece, kMostPieces> pieces;
  for (const XLOPER12* argument : arguments) pieces.push_back(ArgumentPiece::Of(argument));
  if (pieces.empty()) pieces.push_back(ArgumentPiece::Of(nullptr));
  return ReadPieces({pieces.data(), pieces.size()}, most_cells);
}

std::optional<Failure> ReadAreas(
    const XLOPER12& argument,
    FunctionRef<std::optional<Failure>(const std::shared_ptr<ExcelData>& data)> take) {
  const auto read = [&](const XLOPER12& part) -> std::optional<Failure> {
    const DataArgument data = ReadDataArgument(std::array{&part});
    if (!data.ok()) return data.failure();
    return take(*data);
  };
  const auto reference = ReferenceView::Of(argument);
  if (!reference) return read(argument);
  for (const XLREF12& area : reference->areas()) {
    const OneArea part(*reference, area);
    if (auto failure = read(part.record())) return failure;
  }
  return std::nullopt;
}

}  // namespace zavrel
