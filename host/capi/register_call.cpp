// xlfRegister: reads its arguments and rejects invalid ones.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "host/capi/excel_api.h"
#include "host/capi/excel_record.h"
#include "host/capi/scalar_conversion.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr std::size_t kTextLimit = 255;
constexpr int kFirstArgumentHelp = 10;

/// The text of an optional argument: empty if it is missing, nothing if it is not text.
std::optional<std::u16string> OptionalText(const XLOPER12& record) {
  switch (TypeOf(record)) {
    case xltypeStr:
      return std::u16string(TextIn(record));
    case xltypeNum:  // a category by its number
    case xltypeInt:
      return TextOf(ToValue(record));
    case xltypeMissing:
    case xltypeNil:
      return u"";
    default:
      return std::nullopt;
  }
}

/// The "module" of a registration is the file of the add-in that calls, as a full path or as a
/// name.
bool NamesFile(std::u16string_view module, const std::filesystem::path& file) {
  if (EqualIgnoringCase(module, zavrel::Utf16FromPath(file)) ||
      EqualIgnoringCase(module, zavrel::Utf16FromPath(file.filename())))
    return true;
  const std::string name = Utf8FromUtf16(module);  // half a character would make no path
  std::error_code ignored;
  return std::filesystem::equivalent(std::u8string(name.begin(), name.end()), file, ignored);
}

bool IsFunctionName(std::u16string_view name) {
  if (name.empty() || (name[0] >= u'0' && name[0] <= u'9')) return false;
  return std::ranges::all_of(name, [](char16_t c) {
    return c == u'_' || c == u'.' || c == u'\\' || c == u'?' || c >= 0x80 ||
           (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
  });
}

}  // namespace

void* ExcelApi::FindProcedure(const XLOPER12& procedure) const {
  const zavrel::Module& module = *add_in_->module;
  const Value value = ToValue(procedure);
  if (value.text() != nullptr) return module.FindExport(Utf8FromUtf16(*value.text()).c_str());
  const IntegerOutcome ordinal = IntegerOf(value, 1, 0xFFFF);
  return ordinal.integer ? module.FindExport(static_cast<std::uint16_t>(*ordinal.integer))
                         : nullptr;
}

std::string ExcelApi::TryRegister(const Arguments& arguments, double& register_id) {
  std::vector<std::u16string> texts;
  for (int i = 0; i < arguments.count; ++i) {
    std::optional<std::u16string> text = OptionalText(arguments[i]);
    if (!text) return fmt::format("argument {} of a registration is not text", i + 1);
    texts.push_back(std::move(*text));
  }
  texts.resize(std::max<std::size_t>(texts.size(), kFirstArgumentHelp));

  RegisteredFunction function;
  function.module = texts[0];
  function.procedure = texts[1];
  function.type_text = texts[2];
  function.name = texts[3].empty() ? texts[1] : texts[3];
  function.argument_text = texts[4];
  function.category = texts[6];
  function.shortcut = texts[7];
  function.help_topic = texts[8];
  function.function_help = texts[9];
  std::vector<std::u16string>& helps = function.argument_helps;
  helps.assign(texts.begin() + kFirstArgumentHelp, texts.end());
  while (!helps.empty() &&
         TypeOf(arguments[kFirstArgumentHelp - 1 + static_cast<int>(helps.size())]) ==
             xltypeMissing)
    helps.pop_back();

  const std::string who = "the registration of " + Utf8FromUtf16(function.name) + ": ";
  for (std::size_t i = 1; i < texts.size(); ++i) {
    if (texts[i].size() > kTextLimit)
      return who + fmt::format("argument {} is longer than 255 characters", i + 1);
  }
  if (add_in_ == nullptr || !NamesFile(function.module, add_in_->file))
    return who + "the module " + Utf8FromUtf16(function.module) + " is not the add-in";
  void* address = FindProcedure(arguments[1]);
  if (address == nullptr)
    return who + "the add-in has no export " + Utf8FromUtf16(function.procedure);
  std::variant<TypeText, std::string> type = ParseTypeText(function.type_text);
  if (const std::string* problem = std::get_if<std::string>(&type))
    return who + "type text \"" + Utf8FromUtf16(function.type_text) + "\": " + *problem;
  if (!IsFunctionName(function.name)) return who + "this is not a valid function name";
  if (arguments.Has(5)) {
    const IntegerOutcome macro_type = IntegerOf(ToValue(arguments[5]), 0, 2);
    if (!macro_type.integer) return who + "the macro type is not 0, 1 or 2";
    function.macro_type = *macro_type.integer;
  }
  register_id =
      registry_.Add(std::move(function), std::get<TypeText>(std::move(type)), address, *add_in_);
  return {};
}

}  // namespace zavhost
