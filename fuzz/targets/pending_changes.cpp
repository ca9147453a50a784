// Lines that a dead machine left half written: an index becomes what the note of them says,
// whatever that holds, and keeps its size; nothing else is touched.
//
// Pieces: the index; the note, in which "%I" on a line of its own stands for a place of the index.
#include <algorithm>
#include <sstream>

#include "db/mend_forgotten.h"
#include "db/pending_changes.h"
#include "fuzz/harness.h"
#include "util/owned.h"

namespace {

const char INDEX[] = "./IDX1/idx1_lesson";
const char NOTE[] = "mertu_pending";
const char OTHER[] = "dictionary";

// The note with a true place of the index, which is to be written backwards.
std::string with_place(const std::string &note, const std::string &index) {
  size_t mark = note.find("%I\n");
  size_t length = std::min<size_t>(index.size() / 2, 52);
  if (mark == std::string::npos || length == 0)
    return note;
  size_t start = index.size() / 4;
  std::string before = index.substr(start, length);
  std::string after(before.rbegin(), before.rend());
  std::string place = std::string(INDEX) + " " + std::to_string(start) + " " +
                      std::to_string(length) + "\n" + before + "\n" + after + "\n";
  return note.substr(0, mark) + place + note.substr(mark + 3);
}

// A place of the note that is told in so many words.
struct Told_place {
  std::string path;
  size_t start = 0;
  std::string before, after;
};

enum Told { TOLD_PLACE, TOLD_NOTHING, TOLD_ODDLY };

// Takes the next place of the note, by the table alone. Numbers that are told in another way than
// they are written are no matter of this model.
Told take_place(std::istringstream *note, Told_place *place) {
  std::string line;
  long start = 0, length = 0;
  if (!std::getline(*note, line) || note->eof() || line.find('\0') != line.npos)
    return TOLD_NOTHING;
  std::istringstream words(line);
  words >> place->path >> start >> length;
  if (line != place->path + " " + std::to_string(start) + " " + std::to_string(length))
    return TOLD_ODDLY;
  std::string rest = note->str().substr((size_t)note->tellg());
  size_t nb = (size_t)length;
  if (start < 0 || length <= 0 || nb > rest.size() || 2 * nb + 2 > rest.size() ||
      rest[nb] != '\n' || rest[2 * nb + 1] != '\n')
    return TOLD_NOTHING;
  place->start = (size_t)start;
  place->before = rest.substr(0, nb);
  place->after = rest.substr(nb + 1, nb);
  note->seekg((std::streamoff)(2 * nb + 2), std::ios::cur);
  return TOLD_PLACE;
}

void carry_out(const Told_place &place, std::string *index) {
  size_t nb = place.before.size();
  if (nb > index->size() || place.start > index->size() - nb)
    return;
  for (size_t i = 0; i < nb; i++) {
    char byte = (*index)[place.start + i];
    if (byte != place.before[i] && byte != place.after[i])
      return;
  }
  index->replace(place.start, nb, place.after);
}

// The index is what the note, carried out place by place, makes of it.
void check_index(const std::string &before, const std::string &note) {
  std::string after = GET_FILE(INDEX);
  HOLDS(after.size() == before.size());
  HOLDS(after == before || note.find("idx1_lesson") != std::string::npos);
  std::istringstream text(note);
  std::string expected = before;
  Told_place place;
  Told told;
  while ((told = take_place(&text, &place)) == TOLD_PLACE) {
    if (place.path == INDEX)
      carry_out(place, &expected);
    else if (place.path.find("lesson") != std::string::npos)
      return; // perhaps the same file by another name
  }
  HOLDS(told == TOLD_ODDLY || after == expected);
}

// What is written by the routines themselves, torn where the machine died, is finished.
void check_own_note(const std::string &index, size_t torn_at) {
  size_t length = std::min<size_t>(index.size(), 52);
  std::string text(length, 'x');
  PUT_FILE(INDEX, index);
  Trf_pending pending;
  Owned_stream fp = OPEN_STREAM(INDEX, "r");
  HOLDS(ADD_CHANGE(fp.get(), INDEX, 0, text, &pending) == 0);
  HOLDS(WRITE_PENDING(&pending, NO_LOG()).empty());
  HOLDS(GET_FILE(INDEX) == text + index.substr(length));
  HOLDS(!FILE_THERE(NOTE));
  std::string torn = text.substr(0, std::min(torn_at, length));
  PUT_FILE(INDEX, torn + index.substr(torn.size()));
  PUT_FILE(NOTE, std::string(INDEX) + " 0 " + std::to_string(length) + "\n" +
                     index.substr(0, length) + "\n" + text + "\n");
  MEND_FORGOTTEN(NO_LOG());
  HOLDS(length == 0 || GET_FILE(INDEX) == text + index.substr(length));
}

} // namespace

FUZZ_TARGET(pending_changes) {
  std::vector<std::string> pieces = PIECES(input, 2);
  std::string note = with_place(pieces[1], pieces[0]);
  PUT_FILE(INDEX, pieces[0]);
  PUT_FILE(OTHER, pieces[0]);
  PUT_FILE(NOTE, note);
  int status = STATUS_OF([] { MEND_FORGOTTEN(NO_LOG()); });
  HOLDS(status == -1 || status == 1);
  HOLDS(FILE_THERE(NOTE) == (status == 1));
  HOLDS(GET_FILE(OTHER) == pieces[0]);
  if (status == -1)
    check_index(pieces[0], note);
  check_own_note(pieces[0], note.size() % 53);
}
