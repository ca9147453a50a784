// CP1252, the encoding of all text in memory, and UTF-8, that of the window and of many files.
#ifndef MERTU_UTIL_ENCODINGS_H
#define MERTU_UTIL_ENCODINGS_H

// Returns 1 for a byte (CP1252) that belongs to a word, else 0: the letters and digits of ASCII,
// the accented letters of French and its neighbours, '-', the apostrophe and the backslash.
int SPE_ALPHA_NUM(char s1);

// What a byte announces when it is taken as the first of a UTF-8 sequence.
const int NOT_UTF8 = -1;

// Returns how many continuation bytes (0x80-0xBF) must follow the byte (0 to 255): 1 for
// 0xC0-0xDF, 2 for 0xE0-0xEF, 3 for 0xF0-0xF7, 0 for a byte below 0xC0; NOT_UTF8 for 0xF8-0xFF,
// which only single-byte text can hold.
int ANNOUNCED_BYTES(int byte);

// Turns `length` bytes of UTF-8 (NUL bytes among them are kept) into CP1252 at `result`, which has
// room for `length` bytes (the result is never longer) and does not overlap `text`. Returns the
// length of the result, or -1 when the text is no UTF-8 or has a character that CP1252 lacks
// (what then stands at `result` is of no use). Nothing is terminated.
long CONVERT_TO_CP1252(const char *text, long length, char *result);

// The text (CP1252, null for "") in UTF-8. The five bytes that stand for no character (0x81, 0x8D,
// 0x8F, 0x90, 0x9D) become U+FFFD. Returns a new string, never null; the caller frees it with
// g_free.
char *UTF8_FROM_CP1252(const char *text);

// The text (UTF-8) in CP1252, or null when it is null, no UTF-8, or has a character that CP1252
// lacks. Returns a new string; the caller frees it with g_free.
char *CP1252_FROM_UTF8(const char *text);

#endif
