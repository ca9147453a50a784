// The values of the settings file: numbers, colours, fonts and the index directory.
#include "config/config_values.h"

#include <glib.h>
#include <stdlib.h>
#include <string.h>

#include "util/report.h"

namespace {

// Which bytes a token is made of.
using Trf_token_byte = bool (*)(char byte);

bool numeric_byte(char byte) {
  return g_ascii_isalnum(byte) || (byte != '\0' && strchr("->_.\\/", byte) != nullptr);
}

bool font_byte(char byte) {
  return g_ascii_isalnum(byte) || byte == '-' || byte == '*';
}

bool path_byte(char byte) {
  return byte != ' ' && byte != '\0';
}

const char *skip_blanks(const char *place) {
  return place + strspn(place, " ");
}

int run_length(const char *text, Trf_token_byte belongs) {
  const char *end = text;
  while (belongs(*end))
    end++;
  return (int)(end - text);
}

// Appends at most `length` bytes of token to text, which holds at most `room` characters.
void append_cut(char *text, int room, const char *token, int length) {
  int used = (int)strlen(text);
  int taken = MIN(length, MAX(room - used, 0));
  memcpy(text + used, token, (size_t)taken);
  text[used + taken] = '\0';
}

// Collects the tokens of one line, each after one blank, into a text of `room` characters.
//
// QUIRK a stray byte hides the rest of its line: a byte that belongs to no token ends the reading
// of its line, without a word, and the value goes on with the next line. It looks like a lost
// error message; it is meant: what stands behind such a byte has always been free for remarks,
// and settings files rely on it.
// Test: ConfigValues.AStrayByteHidesTheRestOfItsLine
void collect_tokens(const char *line, Trf_token_byte belongs, char *text, int room, int *n_tokens,
                    int *code_fin) {
  for (const char *place = line;;) {
    place = skip_blanks(place);
    int length = run_length(place, belongs);
    if (length > 0) {
      append_cut(text, room, " ", 1);
      append_cut(text, room, place, length);
      (*n_tokens)++;
      place += length;
    }
    if (AT_END_MARKER(place))
      *code_fin = 1;
    if (length == 0 || *code_fin)
      return;
  }
}

// The numeric tokens of a value, each after one blank; returns how many there are.
int read_numbers(FILE *fp, char *s, const char *reader, char *tokens) {
  int n_pages = 0;
  tokens[0] = '\0';
  READ_VALUE(fp, s, reader, [&](int i, char *line, int *code_fin) {
    EXTRACT_INPUT(&n_pages, i, line, tokens, code_fin);
  });
  return n_pages;
}

// The next token of a collection; moves *place behind it.
const char *next_token(const char **place) {
  const char *token = skip_blanks(*place);
  *place = token + run_length(token, path_byte);
  return token;
}

// Appends one character to a path, growing its block where it is full.
void add_to_path(int *nspath, char **s_path, size_t *length, char byte) {
  if ((int)*length + 1 >= *nspath) {
    *nspath += 50;
    *s_path = static_cast<char *>(g_realloc(*s_path, (gsize)*nspath + 5));
  }
  (*s_path)[(*length)++] = byte == '\\' ? '/' : byte;
  (*s_path)[*length] = '\0';
}

} // namespace

// QUIRK a longer line is two lines: a line beyond the buffer is read on as a line of its own. It
// looks like a buffer bug; it is meant: the length of a line is part of the format, and a long
// comment must be broken into several lines that begin with '#'.
// Test: ConfigFile.TheRestOfALongLineIsALineOfItsOwn
bool READ_CONF_LINE(char *line, int size, FILE *fp) {
  if (fgets(line, size, fp) == nullptr)
    return false;
  line[strcspn(line, "\r\n")] = '\0';
  return true;
}

int FIND_VALUE(const char *s) {
  const char *marker = strstr(s, ":>");
  return marker == nullptr ? -1 : (int)(skip_blanks(marker + 2) - s);
}

// QUIRK a further ":>" ends a value: as "<:" does. It looks like a typing error let through; it is
// meant: values closed with the marker that opened them are read.
// Test: ConfigValues.AFurtherOpeningMarkerEndsTheValueToo
bool AT_END_MARKER(const char *p) {
  return strncmp(p, "<:", 2) == 0 || strncmp(p, ":>", 2) == 0;
}

void READ_VALUE(FILE *fp, char *s, const char *reader, const Trf_collector &collect) {
  int i = FIND_VALUE(s);
  if (i < 0)
    STOP_PROGRAM(nullptr, 1, "error in line s=%s \n", s);
  char next_line[CONF_NEXT_LINE];
  int code_fin = 0;
  if (s[i] != '\0') {
    collect(i, s, &code_fin);
  } else {
    if (!READ_CONF_LINE(next_line, CONF_NEXT_LINE, fp))
      STOP_PROGRAM(nullptr, 1, "error 1 while reading in %s stop ", reader);
    collect(0, next_line, &code_fin);
  }
  while (!code_fin) {
    if (!READ_CONF_LINE(next_line, CONF_NEXT_LINE, fp))
      STOP_PROGRAM(nullptr, 2, "error 2 while reading in %s stop ", reader);
    collect(0, next_line, &code_fin);
  }
}

