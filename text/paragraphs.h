// The text of a dictionary as the lesson text pane shows it: paragraphs, and sound buttons in them.
//
// The text stands between two lines that begin with '#' and hold "#######". Its lines, once the
// accent notation is decoded (DECODE1_ACCENTS):
//
//   | the line                            | what it does                                         |
//   |-------------------------------------|------------------------------------------------------|
//   | contains "<)start)"                 | ends the paragraph; the button block that begins     |
//   |                                     | here is read and not shown                           |
//   | ". text" (blanks may precede)       | ends the paragraph, even an empty one; the rest is   |
//   |                                     | handled by the rows below                            |
//   | "< text", or a digit first          | the same, and the sign or digit stays                |
//   | ", text"                            | the rest is handled by the rows below: goes on with  |
//   |                                     | the paragraph whatever its first sign is             |
//   | begins with a label ("A>1")         | ends the paragraph; a button, and the rest begins    |
//   |                                     | the next paragraph                                   |
//   | empty, or blanks alone              | the first one ends the paragraph, even an empty one; |
//   |                                     | each further one in a row is a line of three blanks  |
//   | any other                           | goes on with the paragraph, after one blank          |
//
// A paragraph that ends is shown as one line, which the pane wraps.
#ifndef MERTU_TEXT_PARAGRAPHS_H
#define MERTU_TEXT_PARAGRAPHS_H

#include <string>
#include <vector>

#include "util/book.h"

// A piece of the text, in the order of the pane.
struct Trf_piece {
  std::string text;    // CP1252: text with its line end; or the label of a button
  bool button = false; // a sound button stands here
  bool known = false;  // the button's label was in the label table when the button was met
};

// Makes the working copy of lesson ilesson the book's stream, unless one is open already; then that
// one stays, whatever dictionary it belongs to. `lessons` becomes the path of the copy opened,
// path_of_lesson the directory of the lesson's dictionary. A copy that cannot be opened: fp null,
// exfp 0, and "CHECK_CORR_DBASE cannot open file=%s \n" in the log and on standard output.
void OPEN_TEXT(Trf_book *book);

// The heading ("KENTEL : " and the path of the dictionary, "EILSKRID : " and that of its working
// copy) and the text found in the book's stream: none where no stream is open or nothing in it
// begins the text. At most 10000 lines are read, those of button blocks apart. A button block on
// the way replaces the label table of the book (EXTRACT_LABEL_BUTTONS).
std::vector<Trf_piece> TEXT_PIECES(Trf_book *book);

#endif
