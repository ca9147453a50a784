// The values of the settings file: numbers, colours, fonts and the index directory.
//
// A value follows ":>" on its key line, or begins on the next line where nothing but blanks
// follows, and ends at "<:" or at a further ":>". Each reader is given the stream and the key line
// already read, and reads further lines from the stream as the value needs them.
#ifndef MERTU_CONFIG_CONFIG_VALUES_H
#define MERTU_CONFIG_CONFIG_VALUES_H

#include <stdio.h>

#include <functional>

#include "config/gdk_color.h"

// Bytes of the line buffers: a key line, and a further line of a value.
const int CONF_LINE = 150;
const int CONF_NEXT_LINE = 100;
// Bytes of the string that EXTRACT_INPUT fills: five of the longest tokens and more.
const int CONF_TOKENS = 1000;
// Bytes of a font value, its terminator not counted.
const int CONF_FONT = 100;

// Reads the next line and cuts it at its first CR or LF.
// line: `size` bytes; receives at most size - 1 characters, the rest of a longer line is read as a
// line of its own. Returns false at the end of the file.
bool READ_CONF_LINE(char *line, int size, FILE *fp);

// Returns the index of the first character that is not a blank behind the first ":>" of the key
// line s (the index of its terminator where none is), or -1 where s has no ":>".
int FIND_VALUE(const char *s);

// True where the end marker "<:" or ":>" stands at p.
bool AT_END_MARKER(const char *p);

// What takes the tokens of one line: begins at index i of line and sets *code_fin to 1 where the
// value ends.
using Trf_collector = std::function<void(int i, char *line, int *code_fin)>;

// Walks over the lines of a value until the collector has met its end.
// fp: the settings file; s: the key line; reader: the name under which a failed reading is told.
// Ends of the program: 1 "error in line s=%s " (no ":>"), 1 "error 1 while reading in <reader> stop
// " (end of the file before the first line of the value), 2 "error 2 while reading in <reader> stop
// " (end of the file inside the value).
void READ_VALUE(FILE *fp, char *s, const char *reader, const Trf_collector &collect);

// Reads exactly nb_tobe integers.
// fp: the settings file; s: the key line; param: receives nb_tobe integers, each converted as
// atoi would.
// Ends of the program: 1 "error in line s=%s ", "error 1 while reading in EXTRACT_ORDER stop ",
// "error in EXTRACT_LEVEL n_pages=%d nb_tobe=%d stop "; 2 "error 2 while reading in EXTRACT_ORDER
// stop ".
void EXTRACT_LEVEL(FILE *fp, char *s, int nb_tobe, int *param);

// Reads exactly nb_tobe decimal numbers, each converted as atof would.
// Ends of the program: as EXTRACT_LEVEL, the wrong count told as "error in FLOAT_EXTRACT_LEVEL
// n_pages=%d nb_tobe=%d stop ".
void FLOAT_EXTRACT_LEVEL(FILE *fp, char *s, int nb_tobe, float *param);

// Reads exactly three integers, decimal, 0x... or 0..., into red, green and blue (the low 16 bits
// of each). The pixel of the colour stands as it was.
// Ends of the program: 1 "error in line s=%s ", "error 1 while reading in EXTRACT_COLOR stop ",
// "error in EXTRACT_COLOR n_pages=%d nb_tobe= 3 stop "; 2 "error 2 while reading in EXTRACT_COLOR
// stop ".
void EXTRACT_COLOR(FILE *fp, char *s, GdkColor *white);

// Reads a font description: tokens of letters, digits, "-" and "*".
// n_fonts: receives the number of tokens; ss_fonts: 101 bytes; receives each token after one
// blank, cut to 100 bytes.
// Ends of the program: 1 "error in line s=%s ", "error 1 while reading in EXTRACT_FONT_DICO stop ";
// 2 "error 2 while reading in EXTRACT_FONT_DICO stop ".
void EXTRACT_FONT_DICO(FILE *fp, char *s, int *n_fonts, char *ss_fonts);

// Reads the directory of the idx1 files: tokens that hold anything but blanks, joined by one blank,
// every backslash stored as "/".
// nspath: characters that fit in *s_path, whose block (from g_malloc) has 5 bytes more; grown
// together by 50 characters where the next character would reach nspath.
// Ends of the program: as EXTRACT_FONT_DICO, with the same texts.
void EXTRACT_PATH_IDX1(FILE *fp, char *s, int *nspath, char **s_path);

// Collects the numeric tokens (letters, digits, "-", ">", "_", ".", "\" and "/") of one line.
// n_pages: number of tokens, counted on; i: index in s to begin at; s: the line; ss_pages:
// CONF_TOKENS bytes; receives each token after one blank, tokens beyond its room are counted only;
// code_fin: set to 1 where an end marker stands behind a token or in place of one.
void EXTRACT_INPUT(int *n_pages, int i, char *s, char *ss_pages, int *code_fin);

// The same for the tokens of a font: ss_fonts has 101 bytes and is cut to 100.
void EXTRACT_FONT_NAME(int *n_fonts, int i, char *s, char *ss_fonts, int *code_fin);

// The same for the tokens of a path: joined by one blank, "\" stored as "/"; nspath and s_path as
// in EXTRACT_PATH_IDX1. A token that begins with an end marker ends the value.
void ADD_TO_PATH_NAME(int *nspath, int i, char *s, char **s_path, int *code_fin);

// Strips a font text: skips the leading blanks of s and copies the run of letters, digits, "-" and
// "*" found there into ss_fonts (101 bytes, cut to 100).
void FILTRE_FONT_DICO(char *s, char *ss_fonts);

#endif
