// The command entry "Cmd :" above the quiz pane.
#include "command/command_entry.h"

#include "command/dictionary_listing.h"
#include "command/help.h"
#include "command/tag_pane.h"
#include "db/check_correct.h"
#include "db/synchronise.h"
#include "db/transfer.h"
#include "lesson/new_words.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"
#include "quiz/confirm_lesson.h"
#include "quiz/locate_entry.h"
#include "quiz/pane.h"
#include "quiz/record_question.h"
#include "score/position_table.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/words.h"

namespace {

// Why no lesson was opened, for CONFIRM0_NEW_LESSON.
enum { NO_WORD = 1, DATABASE_DONE = 2, LISTING_DONE = 3, NO_SUCH_LESSON = 4 };

// False once the window is gone, and the entry with it.
bool window_lives(const Trf_book *book) {
  return book->entry_book != nullptr;
}

void switch_sound(int asked, Trf_book *book) {
  book->sound = asked == SOUND_OTHER ? book->sound != 1 : asked;
  TRACE("callback_entry_book switches the sound to %d", book->sound);
  LABEL_BUTTON(book->button_sound, book->sound == 1 ? "<)))" : "< XX", nullptr);
}

// Ends the running drill: closes its files and asks whether to record it. False when the window
// went or another lesson came meanwhile: then nothing is left to do.
bool end_drill(Trf_book *book) {
  TRACE("callback_entry_book closes the files of lesson %d", book->ilesson);
  DROP_STREAM(book);
  CLOSE_STREAM(&book->fp_gene);
  CLOSE_STREAM(&book->fp_idx1);
  long moment = LESSON_MOMENT();
  return RECORD_QUESTION_ON_MOVE(book) && moment == LESSON_MOMENT();
}

void set_direction(int sens_qr, Trf_book *book) {
  if (sens_qr == 0 || sens_qr == book->sens_qr)
    return;
  TRACE("callback_entry_book turns from direction %d to %d", book->sens_qr, sens_qr);
  LABEL_BUTTON(book->button_qr, book->sens_qr != 2 ? "R->Q" : "Q->R", nullptr);
  book->sens_qr = sens_qr;
}

// Makes a lesson current; it is to be announced.
void go_to(int ilesson, Trf_book *book) {
  TRACE("callback_entry_book goes to lesson %d", ilesson);
  DROP_STREAM(book);
  book->ilesson = ilesson;
  book->start_lesson = 0;
}

// Announces the lesson before again, with what the command did.
void return_to(int previous, int code, Trf_book *book) {
  if (!window_lives(book))
    return;
  go_to(previous == 0 ? 1 : previous, book);
  CONFIRM0_NEW_LESSON(code, book);
}

void build(const Trf_command &command, Trf_book *book) {
  std::string tag = command.argument;
  switch (command.action) {
  case ACTION_NEW:
    return NEW_WORDS_LESSON(book);
  case ACTION_BALANCE:
    return BALANCE_WORDS(book);
  case ACTION_WORST:
    return WORST_WORDS_LESSON(command.code, book);
  case ACTION_TAG:
    return WORST_TAG_LESSON(tag.data(), book);
  default:
    return NEW_TAG_LESSON(tag.data(), book);
  }
}

// A builder that finds nothing leaves the number of entries as it was: it must be 0 before.
void compose(const Trf_command &command, int previous, Trf_book *book) {
  set_direction(command.sens_qr, book);
  book->t_posit->nb_posit = 0;
  build(command, book);
  TRACE("callback_entry_book has composed %d entries", book->t_posit->nb_posit);
  if (book->t_posit->nb_posit <= 0)
    return return_to(previous, NO_WORD, book);
  go_to(0, book);
  CONFIRM0_LESSON(book);
}

// Shows something in the pane, where it stays: the answer button announces the lesson.
void show(void (*report)(Trf_book *), int previous, Trf_book *book) {
  LESSON_MOVES_ON();
  report(book);
  if (window_lives(book))
    go_to(previous, book);
}

void check_dictionaries(const char *names, Trf_book *book) {
  int nb = COUNT_WORDS(names);
  if (nb == 0)
    CHECK_CORR_ALL_DBASE(book);
  for (int n = 1; n <= nb && window_lives(book); n++)
    CHECK_CORR_SNG_DBASE(NTH_WORD(names, n).data(), book);
}

// The tasks on the whole database; what the running lesson knew of its files is void afterwards.
void work_on_database(const Trf_command &command, int previous, Trf_book *book) {
  const char *argument = command.argument.c_str();
  if (command.action == ACTION_CHECK)
    check_dictionaries(argument, book);
  else if (command.action == ACTION_TRANSFER)
    TRF_ALL_DBASE(book);
  else
    SYNCHRO_ALL_DBASE(NTH_WORD(argument, 1).data(), book);
  return_to(previous, DATABASE_DONE, book);
}

void open_lesson(int num, int previous, Trf_book *book) {
  // QUIRK number past the last lesson: it opens the first one. One would expect it to name no
  // lesson, as 0 does; it is meant: a number that she remembers from a longer list leads to the
  // head of this one, and not back to where she was.
  // Test: Command.ANumberPastTheLastLessonOpensTheFirst
  if (num > book->nbt_lesson)
    num = 1;
  if (num < 1)
    return return_to(previous, NO_SUCH_LESSON, book);
  go_to(num, book);
  CONFIRM0_LESSON(book);
}

void carry_out(Trf_command *command, int previous, Trf_book *book) {
  switch (command->action) {
  case ACTION_LIST_TAGS:
    return show(DICO_TAGS, previous, book);
  case ACTION_HELP:
    return show(DISPLAY_HELP, previous, book);
  case ACTION_LISTING:
    MERTU_DICO(book);
    return return_to(previous, LISTING_DONE, book);
  case ACTION_CHECK:
  case ACTION_TRANSFER:
  case ACTION_SYNCHRONISE:
    return work_on_database(*command, previous, book);
  case ACTION_LESSON:
    return open_lesson(EXTRACT_NB_FIRST_FIELD(command->argument.data(), book), previous, book);
  case ACTION_UNKNOWN:
    TELL_UNKNOWN_ALIAS(command->argument.c_str(), book);
    return open_lesson(-1, previous, book);
  default:
    return compose(*command, previous, book);
  }
}

} // namespace

void callback_entry_book(GtkWidget *, Trf_book *book) {
  Trf_command command = READ_COMMAND(gtk_entry_get_text(GTK_ENTRY(book->entry_book)));
  TRACE("callback_entry_book action %d code %d direction %d argument %s", command.action,
        command.code, command.sens_qr, command.argument.c_str());
  if (command.action == ACTION_SOUND)
    return switch_sound(command.code, book);
  int previous = book->ilesson;
  if (end_drill(book))
    carry_out(&command, previous, book);
}

gboolean clean_entry_book(GtkWidget *widget, GdkEvent *event, Trf_book *) {
  if (REPEATS_A_PRESS(event))
    return FALSE;
  GtkEditable *entry = GTK_EDITABLE(widget);
  gint begin = 0;
  gint end = 0;
  if (gtk_editable_get_selection_bounds(entry, &begin, &end) && end > 0)
    gtk_editable_delete_selection(entry);
  return FALSE;
}
