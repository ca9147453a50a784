// A plain account of the composed lessons: whole files in memory, lines in lists, stable sorts.
//
// It tells what a composition leaves behind (generated lesson file, table, orderings, log, end of
// the program) from the bytes of the idx1 files. Speed and memory are of no interest here.
#ifndef MERTU_TESTS_LESSON_COMPOSE_ACCOUNT_H
#define MERTU_TESTS_LESSON_COMPOSE_ACCOUNT_H

#include <functional>

#include "compose_model.h"

namespace model {

// The outcome of one composition, and the account itself.
class Composition {
public:
  Composition(const World &world, int sens, int lesson, int toggle_pending)
      : sens_qr(sens), ilesson(lesson), toggle(toggle_pending), world_(world) {
  }

  int sens_qr, ilesson, toggle;
  int status = -1;                // of the end of the program; -1 it goes on
  int capacity = 25;              // of the table
  std::string gene, log, said;    // generated lesson file, log, standard output
  std::vector<Word> table = {{}}; // element 0 is no entry
  std::vector<int> order[2];      // by rank, from element 0
  std::map<std::string, int> met; // what happened, and how often

  void run(const Command &command) {
    command_ = command;
    begin();
    int last = collect();
    if (goes_on() && (is_fresh() || nb() > 0)) {
      score_all();
      for (std::vector<int> &ranks : order)
        for (int i = 1; i <= nb(); i++)
          ranks.push_back(i);
      is_fresh() ? end_fresh() : command_.kind == WORST ? end_worst(last) : end_worst_tag(last);
    }
  }
  int nb() const {
    return (int)table.size() - 1;
  }

private:
  World world_;
  Command command_;
  long bound_ = 10; // of the answers, for code 5
  bool is_completing_ = false;

  bool goes_on() const {
    return status < 0;
  }
  bool is_fresh() const {
    return command_.kind == NEW || command_.kind == BALANCE || command_.kind == NEW_TAG;
  }
  int way() const {
    return sens_qr == 1 ? 0 : 1;
  }
  std::string who() const {
    static const char *names[] = {"NEW_WORDS_LESSON", "BALANCE_WORDS", "WORST_WORDS_LESSON",
                                  "NEW_TAG_LESSON", "WORST_TAG_LESSON"};
    return names[command_.kind];
  }
  std::string direction() const {
    return "sens_qr=" + std::to_string(sens_qr);
  }
  void end_program(int with_status, const std::string &text) {
    status = with_status;
    log += text;
    said += text;
    met["end " + std::to_string(with_status)]++;
  }

  void begin() {
    if (command_.kind == WORST) {
      log += "enter WORST_WORDS_LESSON  code_worst=" + std::to_string(command_.code) + " \n";
      ilesson = 0;
    }
    if (command_.kind == WORST_TAG && toggle == 1) {
      toggle = 0;
      sens_qr = sens_qr == 2 ? 1 : 2;
      met["toggled"]++;
    }
  }

  // Opens dictionary k and passes its header; false where there is nothing to read.
  bool open(int k, Reading *reading) {
    if (!leads_back(world_, k)) {
      met["passed over by its alias"]++;
      return false;
    }
    reading->path = world_.paths[(size_t)k - 1];
    if (world_.files.count(reading->path) == 0) {
      log += "cannot open file " + reading->path + ", skipped \n";
      met["cannot be opened"]++;
      return false;
    }
    reading->lines = lines_of(world_.files[reading->path]);
    std::string line;
    while (next_line(reading, &line))
      if (line[0] == '#' && holds(line, "#######"))
        return true;
    end_program(1, "Error no detection of ####### stop \nn file : " + reading->path + " \n");
    return false;
  }

  bool next_line(Reading *reading, std::string *line) {
    if (reading->at == reading->lines.size() || reading->nb_read == 10000)
      return false;
    reading->nb_read++;
    *line = reading->lines[reading->at++].text;
    return true;
  }

  // History lines do not count towards the lines read, those of an entry without the tag neither.
  static void pass_histories(Reading *reading) {
    for (int i = 0; i < 2 && reading->at < reading->lines.size(); i++) {
      const std::string &text = reading->lines[reading->at].text;
      if (text[0] == '#' || holds(text, "END_OF_FILE"))
        return;
      reading->at++;
    }
  }

