// What the speaking lessons of the starter set would play, found on the ways the program finds it.
#ifndef MERTU_TESTS_STARTER_SPEAKING_H
#define MERTU_TESTS_STARTER_SPEAKING_H

#include <glib.h>

#include "lesson/numbered_lesson.h"
#include "quiz/entry_lines.h"
#include "quiz/locate_entry.h"
#include "starter/starter_set.h"
#include "text/button_block.h"
#include "text/find_sound.h"
#include "text/paragraphs.h"
#include "util/owned.h"

const int HEARD_LESSON = 3; // french_heard.txt
const int TEXT_LESSON = 4;  // spanish.txt

// A sound that is played: a range of a recording in frames, or the whole of it.
struct Played {
  std::string name;
  bool whole;
  long start;
  long stop;
};

// What an entry hands out: what is written, what is played.
struct Shown {
  std::vector<std::string> lines; // CP1252
  std::vector<Played> sounds;
};

class Speaking : public Starter {
protected:
  void SetUp() override {
    Starter::SetUp();
    FORGET_SOUND_PLACE();
    FORGET_HEARD();
    book.sens_qr = 1;
    book.state = 1;
    book.sound = 1;
    book.interro_sound = 1;
  }
  void TearDown() override {
    DROP_STREAM(&book);
    g_free(book.path_of_lesson);
    g_free(book.lessons);
    g_free(book.s_label);
    g_free(book.nc_label);
    Starter::TearDown();
  }

  void load(int lesson) {
    book.ilesson = lesson;
    INIT_LESSON(&lesson, &book);
  }

  // The question of word jcont of the lesson loaded.
  Shown question(int jcont) {
    Shown shown;
    char alias[ALIAS_SIZE];
    FILE *fp = nullptr;
    long add = 0;
    WHAT_QR(jcont, alias, &book, &fp, &add);
    Trf_entry_out out = {keep_line, keep_range, keep_whole, &shown};
    WALK_ENTRY(fp, 1, add, &book, &out);
    return shown;
  }

  // The text of a lesson; the label table is its own afterwards.
  std::vector<Trf_piece> text_of(int lesson) {
    DROP_STREAM(&book);
    book.ilesson = lesson;
    START_LABELS(&book);
    OPEN_TEXT(&book);
    return TEXT_PIECES(&book);
  }

  // What a button of the text plays, after text_of.
  std::vector<Played> sounds_of(std::string label) {
    Shown shown;
    Trf_range_out out = {keep_range, &shown};
    WALK_LABEL(label.data(), &book, &out);
    return shown.sounds;
  }

  // Where a sound is found; empty when it is not.
  std::string path_of(std::string name) {
    char *path = nullptr;
    long size = 0;
    int found = SEARCH_SND_FILE_NAME(&path, &size, name.data(), &book);
    Owned_text owned(path);
    return found == 1 ? owned.get() : "";
  }

  // Everything that both speaking lessons play.
  std::vector<Played> all_sounds() {
    std::vector<Played> all;
    auto add = [&all](const std::vector<Played> &sounds) {
      all.insert(all.end(), sounds.begin(), sounds.end());
    };
    for (int lesson : {HEARD_LESSON, TEXT_LESSON}) {
      load(lesson);
      for (int jcont = 1; jcont <= table.nb_posit; jcont++)
        add(question(jcont).sounds);
    }
    for (const Trf_piece &piece : text_of(TEXT_LESSON))
      if (piece.button)
        add(sounds_of(piece.text));
    return all;
  }

private:
  static void keep_line(char *text, void *data) {
    static_cast<Shown *>(data)->lines.push_back(text);
  }
  static void keep_range(char *name, long start, long stop, void *data) {
    static_cast<Shown *>(data)->sounds.push_back({name, false, start, stop});
  }
  static void keep_whole(char *name, void *data) {
    static_cast<Shown *>(data)->sounds.push_back({name, true, 0, 0});
  }
};

#endif
