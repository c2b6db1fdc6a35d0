#pragma once
// The memory for the arguments of a call: records, texts and arrays, in one block.

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

/// The block for a call, reused for later calls. The part that functions may not change is
/// contiguous, so that one comparison shows whether it was changed.
class ArgumentBlock {
 public:
  /// Lays out the arguments by their kinds. Operands of scalar kinds are Values or MissingArgument.
  /// References to `calling_sheet` become SRef, unless `external_references_only` is set; all
  /// others become Ref. If a value cannot be converted, returns the error that becomes the
  /// formula's result.
  std::optional<ErrorCode> Prepare(const TypeText& type, std::span<const Operand> operands,
                                   std::uint32_t calling_sheet, bool external_references_only);

  const MachineArguments& machine_arguments() const { return machine_; }
  /// True if the function wrote to read-only memory. Called once, after the call.
  bool WasWritten() const { return Fingerprint() != fingerprint_; }
  /// The address of argument `index`, for arguments that are changed in place.
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

  std::unique_ptr<std::byte[]> memory_;  // bytes, since they hold records of any type
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
