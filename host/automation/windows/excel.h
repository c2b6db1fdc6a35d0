#pragma once
// What the objects of one session share.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/automation/book.h"
#include "host/automation/windows/excel_session.h"
#include "host/automation/windows/object.h"

namespace zavhost {

inline constexpr std::int32_t kCalculateAutomatically = -4105;
inline constexpr std::int32_t kCalculateManually = -4135;
inline constexpr std::int32_t kCalculateSemiautomatically = 2;
inline constexpr std::int32_t kA1Style = 1;
inline constexpr std::int32_t kR1C1Style = -4150;

struct Excel {
  explicit Excel(ExcelSessionOptions given) : options(std::move(given)) {}

  ExcelSessionOptions options;
  Faults faults;
  std::size_t live_objects = 0;
  bool is_closed = false;

  bool screen_updating = true;
  bool enable_events = true;
  bool display_alerts = true;
  bool interactive = true;
  std::int32_t calculation = kCalculateAutomatically;
  std::int32_t reference_style = kA1Style;
  Variant status_bar{false};

  std::vector<BookPtr> books;
  BookPtr active;
  /// What the user types into the next input boxes; nothing is Cancel.
  std::deque<std::optional<std::u16string>> inputs;

  BookPtr AddBook();
  BookPtr Open(const std::filesystem::path& file);
  void CloseBook(Book& book);
  /// The workbook with calculated cells, unless the user calculates.
  Book& Calculated(Book& book) const {
    if (calculation != kCalculateManually) book.CalculateIfDirty();
    return book;
  }

 private:
  int books_made_ = 0;
};

}  // namespace zavhost
