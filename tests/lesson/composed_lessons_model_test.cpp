// Composed lessons from random dictionaries against a plain account of them.
#include "support/prelude.h"

#include "compose_account.h"
#include "desk.h"
#include "random_world.h"

#include <fcntl.h>
#include <sys/wait.h>

#include <sstream>

#include "lesson/new_words.h"
#include "lesson/tag_lessons.h"
#include "lesson/worst_words.h"

namespace {

using model::Command;
using model::Composition;
using model::World;

// The world on disk and in a book.
struct Composer {
  Desk desk;

  explicit Composer(const World &world) {
    std::string list, aliases = " ";
    for (size_t k = 0; k < world.paths.size(); k++) {
      list += "w/" + world.paths[k].substr(world.paths[k].find("idx1_") + 5) + " ";
      aliases += world.aliases[k] + " ";
    }
    desk.set_list(list.c_str(), (int)world.paths.size());
    g_free(desk.registry.st_alias);
    desk.registry.st_alias = g_strdup(aliases.c_str());
    for (const auto &file : world.files)
      desk.dir.write(file.first, file.second);
    desk.book.nbt_lesson = world.nbt_lesson;
    desk.weights = world.weights;
    if (world.today == 0)
      SET_PRESENT_DAY(2001, 1, 1);
    else if (world.today == 10957)
      SET_PRESENT_DAY(2031, 1, 1);
  }

  void compose(const Command &command) {
    std::string tag = command.tag;
    desk.book.t_posit->nb_posit = 0;
    switch (command.kind) {
    case model::NEW:
      return NEW_WORDS_LESSON(&desk.book);
    case model::BALANCE:
      return BALANCE_WORDS(&desk.book);
    case model::WORST:
      return WORST_WORDS_LESSON(command.code, &desk.book);
    case model::NEW_TAG:
      return NEW_TAG_LESSON(&tag[0], &desk.book);
    case model::WORST_TAG:
      return WORST_TAG_LESSON(&tag[0], &desk.book);
    }
  }

