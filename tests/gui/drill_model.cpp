// A plain model of the words, their histories and the drill, which the soak of the window goes by.
#include "support/prelude.h"

#include "gui/drill_model.h"

#include <algorithm>

namespace {

const char BLANK[] = "            ;            ;            ;            ;";

// The weights of the score that hold where mertu.conf says nothing.
const long MISS = 9;
const long KNOWN = 3;
const long DAYS_PER_POINT = 2;
const long DECREASE = 6;
const long INCREASE = 10;

std::string field(long number) {
  std::string digits = std::to_string(number);
  std::string text((12 - digits.size()) / 2, ' ');
  text += digits;
  text.resize(12, ' ');
  return text + ";";
}

std::string text_of(const Plain_history &history) {
  if (history.blank)
    return BLANK;
  return field(history.known) + field(history.missed) + field(history.day_known) +
         field(history.day_missed);
}

// As the program reads it: a day counts only with its answers.
Plain_history read(Plain_history history) {
  if (history.known == 0)
    history.day_known = 0;
  if (history.missed == 0)
    history.day_missed = 0;
  return history;
}

std::string in_utf8(const std::string &text) {
  std::string result;
  for (char character : text)
    switch (character) {
    case '\351': // e acute
      result += "\303\251";
      break;
    case '\347': // c cedilla
      result += "\303\247";
      break;
    case '\234': // o e
      result += "\305\223";
      break;
    default:
      result += character;
    }
  return result;
}

// The offsets of the lines of the copy that begin an entry.
std::vector<size_t> places_of_entries(const std::string &copy) {
  std::vector<size_t> places;
  for (size_t at = copy.find("\n# "); at != std::string::npos; at = copy.find("\n# ", at + 1))
    places.push_back(at + 1);
  return places;
}

Plain_line double_line(const Plain_item &item) {
  Plain_line line;
  line.text = "##" + item.question + " *" + item.owner;
  line.owner = item.owner;
  return line;
}

Plain_line entry_line(const Plain_item &item, size_t place, const Plain_dictionary &dictionary) {
  Plain_line line;
  line.question = item.question;
  line.text = "#" + item.question + " *" + dictionary.alias + " " + std::to_string(place) + " *" +
              (item.answer_in_name ? " " + item.answer : "");
  for (const Plain_line &old : dictionary.index)
    if (old.question == item.question)
      for (int d : {0, 1}) {
        line.sides[d] = read(old.sides[d]);
        line.sides[d].blank = false;
      }
  return line;
}

long score(long nb, long nok, long today, Plain_history history) {
  if (nb == 0 && nok == 0)
    return -1;
  long ok = nb == 0 ? 0 : history.day_known;
  long missed = nok == 0 ? 0 : history.day_missed;
  long age = std::max(1L, (today - std::max(ok, missed)) / DAYS_PER_POINT);
  long sum = std::max(0L, nok * MISS - nb * KNOWN) + age;
  long d = ok - missed;
  return std::min(sum, 4 * DECREASE) + (d <= 0 ? 10 : 0) + (d <= 3 ? 5 : 0) + (d <= 6 ? 2 : 0) +
         (d <= 12 ? 1 : 0);
}

Plain_history history_of(int dictionary, int line, int d, const Drill_model &model) {
  return read(model.dictionaries[dictionary].index[line].sides[d]);
}

// What is counted as the lesson begins.
Plain_counts counts_of(const Plain_history &history, bool misses_are_known, long today) {
  Plain_counts side;
  side.nb = side.nb0 = history.known;
  side.nok = side.nok0 = history.missed;
  side.err = score(side.nb + (misses_are_known ? side.nok : 0), side.nok, today, history);
  return side;
}

// The word of an entry as the lesson begins. Misses count as known from question to response, but
// not in a composed lesson.
Plain_word word_of(int dictionary, int line, bool composed, const Drill_model &model) {
  Plain_word word = {dictionary, line, {}};
  for (int d : {0, 1})
    word.sides[d] =
        counts_of(history_of(dictionary, line, d, model), d == 0 && !composed, model.today);
  return word;
}

bool was_asked(const Plain_counts &side) {
  return side.nb > 0 || side.nok > 0;
}

// Whether a composed lesson takes the word, asked in direction d.
bool fits(Plain_kind kind, const Plain_word &word, int d, const Drill_model &model) {
  bool asked = was_asked(word.sides[d]);
  if (kind == NEW_WORDS)
    return !asked;
  if (kind == ONE_WAY_WORDS)
    return !asked && was_asked(word.sides[1 - d]);
  Plain_history history = history_of(word.dictionary, word.line, d, model);
  return asked && history.day_known != model.today && history.day_missed != model.today;
}

// Whether the line is an entry that carries the tag, or carries none, as it is asked for.
bool is_entry(const Plain_line &line, Plain_tag tag) {
  bool has_tag = !line.text.empty() && line.text.back() != '*';
  return !line.question.empty() && (tag == ANY_TAG || has_tag == (tag == THE_TAG));
}

// The entry that a "##" line stands for, where there is one today.
std::optional<Plain_word> owned_word(const Plain_line &line, const Drill_model &model) {
  for (int i = 0; i < (int)model.dictionaries.size(); i++) {
    const Plain_dictionary &owner = model.dictionaries[i];
    for (int j = 0; owner.alias == line.owner && j < (int)owner.index.size(); j++)
      if (!owner.index[j].question.empty() &&
          "##" + owner.index[j].question + " *" + line.owner == line.text)
        return word_of(i, j, false, model);
  }
  return {};
}

void load(Drill_model *model) {
  MEND(model);
  model->words.clear();
  model->save.reset();
  int number = model->ilesson - 1;
  const std::vector<Plain_line> &index = model->dictionaries[number].index;
  for (int j = 0; j < (int)index.size(); j++) {
    std::optional<Plain_word> word = index[j].question.empty() ? owned_word(index[j], *model)
                                                               : word_of(number, j, false, *model);
    if (word)
      model->words.push_back(*word);
  }
}

void set_up(int button, Drill_model *model) {
  if (model->start_lesson < 2) {
    model->start_lesson++;
  } else if (button != 1) {
    model->ilesson++;
    model->start_lesson = 1;
  } else {
    if (model->ilesson != 0)
      load(model);
    model->start_lesson = 3;
    model->state = 1;
    model->sens_qrm = model->sens_qr;
  }
}

void known(Plain_counts *side) {
  long nb = side->nb;
  if (side->err > 0 || nb == 0)
    side->nb++;
  side->err -= std::max(side->err / 3, DECREASE);
  if (side->err > 0 && side->nok == side->nok0 && nb > side->nb0)
    side->err = 0;
  if (side->err > 0 && nb - side->nb0 >= side->nok + 2 - side->nok0)
    side->err = 0;
  side->err = std::max(side->err, 0L);
}

void judge(int button, int asked, Drill_model *model) {
  if (button != 2) {
    Plain_word &word = model->words[asked - 1];
    model->save = Plain_save{asked - 1, word};
    Plain_counts &side = word.sides[model->sens_qrm - 1];
    if (button == 1) {
      known(&side);
    } else {
      side.err += INCREASE;
      side.nok++;
    }
  }
  model->state = 1;
  if (model->toggle == 1) {
    model->toggle = 0;
    model->sens_qr = model->sens_qrm == 2 ? 1 : 2;
  }
  model->sens_qrm = model->sens_qr;
}

void undo(Drill_model *model) {
  if (model->save)
    model->words[model->save->word] = model->save->before;
  model->save.reset();
}

// What recording makes of a history.
Plain_history recorded(const Plain_history &before, const Plain_counts &counts, long today) {
  Plain_history history = read(before);
  if (counts.nok != history.missed) {
    history.missed = counts.nok;
    history.day_missed = today;
  } else if (counts.nb != history.known) {
    history.known += counts.err == 0 || counts.nb - history.known > 2 ? 1 : 0;
    history.day_known = today;
  } else {
    return before;
  }
  history.blank = false;
  return history;
}

} // namespace

