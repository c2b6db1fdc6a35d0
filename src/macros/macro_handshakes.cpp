#include "macros/macro_handshakes.h"

#include <fmt/format.h>

#include <charconv>
#include <utility>

#include "platform/clock.h"

namespace zavrel {

std::optional<std::uint64_t> AddressFromText(const char* text) {
  const std::string_view digits = text == nullptr ? std::string_view() : text;
  if (digits.empty()) return 0;
  std::int64_t address = 0;
  const auto [stopped, failure] =
      std::from_chars(digits.data(), digits.data() + digits.size(), address);
  if (failure != std::errc() || stopped != digits.data() + digits.size()) return std::nullopt;
  return static_cast<std::uint64_t>(address);
}

std::string TextOfAddress(std::uint64_t address) {
  return std::to_string(static_cast<std::int64_t>(address));
}

std::optional<std::uint64_t> MacroHandshakes::IssuedAddress(const char* text) const {
  const auto address = AddressFromText(text);
  if (address && *address != 0 && !HasIssued(*address)) return std::nullopt;
  return address;
}

std::string MacroHandshakes::Enter(PendingArrays arrays) {
  // The counter makes the id unique within a session, the clocks make it unique among sessions.
  std::string id = fmt::format("Time={}, TickCount={}, PerfCounter={}, counter={}",
                               static_cast<std::int32_t>(CalendarSeconds()),
                               static_cast<std::int32_t>(TickCountMilliseconds()),
                               PerformanceCounter().value_or(0), ++ids_made_);
  entries_.Put(id, std::move(arrays));
  return id;
}

}  // namespace zavrel
