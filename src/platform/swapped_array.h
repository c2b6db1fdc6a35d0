#pragma once
// Arrays that live on disk because memory is too small for them.

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace zavrel {

enum class SwapFailure {
  kNoFile,      // there is no temporary folder, or none that takes a file
  kNoSpace,     // the disk, or the user's share of it, is too small
  kNoAddresses  // the process has no room for so large an array
};

/// Owner of an array of doubles in a temporary file that is mapped into memory. The system writes
/// what does not fit into memory to the file and reads it back. The file has the disk space for the
/// whole array from the start, so that writing to the array cannot fail for lack of it. No other
/// program can open the file, and it is gone with its owner or with the process, however that ends.
class SwappedArray {
 public:
  /// An array of zeros; nothing, with the reason in `failure`, if there can be none.
  static std::optional<SwappedArray> Make(std::size_t count, SwapFailure& failure);

  SwappedArray(SwappedArray&&) noexcept = default;
  SwappedArray& operator=(SwappedArray&&) noexcept = default;
  ~SwappedArray() = default;

  std::span<double> elements() { return {first_.get(), count_}; }
  std::span<const double> elements() const { return {first_.get(), count_}; }

 private:
  SwappedArray(std::shared_ptr<double> first, std::size_t count)
      : first_(std::move(first)), count_(count) {}

  std::shared_ptr<double> first_;  // whose deleter owns the mapping and the file
  std::size_t count_;
};

/// Whether an array of so many bytes should rather be a SwappedArray: if it takes more than a
/// quarter of the memory that the machine has available now. A computation holds up to four arrays
/// of about the same size. Never true for what fits easily into memory anywhere, nor where the
/// system does not say how much memory there is.
bool ExceedsMemoryBudget(std::size_t bytes) noexcept;

/// For tests: while it lives, the budget is this many bytes, at least 1.
class MemoryBudget {
 public:
  explicit MemoryBudget(std::size_t bytes) noexcept;
  ~MemoryBudget();
  MemoryBudget(const MemoryBudget&) = delete;
  MemoryBudget& operator=(const MemoryBudget&) = delete;
};

}  // namespace zavrel
