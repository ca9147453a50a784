// The text of a dictionary as the lesson text pane shows it: paragraphs, and sound buttons in them.
#include "text/paragraphs.h"

#include <ctype.h>
#include <glib.h>
#include <string.h>

#include <algorithm>

#include "config/registry.h"
#include "db/idx1_format.h"
#include "text/button_block.h"
#include "text/find_sound.h"
#include "util/accents.h"
#include "util/line_reader.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Characters that lessons gains beyond the path it is grown for; its block has 5 bytes more.
const int MORE_LESSONS = 30;
const int SPARE_LESSONS = 5;
// Bytes that a tab grows by when it becomes blanks.
const size_t TAB_GROWTH = 7;
const char FURTHER_BLANK_LINE[] = "   \n";

// The text while its lines are read.
struct Text {
  std::vector<Trf_piece> pieces;
  std::string paragraph; // the paragraph being built
  bool begun = false;    // it has text, or the button it begins with
  int nb_blank = 0;      // blank lines in a row just before this line
};

void keep_copy_path(const char *path, Trf_book *book) {
  int length = static_cast<int>(strlen(path));
  if (book->lessons == nullptr || length > book->lenmx_str_lessons) {
    book->lenmx_str_lessons = length + MORE_LESSONS;
    book->lessons =
        static_cast<char *>(g_realloc(book->lessons, book->lenmx_str_lessons + SPARE_LESSONS));
  }
  memcpy(book->lessons, path, static_cast<size_t>(length) + 1);
}

void open_copy(Trf_book *book) {
  Owned_text found(S_CPY_LESSON_FROM_NUM(book->ilesson, book->G_kentel));
  const char *path = found == nullptr ? "" : found.get();
  keep_copy_path(path, book);
  book->fp = fopen(path, "r");
  book->exfp = book->fp == nullptr ? 0 : 1;
  // QUIRK line of the missing copy: the line in the log names the check of the index files, not the
  // lesson text. A reader would take it for a name copied by mistake. It is meant: whoever looks
  // for missing working copies in the log finds them all by one word.
  // Test: Paragraphs.MissingCopyIsLoggedAndShowsTheHeadingAlone
  if (book->fp == nullptr)
    LOG_AND_SAY(book->fp_log, "CHECK_CORR_DBASE cannot open file=%s \n", path);
}

void add_text(const std::string &text, Text *pane) {
  pane->pieces.push_back({text, false, false});
}

void add_heading(Trf_book *book, Text *pane) {
  Owned_text dictionary(S_LESSON_FROM_NUM(book->ilesson, book->G_kentel));
  Owned_text copy(S_CPY_LESSON_FROM_NUM(book->ilesson, book->G_kentel));
  add_text(std::string("KENTEL : ") + (dictionary == nullptr ? "" : dictionary.get()) + "\n", pane);
  add_text(" \n", pane);
  add_text(std::string("EILSKRID : ") + (copy == nullptr ? "" : copy.get()) + "\n", pane);
  add_text(" \n", pane);
}

// Ends the paragraph, be it empty.
void end_paragraph(Text *pane) {
  add_text(pane->paragraph + "\n", pane);
  pane->paragraph.clear();
  pane->begun = false;
}

// Ends the paragraph where one has begun.
void end_begun_paragraph(Text *pane) {
  if (pane->begun)
    end_paragraph(pane);
}

// The bytes of a line from index `from` on, without the blanks at both ends.
std::string without_blanks(const std::string &line, size_t from) {
  size_t first = std::min(line.find_first_not_of(' ', from), line.size());
  size_t last = line.find_last_not_of(' ');
  return first == line.size() ? "" : line.substr(first, last + 1 - first);
}

void go_on(const std::string &text, Text *pane) {
  if (!pane->paragraph.empty())
    pane->paragraph += ' ';
  pane->paragraph += text;
  pane->begun = true;
  pane->nb_blank = 0;
}

// QUIRK gap from the second blank line: one blank line ends the paragraph and shows no room below
// it; only a second one does. A reader would expect the first to be seen. It is meant: whoever
// writes a text leaves single blank lines to keep it readable, and the pane is small.
// Test: Paragraphs.FirstBlankLineEndsTheParagraph,
// Paragraphs.FurtherBlankLinesAreLinesOfThreeBlanks
void take_blank_line(Text *pane) {
  if (pane->nb_blank == 0)
    end_paragraph(pane);
  else
    add_text(FURTHER_BLANK_LINE, pane);
  pane->nb_blank++;
}

// QUIRK colour when made: a button is coloured when its label is known at the moment it is made, so
// a block that stands below its buttons leaves them grey, though they play. A reader would expect
// the colour to be given at the end. It is meant: the text is read once, and a block stands above
// the buttons it defines ("ReDr" colours them, for then the block has been read).
// Test: Paragraphs.ButtonAboveItsBlockIsNotKnownYet
void add_button(std::string label, Trf_book *book, Text *pane) {
  bool known = WHAT_BUTTON(label.data(), book) != 0;
  pane->pieces.push_back({label, true, known});
}

