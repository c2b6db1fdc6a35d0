#include "excel/value_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "excel/reference.h"
#include "excel/wide_text.h"
#include "excel/xxloper.h"
#include "formula/error_texts.h"

namespace zavrel {
namespace {

constexpr std::size_t kShownElements = 64;
constexpr std::size_t kShownUnits = 100;

std::string Quoted(std::u16string_view text) {
  std::u16string shown(CutToUnits(text, kShownUnits));
  std::replace_if(
      shown.begin(), shown.end(), [](char16_t unit) { return unit < u' '; }, u' ');
  return '"' + Utf8FromUtf16(shown) + (shown.size() < text.size() ? "\"..." : "\"");
}

/// The content of a single value; empty for a type without one.
std::string Content(const XLOPER12& value) {
  switch (TypeOf(value)) {
    case xltypeNum:
      return fmt::format("{}", value.val.num);
    case xltypeInt:
      return fmt::format("{}", value.val.w);
    case xltypeBool:
      return value.val.xbool != 0 ? "TRUE" : "FALSE";
    case xltypeErr:
      return ErrorName(value.val.err);
    case xltypeStr:
      return Quoted(TextIn(value));
    default:
      return {};
  }
}

/// Shows only the first area: a reference may have 65,535.
std::string ReferenceContent(const XLOPER12& value) {
  const auto reference = ReferenceView::Of(value);
  if (!reference) return {};
  const OneArea first(*reference, reference->areas().front());
  std::string text = Utf8FromUtf16(ReferenceText(*ReferenceView::Of(first.record()), {}));
  if (const auto sheet_id = reference->sheet_id()) text = fmt::format("[{:X}]", *sheet_id) + text;
  return reference->areas().size() > 1 ? text + ",..." : text;
}

std::string ArrayText(const XLOPER12& array) {
  std::string text =
      fmt::format("XLOPER array ({} x {}) = {{", array.val.array.rows, array.val.array.columns);
  const std::span<const XLOPER12> elements = ElementsIn(array);
  const std::size_t shown = std::min(elements.size(), kShownElements);
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0) text += i % static_cast<std::size_t>(array.val.array.columns) == 0 ? "; " : ", ";
    text += Content(elements[i]);
  }
  return text + (shown < elements.size() ? ", ...}" : "}");
}

}  // namespace

std::string ValueText(const XLOPER12& value) {
  if (TypeOf(value) == xltypeMulti) return ArrayText(value);
  std::string content = Content(value);
  if (content.empty()) content = ReferenceContent(value);
  const std::string type = fmt::format("XLOPER of type {}", TypeOf(value));
  return content.empty() ? type : type + ": " + content;
}

std::string ErrorName(std::int32_t code) {
  for (const auto& [known, text] : formula::kErrorTexts) {
    if (known == code) return Utf8FromUtf16(text);
  }
  return fmt::format("#ERROR {}", code);
}

}  // namespace zavrel
