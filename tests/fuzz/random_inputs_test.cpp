// The fuzz targets over a fixed number of pseudo-random inputs, for every compiler.
#include <doctest/doctest.h>

#include <cstdint>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST_CASE("hostile arguments neither crash nor leak nor give anything stale") {
  std::mt19937 random(20261125);
  for (int i = 0; i < 20'000; ++i) {
    std::vector<std::uint8_t> input(random() % 700);
    for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
    CHECK(LLVMFuzzerTestOneInput(input.data(), input.size()) == 0);
  }
}
