#include "support/records.h"

#include <cstdio>
#include <cstring>

#include "platform/utf.h"

namespace zavrel::tests {

Argument::Argument(std::int32_t rows, std::int32_t columns, const std::vector<Cell>& cells)
    : elements_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns),
                XXloper::Nil().record()) {
  record_.xltype = xltypeMulti;
  record_.val.array = {elements_.data(), rows, columns};
  for (std::size_t i = 0; i < cells.size(); ++i) SetElement(i, cells[i]);
}

void Argument::Set(XLOPER12& record, const Cell& cell) {
  record = {};
  record.xltype = xltypeNil;
  if (const auto* number = std::get_if<double>(&cell)) {
    record.xltype = xltypeNum;
    record.val.num = *number;
  } else if (const auto* boolean = std::get_if<bool>(&cell)) {
    record.xltype = xltypeBool;
    record.val.xbool = *boolean ? 1 : 0;
  } else if (const auto* error = std::get_if<ErrorCell>(&cell)) {
    record.xltype = xltypeErr;
    record.val.err = error->code;
  } else if (const auto* text = std::get_if<std::u16string>(&cell)) {
    std::vector<XCHAR>& counted = texts_.emplace_back(1, static_cast<XCHAR>(text->size()));
    counted.insert(counted.end(), text->begin(), text->end());
    record.xltype = xltypeStr;
    record.val.str = counted.data();
  }
}

Reference::Reference(const XLREF12& area) {
  record_.xltype = xltypeSRef;
  record_.val.sref = {1, area};
}

Reference::Reference(std::uint64_t sheet, const std::vector<XLREF12>& areas)
    : areas_(areas.size() + 1) {
  areas_[0].count = static_cast<std::uint16_t>(areas.size());
  if (!areas.empty()) {
    std::memcpy(reinterpret_cast<char*>(areas_.data()) + offsetof(XLMREF12, reftbl), areas.data(),
                areas.size() * sizeof(XLREF12));
  }
  record_.xltype = xltypeRef;
  record_.val.mref = {areas_.data(), sheet};
}

std::string Shown(const XLOPER12& value) {
  char text[32] = "";
  switch (TypeOf(value)) {
    case xltypeNum:
      std::snprintf(text, sizeof text, "%.12g", value.val.num);
      return text;
    case xltypeErr:
      return "#" + std::to_string(value.val.err);
    case xltypeBool:
      return value.val.xbool != 0 ? "TRUE" : "FALSE";
    case xltypeStr:
      return Utf8FromUtf16(TextIn(value));
    case xltypeMulti: {
      std::string shown;
      const std::span<const XLOPER12> elements = ElementsIn(value);
      const auto columns = static_cast<std::size_t>(value.val.array.columns);
      for (std::size_t i = 0; i < elements.size(); ++i)
        shown += Shown(elements[i]) + ((i + 1) % columns == 0 ? ';' : ',');
      return shown;
    }
    default:
      return {};
  }
}

}  // namespace zavrel::tests
