#pragma once
// A hash map that keeps only its latest entries.

#include <cstddef>
#include <list>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace zavrel {

template <class Key, class Value>
class LatestMap {
 public:
  explicit LatestMap(std::size_t most) : most_(most) {}

  /// Enters the value as the latest, replacing the one that the key had, and drops the oldest entry
  /// if there are too many. If memory runs out, nothing changes.
  void Put(const Key& key, Value value) {
    const auto [place, is_new] = entries_.try_emplace(key);
    Entry& entry = place->second;
    if (is_new) {
      try {
        latest_.push_front(&place->first);
      } catch (...) {
        entries_.erase(place);
        throw;
      }
      entry.turn = latest_.begin();
    } else {
      Refresh(entry);
    }
    entry.value = std::move(value);
    if (entries_.size() > most_) Remove(entries_.find(*latest_.back()));
  }

  /// Null when the key has no entry. The value lives until it is replaced or dropped.
  const Value* Find(const Key& key) const {
    const auto place = entries_.find(key);
    return place == entries_.end() ? nullptr : &place->second.value;
  }
  /// The same; an entry that is found becomes the latest.
  const Value* Use(const Key& key) {
    const auto place = entries_.find(key);
    if (place == entries_.end()) return nullptr;
    Refresh(place->second);
    return &place->second.value;
  }

  void Remove(const Key& key) {
    const auto place = entries_.find(key);
    if (place != entries_.end()) Remove(place);
  }

  void Clear() noexcept {
    entries_.clear();
    latest_.clear();
  }

  std::size_t size() const { return entries_.size(); }

 private:
  static_assert(std::is_nothrow_move_assignable_v<Value>);

  using Latest = std::list<const Key*>;  // latest first; the map owns the keys
  struct Entry {
    Value value{};
    typename Latest::iterator turn;
  };
  using Entries = std::unordered_map<Key, Entry>;

  void Refresh(Entry& entry) noexcept { latest_.splice(latest_.begin(), latest_, entry.turn); }
  void Remove(typename Entries::iterator place) noexcept {
    latest_.erase(place->second.turn);
    entries_.erase(place);
  }

  std::size_t most_;
  Entries entries_;
  Latest latest_;
};

}  // namespace zavrel
