#include "host/capi/crash_line.h"

#include <doctest/doctest.h>

namespace zavhost::tests {

TEST_CASE("the line of a crash says where, if a formula was calculated, and why") {
  CrashLine outside{Place{}};
  outside.Add("reading address ");
  outside.AddAddress(0x7F00DEADBEEF);
  CHECK(outside.End() == "ZavHost: the add-in crashed (reading address 0x7F00DEADBEEF)\n");
  CrashLine within({.formula = "=F(A1)", .cell = "Sheet1!B2"});
  within.AddAddress(0);
  CHECK(within.End() == "ZavHost: Sheet1!B2: =F(A1): the add-in crashed (0x0)\n");
}

TEST_CASE("a formula too long for the line is cut") {
  CrashLine line({.formula = std::string(8000, 'x'), .cell = "Sheet1!B2"});
  line.Add("abort");
  const std::string_view text = line.End();
  CHECK(text.size() == 4096);
  CHECK(text.ends_with("x)\n"));
}

}  // namespace zavhost::tests
