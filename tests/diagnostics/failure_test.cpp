#include <doctest/doctest.h>

#include <limits>
#include <thread>
#include <type_traits>

#include "diagnostics/failure_store.h"
#include "diagnostics/vek_exception.h"

namespace zavrel {
namespace {

VekException Numbered(std::int64_t number) {
  return VekInvalidP("FailureTest::Numbered", 2523, {number, 0.5, u"five"});
}

TEST_CASE("members are caught by every kind above them and keep their own name") {
  const auto caught_as = []<typename Kind>(std::type_identity<Kind>) {
    try {
      throw VekExcelWorksheetProtectedCellHidden("Sheet::Write", 7, {std::int64_t{1}});
    } catch (const Kind& caught) {
      return VekException(caught);
    }
  };
  for (const VekException& caught :
       {caught_as(std::type_identity<VekExcelWorksheetProtectedCellHidden>()),
        caught_as(std::type_identity<VekExcelWorksheetProtected>()),
        caught_as(std::type_identity<VekExcelError>()),
        caught_as(std::type_identity<VekException>())}) {
    CHECK(caught.class_name() == u"VekExcelWorksheetProtectedCellHidden");
    CHECK(caught.place() == "Sheet::Write");
    CHECK(caught.message_id() == 7);
    CHECK(caught.arguments() == MessageArguments{std::int64_t{1}});
  }
  CHECK(VekOutOfMemory("a").message_id() == -1);
  CHECK(VekException().class_name().empty());
  CHECK(VekException("a").class_name() == u"VekException");
}

TEST_CASE("failure 101 stands where failure 1 stood") {
  FailureStore store;
  CHECK_FALSE(store.Find(0));
  CHECK_FALSE(store.Find(1));
  for (std::uint32_t number = 1; number <= 100; ++number)
    CHECK(store.Record(Numbered(number)) == number);
  CHECK(store.Find(1));
  CHECK(store.Record(VekNoConvergence("FailureTest")) == 101);
  CHECK_FALSE(store.Find(1));
  CHECK(store.Find(101)->class_name() == u"VekNoConvergence");
  const auto second = store.Find(2);
  REQUIRE(second);
  CHECK(second->class_name() == u"VekInvalidP");
  CHECK(second->place() == "FailureTest::Numbered");
  CHECK(second->message_id() == 2523);
  CHECK(second->arguments() == MessageArguments{std::int64_t{2}, 0.5, u"five"});
  CHECK_FALSE(store.Find(102));
  CHECK_FALSE(store.Find(201));
}

TEST_CASE("a number cut to 16 bits finds its failure") {
  FailureStore store(0x2FFFA);
  for (std::uint32_t number = 0x2FFFB; number < 0x30005; ++number) store.Record(Numbered(number));
  for (const std::uint32_t number : {0x2FFFBu, 0x2FFFFu, 0x30001u, 0x30004u}) {
    REQUIRE(store.Find(number & 0xFFFF));
    CHECK(store.Find(number & 0xFFFF)->arguments()[0] == MessageArgument(std::int64_t{number}));
  }
  CHECK_FALSE(store.Find(0));
  CHECK_FALSE(store.Find(5));
  CHECK_FALSE(store.Find(0x1FFFB));
}

TEST_CASE("the number after the last is 1") {
  constexpr auto kLast = std::numeric_limits<std::uint32_t>::max();
  FailureStore store(kLast - 1);
  CHECK(store.Record(Numbered(1)) == kLast);
  CHECK(store.Record(Numbered(2)) == 1);
  CHECK(store.Record(Numbered(3)) == 2);
  CHECK(store.Find(kLast)->arguments()[0] == MessageArgument(std::int64_t{1}));
  CHECK_FALSE(store.Find(0));
}

TEST_CASE("threads record and look up at once") {
  FailureStore store;
  const auto work = [&] {
    for (std::int64_t i = 0; i < 500; ++i) {
      const auto failure = store.Find(store.Record(Numbered(i)));
      // Another thread may have come round the ring in between; what is found is whole.
      if (failure && failure->arguments().size() != 3) FAIL("half a failure");
    }
  };
  std::thread one(work);
  std::thread two(work);
  one.join();
  two.join();
  CHECK(store.Find(1000));
  CHECK_FALSE(store.Find(1001));
}

}  // namespace
}  // namespace zavrel
