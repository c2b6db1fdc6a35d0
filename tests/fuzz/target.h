#pragma once
// Fuzz targets. Each reads arbitrary bytes and reports what does not hold of them: libFuzzer's
// program of a target looks for such bytes, the replay runs all targets over those that were kept.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zavrel::tests {

/// A fault of the code; the program stops. Also declared for the fake host, which few targets use.
void ReportFault(const std::string& fault);  // NOLINT(readability-redundant-declaration)
inline void Require(bool holds, std::string_view otherwise) {
  if (!holds) ReportFault(std::string(otherwise));
}

/// Made once per target, at the start of the program.
class FuzzTarget {
 public:
  using Run = void(std::span<const std::uint8_t> input);

  FuzzTarget(std::string_view name, Run* run) : name_(name), run_(run) { all().push_back(this); }
  /// Those that are linked in.
  static std::vector<const FuzzTarget*>& all() {
    static std::vector<const FuzzTarget*> targets;
    return targets;
  }

  std::string_view name() const { return name_; }
  void operator()(std::span<const std::uint8_t> input) const { run_(input); }

 private:
  std::string_view name_;
  Run* run_;
};

}  // namespace zavrel::tests
