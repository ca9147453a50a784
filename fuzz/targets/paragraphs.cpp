// The text of a dictionary: pieces that the pane can show one after the other.
#include "text/paragraphs.h"
#include "fuzz/harness.h"
#include "fuzz/learner.h"
#include "text/button_block.h"

namespace {

void check_text(const std::string &text) {
  HOLDS(!text.empty() && text.back() == '\n');
  HOLDS(text.find('\n') == text.size() - 1);
  HOLDS(text.find('\t') == std::string::npos);
  HOLDS(text.find('\0') == std::string::npos);
}

// A label is ">" behind a capital, then a digit, up to the blank.
void check_label(const std::string &label) {
  HOLDS(label.size() >= 3 && label[0] >= 'A' && label[0] <= 'Z' && label[1] == '>');
  HOLDS(label[2] >= '0' && label[2] <= '9');
  HOLDS(label.find(' ') == std::string::npos);
}

bool same(const Trf_piece &a, const Trf_piece &b) {
  return a.text == b.text && a.button == b.button;
}

} // namespace

FUZZ_TARGET(paragraphs) {
  PUT_FILE("words/a.txt", "!# a\n");
  PUT_FILE("CPY/a.txt", input);
  Learner learner("words/a.txt ", " a ", 1);
  OPEN_TEXT(&learner.book);
  HOLDS(learner.book.exfp == 1);
  std::vector<Trf_piece> pieces = TEXT_PIECES(&learner.book);
  HOLDS(pieces.size() >= 4);
  for (const Trf_piece &piece : pieces) {
    if (piece.button)
      check_label(piece.text);
    else
      check_text(piece.text);
    HOLDS(piece.button || !piece.known);
  }
  // "ReDr" shows the same, though it may colour other buttons.
  std::vector<Trf_piece> again = TEXT_PIECES(&learner.book);
  HOLDS(pieces.size() == again.size());
  for (size_t i = 0; i < pieces.size(); i++)
    HOLDS(same(pieces[i], again[i]));
}
