// Number formats and the numbers in texts: a number's General text reads back as what it shows, a
// text gives a finite number or none, and a code is either wrong for all values or shows them all.
#include <cmath>
#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "host/workbook/number_format.h"
#include "host/workbook/text.h"

namespace zavrel::tests {
namespace {

using zavhost::Value;

void CheckGeneral(double number) {
  const std::u16string shown = zavhost::GeneralText(number);
  if (!std::isfinite(number)) {
    Require(shown == u"#NUM!", "a number that is not finite has digits");
    return;
  }
  Require(shown.size() <= 24, "a General text is too long");
  const std::optional<double> read = zavhost::NumberFromText(shown);
  if (!read) {  // rounded up beyond the largest double
    Require(std::abs(number) > 1.7976931348623e308, "a General text is no number");
    return;
  }
  Require(std::abs(*read - number) <= 5.2e-15 * std::abs(number) || std::abs(number) < 1e-300,
          "a General text reads as another number");
  Require(zavhost::GeneralText(*read) == shown, "a General text changes when it is read");
}

void CheckText(std::u16string_view text) {
  for (const bool date1904 : {false, true}) {
    const std::optional<double> number = zavhost::NumberFromText(text, {date1904, 2024});
    if (number) Require(std::isfinite(*number), "a text gives a number that is not finite");
  }
}

void CheckCode(const Value& value, std::u16string_view code, bool date1904) {
  const std::optional<std::u16string> shown = zavhost::FormattedText(value, code, date1904);
  Require(zavhost::FormattedText(value, code, date1904) == shown, "another text the second time");
  const auto sections = zavhost::ParseFormatCode(code);
  if (!sections) {
    Require(!shown, "a wrong code shows something");
    return;
  }
  Require(!sections->empty() && sections->size() <= 4, "a code of other than 1 to 4 sections");
  Require(zavhost::FormattedText(u"text", code, date1904).has_value(), "a code shows no text");
}

void Format(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const auto number = bytes.Take<double>();
  const auto flags = bytes.Take<std::uint8_t>();
  const std::u16string text = zavhost::Utf16FromUtf8(bytes.Rest());
  CheckGeneral(number);
  CheckText(text);
  const double shown = std::isfinite(number) ? number : 0.0;
  CheckCode((flags & 1) != 0 ? Value(std::round(std::fmod(shown, 1e6)) / 100) : Value(shown), text,
            (flags & 2) != 0);
}

const FuzzTarget target("number_formats", Format);

}  // namespace
}  // namespace zavrel::tests
