#pragma once
// Everything that runs on the instructions that were chosen for the processor, on all that it has.

#include <doctest/doctest.h>
#include <hwy/highway.h>

#include <cstdint>
#include <string>

namespace zavrel::tests {

template <class Body>
void EachTarget(Body body) {
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    INFO("instructions: ", std::string(hwy::TargetName(target)));
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(target);
    body();
    hwy::SetSupportedTargetsForTest(0);
  }
  hwy::GetChosenTarget().DeInit();
}

}  // namespace zavrel::tests
