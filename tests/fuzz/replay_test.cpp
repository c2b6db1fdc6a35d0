// The fuzz targets over the inputs that earlier runs kept, for every compiler.
#include <doctest/doctest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/bytes.h"
#include "fuzz/target.h"

namespace zavrel::tests {
namespace {

using Input = std::vector<std::uint8_t>;

Input ReadInput(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Inputs one behind the other, each after its size in four bytes (fuzz.py packs them).
void Replay(const FuzzTarget& target, const Input& packed) {
  Bytes bytes(packed);
  while (!bytes.empty()) {
    const std::string_view input = bytes.Part(bytes.Take<std::uint32_t>());
    // On the heap and of exactly this size, so that the sanitizer sees what is read behind it.
    const Input own(input.begin(), input.end());
    target(own);
  }
}

}  // namespace

TEST_CASE("what fuzzing found stays mended, and what it reached holds") {
  for (const FuzzTarget* target : FuzzTarget::all()) {
    const std::filesystem::path corpus =
        std::filesystem::path(ZAVREL_SOURCE_DIR "/tests/fuzz/corpora") / target->name();
    REQUIRE(std::filesystem::is_directory(corpus));
    for (const auto& file : std::filesystem::directory_iterator(corpus)) {
      // At once, for whoever looks for what made the program stop.
      std::fprintf(stderr, "%s\n", file.path().string().c_str());
      if (file.path().extension() == ".packed") {
        Replay(*target, ReadInput(file));
      } else {
        (*target)(ReadInput(file));
      }
    }
  }
}

}  // namespace zavrel::tests
