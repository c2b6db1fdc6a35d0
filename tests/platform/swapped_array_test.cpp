#include "platform/swapped_array.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>
#include <utility>

#include "platform/child_process.h"
#include "platform/module.h"
#include "support/run_program.h"

namespace zavrel {
namespace {

using tests::EnvironmentVariable;
namespace fs = std::filesystem;

/// A temporary folder of the test's own, and of the programs that it starts.
class OwnFolder {
 public:
  explicit OwnFolder(const char* name)
      : folder_(fs::temp_directory_path() / name), variable_(tests::kTemporaryFolder, Fresh()) {}
  ~OwnFolder() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  const fs::path& path() const { return folder_; }
  bool empty() const { return fs::is_empty(folder_); }

 private:
  std::string Fresh() const {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    return folder_.string();
  }

  fs::path folder_;
  EnvironmentVariable variable_;
};

std::optional<SwapFailure> FailureOf(std::size_t count) {
  SwapFailure failure{};
  return SwappedArray::Make(count, failure) ? std::nullopt : std::optional(failure);
}

TEST_CASE("an array on disk holds what is written, and leaves nothing behind") {
  const OwnFolder folder("zavrel swapped array");
  constexpr std::size_t kCount = 300'000;  // no multiple of a page or of a piece of zeros
  SwapFailure failure{};
  auto made = SwappedArray::Make(kCount, failure);
  REQUIRE(made);
  CHECK(made->elements().size() == kCount);
  CHECK(std::ranges::count(made->elements(), 0.0) == kCount);
  for (std::size_t i = 0; i < kCount; ++i) made->elements()[i] = static_cast<double>(i);
  {
    auto other = SwappedArray::Make(1, failure);
    REQUIRE(other);
    *other = *std::move(made);
    CHECK(other->elements().size() == kCount);
    CHECK(std::ranges::is_sorted(other->elements()));
    CHECK(other->elements().back() == kCount - 1);
    for (const auto& entry : fs::directory_iterator(folder.path()))
      CHECK_FALSE(std::ifstream(entry.path()).is_open());
  }
  made = SwappedArray::Make(0, failure);
  CHECK(made);
  made.reset();
  CHECK(folder.empty());
}

TEST_CASE("the array of another program, which is ended" * doctest::skip()) {
  SwapFailure failure{};
  const auto array = SwappedArray::Make(1'000'000, failure);
  REQUIRE(array);
  std::ofstream(fs::temp_directory_path() / "made").put('1');
  std::this_thread::sleep_for(std::chrono::minutes(1));
}

TEST_CASE("a program that is ended leaves no file behind") {
  const OwnFolder folder("zavrel swapped array ended");
  auto program = ChildProcess::Start({HostExecutablePath(),
                                      {"--no-skip", "-tc=the array of another program*"},
                                      folder.path() / "output",
                                      folder.path() / "errors"});
  REQUIRE(program);
  for (int i = 0; i < 1000 && !fs::exists(folder.path() / "made"); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  CHECK(fs::remove(folder.path() / "made"));
  program->Kill();
  for (const char* const file : {"output", "errors"}) fs::remove(folder.path() / file);
  CHECK(folder.empty());
}

TEST_CASE("an array that cannot be on disk is refused with the reason") {
  const OwnFolder folder("zavrel swapped array refused");
  CHECK(FailureOf(std::numeric_limits<std::size_t>::max() / 8) == SwapFailure::kNoAddresses);
  CHECK(FailureOf(fs::space(folder.path()).free / sizeof(double) + 1) == SwapFailure::kNoSpace);
  {
    const EnvironmentVariable no_folder(tests::kTemporaryFolder, (folder.path() / "no").string());
    const EnvironmentVariable no_other("TEMP", (folder.path() / "no").string());
    const EnvironmentVariable no_home("HOME", "");
    const EnvironmentVariable no_profile("USERPROFILE", "");
    CHECK(FailureOf(1) == SwapFailure::kNoFile);
  }
  CHECK(FailureOf(1) == std::nullopt);
  CHECK(folder.empty());
}

TEST_CASE("the memory budget is a share of the machine's memory unless it is set") {
  CHECK_FALSE(ExceedsMemoryBudget(std::size_t{64} << 20));
  CHECK(ExceedsMemoryBudget(std::size_t{1} << 46));
  {
    const MemoryBudget budget(1000);
    CHECK_FALSE(ExceedsMemoryBudget(1000));
    CHECK(ExceedsMemoryBudget(1001));
  }
  CHECK_FALSE(ExceedsMemoryBudget(1001));
}

}  // namespace
}  // namespace zavrel
