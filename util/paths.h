// Paths taken apart: directory and last component.
//
// None of these touches a file, and none changes its argument.
#ifndef MERTU_UTIL_PATHS_H
#define MERTU_UTIL_PATHS_H

#include <stddef.h>

// The directory of a path as written in the configuration: from its first byte that is no blank up
// to the last "/" or backslash, backslashes turned to "/"; "./" before it unless it begins with
// ".", "/", a backslash or a drive ("C:"); "./" alone where there is no separator.
// Returns a new string; the caller frees it with g_free. Null for an empty string.
char *PATH_FROM_STRING(char *string);

// The directory of a path whose separator is "/": up to and including the last one; "./" where
// there is none or it is the first character.
// Returns a new string; the caller frees it with g_free. Null for an empty string or one that
// begins with "&".
char *PATH_FROM_STRING_FILE(char *path);

// What stands behind the last "/" or backslash, else the whole.
// Returns a new string; the caller frees it with g_free. Null for an empty string.
char *FILE_NAME_FROM_STRING(char *string);

// What stands behind the last "/", else the whole.
// Returns a new string; the caller frees it with g_free. Null for an empty string.
// Ends the program as TEXT_WITHIN does, with "FILENAME_FROM_PATH".
char *FILENAME_FROM_PATH(char *path);

// "&/" and what stands behind the last "/" or backslash: the mark of a name whose directory is that
// of the name before it, written also where the path had no directory.
// Returns a new string; the caller frees it with g_free. Null for an empty string.
// Ends the program as TEXT_WITHIN does, with "in RM_PATH_FROM_STRING".
char *RM_PATH_FROM_STRING(char *path);

// Returns a new block of `room` bytes that holds `text`; the caller frees it with g_free.
// Ends the program: status 90, "<who> error mem STOP " when the text with its end does not fit.
char *TEXT_WITHIN(const char *text, size_t room, const char *who);

#endif