  // The log begins anew, and standard output goes to a file until end.
  int begin() {
    fflush(stdout);
    rewind(desk.book.fp_log);
    EXPECT_EQ(ftruncate(fileno(desk.book.fp_log), 0), 0);
    int screen = dup(1);
    int said = open("said", O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(said, 1);
    close(said);
    return screen;
  }
  static void end(int screen) {
    fflush(stdout);
    dup2(screen, 1);
    close(screen);
  }

  // Standard output without what the history lines and shut files say.
  std::string said() const {
    std::istringstream lines(desk.dir.read("said"));
    std::string kept;
    for (std::string line; std::getline(lines, line);)
      if (line.find("CHECK_EXTRACT_4LINT") != 0 && line.find("cannot open file") != 0)
        kept += line + "\n";
    return kept;
  }
};

// Elements of one direction by entry. Element 0 is no entry, but a rejected one may leave its
// counts there.
std::vector<std::vector<long>> rows_of(int sens, Trf_posit *table) {
  Trf_side side = SIDE_OF_TABLE(sens, table);
  std::vector<std::vector<long>> rows;
  for (int i = 0; i <= table->nb_posit; i++)
    rows.push_back({i > 0 ? side.cum_err[i] : 0, side.nb[i], side.nb0[i], side.nok[i], side.nok0[i],
                    side.date_ok[i], side.date_nok[i]});
  return rows;
}

std::vector<std::vector<long>> rows_of(int sens, const Composition &account) {
  std::vector<std::vector<long>> rows;
  for (int i = 0; i <= account.nb(); i++) {
    const model::History &way = account.table[(size_t)i].way[sens - 1];
    const long *v = way.value;
    rows.push_back({i > 0 ? way.score : 0, v[1], v[1], v[2], v[2], v[3], v[4]});
  }
  return rows;
}

std::vector<int> with_end_mark(std::vector<int> ranks) {
  ranks.push_back(-1);
  return ranks;
}

void expect_table(const Composition &account, Trf_posit *table) {
  ASSERT_EQ(table->nb_posit, account.nb());
  EXPECT_EQ(table->nbmx_posit, account.capacity);
  for (int sens : {1, 2}) {
    EXPECT_EQ(rows_of(sens, table), rows_of(sens, account)) << "direction " << sens;
    EXPECT_EQ(ENTRIES_OF(SIDE_OF_TABLE(sens, table).ord, table->nb_posit + 1),
              with_end_mark(account.order[sens - 1]))
        << "direction " << sens;
  }
  for (int i = 1; i <= account.nb(); i++)
    EXPECT_EQ(table->posit[i], account.table[(size_t)i].posit) << "entry " << i;
}

void expect_book(const Composition &account, Composer *composer) {
  Trf_book &book = composer->desk.book;
  EXPECT_EQ(book.fp_gene, nullptr);
  EXPECT_EQ(book.fp_idx1, nullptr);
  EXPECT_EQ(book.ilesson, account.ilesson);
  EXPECT_EQ(book.sens_qr, account.sens_qr);
  EXPECT_EQ(book.toggle_sens_qr, account.toggle);
  EXPECT_EQ(composer->desk.dir.read("idx2_gene"), account.gene);
  expect_table(account, book.t_posit);
}

// Composes in this process, which goes on, or in another one, which ends.
void compare(const Command &command, const Composition &account, Composer *composer) {
  int screen = composer->begin();
  int status = -1;
  if (account.status < 0) {
    composer->compose(command);
  } else if (pid_t child = fork()) {
    waitpid(child, &status, 0);
    status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + status;
  } else {
    composer->compose(command);
    _exit(99);
  }
  Composer::end(screen);
  EXPECT_EQ(status, account.status);
  EXPECT_EQ(composer->desk.log(), account.log);
  EXPECT_EQ(composer->said(), account.said);
  if (account.status < 0)
    expect_book(account, composer);
}

// Lessons composed from one random world, one after the other.
void compose_from(unsigned seed, std::map<std::string, int> *met) {
  model::Random_world random(seed);
  World world = random.make();
  Composer composer(world);
  Trf_book &book = composer.desk.book;
  for (int i = 0; i < 6; i++) {
    Command command = random.command();
    book.sens_qr = random.number(1, 2);
    book.ilesson = random.number(0, 3);
    book.toggle_sens_qr = random.one_in(4) ? 1 : 0;
    Composition account(world, book.sens_qr, book.ilesson, book.toggle_sens_qr);
    int screen = composer.begin(); // the account's own look at damaged lines is nobody's news
    account.run(command);
    Composer::end(screen);
    for (const auto &event : account.met)
      (*met)[event.first] += event.second;
    SCOPED_TRACE("world " + std::to_string(seed) + ", lesson " + std::to_string(i) + ": kind " +
                 std::to_string(command.kind) + " code " + std::to_string(command.code) + " tag '" +
                 command.tag + "' direction " + std::to_string(book.sens_qr));
    compare(command, account, &composer);
    if (testing::Test::HasFailure())
      return;
  }
}

unsigned from_environment(const char *name, unsigned otherwise) {
  const char *text = getenv(name);
  return text == nullptr ? otherwise : (unsigned)strtoul(text, nullptr, 10);
}

} // namespace

// MERTU_WORLDS and MERTU_FIRST_WORLD choose other worlds than those of every run, and tell what was
// met in them.
TEST(ComposedLessonsModel, RandomDictionariesGiveTheLessonsOfThePlainAccount) {
  unsigned first = from_environment("MERTU_FIRST_WORLD", 1);
  unsigned nb = from_environment("MERTU_WORLDS", 60);
  std::map<std::string, int> met;
  for (unsigned seed = first; seed < first + nb && !HasFailure(); seed++)
    compose_from(seed, &met);
  if (getenv("MERTU_WORLDS") != nullptr) {
    for (const auto &event : met)
      fprintf(stderr, "%8d %s\n", event.second, event.first.c_str());
    return;
  }
  for (const char *event : {"10000 lines",
                            "BALANCE_WORDS empty",
                            "BALANCE_WORDS full",
                            "NEW_TAG_LESSON full",
                            "NEW_TAG_LESSON short",
                            "NEW_WORDS_LESSON full",
                            "cannot be opened",
                            "code 1",
                            "code 2",
                            "code 3",
                            "code 4",
                            "code 5",
                            "completed",
                            "damaged",
                            "end 1",
                            "end 2",
                            "limited",
                            "many tagged",
                            "one tagged",
                            "passed over by its alias",
                            "toggled",
                            "too many answers",
                            "unknown code",
                            "written over"})
    EXPECT_GT(met[event], 0) << event;
}
