// Addresses and ids of macros: only what is among the latest is found, as a plain list has it, and
// each entry is taken once.
#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <unordered_set>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "macros/macro_handshakes.h"

namespace zavrel::tests {
namespace {

/// The model: the latest last.
class Handshakes {
 public:
  void Issue(std::uint64_t address) {
    std::erase(issued_, address);
    issued_.push_back(address);
    ++calls_[address];
    if (issued_.size() > MacroHandshakes::kRemembered) {
      calls_.erase(issued_.front());
      issued_.pop_front();
    }
    real_.Issue(address);
  }

  void UseUp(std::uint64_t address) {
    real_.UseUp(address);
    if (const auto calls = calls_.find(address); calls != calls_.end() && --calls->second == 0) {
      calls_.erase(calls);
      std::erase(issued_, address);
    }
  }

  void Look(const std::string& text) {
    const std::optional<std::uint64_t> address = AddressFromText(text.c_str());
    const std::optional<std::uint64_t> issued = real_.IssuedAddress(text.c_str());
    if (address && *address != 0) {
      const bool known = std::ranges::count(issued_, *address) == 1;
      Require(real_.HasIssued(*address) == known, "an address is known that should not be");
      Require(issued == (known ? address : std::nullopt), "an address is taken for another");
    } else {
      Require(issued == address, "no address is taken for one");
    }
    if (address)
      Require(AddressFromText(TextOfAddress(*address).c_str()) == address,
              "an address changes when it is written");
    Require(!real_.Take<PendingCellValues>(text.c_str()), "an id was never given out");
  }

  void Enter(std::uint64_t address) {
    const bool names = address % 2 == 0;
    const std::string id = names ? real_.Enter(PendingCategoryNames{address})
                                 : real_.Enter(PendingCategoryIndices{address});
    Require(ids_.insert(id).second, "an id comes twice");
    entries_.push_back({id, address});
    if (entries_.size() > MacroHandshakes::kRemembered) entries_.pop_front();
  }

  void Take(std::size_t which) {
    if (entries_.empty()) return;
    const auto entry = entries_.begin() + static_cast<std::ptrdiff_t>(which % entries_.size());
    const bool names = entry->address % 2 == 0;
    const char* id = entry->id.c_str();
    if (names) {
      Require(!real_.Take<PendingCategoryIndices>(id), "an entry is taken as another kind");
      const auto taken = real_.Take<PendingCategoryNames>(id);
      Require(taken && taken->address == entry->address, "an entry is lost");
    } else {
      Require(!real_.Take<PendingCategoryNames>(id), "an entry is taken as another kind");
      const auto taken = real_.Take<PendingCategoryIndices>(id);
      Require(taken && taken->address == entry->address, "an entry is lost");
    }
    Require(!real_.Take<PendingCategoryNames>(id) && !real_.Take<PendingCategoryIndices>(id),
            "an entry is taken twice");
    entries_.erase(entry);
  }

 private:
  struct Entry {
    std::string id;
    std::uint64_t address;
  };

  MacroHandshakes real_;
  std::deque<std::uint64_t> issued_;
  std::map<std::uint64_t, std::size_t> calls_;  // that each is good for
  std::deque<Entry> entries_;
  std::unordered_set<std::string> ids_;
};

void Exchange(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  Handshakes handshakes;
  int floods = 0;
  while (!bytes.empty()) {
    switch (bytes.Below(6)) {
      case 5:
        handshakes.UseUp(bytes.Take<std::uint8_t>() * std::uint64_t{8});
        break;
      case 0:
        handshakes.Issue(bytes.Take<std::uint8_t>() * std::uint64_t{8});
        break;
      case 1:
        handshakes.Look(std::to_string(bytes.Take<std::uint8_t>() * 8));
        break;
      case 2:
        handshakes.Look(std::string(bytes.Text(24)));
        break;
      case 3:
        // A few times so many that the oldest are dropped.
        for (std::size_t i = bytes.Below(3) == 0 && floods++ < 2 ? 600 : 1; i > 0; --i) {
          handshakes.Enter(i * 3);
          handshakes.Issue(i * 8);
        }
        break;
      default:
        handshakes.Take(bytes.Take<std::uint16_t>());
    }
  }
}

const FuzzTarget target("macro_handshakes", Exchange);

}  // namespace
}  // namespace zavrel::tests
