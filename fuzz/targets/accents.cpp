// The accent notation and the keys: no byte beyond the room that the contracts ask for.
#include <string.h>

#include <algorithm>
#include <memory>

#include "fuzz/harness.h"
#include "util/accents.h"
#include "util/encodings.h"
#include "util/owned.h"

namespace {

// The text after a change in place, in a buffer of exactly this room beyond its length and NUL.
std::string changed(void (*change)(char *), const std::string &text, size_t room) {
  size_t size = text.size() + room + 1;
  std::unique_ptr<char[]> buffer(new char[size]);
  memset(buffer.get(), 0x7F, size);
  memcpy(buffer.get(), text.c_str(), text.size() + 1);
  change(buffer.get());
  HOLDS(memchr(buffer.get(), 0, size) != nullptr);
  return buffer.get();
}

bool is_plain(char byte) {
  return (unsigned char)byte < 0x80 && byte != '\\' && byte != '\t';
}

// Both decodings agree but where the second has written a no-break space.
void compare_decodings(const std::string &plain, const std::string &french) {
  HOLDS(plain.size() == french.size());
  for (size_t i = 0; i < plain.size(); i++)
    HOLDS(plain[i] == french[i] || french[i] == '\240');
}

void check_encodings(const std::string &text) {
  Owned_text utf8(UTF8_FROM_CP1252(text.c_str()));
  HOLDS(utf8 != nullptr && g_utf8_validate(utf8.get(), -1, nullptr));
  Owned_text back(CP1252_FROM_UTF8(utf8.get()));
  bool undefined = text.find_first_of("\x81\x8D\x8F\x90\x9D") != std::string::npos;
  HOLDS(undefined ? back == nullptr : back != nullptr && text == back.get());
  Owned_text folded(CP1252_FROM_UTF8(text.c_str()));
  if (folded != nullptr) {
    Owned_text again(UTF8_FROM_CP1252(folded.get()));
    HOLDS(text == again.get());
  }
}

} // namespace

FUZZ_TARGET(accents) {
  std::string text = TEXT_OF(input);
  size_t tabs = (size_t)std::count(text.begin(), text.end(), '\t');
  size_t ligatures = (size_t)(std::count(text.begin(), text.end(), '\346') +
                              std::count(text.begin(), text.end(), '\306'));
  std::string decoded = changed(DECODE_ACCENTS, text, 7 * tabs);
  std::string french = changed(DECODE1_ACCENTS, text, 7 * tabs);
  std::string key = changed(RM_ACCENTS, text, ligatures);
  HOLDS(decoded.find('\t') == std::string::npos);
  HOLDS(decoded.size() <= text.size() + 7 * tabs);
  HOLDS(key.size() <= text.size() + ligatures);
  compare_decodings(decoded, french);
  if (std::all_of(text.begin(), text.end(), is_plain)) {
    HOLDS(decoded == text);
    HOLDS(key == text);
  }
  // Without notation and ligatures a key is its own key.
  if (ligatures == 0 && text.find('\\') == std::string::npos)
    HOLDS(changed(RM_ACCENTS, key, 0) == key);
  check_encodings(text);
}
