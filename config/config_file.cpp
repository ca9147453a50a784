// The settings file mertu.conf: its keys, its defaults and the reading of it.
#include "config/config_file.h"

#include <errno.h>
#include <glib.h>
#include <string.h>

#include <algorithm>
#include <iterator>

#include "config/config_values.h"
#include "config/pages_key.h"
#include "config/which_lesson.h"
#include "score/error_score.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const char CONF_FILE[] = "./mertu.conf";
const char DEFAULT_FONT[] = "helvetica 18";
const int FONT_BYTES = CONF_FONT + 1;

// A reading under way: the file, the line that holds a key, and where the values go.
struct Trf_reading {
  FILE *fp;
  char line[CONF_LINE];
  Prenestro *window;
  Trf_book *book;
  Trf_string *registry;
  char *font_lesson;
  char *font_vocab;
  int nspath;  // characters that fit in the registry's spath_idx1
  int n_pages; // names stored by the key Pages
};

void read_pages(Trf_reading *reading, int) {
  EXTRACT_PAGES(reading->fp, reading->line, &reading->n_pages, reading->registry);
}

// QUIRK a weight out of range is passed over: it keeps its default without a word, and the other
// weights of the line count. It looks like a missing message; it is meant: a score never divides
// or grows out of hand, and the line still serves.
// Test: ConfigFile.AWeightOutsideItsRangeKeepsItsDefault
void read_weights(Trf_reading *reading, int) {
  float cof[5];
  FLOAT_EXTRACT_LEVEL(reading->fp, reading->line, 5, cof);
  Trf_err *t_err = reading->book->t_err;
  if (cof[0] > 0 && cof[0] <= 10)
    t_err->cof1_err = cof[0];
  if (cof[1] > 0 && cof[1] <= 10)
    t_err->cof2_err = cof[1];
  if ((double)cof[2] >= 0.1 && cof[2] <= 10)
    t_err->cof3_err = cof[2];
  if (cof[3] >= 1 && cof[3] <= 10)
    t_err->cof4_err = cof[3];
  if (cof[4] >= 1 && cof[4] <= 10)
    t_err->cof5_err = cof[4];
}

// QUIRK three keys are skipped: their line is passed over with the value on it, but a value that
// goes on over a further line ends the program there, as that line holds no key. It looks like keys
// forgotten halfway; it is meant: the values have no effect, and one line is all they may take.
// Test: ConfigFile.ASkippedKeyMustHoldItsValueOnItsOwnLine
void skip_line(Trf_reading *, int) {
}

void read_color(Trf_reading *reading, int index) {
  EXTRACT_COLOR(reading->fp, reading->line, &reading->window->Color_dico[index]);
}

void read_size(Trf_reading *reading, int index) {
  EXTRACT_LEVEL(reading->fp, reading->line, 1, &reading->window->book_pix_size[index]);
}

void read_font_lesson(Trf_reading *reading, int) {
  int n_fonts = 0;
  EXTRACT_FONT_DICO(reading->fp, reading->line, &n_fonts, reading->font_lesson);
}

void read_font_vocab(Trf_reading *reading, int) {
  int n_fonts = 0;
  EXTRACT_FONT_DICO(reading->fp, reading->line, &n_fonts, reading->font_vocab);
}

void read_which_lesson(Trf_reading *reading, int) {
  EXTRACT_WHICH_LESSONS(reading->fp, reading->line, reading->registry);
  CLOSE_LESSON_LIST(reading->registry);
}

void read_path_idx1(Trf_reading *reading, int) {
  EXTRACT_PATH_IDX1(reading->fp, reading->line, &reading->nspath, &reading->registry->spath_idx1);
}

// A key and the reader of its value.
struct Trf_key {
  const char *name;
  void (*read)(Trf_reading *reading, int index);
  int index; // which of several like values
};

