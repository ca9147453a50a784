// What the learner types in the command entry, read: which command it is, and with what.
//
// The forms, in the order in which they are tried. A word end is the end of the text or a space;
// "..." is what follows the spaces behind the word.
//
//   form                      behind the word        action
//   ------------------------  ---------------------  ----------------------------------------------
//   !sound                    on... off... anything  ACTION_SOUND (no word end is asked for)
//   !new  !bal                word end, direction    ACTION_NEW, ACTION_BALANCE
//   !worst !worsto !worsty    word end, direction    ACTION_WORST, code 1 to 4
//     !worstn
//   !lessv                    word end, direction    ACTION_WORST, code 5
//   !ltag  !dico  !help help  word end               ACTION_LIST_TAGS, ACTION_LISTING, ACTION_HELP
//   !ccdb                     word end, names        ACTION_CHECK
//   !trf                      word end               ACTION_TRANSFER
//   !synchro                  a space, a directory   ACTION_SYNCHRONISE
//   !tag  !tagqr  !tagrq      word end, a tag        ACTION_TAG
//   !ntag !ntagqr !ntagrq     word end, a tag        ACTION_NEW_TAG
//   anything else             -                      ACTION_LESSON: a number or an alias
//
// A direction is a word that begins with "qr" (Q->R) or "rq" (R->Q); any other word is passed over.
#ifndef MERTU_COMMAND_COMMAND_FORMS_H
#define MERTU_COMMAND_COMMAND_FORMS_H

#include <string>

#include "util/book.h"

enum Trf_action {
  ACTION_SOUND,
  ACTION_NEW,
  ACTION_BALANCE,
  ACTION_WORST,
  ACTION_LIST_TAGS,
  ACTION_LISTING,
  ACTION_HELP,
  ACTION_CHECK,
  ACTION_TRANSFER,
  ACTION_SYNCHRONISE,
  ACTION_TAG,
  ACTION_NEW_TAG,
  ACTION_LESSON,
  ACTION_UNKNOWN // a character that CP1252 lacks: names nothing
};

// What the code of ACTION_SOUND asks for.
enum { SOUND_OFF = 0, SOUND_ON = 1, SOUND_OTHER = 2 };

// A command as it was read. Its texts are CP1252.
struct Trf_command {
  Trf_action action;
  int code;             // ACTION_WORST: 1 to 5; ACTION_SOUND: SOUND_OFF, SOUND_ON or SOUND_OTHER
  int sens_qr;          // the direction asked for: 1 Q->R, 2 R->Q, 0 none
  std::string argument; // a tag lesson: the tag (TAG_TO_SEARCH); ACTION_LESSON: the whole text;
                        // ACTION_UNKNOWN: the same in UTF-8; else what follows the word
};

// Reads a command. typed: the text of the entry (UTF-8), not changed.
Trf_command READ_COMMAND(const char *typed);

// A typed tag (CP1252) as the tag lessons take it: without accents, its ASCII letters small, one
// space before and one behind; spaces before it are dropped. "" where there is no tag.
std::string TAG_TO_SEARCH(const char *typed);

// The lesson that a typed text (CP1252) names, -1 for none. The first word, where it is all digits,
// is its number (not compared with the number of lessons; what follows it does not matter); else
// the whole text, without the spaces around it, is an alias (config/registry.h).
//   ss   not changed
// An unknown alias is told, "EXTRACT_NB_FIRST_FIELD alias %s is unknown\n" in the log and on
// standard output; a blank text is not. A number that cannot be read is logged,
// "EXTRACT_NB_FIRST_FIELD ss is not integer \n" and "ss=%s \n".
int EXTRACT_NB_FIRST_FIELD(char *ss, Trf_book *book);

// Tells that a text names no lesson, as above.
void TELL_UNKNOWN_ALIAS(const char *text, Trf_book *book);

#endif
