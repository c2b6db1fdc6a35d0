#pragma once
// Objects of any type that families of functions keep in the session.

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace zavrel {

/// One object of each type, made when it is first requested. Objects that have a `Clear() noexcept`
/// are caches and are cleared together.
class KeptObjects {
 public:
  template <class Kept>
  Kept& Get() {
    const auto found = std::find_if(holders_.begin(), holders_.end(), [](const auto& holder) {
      return holder->tag() == &kTag<Kept>;
    });
    if (found != holders_.end()) return static_cast<HolderOf<Kept>&>(**found).kept;
    auto made = std::make_unique<HolderOf<Kept>>();
    Kept& kept = made->kept;
    holders_.push_back(std::move(made));
    return kept;
  }

  void ClearCaches() noexcept {
    for (const auto& holder : holders_) holder->Clear();
  }

 private:
  struct Holder {
    virtual ~Holder() = default;
    /// An address that identifies the type.
    virtual const void* tag() const noexcept = 0;
    virtual void Clear() noexcept = 0;
  };
  template <class Kept>
  struct HolderOf final : Holder {
    const void* tag() const noexcept override { return &kTag<Kept>; }
    void Clear() noexcept override {
      if constexpr (requires { kept.Clear(); }) {
        static_assert(noexcept(kept.Clear()));
        kept.Clear();
      }
    }
    Kept kept;
  };
  template <class Kept>
  inline static const char kTag = 0;

  std::vector<std::unique_ptr<Holder>> holders_;
};

}  // namespace zavrel
