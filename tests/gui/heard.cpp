// What the window tests hear: these take the place of the routines of sound/play.
#include "support/prelude.h"

#include "gui/heard.h"

#include "sound/play.h"

namespace {

struct {
  std::vector<std::string> sounds;
} heard;

} // namespace

int play_range(char *file, long rg_start, long rg_stop) {
  heard.sounds.push_back(std::string(file) + " " + std::to_string(rg_start) + " " +
                         std::to_string(rg_stop));
  return 0;
}

int play_total(char *file) {
  heard.sounds.push_back(file);
  return 0;
}

std::vector<std::string> HEARD() {
  std::vector<std::string> sounds;
  sounds.swap(heard.sounds);
  return sounds;
}
