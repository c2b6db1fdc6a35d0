// A macro's progress, without a screen: nothing of it may disturb the macro.
#include <doctest/doctest.h>

#include <cmath>

#include "platform/export.h"
#include "platform/windows/ole_owners.h"
#include "support/open_add_in.h"

namespace zavrel {
ZAV_EXPORT std::uint32_t ZavrelBeginProgressVB(BSTR title);
ZAV_EXPORT std::int32_t ZavrelStepProgressVB(BSTR text, double share);
ZAV_EXPORT std::uint32_t ZavrelEndProgressVB();
}  // namespace zavrel

namespace zavrel::tests {

TEST_CASE("a macro begins, steps and ends in any order, and may leave the end out") {
  BSTR text = SysAllocString(L"Step");
  CHECK(ZavrelStepProgressVB(text, 0.5) == 0);  // no session
  {
    OpenAddIn add_in;
    CHECK(ZavrelStepProgressVB(text, 0.5) == 0);
    CHECK(ZavrelEndProgressVB() == 0);
    for (int i = 0; i < 3; ++i) {
      CHECK(ZavrelBeginProgressVB(text) == 0);
      for (const double share : {0.0, 0.5, 2.0, -1.0, std::nan("")})
        CHECK(ZavrelStepProgressVB(text, share) == 0);
      CHECK(ZavrelStepProgressVB(nullptr, 1) == 0);
    }
  }  // the session ends what was not ended
  CHECK(ZavrelEndProgressVB() == 0);
  SysFreeString(text);
}

}  // namespace zavrel::tests