std::string TEXT_OF(const Plain_dictionary &dictionary) {
  std::string text = "!# " + dictionary.alias + "\n#######\nText.\n#######\n";
  for (const Plain_item &item : dictionary.items) {
    if (item.remark)
      text += "Remark on \347a.\n";
    if (!item.owner.empty()) {
      text += "##" + item.question + " *" + item.owner + "\n";
      continue;
    }
    text += "# " + item.question + " *" + (item.answer_in_name ? " " + item.answer : "") + "\n";
    text += "Q> " + item.question + "\nR> " + item.answer + "\n\n";
  }
  text += "# END_OF_FILE\n";
  return dictionary.utf8 ? in_utf8(text) : text;
}

std::string INDEX_OF(const Plain_dictionary &dictionary) {
  std::string text = "./IDX1/idx1_" + dictionary.file + " " + dictionary.alias + " \r\n" +
                     std::string(53, '#') + "\r\n";
  for (const Plain_line &line : dictionary.index) {
    text += line.text + " \r\n";
    if (line.erased)
      text += std::string(BLANK) + BLANK + line.tail + "\r\n";
    else if (!line.question.empty())
      text += text_of(line.sides[0]) + "\r\n" + text_of(line.sides[1]) + "\r\n";
  }
  return text + dictionary.trailer;
}

