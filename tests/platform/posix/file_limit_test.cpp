#include <doctest/doctest.h>

#include "platform/swapped_array.h"
#include "support/process_limit.h"

namespace zavrel {
namespace {

TEST_CASE("an array longer than the limit for files is refused, and the process lives") {
  const tests::ProcessLimit limit(RLIMIT_FSIZE, 1 << 20);
  SwapFailure failure{};
  CHECK(SwappedArray::Make((1 << 20) / sizeof(double), failure));
  CHECK_FALSE(SwappedArray::Make((1 << 20) / sizeof(double) + 1, failure));
  CHECK(failure == SwapFailure::kNoSpace);
}

}  // namespace
}  // namespace zavrel
