// The settings file mertu.conf: its keys, its defaults and the reading of it.
//
// The file, read once at start-up and never written:
//
//   line            meaning
//   --------------- --------------------------------------------------------------------------
//   # ...           comment ('#' is the first character that is not a blank)
//   KEY :> VALUE <: a key anywhere in the line, then ":>", then tokens separated by blanks up to
//                   "<:" (or a further ":>"); the value may go on over the following lines
//   anything else   also an empty line: the program ends
//
//   A line is cut at its first CR or LF. "Blank" is the space character alone. A key line holds at
//   most 149 characters and a further line of a value at most 99: what is longer is read on as a
//   line of its own.
//
//   The keys, tried in this order, the first one found in the line wins:
//
//   Pages            dictionaries, see config/pages_key.h
//   Coef_Err         5 decimal numbers   cof1_err .. cof5_err, each only where within its range
//   Level_dico       skipped
//   Width_pix_dico   skipped
//   Width_pix_vocab  1 integer           book_pix_size[2]
//   Width_char_dico  skipped
//   Color_0_dico     3 integers          Color_dico[0], red green blue, decimal, 0x... or 0...
//   ... to Color_4_dico                  Color_dico[4]
//   Horiz_pix_total  1 integer           book_pix_size[0]
//   Verti_pix_total  1 integer           book_pix_size[1]
//   Font_lesson      font description    ss_font_lesson
//   Font_vocab       font description    ss_font_vocab
//   Which_lesson     dictionaries, see config/which_lesson.h
//   Path_idx1        1 directory         spath_idx1 of the registry
#ifndef MERTU_CONFIG_CONFIG_FILE_H
#define MERTU_CONFIG_CONFIG_FILE_H

#include "config/gdk_color.h"
#include "config/registry.h"
#include "util/book.h"

// Appearance of the window.
struct Prenestro {
  int npix_tot_dico[1];   // width of the dictionary pane in pixels; 600, no key sets it
  char font_dico[100];    // font of the dictionary pane; no key sets it
  GdkColor Color_dico[5]; // the colours Color_0_dico to Color_4_dico
  int book_pix_size[3];   // in pixels: width and height of the window, width of its left pane
};

// Sets every default, then reads ./mertu.conf.
// Caract_win: appearance; all is set but font_dico.
// book: its t_err (never null) receives the weights of the error score, its nbt_lesson the number
//   of lessons that KLASK_NB_PAJ counts.
// G_dico: the registry, zeroed before its first reading; it is started afresh and filled.
// ss_font_lesson, ss_font_vocab: 101 bytes each; the fonts of the text pane and of the command
//   entry. A font from the file begins with a blank and is cut to 100 bytes.
// Reads ./mertu.conf and opens the dictionaries named there to see whether they exist.
// Ends of the program: 0 "s=%s order unknown =%d " on a line without a key (an empty one too);
// 1 "file ./mertu.conf unreachable stop ", "cannot read file ./mertu.conf: %s " where reading
// fails; those of the value readers (config/config_values.h, config/which_lesson.h,
// config/pages_key.h).
void FURCH_SET(Prenestro *Caract_win, Trf_book *book, Trf_string *G_dico, char *ss_font_lesson,
               char *ss_font_vocab);

#endif