void REBUILD(const std::string &copy, const std::string &index, Plain_dictionary *dictionary) {
  std::vector<size_t> places = places_of_entries(copy);
  std::vector<Plain_line> lines;
  size_t nb_entries = 0;
  for (const Plain_item &item : dictionary->items)
    lines.push_back(item.owner.empty() ? entry_line(item, places.at(nb_entries++), *dictionary)
                                       : double_line(item));
  dictionary->index = lines;
  size_t last = index.rfind("# END_OF_FILE * ");
  dictionary->trailer = last == std::string::npos ? "no trailer" : index.substr(last);
}

void MEND(Drill_model *model) {
  for (Plain_dictionary &dictionary : model->dictionaries)
    for (Plain_line &line : dictionary.index)
      line.erased = false;
}

void START(bool remembered, Drill_model *model) {
  model->start_lesson = 1;
  model->state = 1;
  model->toggle = 0;
  model->ilesson = remembered && model->ilesson != 0 ? model->ilesson : 1;
  model->sens_qr = remembered ? model->sens_qr : 1;
}

void PRESS(int button, int asked, Drill_model *model) {
  if (model->start_lesson < 3) {
    set_up(button, model);
  } else if (model->state == 2) {
    judge(button, asked, model);
  } else if (button == 2) {
    undo(model);
  } else {
    model->state = 2;
  }
}

void PRESS_DIRECTION(Drill_model *model) {
  if (model->start_lesson == 3 && model->state == 1) {
    model->toggle = 1 - model->toggle;
  } else {
    model->toggle = 0;
    model->sens_qr = model->sens_qr == 2 ? 1 : 2;
  }
}

void MOVE(int step, Drill_model *model) {
  int nb = (int)model->dictionaries.size();
  if (model->ilesson == 0)
    model->ilesson = step > 0 ? 1 : nb;
  else
    model->ilesson = (model->ilesson - 1 + step + nb) % nb + 1;
  model->start_lesson = 1;
}

void ANNOUNCE(int number, Drill_model *model) {
  int nb = (int)model->dictionaries.size();
  if (number > 0)
    model->ilesson = number > nb ? 1 : number;
  else if (model->ilesson == 0)
    model->ilesson = 1;
  model->start_lesson = 1;
}

std::vector<Plain_word> WORDS_FOR(Plain_kind kind, Plain_tag tag, const Drill_model &model) {
  int d = model.sens_qr == 2 ? 1 : 0;
  std::vector<Plain_word> words;
  for (int i = 0; i < (int)model.dictionaries.size(); i++)
    for (int j = 0; j < (int)model.dictionaries[i].index.size(); j++) {
      if ((kind != WORST_WORDS && words.size() == 20) ||
          !is_entry(model.dictionaries[i].index[j], tag))
        continue;
      Plain_word word = word_of(i, j, true, model);
      if (fits(kind, word, d, model))
        words.push_back(word);
      else if (kind == NEW_WORDS && d == 0 && !words.empty())
        words.back().sides[1] = word.sides[1]; // decided too early to leave it alone
    }
  return words;
}

void COMPOSE(const std::vector<Plain_word> &words, Drill_model *model) {
  ANNOUNCE(0, model);
  if (words.empty())
    return;
  model->ilesson = 0;
  model->words = words;
  model->save.reset();
}

bool MAY_RECORD(const Drill_model &model) {
  for (const Plain_word &word : model.words)
    for (int d : {0, 1}) {
      Plain_history history = history_of(word.dictionary, word.line, d, model);
      if (word.sides[d].nb < history.known || word.sides[d].nok < history.missed)
        return false;
    }
  return true;
}

void RECORD(Drill_model *model) {
  MEND(model);
  for (const Plain_word &word : model->words) {
    Plain_line &line = model->dictionaries[word.dictionary].index[word.line];
    for (int d : {0, 1})
      line.sides[d] = recorded(line.sides[d], word.sides[d], model->today);
  }
}

void FORGET(Drill_model *model) {
  MEND(model);
  for (const Plain_word &word : model->words) {
    Plain_line &line = model->dictionaries[word.dictionary].index[word.line];
    line.tail = text_of(line.sides[1]).substr(50);
    line.erased = true;
    line.sides[0] = line.sides[1] = Plain_history();
  }
}
