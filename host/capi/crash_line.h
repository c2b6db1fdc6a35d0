#pragma once
// The line that reports a crash. The heap may be damaged, so it uses a fixed buffer and never
// allocates.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "host/capi/judge.h"

namespace zavhost {

class CrashLine {
 public:
  explicit CrashLine(const Place& place) {
    Add("ZavHost: ");
    for (const std::string* part : {&place.cell, &place.formula}) {
      if (part->empty()) continue;
      Add(*part);
      Add(": ");
    }
    Add("the add-in crashed (");
  }

  void Add(std::string_view text) {
    const std::size_t length = std::min(text.size(), kRoom - used_);
    std::memcpy(buffer_ + used_, text.data(), length);
    used_ += length;
  }
  void AddAddress(std::uint64_t address) {
    Add("0x");
    int shift = 60;
    while (shift > 0 && address >> shift == 0) shift -= 4;
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (; shift >= 0; shift -= 4) Add(kDigits.substr(address >> shift & 15, 1));
  }
  /// The finished line.
  std::string_view End() {
    buffer_[used_++] = ')';
    buffer_[used_++] = '\n';
    return {buffer_, used_};
  }

 private:
  static constexpr std::size_t kRoom = 4094;
  char buffer_[kRoom + 2];
  std::size_t used_ = 0;
};

}  // namespace zavhost