// The order is part of the format: the first key found in a line wins.
const Trf_key KEYS[] = {
    {"Pages", read_pages, 0},           {"Coef_Err", read_weights, 0},
    {"Level_dico", skip_line, 0},       {"Width_pix_dico", skip_line, 0},
    {"Width_pix_vocab", read_size, 2},  {"Width_char_dico", skip_line, 0},
    {"Color_0_dico", read_color, 0},    {"Color_1_dico", read_color, 1},
    {"Color_2_dico", read_color, 2},    {"Color_3_dico", read_color, 3},
    {"Color_4_dico", read_color, 4},    {"Horiz_pix_total", read_size, 0},
    {"Verti_pix_total", read_size, 1},  {"Font_lesson", read_font_lesson, 0},
    {"Font_vocab", read_font_vocab, 0}, {"Which_lesson", read_which_lesson, 0},
    {"Path_idx1", read_path_idx1, 0},
};

// The key of a line, or null.
//
// QUIRK a key counts anywhere in its line: it is looked for as a piece of text, also inside a value
// or a longer word, and the first of the table wins. It looks like a careless search; it is meant:
// a line may begin with any remark, and the order of the table settles the rest.
// Test: ConfigFile.ALineThatHoldsTwoKeysBelongsToTheFirstOfTheTable
const Trf_key *key_of(const char *line) {
  const Trf_key *key = std::find_if(std::begin(KEYS), std::end(KEYS), [line](const Trf_key &one) {
    return strstr(line, one.name) != nullptr;
  });
  return key == std::end(KEYS) ? nullptr : key;
}

// Reads one line and the value of its key.
//
// QUIRK an unknown line ends the program with status 0: so does an empty line. It looks like an
// error that reports success; it is meant: a mistyped key must not be passed over, and for whoever
// starts the program a settings file yet to be finished is no failure of the program.
// Test: ConfigFile.AnUnknownKeyEndsTheProgramWithStatus0
void read_line(Trf_reading *reading) {
  const char *text = reading->line + strspn(reading->line, " ");
  if (*text == '#')
    return;
  const Trf_key *key = key_of(text);
  if (key == nullptr)
    STOP_PROGRAM(nullptr, 0, "s=%s order unknown =%d \n", reading->line, -1);
  TRACE("FURCH_SET key=%s \n", key->name);
  key->read(reading, key->index);
}

void set_window_defaults(Prenestro *window) {
  static const GdkColor COLORS[5] = {{0, 0xFFFF, 0xFFFF, 0xFFFF},
                                     {0, 0xDDDD, 0xDDDD, 0xFFFF},
                                     {0, 0xDDDD, 0xFFFF, 0xDDDD},
                                     {0, 0xFFFF, 0xDDDD, 0xDDDD},
                                     {0, 0xEEEE, 0xEEEE, 0xDDDD}};
  static const int SIZES[3] = {1100, 800, 600};
  window->npix_tot_dico[0] = 600;
  std::copy(std::begin(COLORS), std::end(COLORS), window->Color_dico);
  std::copy(std::begin(SIZES), std::end(SIZES), window->book_pix_size);
}

void set_defaults(Trf_reading *reading) {
  set_window_defaults(reading->window);
  g_strlcpy(reading->font_lesson, DEFAULT_FONT, FONT_BYTES);
  g_strlcpy(reading->font_vocab, DEFAULT_FONT, FONT_BYTES);
  *reading->book->t_err = {9.0f, 3.0f, 2.0f, 6.0f, 10.0f};
  START_REGISTRY(reading->registry);
  reading->nspath = FIRST_PATH_LENGTH;
}

} // namespace

void FURCH_SET(Prenestro *Caract_win, Trf_book *book, Trf_string *G_dico, char *ss_font_lesson,
               char *ss_font_vocab) {
  Trf_reading reading = {};
  reading.window = Caract_win;
  reading.book = book;
  reading.registry = G_dico;
  reading.font_lesson = ss_font_lesson;
  reading.font_vocab = ss_font_vocab;
  set_defaults(&reading);
  Owned_stream file = OPEN_STREAM(CONF_FILE, "r");
  if (file == nullptr)
    STOP_PROGRAM(nullptr, 1, "file ./mertu.conf unreachable stop ");
  reading.fp = file.get();
  while (READ_CONF_LINE(reading.line, CONF_LINE, reading.fp))
    read_line(&reading);
  int reason = errno;
  if (ferror(reading.fp))
    STOP_PROGRAM(nullptr, 1, "cannot read file %s: %s \n", CONF_FILE, strerror(reason));
  LIST_IDX1_PATHS(G_dico);
  book->nbt_lesson = KLASK_NB_PAJ(G_dico->st_lesson);
}
