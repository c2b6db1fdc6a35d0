#pragma once
// Tables and pivot tables.

#include <optional>
#include <string_view>

#include "msexcel/windows/object.h"
#include "msexcel/windows/range.h"

namespace MsExcel {

class ListColumn : public ObjectOf<ListColumn> {
 public:
  static constexpr std::string_view kName = "ListColumn";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  /// Without the heading; nothing while the table has no rows.
  std::optional<Range> DataBodyRange() const { return Get<"DataBodyRange">().AsOptional<Range>(); }
};

class ListColumns : public Collection<ListColumns, ListColumn> {
 public:
  static constexpr std::string_view kName = "ListColumns";
  using Collection::Collection;
};

/// A table.
class ListObject : public ObjectOf<ListObject> {
 public:
  static constexpr std::string_view kName = "ListObject";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  MsExcel::Range Range() const { return Get<"Range">().As<MsExcel::Range>(); }
  std::optional<MsExcel::Range> HeaderRowRange() const {
    return Get<"HeaderRowRange">().AsOptional<MsExcel::Range>();
  }
  std::optional<MsExcel::Range> DataBodyRange() const {
    return Get<"DataBodyRange">().AsOptional<MsExcel::Range>();
  }
  MsExcel::ListColumns ListColumns() const {
    return Get<"ListColumns">().As<MsExcel::ListColumns>();
  }
};

class ListObjects : public Collection<ListObjects, ListObject> {
 public:
  static constexpr std::string_view kName = "ListObjects";
  using Collection::Collection;
};

class PivotTable : public ObjectOf<PivotTable> {
 public:
  static constexpr std::string_view kName = "PivotTable";
  using ObjectOf::ObjectOf;

  std::u16string Name() const { return Get<"Name">().Text(); }
  /// Without the fields for pages.
  Range TableRange1() const { return Get<"TableRange1">().As<Range>(); }
  std::optional<Range> DataBodyRange() const { return Get<"DataBodyRange">().AsOptional<Range>(); }
  bool RefreshTable() const { return Call<"RefreshTable">().Flag(); }
};

class PivotTables : public Collection<PivotTables, PivotTable> {
 public:
  static constexpr std::string_view kName = "PivotTables";
  using Collection::Collection;
};

}  // namespace MsExcel
