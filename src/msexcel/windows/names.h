#pragma once

#include <string_view>

#include "msexcel/windows/object.h"
#include "msexcel/windows/range.h"

namespace MsExcel {

/// A defined name.
class Name : public ObjectOf<Name> {
 public:
  static constexpr std::string_view kName = "Name";
  using ObjectOf::ObjectOf;

  std::u16string Text() const { return Get<"Name">().Text(); }
  /// With its "=".
  std::u16string RefersTo() const { return Get<"RefersTo">().Text(); }
  void SetRefersTo(std::u16string_view formula) const { Put<"RefersTo">(formula); }
  /// Fails if the name stands for something else than cells.
  Range RefersToRange() const { return Get<"RefersToRange">().As<Range>(); }
  bool Visible() const { return Get<"Visible">().Flag(); }
  void Delete() const { Call<"Delete">(); }
};

class Names : public Collection<Names, Name> {
 public:
  static constexpr std::string_view kName = "Names";
  using Collection::Collection;

  Name Add(std::u16string_view name, std::u16string_view refers_to, bool visible = true) const {
    return Call<"Add">({name, refers_to, visible}).As<Name>();
  }
};

}  // namespace MsExcel
