#pragma once
// Rules for pruning and clearing the session's caches.

namespace zavrel {

enum class UpkeepMode {
  kAfterCall = 0,  // every worksheet function, just before it returns
  kPruneData = 1,
  kClearAll = 2,  // the caches of the function families as well
};

/// The percentages of physical memory in use from which cached data sets are pruned, and from which
/// everything is dropped.
inline constexpr unsigned kPruneMemoryLoad = 51;
inline constexpr unsigned kClearMemoryLoad = 91;

/// The steps of an upkeep, in this order.
struct UpkeepSteps {
  bool prune_parameters = false;
  bool clear_parameters = false;  // and the caches of the function families
  bool clear_data = false;
  bool prune_data = false;

  bool operator==(const UpkeepSteps&) const = default;
};

/// The steps of an upkeep at this memory load (percent); with `flush`, an upkeep after a call drops
/// everything whatever the load.
constexpr UpkeepSteps StepsOfUpkeep(UpkeepMode mode, unsigned memory_load, bool flush) {
  switch (mode) {
    case UpkeepMode::kPruneData:
      return {.prune_data = true};
    case UpkeepMode::kClearAll:
      return {.clear_parameters = true, .clear_data = true};
    case UpkeepMode::kAfterCall:
      break;
  }
  const bool clear = flush || memory_load >= kClearMemoryLoad;
  return {.prune_parameters = true,
          .clear_parameters = clear,
          .clear_data = clear,
          .prune_data = !clear && memory_load >= kPruneMemoryLoad};
}

}  // namespace zavrel
