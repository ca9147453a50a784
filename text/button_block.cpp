// The button block of a dictionary: which ranges of which recordings a sound button plays.
#include "text/button_block.h"

#include <ctype.h>
#include <glib.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "util/line_reader.h"
#include "util/numbers.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

// Elements of the offset array at first, its element 0 among them, and how many it grows by.
const size_t FIRST_OFFSETS = 11;
const size_t MORE_OFFSETS = 5;

// The table of a block while it is read.
struct Label_table {
  std::string s_label = " ";
  std::vector<long> nc_label = {0};
  std::unordered_set<std::string> defined;
};

// The label that a line begins with; "" when there is none. *end becomes the index behind it.
std::string label_of(char *line, int *end) {
  int i0 = -1;
  int i1 = -1;
  *end = 0;
  if (PERHAPS_BUTTON(line, &i0, &i1) == 0)
    return "";
  *end = i1 + 1;
  return std::string(line + i0, line + i1 + 1);
}

// QUIRK first definition: of two definitions of a label in one block the first counts. A reader
// may expect the later line to win. It is meant: the later line is where the ranges of the label
// before it end, or go on, and nothing more. Test: ButtonBlock.FirstDefinitionOfALabelCounts
void define(const std::string &label, long offset, Label_table *table) {
  if (label.empty() || !table->defined.insert(label).second)
    return;
  table->s_label += label + " ";
  table->nc_label.push_back(offset);
}

size_t room_for(size_t nb_elements) {
  size_t room = FIRST_OFFSETS;
  while (room < nb_elements)
    room += MORE_OFFSETS;
  return room;
}

void give_table(const Label_table &table, Trf_book *book) {
  g_free(book->s_label);
  g_free(book->nc_label);
  book->s_label = g_strdup(table.s_label.c_str());
  book->nc_label = g_new0(long, room_for(table.nc_label.size()));
  std::copy(table.nc_label.begin(), table.nc_label.end(), book->nc_label);
  book->nc_label[0] = static_cast<long>(table.nc_label.size()) - 1;
}

// Reads the lines of a block into the table. False when no line closes it.
bool read_block(long *nc, char **ss, long *nbytes, FILE *fp, Label_table *table) {
  for (long nb_read = 0; fp != nullptr && nb_read < MAX_LINES_READ; nb_read++) {
    long start = *nc;
    if (aln_getline(nc, ss, nbytes, fp) < 0)
      return false;
    if (strstr(*ss, BLOCK_END) != nullptr)
      return true;
    int end = 0;
    define(label_of(*ss, &end), start, table);
  }
  return false;
}

// Hands out the range that a text (a line without its label) names.
void hand_range(char *text, const Trf_range_out *out) {
  text += strspn(text, " ");
  size_t length = strcspn(text, " ");
  std::string name(text, length);
  long frames[3] = {0, 0, 0};
  EXTR_N_LINT(2, text + length, frames);
  if (frames[0] == 2)
    out->range(name.data(), frames[1], frames[2], out->data);
}

// Hands out the range of the line that defines the label. False when that line does not hold it.
//
// QUIRK one copy open: a click reads the working copy that is open. While an entry of another
// dictionary is on screen (a lesson may borrow some) that is the copy of the other dictionary, and
// the click finds no line there and plays nothing. A reader would expect the text's own copy to be
// opened. It is meant: the book has one stream, and the drill needs it where it stands; the next
// entry of the lesson brings the buttons back.
// Test: LabelWalk.CopyOfAnotherDictionaryHasNoLineForTheLabel
bool hand_definition(const char *label, Trf_line_cursor *lines, const Trf_range_out *out) {
  char *place = NEXT_LINE(lines) ? strstr(lines->text, label) : nullptr;
  if (place == nullptr)
    return false;
  hand_range(place + strlen(label), out);
  return true;
}

// Hands out the ranges of the lines behind the definition.
void hand_further_ranges(const std::string &label, Trf_line_cursor *lines, FILE *fp_log,
                         const Trf_range_out *out) {
  while (NEXT_LINE(lines)) {
    int end = 0;
    std::string other = label_of(lines->text, &end);
    if (strstr(lines->text, BLOCK_END) != nullptr || (!other.empty() && other != label))
      return;
    hand_range(lines->text + end, out);
  }
  if (lines->length < 0)
    LOG_AND_SAY(fp_log, "cback_button no <)end) return \n");
}

} // namespace

void START_LABELS(Trf_book *book) {
  if (book->s_label == nullptr || book->nc_label == nullptr)
    give_table(Label_table(), book);
}

int PERHAPS_BUTTON(char *str, int *i0, int *i1) {
  *i0 = -1;
  *i1 = -1;
  const char *label = str + strspn(str, " ");
  if (label[0] < 'A' || label[0] > 'Z' || label[1] != '>' ||
      isdigit(static_cast<unsigned char>(label[2])) == 0)
    return 0;
  *i0 = static_cast<int>(label - str);
  *i1 = *i0 + static_cast<int>(strcspn(label, " ")) - 1;
  return 1;
}

// QUIRK labels outlast their lesson: only another block replaces the table, so a text without a
// block is shown with the labels of an earlier one, and a button of the same name is coloured but
// plays nothing. A reader would expect the table to be emptied with the text. It is meant: "Clr"
// and "ReDr" empty the pane too, and the buttons must be known again afterwards.
// Test: Paragraphs.LabelsLastUntilAnotherBlockIsRead
void EXTRACT_LABEL_BUTTONS(long *nc, char **ss, long *nbytes, Trf_book *book) {
  Label_table table;
  if (!read_block(nc, ss, nbytes, book->fp, &table))
    LOG_AND_SAY(book->fp_log, "EXTRACT_LABEL_BUTTON no <)end) return \n");
  give_table(table, book);
}

int WHAT_BUTTON(char *label, Trf_book *book) {
  std::string word = std::string(" ") + label + " ";
  const char *place = book->s_label == nullptr ? nullptr : strstr(book->s_label, word.c_str());
  if (place == nullptr) {
    TRACE("Unknown  button %s  \n", label);
    return 0;
  }
  return static_cast<int>(std::count(static_cast<const char *>(book->s_label), place, ' ')) + 1;
}

void WALK_LABEL(char *label, Trf_book *book, const Trf_range_out *out) {
  int k = WHAT_BUTTON(label, book);
  if (k == 0)
    return;
  if (book->exfp == 0 || book->fp == nullptr) {
    LOG_AND_SAY(book->fp_log, "cback_button error fp == NULL \n");
    return;
  }
  Trf_line_cursor lines(book->fp);
  lines.next = book->nc_label[k];
  lines.limit = MAX_LINES_READ + 1;
  if (!hand_definition(label, &lines, out)) {
    LOG_AND_SAY(book->fp_log, "cback_button not found button %s \n", label);
    return;
  }
  hand_further_ranges(label, &lines, book->fp_log, out);
}
