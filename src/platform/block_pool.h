#pragma once
// Memory for data sets and matrices. Fresh memory is the costliest part of reading a large range
// and of a product, so large blocks are kept after use, up to a limit, for later requests.

#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

namespace zavrel {

/// Returns a block of at least `bytes` bytes, uninitialised and aligned for any scalar type, and
/// its size in `*granted`. Throws std::bad_alloc. These functions are thread-safe.
void* TakeBlock(std::size_t bytes, std::size_t* granted);
/// Returns a block, with its granted size, to the pool.
void GiveBlock(void* block, std::size_t granted) noexcept;
/// Frees the blocks kept for reuse and returns their size in bytes.
std::size_t ReleaseKeptBlocks() noexcept;

/// A growing array of a trivial type in one pooled block; its new elements are uninitialised.
template <class T>
class BlockArray {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  BlockArray() = default;
  BlockArray(BlockArray&& other) noexcept { Swap(other); }
  BlockArray& operator=(BlockArray&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~BlockArray() {
    if (data_ != nullptr) GiveBlock(data_, granted_);
  }

  void Reserve(std::size_t count) {
    if (count > capacity()) Move(count);
  }
  /// Lengthens the array by `count` elements and returns the first of them.
  T* Extend(std::size_t count) {
    const std::size_t needed = size_ + count;
    if (needed > capacity())
      Move(needed < capacity() + capacity() / 2 ? capacity() + capacity() / 2 : needed);
    T* first = data_ + size_;
    size_ = needed;
    return first;
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  std::span<T> elements() { return {data_, size_}; }
  std::span<const T> elements() const { return {data_, size_}; }
  std::size_t size() const { return size_; }
  std::size_t capacity() const { return granted_ / sizeof(T); }
  std::size_t bytes() const { return granted_; }

 private:
  void Move(std::size_t capacity) {
    std::size_t granted = 0;
    T* moved = static_cast<T*>(TakeBlock(capacity * sizeof(T), &granted));
    if (size_ > 0) std::memcpy(moved, data_, size_ * sizeof(T));
    if (data_ != nullptr) GiveBlock(data_, granted_);
    data_ = moved;
    granted_ = granted;
  }
  void Swap(BlockArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(granted_, other.granted_);
  }

  T* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t granted_ = 0;
};

}  // namespace zavrel
