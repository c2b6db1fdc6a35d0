#pragma once
// What a fuzz target reads its case from.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace zavrel::tests {

/// Numbers out of bytes; zeros when these are used up.
class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  template <class T>
  T Take() {
    T value{};
    const std::size_t count = std::min(sizeof value, rest_.size());
    if (count > 0) std::memcpy(&value, rest_.data(), count);
    rest_ = rest_.subspan(count);
    return value;
  }
  /// 0 to `count` - 1.
  std::size_t Below(std::size_t count) { return Take<std::uint8_t>() % count; }
  /// The next bytes, fewer if there are no more.
  std::string_view Part(std::size_t size) {
    const auto part = rest_.first(std::min(size, rest_.size()));
    rest_ = rest_.subspan(part.size());
    return {reinterpret_cast<const char*>(part.data()), part.size()};
  }
  /// Up to `most` bytes, as many as the next byte says.
  std::string_view Text(std::size_t most) { return Part(Below(most + 1)); }
  /// All that is left.
  std::string_view Rest() { return Part(rest_.size()); }
  bool empty() const { return rest_.empty(); }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace zavrel::tests
