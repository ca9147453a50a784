// Every example of the manual and of the page of file formats, done in the real window: what is
// told to happen happens.
//
// A chapter of the manual is one story, the page of formats is another, told by their blocks in
// their order:
//
//   block           what is done with it
//   --------------  ----------------------------------------------------------------------------
//   file NAME       the file is written; Mertu is started again before the next "you"
//   fresh           an empty directory again
//   you             what she does, a line each (see class Story)
//   pane            all the lines of the left side now, but for blank ones and rules; "..." stands
//                   for any text, on a line of its own for any lines
//   text            lines of the lesson text now, in this order
//   buttons         labels that can be read on buttons now
//   dialog          the text of the dialog that came last
//   heard           the sounds played since the last such block
//   in NAME         lines of the file, in this order
//   bytes NAME      all bytes of the file; line ends are written "\\r" and "\\n"
//   ends STATUS     the program, started anew, ends with this status and says these lines
//   says            the program, started anew, says these lines and goes on
//   recording NAME  a recording lies there (of which nothing is played)
//   table, shell    not for this test; neither is a kind that quotes a source file
#include "support/prelude.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <sstream>

#include "gui/heard.h"
#include "gui/program.h"
#include "gui/window.h"
#include "manual/page.h"
#include "support/present.h"
#include "util/encodings.h"
#include "util/owned.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const time_t HOUR = 3600;

Lines lines_of(const std::string &text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(FOLDED(line));
  return lines;
}

// Whether a line is what a pattern tells, in which "..." stands for any text.
bool is_told(const char *pattern, const char *line) {
  for (; *pattern != '\0'; pattern++, line++) {
    if (std::string(pattern, std::min<size_t>(3, strlen(pattern))) == "...") {
      for (const char *rest = line;; rest++) {
        if (is_told(pattern + 3, rest))
          return true;
        if (*rest == '\0')
          return false;
      }
    }
    if (*pattern != *line)
      return false;
  }
  return *line == '\0';
}

// The same for all lines; a pattern "..." alone also stands for any number of lines.
bool are_told(const Lines &patterns, const Lines &lines, size_t i = 0, size_t j = 0) {
  if (i == patterns.size())
    return j == lines.size();
  if (patterns[i] == "...") {
    for (size_t next = j; next <= lines.size(); next++)
      if (are_told(patterns, lines, i + 1, next))
        return true;
    return false;
  }
  return j < lines.size() && is_told(patterns[i].c_str(), lines[j].c_str()) &&
         are_told(patterns, lines, i + 1, j + 1);
}

// The lines, folded, without blank ones and rules.
Lines told(const Lines &lines) {
  Lines kept;
  for (const std::string &line : lines)
    if (line.find_first_not_of(" =") != std::string::npos)
      kept.push_back(FOLDED(line));
  return kept;
}

// Whether the lines stand in the text in this order; *missing becomes the first that does not.
bool in_order(const Lines &lines, const Lines &text, std::string *missing) {
  auto place = text.begin();
  for (const std::string &line : told(lines)) {
    place = std::find_if(place, text.end(), [&line](const std::string &other) {
      return is_told(line.c_str(), other.c_str());
    });
    if (place == text.end()) {
      *missing = line;
      return false;
    }
    ++place;
  }
  return true;
}

std::string utf8(const std::string &text) {
  if (g_utf8_validate(text.data(), gssize(text.size()), nullptr))
    return text;
  return Owned_text(UTF8_FROM_CP1252(text.c_str())).get();
}

Test_files starter_set() {
  fs::path starter = fs::path(MERTU_SOURCE) / "share/starter";
  Test_files files;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(starter))
    if (entry.is_regular_file()) {
      std::ifstream file(entry.path(), std::ios::binary);
      std::stringstream bytes;
      bytes << file.rdbuf();
      files[fs::relative(entry.path(), starter)] = bytes.str();
    }
  return files;
}

// How old a file is that Mertu or she left behind: an index is younger than its working copy, which
// is younger than the dictionary, and what she has just written is youngest.
time_t age_of(const std::string &name, const Test_files &just_written) {
  if (just_written.count(name) != 0)
    return 0;
  if (name.compare(0, 4, "IDX1") == 0 || name == "Mertu_last_state")
    return HOUR;
  return name.compare(0, 3, "CPY") == 0 ? 2 * HOUR : 3 * HOUR;
}

