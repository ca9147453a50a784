// The one application record, the book, and the display limits it points to.
//
// Everything the book points to is an incomplete type here, so that any file may include this
// header without drawing in the window's toolkit or a module to its right.
#ifndef MERTU_UTIL_BOOK_H
#define MERTU_UTIL_BOOK_H

#include <stdio.h>

typedef struct _GtkStyle GtkStyle;
typedef struct _GtkWidget GtkWidget;
struct Trf_err;
struct Trf_posit;
struct Trf_string;

// Lines the quiz pane can hold; a line beyond is not shown.
const int MAX_LINE = 200;
// Elements of the two arrays of line widgets; those from MAX_LINE on are spare.
const int NB_LINE_WIDGETS = 205;

// Display limits. A pointer to it stands in the book; nothing fills it.
struct Trf_extrm {
  int nb_line;    // lines now
  int nbsup_line; // lines in excess
  int max_line;   // lines at most
  int nb_word;    // words now
  int nbsup_word; // words in excess
  int max_word;   // words at most
};

// The book: allocated once, zeroed, by ALLOCATE_RECORDS; never freed; handed to every handler.
struct Trf_book {
  int active;         // 0 while a press on the answer button is being handled
  int start_lesson;   // 0 nothing announced, 1 announced, 2 described, 3 or more drilling
  int state;          // 1 a question is shown, 2 its response is shown
  int toggle_sens_qr; // 1 when a change of direction waits for the next verdict
  int sens_qr;        // direction of questioning: 1 Q->R, 2 R->Q
  int sens_qrm;       // direction of the question on screen
  int sound;          // 1 sound on, 0 sound off
  int interro_sound;  // 1 when a question with a sound line is only heard
  int nb_line;        // lines in the quiz pane, 0 to MAX_LINE
  int QR_no;          // entry being asked, from 1
  int QR_order;       // its rank in the ordering of the direction, from 1
  int nb0;            // count kept by the drill
  int nb;             // count kept by the drill
  int ilesson;        // current lesson, from 1; 0 for a composed lesson
  int nbt_lesson;     // lessons in the registry
  int ibb;            // counter of the quiz screen
  long *posit;        // current position array (owned by the position table)
  FILE *fp;           // working copy of the current dictionary
  int exfp;           // 1 while fp is open
  FILE *fp_gene;      // generated lesson file, while open
  FILE *fp_idx1;      // idx1 file, while open
  FILE *fp_log;       // the log, open from start to end

  int lenmx_str_lessons;    // characters that fit in lessons
  char *lessons;            // description of the lesson (g_malloc)
  int lenmx_path_of_lesson; // characters that fit in path_of_lesson
  char *path_of_lesson;     // directory of the current dictionary, with its "/" (g_malloc)
  char *s_label;            // labels of the sound buttons of the text pane (g_malloc)
  long *nc_label;           // their offsets in the working copy (g_malloc)

  Trf_posit *t_posit; // the position table
  Trf_err *t_err;     // weights of the error score

  GtkStyle *style;         // style of the command entry, given to every line of the quiz pane
  GtkWidget *win_label;    // label of the text pane
  GtkWidget *pWindow;      // the window
  GtkWidget *hpaned;       // its movable divider
  GtkWidget *frame1;       // left frame
  GtkWidget *frame2;       // right frame
  GtkWidget *vBox1;        // box of the left frame
  GtkWidget *entry_book;   // command entry
  GtkWidget *scroll_page;  // scrolled window of the left frame
  GtkWidget *scroll2_page; // scrolled window of the right frame
  GtkWidget *button_qr;    // direction button
  GtkWidget *button_sound; // sound button
  GtkWidget *Button1;      // answer button
  GtkWidget *v_page;       // quiz pane: one line box per line
  GtkWidget *v2_page;      // box inside the right scrolled window
  GtkWidget *text_view;    // lesson text pane

  GtkWidget *lbox2[NB_LINE_WIDGETS];   // line boxes of the quiz pane
  GtkWidget *wbutton[NB_LINE_WIDGETS]; // the label inside each of them
  GtkWidget *separator;                // a separator; nothing sets it

  Trf_string *G_kentel; // the lesson registry
  Trf_extrm *extrm;     // display limits; nothing fills them
};

#endif
