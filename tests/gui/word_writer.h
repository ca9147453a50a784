// A learner who writes and edits her dictionaries by chance.
#ifndef MERTU_TESTS_GUI_WORD_WRITER_H
#define MERTU_TESTS_GUI_WORD_WRITER_H

#include <random>
#include <string>
#include <vector>

#include "gui/drill_model.h"

class Word_writer {
public:
  // chance: borrowed.
  explicit Word_writer(std::mt19937 *chance) : chance_(chance) {
  }
  // A new dictionary with so many entries, in one of the two encodings. The alias ends in a digit.
  Plain_dictionary dictionary(const std::string &file, const std::string &alias, int nb);
  // Lets one dictionary have a line that stands for an entry of another. Returns the number of that
  // dictionary, from 0; -1 where the line drawn cannot be.
  int add_double(std::vector<Plain_dictionary> *dictionaries);
  // One edit: entries in another order, another response, another question, a new alias, the other
  // encoding, a new entry, or one fewer.
  void edit(Plain_dictionary *dictionary);

private:
  std::mt19937 *chance_;
  int nb_questions_ = 0;

  int below(size_t n) {
    return (int)((*chance_)() % n);
  }
  bool one_in(int n) {
    return below((size_t)n) == 0;
  }
  std::string new_question();
  void insert(const Plain_item &item, std::vector<Plain_item> *items);
  void add_entry(Plain_dictionary *dictionary);
};

#endif
