// The reading of arguments over a fixed number of pseudo-random inputs, for every compiler.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/target.h"
#include "support/log_folder.h"

namespace {

void ReadRandomInputs(int count, unsigned seed) {
  using zavrel::tests::FuzzTarget;
  const FuzzTarget& read = **std::ranges::find(
      FuzzTarget::all(), std::string_view("argument_reading"), &FuzzTarget::name);
  std::mt19937 random(seed);
  for (int i = 0; i < count; ++i) {
    std::vector<std::uint8_t> input(random() % 700);
    for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
    read(input);
  }
}

}  // namespace

TEST_CASE("hostile arguments neither crash nor leak nor give anything stale") {
  ReadRandomInputs(20'000, 20261125);
}

TEST_CASE("no argument disturbs the log") {
  const zavrel::tests::LogFolder folder("BrennicLoggingDetail.txt");
  zavrel::OpenLog(folder.path(), "Session8");
  ReadRandomInputs(2'000, 20261126);
  const std::string lines = folder.closed_lines();
  CHECK(lines.size() > 1'000'000);
  // A record is one line, whatever the argument.
  std::istringstream all(lines);
  std::size_t others = 0;
  for (std::string line; std::getline(all, line);)
    others += line.starts_with("{ inParam=") && line.ends_with(", outParam=? }") ? 0U : 1U;
  CHECK(others == 0);
}
