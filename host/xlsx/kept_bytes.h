#pragma once
// What is kept of a workbook while it is read, against what may be kept.

#include <cstdint>
#include <string>

#include "host/workbook/workbook.h"

namespace zavhost {

class KeptBytes {
 public:
  explicit KeptBytes(std::uint64_t limit) : left_(limit), limit_(limit) {}

  /// Counts bytes before they are allocated. Throws WorkbookError when there are too many.
  void Take(std::uint64_t bytes) {
    if (bytes > left_) {
      throw WorkbookError("its cells, texts and formulas take more than " +
                          std::to_string(limit_ >> 20) + " MB");
    }
    left_ -= bytes;
  }

  std::uint64_t taken() const { return limit_ - left_; }

 private:
  std::uint64_t left_;
  std::uint64_t limit_;
};

/// What a text of its own takes: its units, and two blocks of memory.
inline std::uint64_t BytesOf(const std::u16string& text) {
  return 2 * text.size() + (text.size() < 8 ? 48 : 64);
}

}  // namespace zavhost