void set_ages(const Test_files &files, const Test_files &just_written) {
  for (const auto &[name, bytes] : files) {
    struct timespec moment = {::time(nullptr) - age_of(name, just_written), 0};
    struct timespec times[2] = {moment, moment};
    utimensat(AT_FDCWD, name.c_str(), times, 0);
  }
}

class Story {
public:
  Story() {
    SET_RAND({0, 1, 2, 3});
    HEARD();
  }
  ~Story() {
    window_.reset();
    RESET_PRESENT();
    SET_RAND({});
  }

  void tell(const Manual_block &block) {
    SCOPED_TRACE("line " + std::to_string(block.line_number));
    static const std::map<std::string, void (Story::*)(const Manual_block &)> KINDS = {
        {"file", &Story::write},
        {"fresh", &Story::begin_anew},
        {"you", &Story::act},
        {"pane", &Story::look_left},
        {"text", &Story::look_right},
        {"buttons", &Story::find},
        {"dialog", &Story::listen_to},
        {"heard", &Story::hear},
        {"in", &Story::read},
        {"bytes", &Story::compare},
        {"recording", &Story::put_recording},
        {"ends", &Story::end},
        {"says", &Story::say},
        {"table", &Story::pass},
        {"sh", &Story::pass},
        {"shell", &Story::pass}};
    if (block.argument.find('/') != std::string::npos &&
        (block.kind == "text" || block.kind == "cpp"))
      return; // quotes a source file
    auto kind = KINDS.find(block.kind);
    if (kind == KINDS.end())
      FAIL() << "no example is called \"" << block.kind << '"';
    (this->*kind->second)(block);
  }

private:
  void pass(const Manual_block &) {
  }

  void begin_anew(const Manual_block &) {
    window_.reset();
    files_.clear();
    written_.clear();
  }

  void put_recording(const Manual_block &block) {
    leave();
    files_[block.argument] = "RIFF";
  }

  void write(const Manual_block &block) {
    leave();
    std::string bytes;
    for (const std::string &line : block.lines)
      bytes += line + "\n";
    files_[block.argument] = written_[block.argument] = bytes;
  }

  // Keeps the files of the window that stood.
  void leave() {
    if (window_ == nullptr)
      return;
    files_ = FILES_OF(window_->dir());
    window_.reset();
  }

  void start() {
    if (window_ != nullptr && !window_->ended())
      return;
    leave();
    if (files_.count("mertu.conf") == 0)
      for (const auto &[name, bytes] : starter_set())
        files_.insert({name, bytes});
    Test_files just_written;
    std::swap(just_written, written_);
    window_ = std::make_unique<Test_window>(files_, [&] {
      set_ages(files_, just_written);
      SET_PRESENT_DAY(2026, 3, day_);
    });
  }

  // The lines: "left LABEL", "middle LABEL", "right LABEL" (a press on a button), "type TEXT",
  // "answer LABEL" (of the dialog that the line before brings up), "the next day".
  void act(const Manual_block &block) {
    for (size_t i = 0; i < block.lines.size(); i++) {
      std::string line = FOLDED(block.lines[i]);
      std::string verb = line.substr(0, line.find(' '));
      std::string rest = line.substr(std::min(line.size(), verb.size() + 1));
      if (line == "the next day") {
        SET_PRESENT_DAY(2026, 3, ++day_);
        continue;
      }
      if (verb == "answer")
        continue;
      start();
      for (size_t j = i + 1; j < block.lines.size(); j++) {
        std::string next = FOLDED(block.lines[j]);
        if (next.compare(0, 7, "answer ") != 0)
          break;
        window_->dialogs.will_answer(response_of(next.substr(7)));
      }
      do_one(verb, rest);
    }
  }

  static int response_of(const std::string &label) {
    if (label == "Yes")
      return GTK_RESPONSE_YES;
    return label == "No" ? GTK_RESPONSE_NO : GTK_RESPONSE_OK; // "RAZ ?", "OK"
  }

  void do_one(const std::string &verb, const std::string &rest) {
    if (verb == "type")
      return window_->type(rest);
    ASSERT_TRUE(verb == "left" || verb == "middle" || verb == "right") << verb;
    GtkWidget *button = button_of(rest);
    ASSERT_NE(button, nullptr) << "no button " << rest;
    window_->press(button, verb == "left" ? LEFT : verb == "middle" ? MIDDLE : RIGHT);
  }

  GtkWidget *button_of(const std::string &label) {
    for (const char *before : {"", " ", "  ", "        "})
      for (const char *behind : {"", " ", "  ", "       "})
        if (GtkWidget *button = window_->button(before + label + behind))
          return button;
    return nullptr;
  }

