#pragma once
// The texts of the analyses, which are written in English where they are used.

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace zavrel::analyses {

enum class Language { kEnglish, kGerman };

/// The English text, if there is no other.
std::string Translated(std::string_view english, Language language);

/// A text for people with values in the places {0}, {1}, ...
struct Message {
  std::string_view english;
  std::vector<std::string> values;

  std::string Text(Language language) const;
};

/// Data that no analysis can be made of; or not the one that was asked for.
class DataProblem : public std::exception {
 public:
  explicit DataProblem(Message message)
      : message_(std::move(message)), english_(message_.Text(Language::kEnglish)) {}
  const Message& message() const { return message_; }
  const char* what() const noexcept override { return english_.c_str(); }

 private:
  Message message_;
  std::string english_;
};

}  // namespace zavrel::analyses
