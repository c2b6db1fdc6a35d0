// What a macro arranges for later calls, and the texts that stand for it.
#include "macros/macro_handshakes.h"

#include <doctest/doctest.h>

#include <cstdio>
#include <limits>
#include <set>

#include "data/category_name.h"
#include "support/fake_excel.h"

namespace zavrel::tests {

TEST_CASE("an address text is a whole number of 64 bits and nothing else") {
  CHECK(AddressFromText(nullptr) == 0);
  for (const char* zero : {"", "0", "-0", "000"}) CHECK(AddressFromText(zero) == 0);
  CHECK(AddressFromText("12345678901234") == 12345678901234);
  CHECK(AddressFromText("0042") == 42);
  CHECK(AddressFromText("-1") == std::numeric_limits<std::uint64_t>::max());
  CHECK(AddressFromText("9223372036854775807") == std::numeric_limits<std::int64_t>::max());
  CHECK(AddressFromText("-9223372036854775808") == std::uint64_t{1} << 63);
  for (const char* malformed :
       {" 12", "12 ", "12x", "x", "-", "+12", "--1", "1.0", "1e3", "0x10", "12\n", "\t",
        "9223372036854775808", "-9223372036854775809", "99999999999999999999999999999999"}) {
    CAPTURE(malformed);
    CHECK_FALSE(AddressFromText(malformed));
  }
  for (const std::uint64_t address : {std::uint64_t{0}, std::uint64_t{0x7FF612345678},
                                      std::numeric_limits<std::uint64_t>::max()}) {
    CHECK(AddressFromText(TextOfAddress(address).c_str()) == address);
  }
}

TEST_CASE("the latest addresses count, and issuing one again makes it the latest") {
  MacroHandshakes handshakes;
  const std::uint64_t most = MacroHandshakes::kRemembered;
  CHECK_FALSE(handshakes.HasIssued(8));
  for (std::uint64_t i = 1; i <= most; ++i) handshakes.Issue(8 * i);
  CHECK((handshakes.HasIssued(8) && handshakes.HasIssued(16)));
  handshakes.Issue(8);
  handshakes.Issue(8);
  handshakes.Issue(8 * (most + 1));
  CHECK((handshakes.HasIssued(8) && handshakes.HasIssued(8 * most)));
  CHECK_FALSE(handshakes.HasIssued(16));
  CHECK_FALSE(handshakes.HasIssued(0));
  // Issued three times, 8 is good for as many calls.
  for (int call = 1; call <= 3; ++call) {
    CHECK(handshakes.IssuedAddress("8") == 8);
    handshakes.UseUp(8);
  }
  CHECK_FALSE(handshakes.IssuedAddress("8"));
  handshakes.UseUp(8);
  handshakes.UseUp(0);
}

TEST_CASE("entries are found by ids of their own, the latest of them") {
  MacroHandshakes handshakes;
  std::set<std::string> ids;
  const std::string first = handshakes.Enter(PendingCellValues{NumericElements{2.5}, 8, 16});
  int time = 0;
  int ticks = 0;
  long long performance = 0;
  int counter = 0;
  int length = 0;
  // NOLINTNEXTLINE(cert-err34-c): numbers of our own, which fit
  REQUIRE(std::sscanf(first.c_str(), "Time=%d, TickCount=%d, PerfCounter=%lld, counter=%d%n", &time,
                      &ticks, &performance, &counter, &length) == 4);
  CHECK(length == static_cast<int>(first.size()));
  CHECK((time > 1'000'000'000 && performance > 0 && counter == 1));

  const auto* entry = handshakes.Find<PendingCellValues>(first);
  REQUIRE(entry != nullptr);
  CHECK((entry->values == 8 && entry->indices == 16));
  CHECK(std::get<NumericElements>(entry->elements).for_non_numbers == 2.5);
  CHECK(handshakes.Find<PendingCellValues>(first.substr(1)) == nullptr);
  CHECK(handshakes.Find<PendingCellValues>("") == nullptr);

  for (std::size_t i = 0; i < MacroHandshakes::kRemembered; ++i)
    ids.insert(handshakes.Enter(PendingCellValues{}));
  CHECK(ids.size() == MacroHandshakes::kRemembered);
  CHECK(handshakes.Find<PendingCellValues>(first) == nullptr);
  for (const std::string& id : ids) {
    REQUIRE(handshakes.Find<PendingCellValues>(id) != nullptr);
    CHECK(handshakes.Take<PendingCellValues>(id.c_str()).has_value());
    REQUIRE(handshakes.Find<PendingCellValues>(id) == nullptr);
    CHECK_FALSE(handshakes.Take<PendingCellValues>(id.c_str()).has_value());
  }
}

TEST_CASE("a cell's category name") {
  FakeExcel excel;
  excel.texts_of_numbers = {{2.5, u"2,5"}, {7, u"7"}};
  const auto name = [](const Cell& cell) {
    const Argument value(cell);
    return CategoryNameOf(SingleValueOf(*static_cast<const XLOPER12*>(value)));
  };
  CHECK(*name(u" North\n") == u" North\n");
  CHECK(*name(2.5) == u"2,5");
  CHECK(*name(true) == u"WAHR");
  CHECK(*CategoryNameOf({.tag = CellTag::kInteger, .code = 7}) == u"7");
  for (const Cell& nameless : {Cell(), Cell(ErrorCell{xlerrNA}), Cell(u"")})
    CHECK(*name(nameless) == u"");
  CHECK(*CategoryNameOf({}) == u"");
  CHECK_FALSE(name(3.5).ok());  // the host has no text for it

  excel.text_code = xlretUncalced;
  CHECK(name(2.5).failure().uncalculated());
  CHECK(*name(u"text") == u"text");
  excel.text_code = xlretAbort;
  CHECK(name(true).failure().uncalculated());
}

}  // namespace zavrel::tests
