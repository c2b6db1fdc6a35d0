#pragma once
// A hash map that remembers its latest entries only.

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace zavrel {

template <class Key, class Value>
class LatestMap {
 public:
  explicit LatestMap(std::size_t most) : most_(most) {}

  /// Enters the value as the latest, in the place of one that the key had; the oldest entry goes
  /// when there are too many. Nothing changes when memory runs out.
  void Put(const Key& key, Value value) {
    entries_.emplace_front(key, std::move(value));
    try {
      const auto [place, is_new] = places_.try_emplace(key, entries_.begin());
      if (!is_new) entries_.erase(std::exchange(place->second, entries_.begin()));
    } catch (...) {
      entries_.pop_front();
      throw;
    }
    if (entries_.size() > most_) {
      places_.erase(places_.find(entries_.back().first));
      entries_.pop_back();
    }
  }

  /// Null when the key has no entry. The value lives until the map changes.
  const Value* Find(const Key& key) const {
    const auto place = places_.find(key);
    return place == places_.end() ? nullptr : &place->second->second;
  }

  void Remove(const Key& key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return;
    const auto entry = place->second;
    places_.erase(place);
    entries_.erase(entry);
  }

  void Clear() noexcept {
    places_.clear();
    entries_.clear();
  }

  std::size_t size() const { return entries_.size(); }

 private:
  using Entries = std::list<std::pair<Key, Value>>;  // latest first

  std::size_t most_;
  Entries entries_;
  std::unordered_map<Key, typename Entries::iterator> places_;
};

}  // namespace zavrel