  // The next entry that is a candidate, counted.
  bool next_candidate(Reading *reading, Word *word) {
    *word = Word();
    word->path = reading->path;
    while (next_line(reading, &word->name)) {
      if (holds(word->name, "END_OF_FILE"))
        return false;
      bool is_entry =
          !word->name.empty() && word->name[0] == '#' && word->name.substr(0, 2) != "##";
      if (!is_entry)
        continue;
      if (command_.kind >= NEW_TAG && !carries_tag(word->name, command_.tag)) {
        pass_histories(reading);
        continue;
      }
      word->offset = reading->lines[reading->at - 1].next;
      reading->candidates++;
      return true;
    }
    if (reading->nb_read == 10000)
      met["10000 lines"]++;
    return false;
  }

  bool read_history(int direction, Reading *reading, History *history) {
    if (reading->at == reading->lines.size()) {
      end_program(2 + direction,
                  "Error no detection of values icont=" + std::to_string(reading->candidates) +
                      " stop \nin file : " + reading->path + " \n");
      return false;
    }
    history->line = reading->lines[reading->at++].text;
    if (CHECK_EXTRACT_4LINT(world_.today, &history->line[0], history->value) == 0)
      return true;
    std::string text = who() + " and CHECK_4LINTsome";
    if (command_.kind == NEW_TAG)
      text = direction == 0 ? "NEW_TAG_LESSON and CHECK_6LINTsome"
                            : "NEW_WORDS_LESSON and CHECK_4LINTsome";
    log += text + " error in file : " + reading->path + " \n";
    met["damaged"]++;
    return true;
  }

  static bool never(const History &history) {
    return history.value[1] <= 0 && history.value[2] <= 0;
  }
  bool is_kept(const Word &word) {
    const History &own = word.way[way()];
    if (command_.kind == NEW || command_.kind == NEW_TAG)
      return never(own);
    if (command_.kind == BALANCE)
      return never(own) && !never(word.way[1 - way()]);
    if (is_completing_ && command_.code == 5 && own.value[1] + own.value[2] >= bound_) {
      met["too many answers"]++;
      return false;
    }
    return !never(own) && own.value[3] != world_.today && own.value[4] != world_.today;
  }

  // Reads both lines of a candidate; true where it is kept. A new word is decided before its R->Q
  // line in direction Q->R, and that line then falls on the word before.
  bool read_candidate(Reading *reading, Word *word) {
    if (!read_history(0, reading, &word->way[0]))
      return false;
    bool early = sens_qr == 1 && is_fresh() && command_.kind != BALANCE;
    if (early && !is_kept(*word)) {
      reading->candidates--;
      met["written over"]++;
      read_history(1, reading, &table.back().way[1]);
      return false;
    }
    if (!read_history(1, reading, &word->way[1]))
      return false;
    if (is_kept(*word))
      return true;
    reading->candidates--;
    return false;
  }

  void write(Word *word) {
    word->posit = (long)gene.size();
    gene += word->name + "\n " + word->path + " * " + std::to_string(word->offset) + " \n";
  }

  // Returns the last dictionary begun.
  int collect() {
    int k = 0;
    while (goes_on() && k < world_.nbt_lesson && nb() < 20) {
      Reading reading;
      if (open(++k, &reading))
        collect_from(&reading);
    }
    return k;
  }

  void collect_from(Reading *reading) {
    int before = nb();
    Word word;
    while (goes_on() && !(is_fresh() && nb() == 20) && next_candidate(reading, &word)) {
      if (before + reading->candidates >= capacity)
        capacity += 20;
      if (!read_candidate(reading, &word))
        continue;
      write(&word);
      table.push_back(word);
    }
  }

  void score(History *history) {
    long *v = history->value;
    history->score = -1;
    if (v[1] > 0 || v[2] > 0)
      history->score = FCT_ERROR(&world_.weights, v[1], v[2], world_.today, v[3], v[4]);
  }
  void score_all() {
    for (Word &word : table)
      for (History &history : word.way)
        score(&history);
  }

  void sort_by_score(int direction) {
    sort(direction, [&](int i) { return Keys{table[(size_t)i].way[direction].score}; });
  }
  void sort(int direction, const std::function<Keys(int)> &keys) {
    std::stable_sort(order[direction].begin(), order[direction].end(),
                     [&](int a, int b) { return ahead(keys(a), keys(b)); });
  }

  void end_fresh() {
    sort_by_score(1 - way());
    gene += "# END_OF_FILE * " + std::to_string(gene.size()) + " \n";
    log += who() + " done\n";
    met[who() + (nb() == 20 ? " full" : nb() == 0 ? " empty" : " short")]++;
  }

