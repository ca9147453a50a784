// (G) A click on a sound button of the lesson text.
#include "text/label_click.h"

#include <string>

#include "sound/play.h"
#include "text/button_block.h"
#include "text/find_sound.h"
#include "util/encodings.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// The label in the encoding of the label table. One with a byte that stands for no character is
// shown with a mark in its place, and is then not found.
std::string label_of(GtkWidget *button) {
  const char *shown = gtk_button_get_label(GTK_BUTTON(button));
  Owned_text label(CP1252_FROM_UTF8(shown));
  return label != nullptr ? label.get() : shown != nullptr ? shown : "";
}

void play_frames(char *name, long start, long stop, void *data) {
  Trf_book *book = static_cast<Trf_book *>(data);
  char *found = nullptr;
  long size = 0;
  bool there = SEARCH_SND_FILE_NAME(&found, &size, name, book) == 1;
  Owned_text path(found);
  if (there)
    play_range(path.get(), start, stop);
  else
    LOG_AND_SAY(book->fp_log, "cback_button snd_file=%s not found \n", name);
}

} // namespace

// QUIRK sound button never mute: a click plays while the sound is switched off too. A reader would
// expect the switch to silence everything. It is meant: the switch keeps the drill from speaking on
// its own; a click asks for the sound. Test: TextPane.ClickPlaysWithTheSoundSwitchedOff
void cback_button(GtkWidget *button, Trf_book *book) {
  std::string label = label_of(button);
  Trf_range_out out = {play_frames, book};
  WALK_LABEL(label.data(), book, &out);
}
