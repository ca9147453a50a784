// Accented letters written in ASCII ("\'e" for e acute), and keys to compare texts without them.
//
// The notation: a backslash, a sign, a letter. All text is CP1252, ended by NUL, changed in place.
//
//   sign              small letters   capital letters
//   ----------------  --------------  ---------------
//   ~  tilde          n a             N
//   `  grave          a e u           A E U
//   '  acute          a e             E
//   ^  circumflex     a e i o u       A E I O U
//   :  diaeresis      a e i o u       E I O U
//   ,  cedilla        c               C
//   (none: two letters)  \ae and \AE are the ligatures, \oe and \OE the two letters
#ifndef MERTU_UTIL_ACCENTS_H
#define MERTU_UTIL_ACCENTS_H

// Turns the notation into accented letters, each tab into eight spaces, curved quotation marks
// into straight ones and the en dash into a hyphen.
//   s1  the text; its buffer has room for the text, 7 bytes more for each tab, and the NUL
void DECODE_ACCENTS(char *s1);

// DECODE_ACCENTS that also keeps French punctuation on one line with its word: the space behind an
// opening mark and the space before a closing one become no-break spaces (0xA0). Room as above.
void DECODE1_ACCENTS(char *s1);

// Handles the backslash at s1[*i]: writes what it and the two bytes behind it stand for behind
// s1[*j] and leaves *i at the last byte it has used, *j at the last byte written.
//   i   where the walk reads; *i + 2 lies before the NUL
//   j   where it has written last (-1 at the start); below *i
void TRO_ACCENT(int *i, int *j, char *s1);

// Makes the key by which texts are compared: accents are dropped, ligatures become two letters.
//   s1  the text; its buffer has room for the text, one byte more for each ligature (0xE6, 0xC6),
//       and the NUL. Nothing behind that is touched.
void RM_ACCENTS(char *s1);

// TRO_ACCENT for RM_ACCENTS: writes the bare letter (both of a ligature).
void WORK_RM_ACCENT(int *i, int *j, char *s1);

// Replaces the accented letter at s1[*i] by the bare one; leaves a ligature and counts it in *nb.
// The capitals 0xC0-0xC5 and a few small letters stay as they are.
void WORK_ACCENT(int *i, int *nb, char *s1);

#endif
