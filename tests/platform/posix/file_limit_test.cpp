#include <doctest/doctest.h>
#include <sys/resource.h>

#include "platform/swapped_array.h"

namespace zavrel {
namespace {

/// While it lives, files of this process are at most so long, and the system ends the process
/// where it tries to write more.
class FileLimit {
 public:
  explicit FileLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;

 private:
  rlimit before_{};
};

TEST_CASE("an array longer than the limit for files is refused, and the process lives") {
  const FileLimit limit(1 << 20);
  SwapFailure failure{};
  CHECK(SwappedArray::Make((1 << 20) / sizeof(double), failure));
  CHECK_FALSE(SwappedArray::Make((1 << 20) / sizeof(double) + 1, failure));
  CHECK(failure == SwapFailure::kNoSpace);
}

}  // namespace
}  // namespace zavrel
