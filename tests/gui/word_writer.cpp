// A learner who writes and edits her dictionaries by chance.
#include "support/prelude.h"

#include "gui/word_writer.h"

#include <algorithm>

std::string Word_writer::new_question() {
  const char *const words[] = {"mot", "la le\347on", "\351t\351", "c\234ur de", "a b c", "mot mot"};
  return words[below(6)] + std::string(" ") + std::to_string(++nb_questions_);
}

void Word_writer::insert(const Plain_item &item, std::vector<Plain_item> *items) {
  items->insert(items->begin() + below(items->size() + 1), item);
}

void Word_writer::add_entry(Plain_dictionary *dictionary) {
  std::string question = new_question();
  insert({question, "answer " + std::to_string(below(100)), "", one_in(2), one_in(4)},
         &dictionary->items);
}

Plain_dictionary Word_writer::dictionary(const std::string &file, const std::string &alias,
                                         int nb) {
  Plain_dictionary dictionary;
  dictionary.file = file;
  dictionary.alias = alias;
  dictionary.utf8 = one_in(2);
  for (int i = 0; i < nb; i++)
    add_entry(&dictionary);
  return dictionary;
}

int Word_writer::add_double(std::vector<Plain_dictionary> *dictionaries) {
  size_t nb = dictionaries->size();
  size_t here = (size_t)below(nb);
  const Plain_dictionary &owner = (*dictionaries)[(here + 1 + (size_t)below(nb - 1)) % nb];
  const Plain_item &entry = owner.items[(size_t)below(owner.items.size())];
  std::vector<Plain_item> *items = &(*dictionaries)[here].items;
  auto is_there = [&](const Plain_item &item) { return item.question == entry.question; };
  if (!entry.owner.empty() || std::any_of(items->begin(), items->end(), is_there))
    return -1;
  insert({entry.question, "", owner.alias, false, one_in(4)}, items);
  return (int)here;
}

void Word_writer::edit(Plain_dictionary *dictionary) {
  std::vector<Plain_item> &items = dictionary->items;
  Plain_item &item = items[(size_t)below(items.size())];
  switch (below(7)) {
  case 0:
    std::shuffle(items.begin(), items.end(), *chance_);
    break;
  case 1:
    item.answer += one_in(2) ? " or other" : "";
    item.answer_in_name = !item.answer_in_name;
    break;
  case 2:
    item.question = new_question();
    break;
  case 3:
    dictionary->alias.back() = (char)('0' + (dictionary->alias.back() - '0' + 1) % 10);
    break;
  case 4:
    dictionary->utf8 = !dictionary->utf8;
    break;
  case 5:
    add_entry(dictionary);
    break;
  default:
    if (items.size() > 5)
      items.erase(items.begin() + below(items.size()));
  }
}
