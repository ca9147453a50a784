// Reads one line of any text file: aln_getline, and the cursor over the lines of an open file.
//
// How a line ends, and where the next one is said to begin. The offsets are stored in the index
// files and in the generated lesson files, so these rules belong to those formats:
//
//   the line begins with   is                       the next line begins
//   ---------------------  -----------------------  --------------------------------------------
//   end of file or 0xFF    no line (result -2)      (the offset is left as it was)
//   LF                     empty                    behind the LF
//   CR ... CR LF           empty                    behind the LF
//   CR ... CR, else        empty                    at the byte behind the CRs
//   any other byte         text, up to LF, CR, 0xFF or the end of the file:
//     ended by LF                                   behind the LF
//     ended by CR ... CR LF                         behind the LF
//     ended by CR ... CR, else                      ONE BYTE behind the byte that follows the CRs
//     ended by 0xFF                                 behind the 0xFF
//     ended by the end of the file                  one byte past the end of the file
//
// In the text a tab becomes eight spaces and a NUL byte is dropped. A line that holds well-formed
// UTF-8 sequences, and no byte that only single-byte text can hold, is turned into CP1252; any
// other line, and one with a character that CP1252 lacks, is handed back as it stands.
#ifndef MERTU_UTIL_LINE_READER_H
#define MERTU_UTIL_LINE_READER_H

#include <stdio.h>

// Lines that a walk over a file reads at most.
const long MAX_LINES_READ = 10000;

// Reads the line of fp that begins at byte offset *nc (from 0).
//   nc      in: the offset of the line; out: the offset where the next line begins
//   ss      the buffer, from malloc, or null; grown with realloc. It holds *nbytes bytes, one at
//           least. Afterwards it holds the line, ended by a NUL, and never is null. The caller
//           frees it with free (or g_free).
//   nbytes  its capacity, 0 or more; grows by 108 at a time. The block that the reader gives holds
//           five bytes more
//   fp      borrowed, open for reading and able to seek
// Returns the length of the line in bytes (0 for an empty one), -1 when the offset cannot be
// sought, -2 at the end of the file; in both these cases the line is empty and *nc unchanged.
long aln_getline(long *nc, char **ss, long *nbytes, FILE *fp);

// A walk over the lines of an open file. Its buffer is freed with it.
//
//   Trf_line_cursor cursor(fp);
//   while (NEXT_LINE(&cursor))
//     use(cursor.start, cursor.text, cursor.length);
//
struct Trf_line_cursor {
  FILE *fp = nullptr;          // borrowed
  long start = 0;              // byte offset of the line in text
  long next = 0;               // byte offset where the next line begins; set it to start elsewhere
  long length = 0;             // length of text in bytes; -1 a failed seek, -2 end of file
  long nb_read = 0;            // lines read
  long limit = MAX_LINES_READ; // lines at most; LONG_MAX for none
  char *text = nullptr;        // the line, never null after a read; may be changed in place
  long nbytes = 0;             // capacity of text (the block holds five bytes more)

  explicit Trf_line_cursor(FILE *stream) : fp(stream) {
  }
  Trf_line_cursor(const Trf_line_cursor &) = delete;
  Trf_line_cursor &operator=(const Trf_line_cursor &) = delete;
  ~Trf_line_cursor();
};

// Reads the next line into the cursor. Returns false at the end of the file (length -2) and on a
// failed seek (length -1), text then being empty; and, with nothing read or changed, when `limit`
// lines have been read (length 0 or more).
bool NEXT_LINE(Trf_line_cursor *cursor);

// The nb bytes at cursor->next as they stand in the file, without a look at the file: null where
// the stream does not hold all of them ready, or where `limit` lines have been read. Whoever knows
// the line that he expects there can spare its reading. Borrowed until the stream is next used.
const char *READY_BYTES(long nb, const Trf_line_cursor *cursor);

// Moves behind nb bytes that READY_BYTES has shown, which count as one line: start, next, nb_read.
// text and length stay as they were.
void PASS_READY_BYTES(long nb, Trf_line_cursor *cursor);

#endif
