#pragma once
// The memory that a call's arguments stand in: records, texts and arrays, in one block.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "excel/xloper12.h"
#include "host/capi/native_call.h"
#include "host/capi/type_text.h"
#include "host/workbook/value.h"

namespace zavhost {

/// One block for a call. Reused between calls; what functions may not change lies together, so that
/// one comparison tells whether it was changed.
class ArgumentBlock {
 public:
  /// Lays out the arguments by their kinds; operands of scalar kinds are Values or MissingArgument,
  /// references become SRef on `calling_sheet`, unless `external_references_only`, and else Ref.
  /// Gives the error that the formula has instead when a value cannot be converted.
  std::optional<ErrorCode> Prepare(const TypeText& type, std::span<const Operand> operands,
                                   std::uint32_t calling_sheet, bool external_references_only);

  const MachineArguments& machine_arguments() const { return machine_; }
  /// True when the function wrote where it may not. Asked once, after the call.
  bool WasWritten() const { return Fingerprint() != fingerprint_; }
  /// Where argument `index` lies, for those that are changed in place.
  const void* buffer(std::size_t index) const { return places_[index]; }

 private:
  std::uint64_t Fingerprint() const;
  std::byte* Take(std::size_t bytes, bool writable);
  std::optional<ErrorCode> Add(TypeLetter kind, const Operand& operand, bool writable);
  void AddRecord(const Operand& operand);
  void FillArray(const Array& array, XLOPER12& record);
  void FillReference(const Reference& reference, XLOPER12& record);
  std::optional<ErrorCode> AddNumbers(const Operand& operand, bool small, bool writable);
  std::optional<ErrorCode> AddText(TypeLetter kind, const Value& value, bool writable);
  std::optional<ErrorCode> AddInteger(TypeLetter kind, const Value& value, bool writable);

  std::unique_ptr<std::byte[]> memory_;  // bytes: records of any type may be made in it
  std::size_t capacity_ = 0;             // words
  std::size_t read_only_ = 0;            // words that functions may not change
  std::size_t taken_ = 0;
  std::size_t writable_taken_ = 0;  // from the end of the read-only part
  std::uint64_t fingerprint_ = 0;
  std::vector<void*> places_;
  MachineArguments machine_;
  std::uint32_t calling_sheet_ = 0;
  bool external_references_only_ = false;
};

}  // namespace zavhost
