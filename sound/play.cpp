// A sound file played, whole or a range of its frames, on the output that the machine has.
#include "sound/play.h"

#include <unistd.h>

#include "sound/alsa_player.h"
#include "sound/oss_player.h"

namespace {

bool alsa_has_cards() {
  return access("/proc/asound/cards", R_OK) == 0;
}

} // namespace

int play_range(char *file, long rg_start, long rg_stop) {
  // QUIRK second pass: a range that means the whole file plays the file and then goes on to the
  // range player with the same, empty range. It looks like a return forgotten. It is meant: after a
  // whole file every output is opened and closed a second time, which adds nothing but one buffer
  // of silence where the player's range loop is the long one (float files; every file on OSS).
  // Test: Play.WholeFileRangeGoesOnToTheEmptyRange
  if (rg_start == 0 && rg_stop < 1)
    play_total(file);
  if (alsa_has_cards())
    alsa_range_play(file, rg_start, rg_stop);
  else
    linux_range_play(file, rg_start, rg_stop);
  return 0;
}

int play_total(char *file) {
  if (alsa_has_cards())
    alsa_play_total(file);
  else
    linux_play_total(file);
  return 0;
}