// Takes a line that begins with a label, which stands from index i0 to i1.
//
// QUIRK label and quotation mark: the label runs to the next blank of the line as it is shown, and
// the blank before a straight quotation mark (or "?", "!", ";", ":") is shown as one that does not
// break; so in 'A>1 "Yes"' the label is the whole. A reader would expect it to end behind the
// digit. It is meant: what stands on the button is what is looked for in the block. A text that
// begins with a quotation mark takes a curved one, which binds nothing before it.
// Test: Paragraphs.StraightQuotationMarkJoinsTheLabel
void take_label_line(const std::string &line, int i0, int i1, Trf_book *book, Text *pane) {
  size_t end = static_cast<size_t>(i1) + 1;
  end_begun_paragraph(pane);
  add_button(line.substr(static_cast<size_t>(i0), end - static_cast<size_t>(i0)), book, pane);
  pane->paragraph = without_blanks(line, end);
  pane->begun = true;
  pane->nb_blank = 0;
}

// What the first sign of a line asks for: "<", a digit or "." ends the paragraph; "." and ","
// themselves become a blank.
//
// QUIRK first sign of a line: a line that happens to begin with a digit or "<" does not go on with
// the paragraph, and these and "." end an empty paragraph too, which shows as an empty line. A
// reader would expect both only where a list is written. It is meant: a list needs no mark then,
// and a comma before the sign (it is not shown) keeps the paragraph together.
// Test: Paragraphs.DigitOrOpeningSignBeginsAParagraphAndStays, Paragraphs.CommaIsNotShownAndGoesOn,
// Paragraphs.PointEndsAnEmptyParagraphToo
void heed_first_sign(std::string *line, Text *pane) {
  size_t first = line->find_first_not_of(' ');
  char sign = first == std::string::npos ? ' ' : (*line)[first];
  if (sign == '.' || sign == '<' || isdigit(static_cast<unsigned char>(sign)) != 0)
    end_paragraph(pane);
  if (sign == '.' || sign == ',')
    (*line)[first] = ' ';
}

// Takes a line of the text that is neither its end nor the start of a button block.
void take_line(std::string line, Trf_book *book, Text *pane) {
  heed_first_sign(&line, pane);
  int i0 = -1;
  int i1 = -1;
  if (PERHAPS_BUTTON(line.data(), &i0, &i1) == 1)
    take_label_line(line, i0, i1, book, pane);
  else if (line.find_first_not_of(' ') == std::string::npos)
    take_blank_line(pane);
  else
    go_on(without_blanks(line, 0), pane);
}

// The line as it is shown.
std::string decoded(const char *text) {
  std::string line = text;
  size_t tabs = static_cast<size_t>(std::count(line.begin(), line.end(), '\t'));
  line.resize(line.size() + TAB_GROWTH * tabs + 1);
  DECODE1_ACCENTS(line.data());
  line.resize(strlen(line.c_str()));
  return line;
}

// Goes behind the line that begins the text. False where there is none.
bool find_text(Trf_line_cursor *lines) {
  while (lines->fp != nullptr && NEXT_LINE(lines)) {
    if (IS_HEADER_MARK(lines->text))
      return true;
  }
  return false;
}

void read_text(Trf_line_cursor *lines, Trf_book *book, Text *pane) {
  while (NEXT_LINE(lines)) {
    std::string line = decoded(lines->text);
    if (IS_HEADER_MARK(line.c_str())) {
      end_paragraph(pane);
      return;
    }
    if (line.find(BLOCK_START) == std::string::npos) {
      take_line(line, book, pane);
      continue;
    }
    end_begun_paragraph(pane);
    EXTRACT_LABEL_BUTTONS(&lines->next, &lines->text, &lines->nbytes, book);
  }
  if (!pane->paragraph.empty())
    end_paragraph(pane);
}

} // namespace

void OPEN_TEXT(Trf_book *book) {
  if (book->exfp == 0 || book->fp == nullptr)
    open_copy(book);
  Owned_text path(S_LESSON_FROM_NUM(book->ilesson, book->G_kentel));
  REMEMBER_DIRECTORY(path.get(), book);
}

// QUIRK another dictionary's text: where an entry of another dictionary is on screen, its copy is
// the open one, and its text is read, below the heading of the lesson. A reader would expect the
// lesson's own. It is meant: the text is that of the copy which a click on its buttons reads.
// Test: Paragraphs.OpenCopyIsReadWhateverDictionaryItBelongsTo
std::vector<Trf_piece> TEXT_PIECES(Trf_book *book) {
  Text pane;
  add_heading(book, &pane);
  Trf_line_cursor lines(book->exfp == 0 ? nullptr : book->fp);
  if (find_text(&lines))
    read_text(&lines, book, &pane);
  return pane.pieces;
}
