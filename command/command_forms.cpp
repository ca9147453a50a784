// What the learner types in the command entry, read: which command it is, and with what.
#include "command/command_forms.h"

#include <glib.h>

#include <algorithm>

#include "config/registry.h"
#include "util/accents.h"
#include "util/encodings.h"
#include "util/numbers.h"
#include "util/owned.h"
#include "util/report.h"
#include "util/words.h"

namespace {

// How the word of a form must end.
enum Trf_ending {
  ANY_END,   // whatever follows
  WORD_END,  // the end of the text or a space
  SPACE_END, // a space
};

// What is done with the text that follows the word.
enum Trf_following { AS_TYPED, A_SWITCH, A_DIRECTION, A_TAG };

struct Trf_form {
  const char *word;
  Trf_ending ending;
  Trf_following following;
  Trf_action action;
  int code;
  int sens_qr;
};

// The forms in the order in which they are tried.
//
// QUIRK sound without a word end: "!sounds" switches the sound although no other command takes
// letters glued to it, and "!soundoff" is read as "!sound off". A reader would expect "!sounds" to
// be looked up as an alias; it is meant: the sound must go off at once, however hastily it is
// typed. Test: CommandForms.WhateverBeginsWithSoundIsTheSoundSwitch
//
// QUIRK synchronise with nothing: "!synchro" and a space is the command, also with no directory
// behind it: the drill ends and nothing is synchronised; without the space it is taken as an alias.
// One would expect both to be refused alike; it is meant: the space begins the directory, and a
// blank directory does nothing. Test: CommandForms.SynchronisingAsksForASpaceNotForADirectory
const Trf_form FORMS[] = {
    {"!sound", ANY_END, A_SWITCH, ACTION_SOUND, 0, 0},
    {"!new", WORD_END, A_DIRECTION, ACTION_NEW, 0, 0},
    {"!bal", WORD_END, A_DIRECTION, ACTION_BALANCE, 0, 0},
    {"!worst", WORD_END, A_DIRECTION, ACTION_WORST, 1, 0},
    {"!worsto", WORD_END, A_DIRECTION, ACTION_WORST, 2, 0},
    {"!worsty", WORD_END, A_DIRECTION, ACTION_WORST, 3, 0},
    {"!worstn", WORD_END, A_DIRECTION, ACTION_WORST, 4, 0},
    {"!lessv", WORD_END, A_DIRECTION, ACTION_WORST, 5, 0},
    {"!ltag", WORD_END, AS_TYPED, ACTION_LIST_TAGS, 0, 0},
    {"!dico", WORD_END, AS_TYPED, ACTION_LISTING, 0, 0},
    {"!help", WORD_END, AS_TYPED, ACTION_HELP, 0, 0},
    {"help", WORD_END, AS_TYPED, ACTION_HELP, 0, 0},
    {"!ccdb", WORD_END, AS_TYPED, ACTION_CHECK, 0, 0},
    {"!trf", WORD_END, AS_TYPED, ACTION_TRANSFER, 0, 0},
    {"!synchro", SPACE_END, AS_TYPED, ACTION_SYNCHRONISE, 0, 0},
    {"!tag", WORD_END, A_TAG, ACTION_TAG, 0, 0},
    {"!tagqr", WORD_END, A_TAG, ACTION_TAG, 0, 1},
    {"!tagrq", WORD_END, A_TAG, ACTION_TAG, 0, 2},
    {"!ntag", WORD_END, A_TAG, ACTION_NEW_TAG, 0, 0},
    {"!ntagqr", WORD_END, A_TAG, ACTION_NEW_TAG, 0, 1},
    {"!ntagrq", WORD_END, A_TAG, ACTION_NEW_TAG, 0, 2},
};

bool begins_with(const char *text, const char *word) {
  return g_str_has_prefix(text, word) != FALSE;
}

const char *skip_spaces(const char *text) {
  while (*text == ' ')
    text++;
  return text;
}

bool ends_so(char behind, Trf_ending ending) {
  return ending == ANY_END || behind == ' ' || (ending == WORD_END && behind == '\0');
}

// The form of a text, null when it is none; *following becomes what follows its word.
const Trf_form *form_of(const char *text, const char **following) {
  for (const Trf_form &form : FORMS) {
    size_t length = std::char_traits<char>::length(form.word);
    if (!begins_with(text, form.word) || !ends_so(text[length], form.ending))
      continue;
    *following = skip_spaces(text + length);
    return &form;
  }
  return nullptr;
}

int sound_asked(const char *word) {
  if (begins_with(word, "on"))
    return SOUND_ON;
  return begins_with(word, "off") ? SOUND_OFF : SOUND_OTHER;
}

int direction_asked(const char *word) {
  if (begins_with(word, "qr"))
    return 1;
  return begins_with(word, "rq") ? 2 : 0;
}

Trf_command command_of(const Trf_form &form, const char *following) {
  Trf_command command = {form.action, form.code, form.sens_qr, following};
  if (form.following == A_SWITCH)
    command.code = sound_asked(following);
  else if (form.following == A_DIRECTION)
    command.sens_qr = direction_asked(following);
  else if (form.following == A_TAG)
    command.argument = TAG_TO_SEARCH(following);
  return command;
}

bool is_number(const std::string &word) {
  return std::all_of(word.begin(), word.end(),
                     [](char byte) { return byte >= '0' && byte <= '9'; });
}

int number_at_head(std::string text, const Trf_book *book) {
  int taken[2] = {0, 0};
  EXTR_N_INT(1, text.data(), taken);
  if (taken[0] == 1)
    return taken[1];
  LOG_LINE(book->fp_log, "EXTRACT_NB_FIRST_FIELD ss is not integer \n");
  LOG_LINE(book->fp_log, "ss=%s \n", text.c_str());
  return -1;
}

} // namespace

Trf_command READ_COMMAND(const char *typed) {
  Owned_text text(CP1252_FROM_UTF8(typed));
  if (text == nullptr)
    return {ACTION_UNKNOWN, 0, 0, typed};
  const char *following = nullptr;
  const Trf_form *form = form_of(text.get(), &following);
  if (form == nullptr)
    return {ACTION_LESSON, 0, 0, text.get()};
  return command_of(*form, following);
}

std::string TAG_TO_SEARCH(const char *typed) {
  std::string tag = skip_spaces(typed);
  if (tag.empty())
    return tag;
  tag.resize(2 * tag.size() + 1, '\0'); // a ligature becomes two letters
  RM_ACCENTS(tag.data());
  tag.resize(std::char_traits<char>::length(tag.c_str()));
  std::transform(tag.begin(), tag.end(), tag.begin(), g_ascii_tolower);
  return " " + tag + " ";
}

int EXTRACT_NB_FIRST_FIELD(char *ss, Trf_book *book) {
  std::string word = NTH_WORD(ss, 1);
  if (word.empty())
    return -1;
  if (is_number(word))
    return number_at_head(ss, book);
  std::string s_alias = ss;
  int num = NUM_FROM_ALIAS(s_alias.data(), book->G_kentel);
  if (num >= 1)
    return num;
  TELL_UNKNOWN_ALIAS(s_alias.c_str(), book);
  return -1;
}

void TELL_UNKNOWN_ALIAS(const char *text, Trf_book *book) {
  LOG_AND_SAY(book->fp_log, "EXTRACT_NB_FIRST_FIELD alias %s is unknown\n", text);
}
