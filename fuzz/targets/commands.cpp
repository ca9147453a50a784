// What is typed in the command entry: every text is read as one of the commands.
#include <glib.h>

#include "command/command_forms.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "util/encodings.h"
#include "util/owned.h"

namespace {

// A tag stands between two blanks, in small letters.
void check_tag(const std::string &tag) {
  if (tag.empty())
    return;
  HOLDS(tag.size() >= 2 && tag.front() == ' ' && tag.back() == ' ');
  for (char byte : tag)
    HOLDS(byte < 'A' || byte > 'Z');
}

void check_command(const Trf_command &command, const std::string &text) {
  HOLDS(command.action >= ACTION_SOUND && command.action <= ACTION_UNKNOWN);
  HOLDS(command.sens_qr >= 0 && command.sens_qr <= 2);
  if (command.action == ACTION_WORST)
    HOLDS(command.code >= 1 && command.code <= 5);
  if (command.action == ACTION_TAG || command.action == ACTION_NEW_TAG)
    check_tag(command.argument);
  if (command.action == ACTION_UNKNOWN)
    HOLDS(command.argument == text);
  else if (command.action != ACTION_LESSON)
    HOLDS(text[0] == '!' || text.compare(0, 4, "help") == 0);
}

} // namespace

FUZZ_TARGET(commands) {
  std::string text = TEXT_OF(input);
  if (!g_utf8_validate(text.c_str(), -1, nullptr))
    return;
  Learner learner("one two three ", " a1 b2 r3 ", 3);
  Trf_command command = READ_COMMAND(text.c_str());
  check_command(command, text);
  Trf_command again = READ_COMMAND(text.c_str());
  HOLDS(again.action == command.action && again.argument == command.argument);
  if (command.action != ACTION_LESSON)
    return;
  Owned_text typed(CP1252_FROM_UTF8(text.c_str()));
  HOLDS(typed != nullptr && command.argument == typed.get());
  HOLDS(EXTRACT_NB_FIRST_FIELD(typed.get(), &learner.book) >= -1);
  HOLDS(command.argument == typed.get());
}