// QUIRK numbers are told as EXTRACT_ORDER: a file that ends inside a number is reported under the
// name EXTRACT_ORDER, which no routine bears. It looks like a forgotten renaming; it is meant: the
// learner's notes on what to mend name that line.
// Test: ConfigValues.AFileThatEndsInsideANumberIsToldAsExtractOrder
void EXTRACT_LEVEL(FILE *fp, char *s, int nb_tobe, int *param) {
  char tokens[CONF_TOKENS];
  int n_pages = read_numbers(fp, s, "EXTRACT_ORDER", tokens);
  if (n_pages != nb_tobe)
    STOP_PROGRAM(nullptr, 1, "error in EXTRACT_LEVEL n_pages=%d nb_tobe=%d stop \n", n_pages,
                 nb_tobe);
  const char *place = tokens;
  for (int i = 0; i < nb_tobe; i++)
    param[i] = (int)strtol(next_token(&place), nullptr, 10);
}

void FLOAT_EXTRACT_LEVEL(FILE *fp, char *s, int nb_tobe, float *param) {
  char tokens[CONF_TOKENS];
  int n_pages = read_numbers(fp, s, "EXTRACT_ORDER", tokens);
  if (n_pages != nb_tobe)
    STOP_PROGRAM(nullptr, 1, "error in FLOAT_EXTRACT_LEVEL n_pages=%d nb_tobe=%d stop \n", n_pages,
                 nb_tobe);
  const char *place = tokens;
  for (int i = 0; i < nb_tobe; i++)
    param[i] = (float)strtod(next_token(&place), nullptr);
}

void EXTRACT_COLOR(FILE *fp, char *s, GdkColor *white) {
  char tokens[CONF_TOKENS];
  int n_pages = read_numbers(fp, s, "EXTRACT_COLOR", tokens);
  if (n_pages != 3)
    STOP_PROGRAM(nullptr, 1, "error in EXTRACT_COLOR n_pages=%d nb_tobe= 3 stop \n", n_pages);
  const char *place = tokens;
  for (guint16 *channel : {&white->red, &white->green, &white->blue})
    *channel = (guint16)strtol(next_token(&place), nullptr, 0);
}

// QUIRK a font from the file begins with a blank: each token is stored after one blank, the first
// one too. It looks like a missing trim; it is meant: the toolkit reads " helvetica 14" as
// "helvetica 14", and FILTRE_FONT_DICO skips the blank.
// Test: ConfigValues.AFontIsStoredWithALeadingBlank
void EXTRACT_FONT_DICO(FILE *fp, char *s, int *n_fonts, char *ss_fonts) {
  *n_fonts = 0;
  ss_fonts[0] = '\0';
  READ_VALUE(fp, s, "EXTRACT_FONT_DICO", [&](int i, char *line, int *code_fin) {
    EXTRACT_FONT_NAME(n_fonts, i, line, ss_fonts, code_fin);
  });
}

// QUIRK a path is told as EXTRACT_FONT_DICO: a file that ends inside Path_idx1 is reported under
// the name of the font reader. It looks like a copied message; it is meant: both values are read by
// one rule and bear one message.
// Test: ConfigValues.AFileThatEndsInsideThePathIsToldAsAFont
void EXTRACT_PATH_IDX1(FILE *fp, char *s, int *nspath, char **s_path) {
  (*s_path)[0] = '\0';
  READ_VALUE(fp, s, "EXTRACT_FONT_DICO", [&](int i, char *line, int *code_fin) {
    ADD_TO_PATH_NAME(nspath, i, line, s_path, code_fin);
  });
}

void EXTRACT_INPUT(int *n_pages, int i, char *s, char *ss_pages, int *code_fin) {
  collect_tokens(s + i, numeric_byte, ss_pages, CONF_TOKENS - 1, n_pages, code_fin);
}

void EXTRACT_FONT_NAME(int *n_fonts, int i, char *s, char *ss_fonts, int *code_fin) {
  collect_tokens(s + i, font_byte, ss_fonts, CONF_FONT, n_fonts, code_fin);
}

// QUIRK a path keeps its closing marker: in "./IDX1<:" the marker belongs to the path, because a
// path may hold any character but a blank. It looks like a missed end; it is meant: only a marker
// that stands apart ends a path.
// Test: ConfigValues.AMarkerGluedToAPathBelongsToThePath
void ADD_TO_PATH_NAME(int *nspath, int i, char *s, char **s_path, int *code_fin) {
  size_t used = strlen(*s_path);
  const char *place = s + i;
  for (;;) {
    const char *token = next_token(&place);
    if (AT_END_MARKER(token))
      *code_fin = 1;
    if (token == place || *code_fin)
      return;
    if (used > 0)
      add_to_path(nspath, s_path, &used, ' ');
    for (; token < place; token++)
      add_to_path(nspath, s_path, &used, *token);
  }
}

void FILTRE_FONT_DICO(char *s, char *ss_fonts) {
  const char *font = skip_blanks(s);
  ss_fonts[0] = '\0';
  append_cut(ss_fonts, CONF_FONT, font, run_length(font, font_byte));
}
