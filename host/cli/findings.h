#pragma once
// What the doctor finds.

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace zavhost {

enum class Verdict { kGood, kNote, kProblem };

struct Finding {
  Verdict verdict;
  std::string what;
  std::string detail;
};

class Findings {
 public:
  void Good(std::string what, std::string detail) {
    Add(Verdict::kGood, std::move(what), std::move(detail));
  }
  void Note(std::string what, std::string detail) {
    Add(Verdict::kNote, std::move(what), std::move(detail));
  }
  void Problem(std::string what, std::string detail) {
    Add(Verdict::kProblem, std::move(what), std::move(detail));
  }
  void Judge(bool good, std::string what, std::string detail) {
    Add(good ? Verdict::kGood : Verdict::kProblem, std::move(what), std::move(detail));
  }
  const std::vector<Finding>& all() const { return all_; }
  std::size_t problems() const {
    return static_cast<std::size_t>(std::count_if(
        all_.begin(), all_.end(), [](const Finding& f) { return f.verdict == Verdict::kProblem; }));
  }

 private:
  void Add(Verdict verdict, std::string what, std::string detail) {
    all_.push_back({verdict, std::move(what), std::move(detail)});
  }

  std::vector<Finding> all_;
};

/// "one, two".
inline std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

}  // namespace zavhost
