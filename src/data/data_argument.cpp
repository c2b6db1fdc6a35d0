#include "data/data_argument.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "data/data_key.h"
#include "data/session_caches.h"
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
    const ReadOutcome outcome = ReadCells(*piece, collector);
    if (outcome != ReadOutcome::kRead) return {outcome, nullptr};
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
