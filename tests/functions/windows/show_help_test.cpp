#include <doctest/doctest.h>

#include "platform/export.h"
#include "platform/windows/ole_owners.h"
#include "support/open_add_in.h"

ZAV_EXPORT std::uint32_t ZavrelShowHelpVB(BSTR name);

namespace zavrel::tests {
namespace {

/// The failure of a call, by its class.
std::u16string FailureOf(std::u16string_view name) {
  BSTR text = OwnedBstr::Wide(name).Release();
  const std::uint32_t number = ZavrelShowHelpVB(text);
  SysFreeString(text);
  const auto failure = Session::Current()->failures().Find(number);
  return failure ? failure->class_name() : std::u16string();
}

TEST_CASE("help: a name that no page can have, and no help beside the add-in") {
  const OpenAddIn add_in;
  CHECK(FailureOf(u"..\\zavmean") == u"VekParameterError");
  for (const std::u16string_view name : {u"zavmean", u"pairs", u""})
    CHECK(FailureOf(name) == u"VekErrorOpeningFile");
}

}  // namespace
}  // namespace zavrel::tests