  void look_left(const Manual_block &block) {
    start();
    Lines shown = told(window_->pane_lines());
    EXPECT_TRUE(are_told(told(block.lines), shown)) << testing::PrintToString(shown);
  }

  void look_right(const Manual_block &block) {
    start();
    std::string missing;
    EXPECT_TRUE(in_order(block.lines, lines_of(window_->text()), &missing))
        << missing << "\nis not in\n"
        << window_->text();
  }

  void find(const Manual_block &block) {
    start();
    for (const std::string &label : told(block.lines))
      EXPECT_NE(button_of(label), nullptr) << label;
  }

  void listen_to(const Manual_block &block) {
    ASSERT_NE(window_, nullptr);
    ASSERT_FALSE(window_->dialogs.seen.empty());
    EXPECT_EQ(told(lines_of(window_->dialogs.seen.back().text)), told(block.lines));
  }

  void hear(const Manual_block &block) {
    EXPECT_EQ(told(HEARD()), told(block.lines));
  }

  // The bytes of a file as Mertu has left it.
  std::string content_of(const std::string &name) {
    if (window_ == nullptr)
      start();
    if (window_->book->fp_log != nullptr)
      fflush(window_->book->fp_log);
    EXPECT_TRUE(window_->dir().exists(name)) << name;
    return window_->dir().read(name);
  }

  void read(const Manual_block &block) {
    std::string content = utf8(content_of(block.argument));
    std::string missing;
    EXPECT_TRUE(in_order(block.lines, lines_of(content), &missing)) << missing << "\nis not in\n"
                                                                    << content;
  }

  void compare(const Manual_block &block) {
    std::string bytes;
    for (const std::string &line : block.lines)
      bytes += Owned_text(g_strcompress(line.c_str())).get();
    EXPECT_EQ(content_of(block.argument), bytes);
  }

  void end(const Manual_block &block) {
    leave();
    written_.clear();
    Scratch_dir dir;
    for (const auto &[name, bytes] : files_)
      dir.write(name, bytes);
    Program program("mertu.x", dir.path());
    EXPECT_EQ(program.status(), std::stoi(block.argument));
    std::string missing;
    EXPECT_TRUE(in_order(block.lines, lines_of(program.output()), &missing))
        << missing << "\nis not in\n"
        << program.output();
  }

  void say(const Manual_block &block) {
    leave();
    Scratch_dir dir;
    for (const auto &[name, bytes] : files_)
      dir.write(name, bytes);
    Program program("mertu.x", dir.path());
    EXPECT_TRUE(program.says("Mertu is ready"));
    for (const std::string &line : told(block.lines))
      EXPECT_TRUE(program.says(line)) << line;
  }

  std::unique_ptr<Test_window> window_;
  Test_files files_;   // of a directory that no window works in
  Test_files written_; // the files among them that are new since the last start
  int day_ = 1;        // of March 2026
};

class Manual_stories : public testing::TestWithParam<Manual_chapter> {};

} // namespace

TEST_P(Manual_stories, EveryExampleIsTrue) {
  Story story;
  for (const Manual_block &block : GetParam().blocks)
    story.tell(block);
}

INSTANTIATE_TEST_SUITE_P(Manual, Manual_stories, testing::ValuesIn(CHAPTERS_OF(MANUAL)),
                         [](const testing::TestParamInfo<Manual_chapter> &one) {
                           return "Chapter" + std::to_string(one.index);
                         });

// A page told as one story.
static void tell_page(const std::string &page) {
  Story story;
  for (const Manual_chapter &chapter : CHAPTERS_OF(page))
    for (const Manual_block &block : chapter.blocks)
      story.tell(block);
}

TEST(FormatsPage, EveryByteIsTrue) {
  tell_page("docs/formats.md");
}

TEST(ReadmePage, EveryExampleIsTrue) {
  tell_page("README.md");
}

TEST(ManualPage, HasTenChaptersAndEachHasExamples) {
  std::vector<Manual_chapter> chapters = CHAPTERS_OF(MANUAL);
  ASSERT_EQ(chapters.size(), 11u);
  for (size_t i = 1; i < chapters.size(); i++) {
    EXPECT_EQ(chapters[i].title.compare(0, std::to_string(i).size() + 2, std::to_string(i) + ". "),
              0)
        << chapters[i].title;
    EXPECT_FALSE(chapters[i].blocks.empty()) << chapters[i].title;
  }
}
