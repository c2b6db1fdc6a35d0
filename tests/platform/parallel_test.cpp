#include "platform/parallel.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace zavrel::tests {
namespace {

bool EachOnce(const std::vector<std::atomic<int>>& calls) {
  return std::all_of(calls.begin(), calls.end(), [](const auto& count) { return count == 1; });
}

}  // namespace

TEST_CASE("every index once, whatever the count") {
  CHECK(ParallelThreads() >= 1);
  for (const std::size_t count : std::initializer_list<std::size_t>{0, 1, 2, 3, 10000}) {
    std::vector<std::atomic<int>> calls(count);
    ParallelFor(count, [&](std::size_t index) { ++calls[index]; });
    CHECK(EachOnce(calls));
  }
}

TEST_CASE("a section in a section runs on its thread in order") {
  std::vector<std::atomic<int>> calls(std::size_t{40} * 50);
  std::atomic<bool> in_order{true};
  ParallelFor(40, [&](std::size_t outer) {
    std::size_t next = 0;
    const auto thread = std::this_thread::get_id();
    ParallelFor(50, [&](std::size_t inner) {
      if (inner != next++ || std::this_thread::get_id() != thread) in_order = false;
      ++calls[outer * 50 + inner];
    });
  });
  CHECK(EachOnce(calls));
  CHECK(in_order);
}

TEST_CASE("small work stays on the calling thread") {
  const auto stays = [] {
    std::atomic<bool> stayed{true};
    const auto own = std::this_thread::get_id();
    for (int section = 0; section < 50; ++section) {
      ParallelFor(8, [&](std::size_t) {
        if (std::this_thread::get_id() != own) stayed = false;
        std::this_thread::sleep_for(std::chrono::microseconds(50));
      });
    }
    return stayed.load();
  };
  {
    const CallingThreadOnly small;
    CHECK(ParallelThreads() == 1);
    CHECK(stays());
    // Another thread's work is its own.
    std::thread([] {
      CHECK(ParallelThreads() == std::max(1u, std::thread::hardware_concurrency()));
    }).join();
  }
  // On a busy machine another thread may wake late.
  bool left = ParallelThreads() == 1;
  for (int attempt = 0; attempt < 40 && !left; ++attempt) left = !stays();
  CHECK(left);
}

// What a section leaves behind, the next one and its results must not meet.
TEST_CASE("sections one after the other, from two threads at once") {
  const auto many_sections = [](std::atomic<bool>& good) {
    std::vector<std::size_t> results(64);
    for (std::size_t section = 0; section < 2000; ++section) {
      ParallelFor(results.size(), [&](std::size_t index) { results[index] = section + index; });
      for (std::size_t index = 0; index < results.size(); ++index)
        if (results[index] != section + index) good = false;
    }
  };
  std::atomic<bool> good{true};
  std::thread other([&] { many_sections(good); });
  many_sections(good);
  other.join();
  CHECK(good);
}

// Only where there is more than one processor, and not too strictly: others use them too.
TEST_CASE("threads take part") {
  if (ParallelThreads() < 2) return;
  std::atomic<bool> others{false};
  const auto own = std::this_thread::get_id();
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!others && std::chrono::steady_clock::now() < end) {
    ParallelFor(2, [&](std::size_t) {
      if (std::this_thread::get_id() != own) others = true;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
  }
  CHECK(others);
}

}  // namespace zavrel::tests
