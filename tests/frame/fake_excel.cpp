#include "frame/fake_excel.h"

#include "excel/excel_call.h"
#include "excel/wide_text.h"

namespace zavrel::tests {
namespace {

FakeExcel* g_fake = nullptr;

std::u16string TextOf(const XLOPER12& value) {
  if ((value.xltype & xltypeMask) != xltypeStr) return {};
  return {value.val.str + 1, value.val.str[0]};
}

}  // namespace

FakeExcel::FakeExcel() {
  g_fake = this;
  SetExcelCallback(&FakeExcel::Callback);
}

FakeExcel::~FakeExcel() {
  SetExcelCallback(nullptr);
  g_fake = nullptr;
}

int FakeExcel::Callback(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  switch (function) {
    case xlfRegister:
      return g_fake->Register(count, arguments, result);
    case xlfUnregister:
      return g_fake->Unregister(arguments[0]->val.num, result);
    case xlEnableXLMsgs:
    case xlDisableXLMsgs:
    case xlFree:
      return xlretSuccess;
    default:
      return xlretInvXlfn;
  }
}

int FakeExcel::Register(int count, XLOPER12** arguments, XLOPER12* result) {
  Registered made;
  for (int i = 0; i < count; ++i) {
    made.texts.push_back(TextOf(*arguments[i]));
    made.types.push_back(arguments[i]->xltype & xltypeMask);
    if (made.texts.back().size() > 255) faults.push_back("a text over 255 characters");
  }
  if (count < 10) return xlretInvCount;
  made.macro_type = arguments[5]->val.num;
  if (made.export_name() == refused_export) return xlretFailed;
  ++registrations;
  const std::u16string name = made.export_name();
  if (Has(name.c_str())) faults.push_back("registered twice: " + Utf8FromUtf16(name));
  names_[next_id_] = name;
  by_name_[name] = std::move(made);
  result->xltype = xltypeNum;
  result->val.num = next_id_;
  next_id_ += 1.5;
  return xlretSuccess;
}

int FakeExcel::Unregister(double id, XLOPER12* result) {
  const auto found = names_.find(id);
  result->xltype = xltypeBool;
  result->val.xbool = found != names_.end();
  if (found == names_.end()) {
    faults.push_back("unregistered without a registration");
    return xlretSuccess;
  }
  by_name_.erase(found->second);
  names_.erase(found);
  return xlretSuccess;
}

SessionServices QuietServices() {
  const auto text = [](std::uint16_t language, std::uint16_t id) -> std::optional<std::u16string> {
    if (language != 9 && language != 7) return std::nullopt;
    return Utf16FromUtf8(std::to_string(language) + ':' + std::to_string(id) + " {1}");
  };
  return {.messages = [=] { return MessageLibrary(text); },
          .memory_load = [] { return 20u; },
          .machine_text = [](const auto&, const auto&) { return std::nullopt; },
          .write_user_number = [](const auto&, const auto&, std::uint32_t) {}};
}

}  // namespace zavrel::tests
