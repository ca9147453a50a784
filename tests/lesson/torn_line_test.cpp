// A machine that dies within a line being written: at every byte the next start makes the line
// whole.
#include "support/prelude.h"

#include "lesson/learner_home.h"

#include "db/mend_forgotten.h"
#include "support/killed.h"

namespace {

const char NOTE[] = "mertu_pending";
const char *const FILES[] = {NOTE, "mertu_erased", "IDX1/idx1_one", "IDX1/idx1_two"};

// A place of the note.
struct Noted_place {
  std::string path;
  size_t start;
  std::string before, after;
};

std::vector<Noted_place> places_of(const std::string &note) {
  std::vector<Noted_place> places;
  std::istringstream text(note);
  Noted_place place;
  size_t length;
  while (text >> place.path >> place.start >> length) {
    place.before.resize(length);
    place.after.resize(length);
    text.get();
    text.read(place.before.data(), (std::streamsize)length);
    text.get();
    text.read(place.after.data(), (std::streamsize)length);
    text.get();
    places.push_back(place);
  }
  return places;
}

using Files = std::map<std::string, std::string>;

Files read_files(const Scratch_dir &dir) {
  Files files;
  for (const char *name : FILES)
    if (dir.exists(name))
      files[name] = dir.read(name);
  return files;
}

void record_lesson_one() {
  Home_run run;
  run.load(1);
  for (int i = 1; i <= run.table.nb_posit; i++) {
    run.table.QRcum_nok[i] += 1;
    run.table.RQcum_nb[i] += 3;
  }
  run.record();
}

// The files of a home in which the work was killed as soon as its note was there.
Files files_at_note(void (*prepare)(), void (*work)()) {
  for (int countdown = 1; countdown < 200; countdown++) {
    Learner_home home;
    if (prepare != nullptr)
      prepare();
    if (!KILLED_RUN(work, countdown, 0))
      break;
    if (home.dir.exists(NOTE))
      return read_files(home.dir);
  }
  ADD_FAILURE() << "no note";
  return Files();
}

// The histories that the work and the next start leave when nothing goes wrong.
Histories undisturbed(void (*prepare)(), void (*work)()) {
  Learner_home home;
  if (prepare != nullptr)
    prepare();
  work();
  START_ONCE();
  return home.histories();
}

void put_torn(const Scratch_dir &dir, Files files, const Noted_place &place,
              const std::string &bytes) {
  std::string name = place.path.substr(2);
  ASSERT_EQ(files.at(name).substr(place.start, bytes.size()), place.before);
  files.at(name).replace(place.start, bytes.size(), bytes);
  for (const auto &[path, text] : files)
    dir.write(path, text);
}

// Tears a place at every byte, in both ways; each time all is finished.
void expect_mended(const Learner_home &home, const Files &files, const Noted_place &place,
                   const Histories &expected) {
  for (size_t at = 0; at <= place.before.size(); at++)
    for (bool front : {true, false}) {
      const std::string &first = front ? place.after : place.before;
      const std::string &second = front ? place.before : place.after;
      put_torn(home.dir, files, place, first.substr(0, at) + second.substr(at));
      MEND_FORGOTTEN(nullptr);
      ASSERT_EQ(home.histories(), expected) << place.path << " " << place.start << " at " << at;
      for (const char *name : {NOTE, "mertu_erased"})
        ASSERT_FALSE(home.dir.exists(name)) << name;
    }
}

void expect_every_tear_mended(void (*prepare)(), void (*work)(), size_t nb_places) {
  Files files = files_at_note(prepare, work);
  std::vector<Noted_place> places = places_of(files[NOTE]);
  ASSERT_EQ(places.size(), nb_places);
  Histories expected = undisturbed(prepare, work);
  Learner_home home;
  expect_mended(home, files, places.front(), expected);
  expect_mended(home, files, places.back(), expected);
}

} // namespace

TEST(TornLine, OfARecordingIsTheNewOneAtTheNextStart) {
  expect_every_tear_mended(nullptr, record_lesson_one, 14);
}

TEST(TornLine, OfALessonBeingForgottenIsForgottenAtTheNextStart) {
  expect_every_tear_mended(nullptr, FORGET_LESSON_ONE, 7);
}

TEST(TornLine, OfTheMendOfAForgottenLessonIsWholeAtTheNextStart) {
  expect_every_tear_mended(FORGET_LESSON_ONE, START_ONCE, 7);
}
