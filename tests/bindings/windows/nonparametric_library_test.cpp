// Binding the companions of nonparametric tests where they are missing: this program has none, for
// it has no version to look for.
#include "bindings/nonparametric_library.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "excel/wide_text.h"
#include "platform/message_box.h"
#include "platform/utf.h"

namespace zavrel::tests {

TEST_CASE("missing companions are told of once, and a calculation meanwhile gets no functions") {
  std::vector<std::string> shown;
  SetMessageBoxHandler([&](const std::u16string& title, const std::u16string& text) {
    CHECK(NonparametricCompanions() == nullptr);
    shown.push_back(Utf8FromUtf16(title) + ": " + Utf8FromUtf16(text));
  });
  for (int round = 0; round < 2; ++round) CHECK(NonparametricCompanions() == nullptr);
  SetMessageBoxHandler({});
  REQUIRE(shown.size() == 2);
  CHECK(shown[0].starts_with("NonparametricTestsLoadDll: Could not load "));
  CHECK(shown[0].ends_with("_x64.DLL."));
  CHECK(shown[0].find("\\ZavrelFuncs Extensions\\NonparametricTests") != std::string::npos);
  CHECK(shown[1].starts_with("EUtilityLibraryLoadDll: Could not load "));
}

}  // namespace zavrel::tests