  // The check of the table against the files: only its messages and limits can show.
  void verify() {
    if (!goes_on())
      return;
    if (world_.today > 10000)
      return end_program(10, "VERIF_LESSON error 10 \n");
    for (int i = 1; i <= nb(); i++)
      if (!verify_word(table[(size_t)i], world_.today, &log))
        return end_program(1, "VERIF_LESSON error 1 \n");
    log += "VERIF_LESSON " + std::to_string(ilesson) + " DONE  nb_errors=0\n";
  }

  Keys keys_of(const Word &word) const {
    const History &own = word.way[way()];
    return command_.kind == WORST_TAG ? Keys{own.score}
                                      : worst_keys(command_.code, world_.today, bound_, own);
  }

  void sort_by_keys() {
    for (int i = 1; i <= nb(); i++) {
      const long *v = table[(size_t)i].way[way()].value;
      bound_ = std::max(bound_, 10 + v[1] + v[2]);
    }
    sort(way(), [&](int i) { return keys_of(table[(size_t)i]); });
  }

  // The word takes over storage `slot`; the score of the other direction stays that of the slot.
  void take_over(const Word &word, int slot) {
    long score_of_slot = table[(size_t)slot].way[1 - way()].score;
    table[(size_t)slot] = word;
    table[(size_t)slot].way[1 - way()].score = score_of_slot;
  }

  void keep_twenty() {
    if (nb() <= 20)
      return;
    met["limited"]++;
    std::vector<int> &ranks = order[way()];
    std::vector<int> slots;
    std::copy_if(ranks.begin() + 20, ranks.end(), std::back_inserter(slots),
                 [](int slot) { return slot <= 20; });
    std::reverse(slots.begin(), slots.end());
    ranks.resize(20);
    for (int &slot : ranks) {
      if (slot <= 20)
        continue;
      take_over(table[(size_t)slot], slots.back());
      slot = slots.back();
      slots.pop_back();
    }
    table.resize(21);
    std::vector<int> &other = order[1 - way()];
    other.erase(std::remove_if(other.begin(), other.end(), [](int slot) { return slot > 20; }),
                other.end());
  }

  void complete(int last) {
    is_completing_ = command_.kind == WORST;
    for (int k = last + 1; goes_on() && k <= world_.nbt_lesson; k++) {
      Reading reading;
      Word word;
      if (!open(k, &reading))
        continue;
      while (goes_on() && next_candidate(&reading, &word))
        if (read_candidate(&reading, &word))
          admit(&word);
    }
  }

  // Puts a completing word in the place of the last one, unless it is no worse than that.
  void admit(Word *word) {
    score(&word->way[way()]);
    std::vector<int> &ranks = order[way()];
    auto behind = std::find_if(ranks.begin(), ranks.end(), [&](int slot) {
      return ahead(keys_of(*word), keys_of(table[(size_t)slot]));
    });
    if (behind == ranks.end())
      return;
    met["completed"]++;
    write(word);
    int slot = ranks.back();
    ranks.insert(behind, slot);
    ranks.pop_back();
    take_over(*word, slot);
  }

  // The scores at both ends, as the log tells them.
  std::string ends() const {
    const std::vector<int> &ranks = order[way()];
    return direction() +
           " err_sup=" + std::to_string(table[(size_t)ranks.front()].way[way()].score) +
           " err_min=" + std::to_string(table[(size_t)ranks.back()].way[way()].score) + " \n";
  }
  void stage(const std::string &text) {
    if (goes_on())
      log += who() + " " + text;
    verify();
  }

  void end_worst(int last) {
    stage("before MERGESORT_3ERR " + direction() + "  \n");
    if (!goes_on())
      return;
    if (command_.code < 1 || command_.code > 5) {
      said += "WORST_WORD_LESSON code " + std::to_string(command_.code) + " is unknown \n";
      met["unknown code"]++;
      return;
    }
    sort_by_keys();
    stage("before limit number nb_words=" + std::to_string(nb()) + " " + direction() + "  \n");
    keep_twenty();
    stage("after limit number " + direction() + "  \n");
    std::string told = ends();
    complete(last);
    stage("after COMPLETE_WORST_LESSON " + direction() + "  \n");
    if (command_.code != 1)
      sort_by_score(way());
    sort_by_score(1 - way());
    stage(told);
    met["code " + std::to_string(command_.code)]++;
  }

  void end_worst_tag(int last) {
    met[nb() == 1 ? "one tagged" : "many tagged"]++;
    if (nb() == 1)
      return;
    sort_by_keys();
    keep_twenty();
    std::string told = ends();
    complete(last);
    sort_by_score(1 - way());
    stage(told);
  }
};

} // namespace model

#endif
