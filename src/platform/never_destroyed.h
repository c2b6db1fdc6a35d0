#pragma once

#include <cstddef>
#include <new>

namespace zavrel {

/// Holds a static object that is not destroyed at the end of its library. Takes no memory of its
/// own, unlike one that is made by new.
template <class T>
class NeverDestroyed {
 public:
  NeverDestroyed() { ::new (storage_) T(); }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  T& operator*() { return *std::launder(reinterpret_cast<T*>(storage_)); }

 private:
  alignas(T) std::byte storage_[sizeof(T)];
};

}  // namespace zavrel
