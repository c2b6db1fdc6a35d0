// The component that LibreOffice loads: a factory, and the object whose methods are the functions.
// One dispatcher serves every method, which it finds by name, so no function has code of its own.

#include <algorithm>
#include <atomic>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "calc/add_in.h"
#include "calc/any_value.h"
#include "calc/document.h"
#include "calc/formula_entry.h"
#include "calc/help.h"
#include "calc/uno.h"
#include "host/capi/callback.h"

namespace zavcalc {
namespace {

using zavhost::ErrorCode;
using zavhost::Operand;
using zavhost::Value;

constexpr std::u16string_view kInterface = u"com.sun.star.uno.XInterface";
constexpr std::u16string_view kTypeProvider = u"com.sun.star.lang.XTypeProvider";
constexpr std::u16string_view kServiceInfo = u"com.sun.star.lang.XServiceInfo";
constexpr std::u16string_view kFactory = u"com.sun.star.lang.XSingleComponentFactory";
constexpr std::u16string_view kFunctions = u"org.zavrel.calc.XFunctions";

constexpr std::u16string_view kJob = u"com.sun.star.task.XJob";
constexpr std::u16string_view kJobExecutor = u"com.sun.star.task.XJobExecutor";
constexpr std::u16string_view kCallback = u"com.sun.star.awt.XCallback";
constexpr std::u16string_view kListener = u"com.sun.star.util.XModifyListener";

constexpr std::u16string_view kFactoryInterfaces[] = {kInterface, kTypeProvider, kServiceInfo,
                                                      kFactory};
constexpr std::u16string_view kFunctionInterfaces[] = {kInterface, kTypeProvider, kServiceInfo,
                                                       kFunctions};
constexpr std::u16string_view kJobInterfaces[] = {kInterface, kTypeProvider, kServiceInfo, kJob};
constexpr std::u16string_view kHelpInterfaces[] = {kInterface, kTypeProvider, kServiceInfo,
                                                   kJobExecutor};
constexpr std::u16string_view kListenerInterfaces[] = {kInterface, kListener};
constexpr std::u16string_view kCallbackInterfaces[] = {kInterface, kCallback};

/// What LibreOffice creates by name.
struct Implementation {
  std::u16string_view name;
  std::u16string_view service;
  std::span<const std::u16string_view> interfaces;
};
constexpr Implementation kImplementations[] = {
    // The service is the prefix with which Excel stores the functions of an add-in.
    {u"org.zavrel.calc.Functions", u"_xll", kFunctionInterfaces},
    {u"org.zavrel.calc.Names", u"org.zavrel.calc.Names", kJobInterfaces},
    {u"org.zavrel.calc.Help", u"org.zavrel.calc.Help", kHelpInterfaces},
};

/// An object of the component: what it implements and how many hold it.
struct Object {
  uno_Interface base;  // the first member: the address of both is the same
  std::atomic<int> users;
  std::span<const std::u16string_view> interfaces;
  const Implementation* implementation = nullptr;  // of an object, or that a factory creates
  uno_Interface* document = nullptr;  // that a listener listens to, and that outlives it
  /// The office's context, of what was created in it; the document, of a callback.
  UnoReference held;
};

Object& ObjectOf(uno_Interface* base) { return *reinterpret_cast<Object*>(base); }

void SAL_CALL Acquire(uno_Interface* base) { ++ObjectOf(base).users; }
void SAL_CALL Release(uno_Interface* base) {
  Object& object = ObjectOf(base);
  // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): an object belongs to all who hold it
  if (--object.users == 0) delete &object;
}
void SAL_CALL Dispatch(uno_Interface* base, const typelib_TypeDescription* member, void* result,
                       void** arguments, uno_Any** exception);

/// A new object with one user.
uno_Interface* NewObject(std::span<const std::u16string_view> interfaces,
                         const Implementation* implementation, uno_Interface* document = nullptr) {
  return &(new Object{{&Acquire, &Release, &Dispatch}, 1, interfaces, implementation, document, {}})
              ->base;
}

// The methods of every object.

void QueryInterface(Object& object, const void* wanted, uno_Any& result) {
  const auto* type = *static_cast<const TypeReference*>(wanted);
  const std::u16string_view name = TextOf(type->pTypeName);
  if (std::ranges::find(object.interfaces, name) == object.interfaces.end())
    return ConstructVoid(result);
  ConstructInterface(result, &object.base, InterfaceType(name));
}

uno_Sequence* TypesOf(const Object& object) {
  std::vector<TypeReference> types;
  for (const std::u16string_view name : object.interfaces) types.push_back(InterfaceType(name));
  return NewSequence(SequenceType(u"[]type"), types.data(), types.size());
}

uno_Sequence* ServiceNames(const Implementation& implementation) {
  rtl_uString* name = NewText(implementation.service);
  uno_Sequence* names = NewSequence(SequenceType(u"[]string"), &name, 1);
  rtl_uString_release(name);
  return names;
}

// The documents, by the objects that Calc passes for them.

std::map<uno_Interface*, Document>& Documents() {
  static auto& documents = *new std::map<uno_Interface*, Document>;
  return documents;
}

/// Listens to a document; `context` is the office's.
Document& DocumentOf(uno_Interface* model, const UnoReference& context) {
  auto& documents = Documents();
  if (const auto known = documents.find(model); known != documents.end()) return known->second;
  const UnoReference listener =
      UnoReference::Owning(NewObject(kListenerInterfaces, nullptr, model));
  uno_Interface* address = listener.get();
  ObjectOf(address).held = UnoReference::Sharing(context.get());
  const UnoReference shared = UnoReference::Sharing(model);
  shared.As(u"com.sun.star.util.XModifyBroadcaster")
      .Call(u"com.sun.star.util.XModifyBroadcaster::addModifyListener", nullptr, {&address});
  return documents.try_emplace(model, UnoReference::Sharing(model)).first->second;
}

/// While formulas are entered, the document changes, but that is no reason to enter them again.
bool is_entering = false;

/// What is called later enters the document's doubtful formulas again, since a change may have made
/// the doubt needless. They cannot be entered while the change is still going on.
void EnterErrorsLater(const UnoReference& context, uno_Interface* model) {
  const UnoReference callback = UnoReference::Owning(NewObject(kCallbackInterfaces, nullptr));
  uno_Interface* address = callback.get();
  ObjectOf(address).held = UnoReference::Sharing(model);
  uno_Any nothing;
  ConstructVoid(nothing);
  NewService(context, u"com.sun.star.awt.AsyncCallback")
      .As(u"com.sun.star.awt.XRequestCallback")
      .Call(u"com.sun.star.awt.XRequestCallback::addCallback", nullptr, {&address, &nothing});
  uno_any_destruct(&nothing, nullptr);
}

/// Nobody waits for an answer: where something fails, the errors stay.
void AnswerCallback(const Object& callback) {
  is_entering = true;
  try {
    EnterErrors(callback.held.As(u"com.sun.star.beans.XPropertySet"));
  } catch (...) {
  }
  is_entering = false;
}

void AnswerListener(const Object& listener, std::u16string_view method) {
  const auto document = Documents().find(listener.document);
  if (document == Documents().end()) return;
  if (method == u"disposing") {
    Documents().erase(document);
  } else if (method == u"modified") {
    document->second.Forget();
    if (is_entering || !document->second.TakeDoubt()) return;
    try {
      EnterErrorsLater(listener.held, listener.document);
    } catch (...) {  // the errors stay
    }
  }
}

// The functions.

/// The first argument is the document, which formulas do not show; then come theirs.
Operand CallFunction(const UnoReference& context, std::u16string_view name,
                     const typelib_TypeDescription* member, void** arguments) {
  static AddIn& add_in = *new AddIn;  // for the life of the office: its end has no good order
  const auto* method = reinterpret_cast<const typelib_InterfaceMethodTypeDescription*>(member);
  std::vector<Operand> operands;
  for (sal_Int32 i = 1; i < method->nParams; ++i)
    operands.push_back(ToOperand(*static_cast<const uno_Any*>(arguments[i])));
  auto* model = *static_cast<uno_Interface**>(arguments[0]);
  if (model == nullptr) return Value(ErrorCode::kValue);
  Document& document = DocumentOf(model, context);
  const auto doubtful = [&] {
    document.SetInDoubt();
    return Value(ErrorCode::kValue);
  };
  const auto meanings = document.Resolve(name, operands);
  if (meanings.empty()) return doubtful();
  std::optional<FilledShape> filled;
  if (AddIn::FillsRange(name)) filled = document.ShapeFilledBy(name, operands);
  Operand result = add_in.Call(name, meanings.front(), filled);
  for (const auto& other : std::span(meanings).subspan(1)) {
    if (!IsSame(add_in.Call(name, other, filled), result)) return doubtful();
  }
  return result;
}

void AnswerFunction(const UnoReference& context, std::u16string_view name,
                    const typelib_TypeDescription* member, void** arguments, uno_Any& result) {
  // An exception must not reach the office, which is not built with this compiler's library.
  try {
    ConstructResult(result, CallFunction(context, name, member, arguments));
  } catch (...) {
    ConstructResult(result, Value(ErrorCode::kValue));
  }
}

// The job that LibreOffice starts when it has opened a document.

struct NamedValue {  // com.sun.star.beans.NamedValue
  rtl_uString* name;
  uno_Any value;
};

const uno_Any* ValueNamed(uno_Sequence* values, std::u16string_view name) {
  for (const NamedValue& value : ElementsOf<NamedValue>(values)) {
    if (TextOf(value.name) == name) return &value.value;
  }
  return nullptr;
}

void RunJob(uno_Sequence* arguments) {
  const uno_Any* environment = ValueNamed(arguments, u"Environment");
  if (environment == nullptr || environment->pType->eTypeClass != typelib_TypeClass_SEQUENCE)
    return;
  const uno_Any* model =
      ValueNamed(*static_cast<uno_Sequence* const*>(environment->pData), u"Model");
  if (model == nullptr || model->pType->eTypeClass != typelib_TypeClass_INTERFACE) return;
  try {
    EnterPlainNames(UnoReference::Sharing(*static_cast<uno_Interface* const*>(model->pData)));
  } catch (...) {  // no spreadsheet, or one that cannot be changed: it stays as it is
  }
}

uno_Interface* Create(const Implementation& implementation, uno_Interface* context) {
  uno_Interface* created = NewObject(implementation.interfaces, &implementation);
  ObjectOf(created).held = UnoReference::Sharing(context);
  return created;
}

/// Nobody waits for the page, and nobody can be told that it did not open.
void ShowHelp(const Object& object) {
  try {
    OpenHelp(object.held);
  } catch (...) {
  }
}

/// The methods of the factory, the job and the help, and those by which LibreOffice learns what an
/// implementation is.
void AnswerImplementation(const Object& object, std::u16string_view method, void* result,
                          void** arguments) {
  const Implementation& implementation = *object.implementation;
  if (method == u"getImplementationName") {
    *static_cast<rtl_uString**>(result) = NewText(implementation.name);
  } else if (method == u"supportsService") {
    *static_cast<sal_Bool*>(result) =
        TextOf(*static_cast<rtl_uString**>(arguments[0])) == implementation.service ? 1 : 0;
  } else if (method == u"getSupportedServiceNames") {
    *static_cast<uno_Sequence**>(result) = ServiceNames(implementation);
  } else if (method.starts_with(u"createInstanceWith")) {  // ...ArgumentsAndContext, ...Context
    void* context = arguments[method == u"createInstanceWithContext" ? 0 : 1];
    *static_cast<uno_Interface**>(result) =
        Create(implementation, *static_cast<uno_Interface**>(context));
  } else if (method == u"execute") {
    RunJob(*static_cast<uno_Sequence**>(arguments[0]));
    ConstructVoid(*static_cast<uno_Any*>(result));
  } else if (method == u"trigger") {
    ShowHelp(object);
  }
}

void SAL_CALL Dispatch(uno_Interface* base, const typelib_TypeDescription* member, void* result,
                       void** arguments, uno_Any** exception) {
  *exception = nullptr;
  Object& object = ObjectOf(base);
  const std::u16string_view name = TextOf(member->pTypeName);
  const std::size_t colons = name.rfind(u"::");
  const std::u16string_view method = name.substr(colons + 2);
  if (name.substr(0, colons) == kFunctions) {
    AnswerFunction(object.held, method, member, arguments, *static_cast<uno_Any*>(result));
  } else if (method == u"queryInterface") {
    QueryInterface(object, arguments[0], *static_cast<uno_Any*>(result));
  } else if (method == u"getTypes") {
    *static_cast<uno_Sequence**>(result) = TypesOf(object);
  } else if (method == u"getImplementationId") {
    *static_cast<uno_Sequence**>(result) = NewSequence(SequenceType(u"[]byte"), nullptr, 0);
  } else if (object.implementation != nullptr) {
    AnswerImplementation(object, method, result, arguments);
  } else if (method == u"notify") {
    AnswerCallback(object);
  } else {
    AnswerListener(object, method);
  }
}

}  // namespace
}  // namespace zavcalc

/// LibreOffice asks for the factory of an implementation; the caller owns it.
ZAVHOST_EXPORT void* component_getFactory(const char* name, void*, void*) {
  for (const zavcalc::Implementation& implementation : zavcalc::kImplementations) {
    if (std::ranges::equal(implementation.name, std::string_view(name)))
      return zavcalc::NewObject(zavcalc::kFactoryInterfaces, &implementation);
  }
  return nullptr;
}
