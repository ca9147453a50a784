// Where a sound file lies: beside the dictionary, here, or in the directory SOUND/ of both.
#ifndef MERTU_TEXT_FIND_SOUND_H
#define MERTU_TEXT_FIND_SOUND_H

struct Trf_book;

// Stores the directory of the dictionary at `path` (null: nothing) in path_of_lesson, grown when
// needed.
void REMEMBER_DIRECTORY(char *path, Trf_book *book);

// Looks for the sound file named `ss` and writes its path.
//   s_sound    out: the path; a g_malloc block (null for none yet), grown with g_realloc; the
//              caller frees it with g_free
//   nbyt_snd   the capacity of *s_sound in bytes, 0 when null; grown with it
//   ss         the name as the dictionary has it; not changed
//   book       its path_of_lesson is the directory of the current dictionary
// The places: 1 path_of_lesson, 2 "./", 3 "./SOUND/", 4 path_of_lesson + "SOUND/". The search
// begins at the place where the last sound was found (1 at first) and never turns back to a
// lower one. Returns 1 when a file there can be opened for reading, else 0 (*s_sound then holds no
// path to rely on).
int SEARCH_SND_FILE_NAME(char **s_sound, long *nbyt_snd, char *ss, Trf_book *book);

// Lets the next search begin at place 1 again, as at the program's start.
void FORGET_SOUND_PLACE();

#endif
