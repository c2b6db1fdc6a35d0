#include <doctest/doctest.h>

#include <stdexcept>
#include <string>

#include "services/progress_dialog.h"

namespace zavrel::services {
namespace {

TEST_CASE("work goes on without a window, and returns and throws through the dialog") {
  const std::string result = WithProgress(nullptr, u"title", [](Progress& progress) {
    progress.Step(u"first", 0.5);
    progress.Advance(0.75);
    CHECK_FALSE(progress.cancelled());
    CHECK_FALSE(progress.stop_token().stop_requested());
    return std::string("done");
  });
  CHECK(result == "done");
  CHECK_THROWS_AS(WithProgress(nullptr, u"title",
                               [](Progress& progress) {
                                 progress.Step(u"first", 0);
                                 throw std::runtime_error("lost");
                               }),
                  std::runtime_error);
}

}  // namespace
}  // namespace zavrel::services
