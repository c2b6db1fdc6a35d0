// Items as rows of texts and back; rows that are damaged.
#include "services/stored_items.h"

#include <doctest/doctest.h>

#include <limits>

namespace zavrel::services {
namespace {

std::u16string Repeated(std::size_t count) {
  std::u16string text;
  for (std::size_t i = 0; i < count; ++i) text += static_cast<char16_t>(i);  // surrogates, zeros
  return text;
}

StoredItems Samples() {
  return {{u"", u""},  // dropped below: no item has no name
          {u"text", u"naïve \U0001F600 \0 end"},
          {u"long", Repeated(300'000)},
          {u"number", -0.1},
          {u"infinite", std::numeric_limits<double>::infinity()},
          {u"matrix", DoubleMatrix{{1, 2, 3}, {4, 5, 1.01e300}}},
          {u"no matrix", DoubleMatrix{}},
          {u"bytes", Bytes(kMostItemBytes, std::byte{0xA5})},
          {u"no bytes", Bytes{}}};
}

}  // namespace

TEST_CASE("what is stored comes back, in rows that a cell has room for") {
  StoredItems items = Samples();
  items.erase(u"");
  const std::vector<std::u16string> rows = RowsOf(items);
  for (const std::u16string& row : rows) REQUIRE((!row.empty() && row.size() <= 8'203));
  CHECK(ItemsIn(rows) == items);
  CHECK(ItemsIn(RowsOf({})) == StoredItems{});
}

TEST_CASE("what is too large, or has no name, is not stored") {
  CHECK(CanBeStored(u"a", Bytes(kMostItemBytes)));
  CHECK_FALSE(CanBeStored(u"a", Bytes(kMostItemBytes + 1)));
  CHECK_FALSE(CanBeStored(u"a", std::u16string(kMostItemBytes / 2 + 1, u'x')));
  CHECK_FALSE(CanBeStored(u"a", DoubleMatrix(2, std::vector<double>(kMostItemBytes / 16 + 1))));
  CHECK_FALSE(CanBeStored(u"", 1.0));
  CHECK_FALSE(CanBeStored(std::u16string(kMostNameLength + 1, u'n'), 1.0));
}

TEST_CASE("cut or changed rows are no items, or others, and never more than they hold") {
  const std::vector<std::u16string> rows =
      RowsOf({{u"a", u"text"}, {u"b", DoubleMatrix{{1, 2}, {3, 4}}}, {u"c", 1.0}});
  REQUIRE(rows.size() == 1);
  const std::uint64_t checksum = ChecksumOf(rows);
  for (std::size_t i = 0; i < rows[0].size(); ++i) {
    for (const char16_t unit : u"0f?") {
      std::vector<std::u16string> changed = rows;
      changed[0][i] = unit;
      if (changed == rows) continue;
      CHECK(ChecksumOf(changed) != checksum);
      (void)ItemsIn(changed);  // the sanitizers watch
    }
    CHECK_FALSE((i % 2 == 1 && ItemsIn(std::vector{rows[0].substr(0, i)})));
  }
}

TEST_CASE("the heading says where the rows are, and nothing else is one") {
  const StorageHeading heading{17, 250, 0xFEDCBA9876543210};
  CHECK(HeadingIn(heading.Text()) == heading);
  for (const char16_t* text :
       {u"", u"ZavrelData 1", u"ZavrelData 2 2 3 ff", u"ZavrelData 1 2 3 ff ",
        u"ZavrelData 1 1 3 ff", u"ZavrelData 1 2 -3 ff", u"ZavrelData 1 2 4294967295 ff",
        u"ZavrelData 1 2 3 fg", u"ZavrelData 1 1000000 1 ff", u"My data 1 2 3 ff",
        u"ZavrelData 1 2 3 1ffffffffffffffff"}) {
    CHECK_FALSE(HeadingIn(text));
  }
}

}  // namespace zavrel::services
