// "!dico": every entry of every dictionary in alphabetical order, in the file ./mertu_dico.
#include "command/dictionary_listing.h"

#include <errno.h>
#include <glib.h>
#include <string.h>

#include <algorithm>
#include <vector>

#include "config/registry.h"
#include "db/idx1_walk.h"
#include "db/mend_forgotten.h"
#include "lesson/visited_index.h"
#include "score/merge_runs.h"
#include "score/position_table.h"
#include "util/accents.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

char LISTED_NAME[] = "./mertu_dico1"; // the entries as they come
char SORTED_NAME[] = "./mertu_dico";  // the listing

const int FIRST_CAPACITY = 10; // of the array of offsets, which has NB_SPARE_POSIT elements more
const int CAPACITY_STEP = 20;

const size_t AHEAD = 16; // lines by which the memory is asked for the next ones to be written

// The entries listed so far.
struct Listing {
  Trf_book *book;
  FILE *fp;         // ./mertu_dico1
  long **posit;     // the table's array: the offset of line k, from 1
  int capacity = 0; // of that array, without its spare elements
  int nb = 0;       // lines in the file
  long length = 0;  // bytes in the file
};

void cannot_write(const char *name, int reason, Trf_book *book) {
  LOG_AND_SAY(book->fp_log, "cannot write file %s: %s \n", name, strerror(reason));
}

// Gives the array this capacity; the new elements are 0.
void resize_positions(int capacity, Listing *listing) {
  int before = *listing->posit == nullptr ? 0 : listing->capacity + NB_SPARE_POSIT;
  int nb = capacity + NB_SPARE_POSIT;
  *listing->posit = g_renew(long, *listing->posit, static_cast<gsize>(nb));
  std::fill(*listing->posit + std::min(before, nb), *listing->posit + nb, 0L);
  listing->capacity = capacity;
}

// Takes the table's array for the offsets.
void begin_positions(Listing *listing) {
  g_free(*listing->posit);
  *listing->posit = nullptr;
  resize_positions(FIRST_CAPACITY, listing);
}

// The table may be used again: none of its arrays is shorter than it says.
void end_positions(Listing *listing) {
  int capacity = listing->book->t_posit->nbmx_posit;
  if (capacity > listing->capacity)
    resize_positions(capacity, listing);
}

void list_line(const char *line, Listing *listing) {
  listing->nb++;
  if (listing->nb >= listing->capacity)
    resize_positions(listing->capacity + CAPACITY_STEP, listing);
  (*listing->posit)[listing->nb] = listing->length;
  size_t length = strlen(line);
  fwrite(line, 1, length, listing->fp);
  fputc('\n', listing->fp);
  listing->length += static_cast<long>(length) + 1;
}

// Appends the entries of a dictionary.
void list_dictionary(const Trf_visited_index &index, Listing *listing) {
  Trf_idx1_walk walk(index.fp.get(), index.s_idx1.get(), listing->book->fp_log, nullptr);
  SKIP_HEADER(&walk);
  ALLOW_LINES(MAX_IDX1_LINES, &walk);
  for (Trf_walk_line kind = NEXT_NAME(&walk); kind != WALK_END; kind = NEXT_NAME(&walk))
    if (kind == WALK_ENTRY)
      list_line(walk.line.text, listing);
  TELL_WHERE_CUT(walk.path, &walk);
}

// Writes ./mertu_dico1. Returns false where it could not be written whole.
bool list_entries(Listing *listing) {
  Trf_book *book = listing->book;
  Trf_registry_walk dictionaries(book->G_kentel);
  for (int k = 1; k <= book->nbt_lesson; k++) {
    Trf_visited_index index;
    if (OPEN_VISITED_INDEX(k, &dictionaries, book->fp_log, &index))
      list_dictionary(index, listing);
  }
  if (fflush(listing->fp) != 0 || ferror(listing->fp)) {
    cannot_write(LISTED_NAME, errno, book);
    return false;
  }
  LOG_LINE(book->fp_log, "file : %s  done\n", LISTED_NAME);
  return true;
}

// Reads the line at this offset. Returns false where it is not the line of an entry.
bool read_entry_line(long offset, Trf_line_cursor *line) {
  line->next = offset;
  return NEXT_LINE(line) && !IS_END_MARK(line->text) && line->text[0] == '#';
}

// The key of an entry's line, appended to the text; nothing for a blank one.
//
// QUIRK capital accents in a listing: only the capitals A to Z are made small before the accents
// go, so that an accented capital becomes a plain capital and its word stands before every word in
// small letters; an accented A keeps its accent, and its word stands behind them. One would expect
// the same order for all; it is meant: the order then is the same on every machine, whatever its
// language. Tests: DictionaryListing.AccentedCapitalStandsBeforeSmallLetters
// DictionaryListing.CapitalAWithAnAccentStandsBehindSmallLetters
void append_key(const char *line, std::string *text) {
  size_t begin = text->size();
  size_t length = strcspn(line + 1, "*");
  text->resize(begin + 2 * length + 1, '\0'); // room for the second letters of ligatures
  char *key = text->data() + begin;
  std::transform(line + 1, line + 1 + length, key, [](char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
  });
  RM_ACCENTS(key);
  size_t length_of_key = key[strspn(key, " ")] == '\0' ? 0 : strlen(key);
  text->resize(begin + length_of_key);
}

// Appends the line of the listing.
//
// QUIRK doubled sign: each line of the listing gets a "#" more and begins with "##". One would
// expect the line of the index; it is meant: a line put into a dictionary as it stands borrows its
// entry from the dictionary that owns it. Tests: DictionaryListing.EachLineBeginsWithTwoSigns,
// DictionaryListing.ALineOfTheListingPutIntoADictionaryBorrowsItsEntry
void append_listed(const char *line, std::string *text) {
  *text += '#';
  *text += line;
  *text += '\n';
}

