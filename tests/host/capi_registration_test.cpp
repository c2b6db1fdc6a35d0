// Functions and their names, registered and taken back.
#include <doctest/doctest.h>

#include <vector>

#include "host/capi_caller.h"

namespace zavhost::tests {

TEST_CASE("registration: what it takes, and where it ends") {
  Caller caller;
  const Cell module(u"PLANTED_FAULTS.xll"), sum(u"GoodSum"), type(u"BU"), missing;
  const std::size_t before = caller.engine().functions().size();
  const XLOPER12 id = caller
                          .Register({module, sum, u"BU!", u"AllOfIt", u"cells", 0.0, u"Tests", u"",
                                     missing, u"Sums cells.", u"the cells", u"", missing, missing})
                          .value;
  REQUIRE(id.xltype == xltypeNum);
  REQUIRE(caller.engine().functions().size() == before + 1);
  const RegisteredFunction function = caller.engine().functions().back();
  CHECK(function.name == u"AllOfIt");
  CHECK(function.procedure == u"GoodSum");
  CHECK(function.macro_type == 0);
  CHECK(function.category == u"Tests");
  CHECK(function.help_topic.empty());
  CHECK(function.function_help == u"Sums cells.");
  CHECK(function.argument_helps == std::vector<std::u16string>{u"the cells", u""});
  CHECK(function.is_volatile);
  CHECK(Shown(caller.engine(), "ALLOFIT(A1:A3)") == "6");

  // Twice the same is one function used twice.
  CHECK(caller.Register({module, sum, u"BU!", u"AllOfIt"}).value.val.num == id.val.num);
  CHECK(caller.engine().functions().size() == before + 1);
  CHECK(caller.Shown(xlfUnregister, {&id}) == "TRUE");
  CHECK(Shown(caller.engine(), "AllOfIt(A1:A3)") == "6");
  CHECK(caller.Shown(xlfUnregister, {&id}) == "TRUE");
  CHECK(Shown(caller.engine(), "AllOfIt(A1:A3)") == "#NAME?");
  CHECK(caller.Shown(xlfUnregister, {&id}) == "FALSE");
  caller.expected = {"the name AllOfIt was left behind by its function (name not deleted)"};

  // Letters of any language, digits and four signs make a name.
  CHECK(caller.Register({module, sum, type, u"\\Größe_1.a?"}).value.xltype == xltypeNum);
  const std::u16string longest(255, u'x');
  CHECK(caller.Register({module, sum, type, longest, longest}).value.xltype == xltypeNum);
  const std::vector<Cell> refused[] = {{module, u"NoSuchExport", type},
                                       {module, 60000.0, type},
                                       {module, 70000.0, type},
                                       {u"C:\\other.xll", sum, type},
                                       {module, sum, u"PR"},
                                       {module, sum, missing},
                                       {module, sum, type, u"no name"},
                                       {module, sum, type, u"1st"},
                                       {module, sum, type, longest + u"x"},
                                       {module, sum, type, u"N", longest + u"x"},
                                       {module, sum, type, u"N", u"", 5.0}};
  std::size_t count = 0;
  for (const std::vector<Cell>& arguments : refused) {
    CAPTURE(count);
    const Answer answer = caller.Register(arguments);
    CHECK((answer.code == 0 && answer.value.xltype == xltypeErr));
    CHECK(answer.value.val.err == xlerrValue);
    CHECK(caller.engine().refused_registrations().size() == ++count);
  }
  CHECK(caller.Register({module, sum}).code == xlretInvCount);
}

TEST_CASE("of functions with one name the latest is called, and commands are not") {
  Caller caller;
  const Cell module(u"PLANTED_FAULTS.xll"), missing;
  const auto register_as = [&](const char16_t* procedure, const char16_t* type, double macro_type) {
    return caller.Register({module, procedure, type, u"Same", missing, macro_type});
  };
  const Answer sum = register_as(u"GoodSum", u"BU", 1);
  const Answer integer = register_as(u"GoodInteger", u"JJ", 1);
  const Answer as_volatile = register_as(u"GoodInteger", u"JJ!", 1);
  CHECK(as_volatile.value.val.num != integer.value.val.num);
  register_as(u"GoodBoolean", u"AA", 2);
  CHECK(Shown(caller.engine(), "Same(A3)") == "-3");
  for (const Answer& id : {integer, as_volatile})
    CHECK(caller.Shown(xlfUnregister, {&id.value}) == "TRUE");
  CHECK(Shown(caller.engine(), "Same(A1:A3)") == "6");
  CHECK(caller.Shown(xlfUnregister, {&sum.value}) == "TRUE");
  CHECK(Shown(caller.engine(), "Same(A1:A3)") == "#NAME?");
}

TEST_CASE("a name outlives its function, until it is deleted as that of a hidden one") {
  Caller caller;
  const auto unregister = [&](const Answer& id) {
    CHECK(caller.Shown(xlfUnregister, {&id.value}) == "TRUE");
  };
  const Cell module(u"PLANTED_FAULTS.xll"), sum(u"GoodSum"), type(u"BU"), missing;
  const auto register_as = [&](const char16_t* name, double macro_type) {
    return caller.Register({module, sum, type, name, missing, macro_type});
  };
  for (const char16_t* name : {u"Deleted", u"Left"}) unregister(register_as(name, 1));
  unregister(register_as(u"BackAgain", 1));
  register_as(u"BackAgain", 1);
  for (const char16_t* name : {u"Deleted", u"Left"})
    CHECK(caller.Shown(xlfSetName, {Text(name)}) == "TRUE");  // to no effect
  const Answer hidden = register_as(u"Deleted", 0);
  CHECK(caller.Shown(xlfSetName, {Text(u"deleted")}) == "TRUE");
  CHECK(Shown(caller.engine(), "Deleted(A1:A3)") == "#NAME?");
  unregister(hidden);
  CHECK(caller.Call(xlfSetName, {Text(u"Left"), Number(1)}).code == xlretFailed);
  CHECK(caller.Call(xlfSetName, {Number(1)}).code == xlretInvXloper);
  caller.expected = {"the name Left was left behind by its function (name not deleted)"};
}

}  // namespace zavhost::tests
