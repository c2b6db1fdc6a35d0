#pragma once
// Memory that the host gives away with its values and gets back through xlFree.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/capi/judge.h"

namespace zavhost {

class HostMemory {
 public:
  explicit HostMemory(Judge& judge) : judge_(judge) {}

  /// A block of at least `bytes` bytes, given for the result of `function` (a string literal).
  void* Give(std::size_t bytes, const char* function);
  /// Takes a block back. Null is fine; a block that is not held is reported.
  void Free(const void* block);
  /// True when the add-in holds this block.
  bool Holds(const void* block) const { return held_.contains(block); }
  /// True when this block was given and freed lately.
  bool WasFreed(const void* block) const { return freed_.contains(block); }
  std::size_t held() const { return held_.size(); }
  /// Reports once that the add-in holds ever more, when it does.
  void JudgeGrowth();
  /// Reports every block that is held, and takes them back.
  void ReportHeld();

 private:
  using Storage = std::unique_ptr<std::byte[]>;
  struct Block {
    Storage storage;
    std::size_t bytes = 0;
    const char* function = "";
    std::shared_ptr<const Place> place;
  };

  Storage TakeLarge(std::size_t bytes, std::size_t& actual);
  void Retire(Block block);

  Judge& judge_;
  std::unordered_map<const void*, Block> held_;
  std::unordered_set<const void*> freed_;  // addresses in the two below
  std::deque<Block> quarantine_;           // small blocks, so that their addresses rest a while
  std::deque<Block> large_;                // for reuse: fresh memory of this size is dear
  bool growth_reported_ = false;
};

}  // namespace zavhost
