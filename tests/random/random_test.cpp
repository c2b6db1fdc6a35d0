// The generators against published values, the table of their functions, and the seed.
#include <doctest/doctest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/md5.h"
#include "random/clock_seed.h"
#include "random/mersenne_twister.h"

namespace zavrel::tests {
namespace {

/// Gives the values of a list in turn.
class Listed final : public RndGen {
 public:
  explicit Listed(std::vector<std::uint32_t> values) : values_(std::move(values)) {}
  void* Destroy(std::uint32_t) noexcept override { return this; }
  void SeedSequence(const std::uint32_t*, std::size_t) noexcept override {}
  void Seed(std::uint32_t) noexcept override {}
  std::uint32_t Next() noexcept override { return values_[next_++ % values_.size()]; }
  const char* Name() const noexcept override { return "Listed"; }

 private:
  std::vector<std::uint32_t> values_;
  std::size_t next_ = 0;
};

std::string Hexadecimal(const Md5Digest& digest) {
  std::string text;
  for (const std::byte byte : digest) {
    text += "0123456789abcdef"[std::to_integer<int>(byte) >> 4];
    text += "0123456789abcdef"[std::to_integer<int>(byte) & 15];
  }
  return text;
}

std::string Md5Text(const std::string& text) {
  return Hexadecimal(Md5(std::as_bytes(std::span(text))).value());
}

/// What another library does with a generator: calls the function at a place of its table.
template <class Result, class... Arguments>
Result CallSlot(RndGen& generator, std::size_t slot, Arguments... arguments) {
  using Function = Result(RndGen*, Arguments...);
  void** table;
  std::memcpy(static_cast<void*>(&table), static_cast<void*>(&generator), sizeof table);
  return reinterpret_cast<Function*>(table[slot])(&generator, arguments...);
}

}  // namespace

TEST_CASE("MT19937 gives the published values") {
  MersenneTwister generator;
  const std::uint32_t words[] = {0x123, 0x234, 0x345, 0x456};
  generator.SeedSequence(words, 4);
  for (const std::uint32_t value : {1067595299u, 955945823u, 477289528u, 4107218783u, 4228976476u})
    CHECK(generator.Next() == value);
}

TEST_CASE("MT19937 gives what the standard library's engine gives") {
  for (const std::uint32_t seed : {0u, 1u, 5489u, 19650218u, 0xFFFFFFFFu}) {
    MersenneTwister generator(seed);
    std::mt19937 standard(seed);
    for (int i = 0; i < 3000; ++i) REQUIRE(generator.Next() == standard());
    CHECK(generator.seed_sequence().size() == 1);
    CHECK(generator.seed_sequence()[0] == seed);
  }
}

TEST_CASE("a seed sequence may be longer than the state, or empty") {
  std::vector<std::uint32_t> words(700);
  for (std::uint32_t i = 0; i < words.size(); ++i) words[i] = i * 2654435761u;
  MersenneTwister a, b;
  a.SeedSequence(words.data(), words.size());
  CHECK(a.seed_sequence().empty());
  words.back() ^= 1;
  b.SeedSequence(words.data(), words.size());
  CHECK(a.Next() != b.Next());
  a.SeedSequence(nullptr, 0);
  const std::uint32_t zero = 0;
  b.SeedSequence(&zero, 1);
  for (int i = 0; i < 1000; ++i) REQUIRE(a.Next() == b.Next());
}

TEST_CASE("doubles take 53 bits of two values") {
  Listed generator({0x0C000001, 0x08000002});
  CHECK(generator.NextDouble() == 0x1p-53 + 0x1p-26);
  CHECK(Listed({0xFFFFFFFF}).NextDouble() == 1 - 0x1p-53);
  CHECK(Listed({0xFC000000, 0xF8000000}).NextDouble() == 0);
  CHECK(Listed({1}).FurtherQuery() == 0);

  MersenneTwister twister(7), values(7);
  for (int i = 0; i < 1000; ++i) {
    const double high = values.Next() >> 5, low = values.Next() >> 6;
    const double drawn = twister.NextDouble();
    REQUIRE(drawn == (high * 67108864 + low) / 9007199254740992);
    REQUIRE(drawn < 1);
  }
}

TEST_CASE("another library finds each function at its place") {
  MersenneTwister generator(1), same(5489);
  CallSlot<void>(generator, 2, std::uint32_t{5489});
  CHECK(CallSlot<std::uint32_t>(generator, 3) == 3499211612u);
  same.Next();
  CHECK(CallSlot<double>(generator, 4) == same.NextDouble());
  CHECK(std::string(CallSlot<const char*>(generator, 5)) == "MersenneTwister");
  CHECK(CallSlot<std::int32_t>(generator, 6) == 0);
  const std::uint32_t words[] = {0x123, 0x234, 0x345, 0x456};
  CallSlot<void>(generator, 1, &words[0], std::size_t{4});
  CHECK(generator.Next() == 1067595299u);
  // To a generator that somebody else owns, destroying does nothing.
  CHECK(CallSlot<void*>(generator, 0, 0u) == &generator);
  CHECK(CallSlot<std::uint32_t>(generator, 3) == 955945823u);
  auto* const heaped = std::make_unique<MersenneTwister>().release();
  CHECK(CallSlot<void*>(*heaped, 0, 1u) == heaped);
}

TEST_CASE("MD5 gives the published digests") {
  CHECK(Md5Text("") == "d41d8cd98f00b204e9800998ecf8427e");
  CHECK(Md5Text("abc") == "900150983cd24fb0d6963f7d28e17f72");
  CHECK(
      Md5Text("12345678901234567890123456789012345678901234567890123456789012345678901234567890") ==
      "57edf4a22be3c955ac49da2e2107b67a");
}

TEST_CASE("the seed comes from the clock and is never 0") {
  std::vector<std::uint32_t> hashes = {0, 0, 5, 6};
  std::size_t asked = 0;
  CHECK(ClockSeed([&] { return hashes[asked++]; }) == 5);
  CHECK(asked == 3);

  // Of the counter all 8 bytes count, of the milliseconds 4: "12345678" and "abcd", whose digests
  // begin 25d55ad2 and e2fc714c.
  CHECK(HashOfReading(0x3837363534333231, 0x64636261) == 0xD25AD525);
  CHECK(HashOfReading(std::nullopt, 0x64636261) == 0x4C71FCE2);
  // The hash of the clock is that of a reading between two others. Where something came between the
  // readings and they lie too far apart to try all, another time.
  constexpr int kMost = 200'000;
  bool found = false;
  for (int attempt = 0; attempt < 100 && !found; ++attempt) {
    const std::int64_t before = PerformanceCounter().value();
    const std::uint32_t hash = HashOfClock();
    const std::int64_t after = PerformanceCounter().value();
    if (after - before >= kMost) continue;
    for (std::int64_t counter = before; counter <= after && !found; ++counter)
      found = HashOfReading(counter, 0) == hash;
    REQUIRE(found);
  }
  REQUIRE(found);
}

}  // namespace zavrel::tests
