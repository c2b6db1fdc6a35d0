#include "functions/translated_formula.h"

#include <memory>
#include <utility>
#include <variant>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "formula/language_table.h"
#include "formula/translate.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

std::shared_ptr<const formula::Language> LanguageNamed(std::string_view place,
                                                       std::u16string_view code,
                                                       const std::filesystem::path& folder) {
  const formula::FoundLanguage found = formula::FindLanguage(Utf8FromUtf16(code), folder);
  switch (found.obstacle) {
    case formula::LanguageObstacle::kNone:
      return found.language;
    case formula::LanguageObstacle::kCode:
      throw VekParameterError(place, messages::kMessageLanguageUnknown, {std::u16string(code)});
    case formula::LanguageObstacle::kFile:
      throw VekErrorReadingFile(place, messages::kMessageErrorReadingFile,
                                {Utf16FromPath(found.file)});
    case formula::LanguageObstacle::kTable:
      break;
  }
  throw VekErrorReadingFile(
      place, messages::kMessageLanguageTable,
      {Utf16FromPath(found.file), static_cast<std::int64_t>(found.problem.line)});
}

std::int32_t MessageFor(formula::TranslationFailure reason) {
  switch (reason) {
    case formula::TranslationFailure::kTooLong:
      return messages::kMessageFormulaTooLong;
    case formula::TranslationFailure::kUnclosed:
      return messages::kMessageFormulaUnclosed;
    case formula::TranslationFailure::kUnpaired:
      return messages::kMessageFormulaUnpaired;
    case formula::TranslationFailure::kUnreadable:
    case formula::TranslationFailure::kOffSheet:  // only between styles
      break;
  }
  return messages::kMessageFormulaUnreadable;
}

formula::ReferenceStyle StyleOf(std::string_view place, std::int32_t style) {
  if (style == kStyleA1) return formula::ReferenceStyle::kA1;
  if (style == kStyleR1C1) return formula::ReferenceStyle::kR1C1;
  throw VekParameterError(place, messages::kMessageParameterError);
}

}  // namespace

std::u16string TranslatedFormula(std::string_view place, std::u16string_view formula,
                                 std::u16string_view from, std::u16string_view to,
                                 std::int32_t style, const std::filesystem::path& folder) {
  const auto used = StyleOf(place, style);
  const auto source = LanguageNamed(place, from, folder);
  const auto target = LanguageNamed(place, to, folder);
  auto translated = formula::TranslateFormula(formula, {*source, used}, {*target, used});
  if (const auto* problem = std::get_if<formula::TranslationProblem>(&translated)) {
    throw VekParameterError(place, MessageFor(problem->reason),
                            {static_cast<std::int64_t>(problem->position + 1)});
  }
  return std::get<std::u16string>(std::move(translated));
}

}  // namespace zavrel
