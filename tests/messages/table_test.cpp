#ifndef _WIN32
#include <doctest/doctest.h>

#include "companions/messages/message_table.h"
#include "messages/text_files.h"

TEST_CASE("the table holds the texts of the files, ordered by language and id") {
  const TextFile german("de");
  const TextFile english("en");
  const auto messages = zavrel::messages::Messages();
  REQUIRE(messages.size() == german.utf8.size() + english.utf8.size());
  for (std::size_t i = 0; i < messages.size(); ++i) {
    const auto& message = messages[i];
    CAPTURE(message.id);
    const bool is_german = i < german.utf8.size();
    CHECK(message.language == (is_german ? german : english).language_id);
    CHECK((message.text == (is_german ? german : english).Text(message.id)));
    if (i > 0 && i != german.utf8.size()) CHECK(messages[i - 1].id < message.id);
  }
}
#endif