// The first sixteen bytes, the first one highest: they compare as the texts do, but equal ones tell
// nothing.
void take_head(const char *key, uint64_t *head) {
  for (uint64_t *half : {head, head + 1}) {
    *half = 0;
    for (size_t i = 0; i < sizeof(*half); i++) {
      *half = *half << 8 | static_cast<unsigned char>(*key);
      if (*key != '\0')
        key++;
    }
  }
}

// Reads the line unless its key is known. A line that cannot be sorted ends the program.
void read_key(int status, Trf_abc_line *entry, Trf_abc_file *file) {
  if (entry->key > 0)
    return;
  if (!read_entry_line(entry->offset, &file->line))
    STOP_PROGRAM(nullptr, status, "MERGE_ABC_FILE error %d \n", status);
  entry->key = file->text.size();
  append_key(file->line.text, &file->text);
  file->text += '\0';
  append_listed(file->line.text, &file->text);
  file->text += '\0';
  take_head(file->text.data() + entry->key, entry->head);
}

int compare_lines(Trf_abc_line *left, Trf_abc_line *right, Trf_abc_file *file) {
  read_key(13, left, file);
  read_key(14, right, file);
  for (int half : {0, 1})
    if (left->head[half] != right->head[half])
      return left->head[half] < right->head[half] ? -1 : 1;
  return strcmp(file->text.data() + left->key, file->text.data() + right->key);
}

// Sorts the lines that begin at posit[i0] to posit[i1]. Returns them, from element i0 on.
std::vector<Trf_abc_line> sort_lines(int i0, int i1, long *posit, Trf_abc_file *file) {
  std::vector<Trf_abc_line> lines(static_cast<size_t>(i1) + 1);
  std::vector<Trf_abc_line> work(lines.size());
  for (int i = i0; i <= i1; i++)
    lines[static_cast<size_t>(i)].offset = posit[i];
  MSORT_ABC_FILE(i0, i1, lines.data(), work.data(), file);
  for (int i = i0; i <= i1; i++)
    posit[i] = lines[static_cast<size_t>(i)].offset;
  return lines;
}

// Writes the lines in their order, as the sort has read them. One line alone has not been read.
void write_sorted(const Listing &listing, const std::vector<Trf_abc_line> &lines,
                  Trf_abc_file *file, FILE *fp) {
  for (int k = 1; k <= listing.nb; k++) {
    // Where a line stands is known before it is needed, and is nowhere near the one before.
    size_t later = std::min(static_cast<size_t>(k) + AHEAD, lines.size() - 1);
    __builtin_prefetch(file->text.data() + lines[later].key);
    Trf_abc_line line = lines[static_cast<size_t>(k)];
    if (line.key == 0) {
      if (!read_entry_line(line.offset, &file->line))
        STOP_PROGRAM(listing.book->fp_log, 14, "MERTU_DICO error 14 \n");
      append_listed(file->line.text, &file->text);
    }
    const char *key = file->text.data() + line.key;
    fputs(key + strlen(key) + 1, fp);
  }
  fprintf(fp, "%s\n", END_MARK);
}

// Sorts the lines listed and writes ./mertu_dico.
void write_listing(Listing *listing) {
  Trf_book *book = listing->book;
  Trf_abc_file file(listing->fp);
  file.text.reserve(2 * static_cast<size_t>(listing->length)); // a key is no longer than its line
  std::vector<Trf_abc_line> lines = sort_lines(1, listing->nb, *listing->posit, &file);
  FILE *fp = fopen(SORTED_NAME, "w");
  if (fp == nullptr) {
    cannot_write(SORTED_NAME, errno, book);
    return;
  }
  write_sorted(*listing, lines, &file, fp);
  bool failed = ferror(fp) != 0;
  if (fclose(fp) != 0 || failed)
    cannot_write(SORTED_NAME, errno, book);
  else
    LOG_LINE(book->fp_log, "file : %s  done\n", SORTED_NAME);
}

} // namespace

void MERTU_DICO(Trf_book *book) {
  if (book->nbt_lesson < 1)
    return;
  MEND_FORGOTTEN(book->fp_log);
  Owned_stream fp = OPEN_STREAM(LISTED_NAME, "w+");
  if (fp == nullptr) {
    cannot_write(LISTED_NAME, errno, book);
    return;
  }
  Listing listing = {book, fp.get(), &book->t_posit->posit};
  begin_positions(&listing);
  if (list_entries(&listing))
    write_listing(&listing);
  end_positions(&listing);
}

void MERGESORT_ABC_FILE(int i0, int i1, long *posit, FILE *fp) {
  if (i1 <= i0)
    return;
  Trf_abc_file file(fp);
  sort_lines(i0, i1, posit, &file);
}

void MSORT_ABC_FILE(int i0, int i1, Trf_abc_line *lines, Trf_abc_line *work, Trf_abc_file *file) {
  SORT_HALVES(i0, i1, [lines, work, file](int left, int mid, int right) {
    MERGE_ABC_FILE(left, mid, right, lines, work, file);
  });
}

void MERGE_ABC_FILE(int i0, int m, int i1, Trf_abc_line *lines, Trf_abc_line *work,
                    Trf_abc_file *file) {
  MERGE_RUNS(i0, m, i1, lines, work, [file](Trf_abc_line &left, Trf_abc_line &right) {
    return compare_lines(&left, &right, file);
  });
}
