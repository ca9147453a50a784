// The tables of the manual against the sources: every message, every key, every command, every file
// is told, and nothing is told that is not there.
#include "support/prelude.h"

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "manual/page.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::set<std::string>;

const char *const FOLDERS[] = {"util",   "score", "sound", "config",  "db",
                               "lesson", "text",  "quiz",  "command", "app"};

std::vector<std::string> all_sources() {
  std::vector<std::string> sources;
  for (const char *folder : FOLDERS)
    for (const fs::directory_entry &entry : fs::directory_iterator(fs::path(MERTU_SOURCE) / folder))
      if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
        sources.push_back(
            BYTES_OF_FILE(std::string(folder) + "/" + entry.path().filename().string()));
  return sources;
}

std::string replaced(const std::string &text, const char *pattern, const char *by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

// A printf format as the manual writes it: each value as "...", without line end and "@@@".
std::string as_told(std::string format) {
  format = replaced(format, "\\\\n", " ");
  format = replaced(format, "%[0-9.]*l?[sdcux]", "...");
  format = replaced(format, "@@@+", "");
  return FOLDED(replaced(format, "\\\\347", "\303\247")); // c with a cedilla
}

bool is_text(const std::string &told) {
  return told.find_first_of("abcdefghijklmnopqrstuvwxyz") != std::string::npos;
}

// The string literals of a call, the neighbours joined; a variant behind ':' is another one.
Texts texts_of_call(const std::string &source, size_t open) {
  Texts texts;
  std::string text;
  int depth = 0;
  for (size_t i = open; i < source.size(); i++) {
    char c = source[i];
    if (c == '"') {
      size_t end = i + 1;
      while (source[end] != '"')
        end += source[end] == '\\' ? 2 : 1;
      text += source.substr(i + 1, end - i - 1);
      i = end;
      continue;
    }
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (!isspace((unsigned char)c) && !text.empty()) {
      texts.insert(as_told(text));
      text.clear();
    }
    if (depth == 0)
      break;
  }
  return texts;
}

// The texts that the calls of these routines print.
Texts printed_by(const std::vector<std::string> &routines) {
  Texts texts;
  for (const std::string &text : all_sources())
    for (const std::string &routine : routines)
      for (size_t at = 0; (at = text.find(routine + "(", at)) != std::string::npos; at++) {
        if (at > 0 && (isalnum((unsigned char)text[at - 1]) || text[at - 1] == '_'))
          continue;
        for (const std::string &told : texts_of_call(text, at + routine.size()))
          texts.insert(told);
      }
  return texts;
}

// Those of `all` that hold words.
Texts worded(const Texts &all) {
  Texts kept;
  std::copy_if(all.begin(), all.end(), std::inserter(kept, kept.end()), is_text);
  return kept;
}

Texts told_in(const char *table) {
  std::vector<std::string> spans = MANUAL_TABLES()[table];
  return Texts(spans.begin(), spans.end());
}

// What is in `some` and not in `others`, a line each.
std::string missing(const Texts &some, const Texts &others) {
  std::string lines;
  for (const std::string &text : some)
    if (others.count(text) == 0)
      lines += "`" + text + "`\n";
  return lines;
}

Texts matches(const std::string &text, const char *pattern) {
  std::regex form(pattern);
  Texts found;
  for (std::sregex_iterator match(text.begin(), text.end(), form), end; match != end; ++match)
    found.insert((*match)[1]);
  return found;
}

} // namespace

TEST(ManualTables, EveryMessageIsTold) {
  Texts printed = worded(
      printed_by({"SAY", "LOG_LINE", "LOG_AND_SAY", "COMPLAIN", "STOP_PROGRAM", "stop_on_count"}));
  EXPECT_GT(printed.size(), 100u);
  EXPECT_EQ(missing(printed, told_in("messages")), "");
}

TEST(ManualTables, NoMessageIsToldThatIsNotThere) {
  Texts printed =
      printed_by({"SAY", "LOG_LINE", "LOG_AND_SAY", "COMPLAIN", "STOP_PROGRAM", "stop_on_count"});
  // A message put together elsewhere, or told with the value that matters.
  Texts also = {"RECORD_LESSON error 10", "file ./mertu.conf unreachable stop",
                "alsa_play Not able to open file ..."};
  Texts told;
  for (const std::string &text : told_in("messages"))
    if (also.count(text) == 0)
      told.insert(text);
  EXPECT_EQ(missing(told, printed), "");
}

TEST(ManualTables, EveryLineOfTheLeftSideIsTold) {
  Texts written = worded(printed_by({"WRITE_PANE"}));
  EXPECT_GE(written.size(), 5u);
  EXPECT_EQ(missing(written, told_in("pane")), "");
}

TEST(ManualTables, TheReadmeTellsEveryKeyAndEveryCommand) {
  std::string readme = BYTES_OF_FILE("README.md");
  Texts spans = matches(readme, "`([!A-Za-z][A-Za-z0-9_ /]*)`");
  Texts told;
  for (const std::string &span : spans)
    told.insert(span.substr(0, span.find(' ')));
  told.insert({"Color_1_dico", "Color_2_dico", "Color_3_dico"}); // "to"
  told.insert("!ntagrq");                                        // as "!tagrq"
  told.insert("!tagqr");
  Texts forms =
      matches(BYTES_OF_FILE("command/command_forms.cpp"), "\\{\"(!?[a-z]+)\", *[A-Z]+_END");
  EXPECT_EQ(missing(forms, told), "");
  EXPECT_EQ(missing(matches(BYTES_OF_FILE("config/config_file.cpp"),
                            "\\{\"([A-Z][A-Za-z0-9_]*)\", *[a-z_0-9]+, *[0-9]\\}"),
                    told),
            "");
}

TEST(ManualTables, EveryQuestionAndNoticeIsTold) {
  Texts asked;
  for (const std::string &text : all_sources())
    for (const std::string &one : matches(
             text, "\"((?:Voulez|Really|Errors found|Check and correct (?:whole|single)|Synchron)"
                   "[^\"]*)"))
      asked.insert(replaced(as_told(one), " \\?$| \\.\\.\\. \\?$", ""));
  Texts told;
  for (const std::string &text : told_in("questions"))
    told.insert(replaced(text, " \\.\\.\\. \\?$", ""));
  asked.erase("Voulez-vous enregistrer la lecon"); // a remark
  EXPECT_EQ(asked.size(), 6u);
  EXPECT_EQ(missing(asked, told), "");
}

TEST(ManualTables, EveryKeyIsToldInItsOrder) {
  std::string text = BYTES_OF_FILE("config/config_file.cpp");
  std::regex form("\\{\"([A-Z][A-Za-z0-9_]*)\", *[a-z_0-9]+, *[0-9]\\}");
  std::vector<std::string> keys;
  for (std::sregex_iterator match(text.begin(), text.end(), form), end; match != end; ++match)
    keys.push_back((*match)[1]);
  EXPECT_EQ(keys.size(), 17u);
  EXPECT_EQ(MANUAL_TABLES()["keys"], keys);
}

TEST(ManualTables, EveryCommandIsTold) {
  Texts forms =
      matches(BYTES_OF_FILE("command/command_forms.cpp"), "\\{\"(!?[a-z]+)\", *[A-Z]+_END");
  EXPECT_EQ(forms.size(), 21u);
  Texts told;
  for (const std::string &span : told_in("commands"))
    told.insert(span.substr(0, span.find(' ')));
  EXPECT_EQ(missing(forms, told), "");
  EXPECT_EQ(missing(told, forms), "");
}

TEST(ManualTables, NoCommandInTheTextIsUnknown) {
  Texts forms = matches(BYTES_OF_FILE("command/command_forms.cpp"), "\\{\"(![a-z]+)\"");
  Texts typed = matches(BYTES_OF_FILE(MANUAL) + BYTES_OF_FILE("README.md"), "`(![a-z]+)[ `]");
  EXPECT_GE(typed.size(), 15u);
  EXPECT_EQ(missing(typed, forms), "");
}

TEST(ManualTables, EveryFileOfTheDirectoryIsTold) {
  Texts files;
  for (const std::string &text : all_sources())
    for (const std::string &name :
         matches(text, "\"(?:\\./)?((?:mertu|Mertu|idx[12])[A-Za-z0-9_.]*|IDX1_TRF|IDX1|CPY|SOUND)"
                       "/?\""))
      files.insert(name);
  for (const char *other : {"Mertu", "idx1_", "idx1"}) // the window's title; parts of names
    files.erase(other);
  Texts told;
  for (std::string name : told_in("files"))
    told.insert(replaced(name, "/$", ""));
  EXPECT_GE(files.size(), 10u);
  EXPECT_EQ(missing(files, told), "");
}

TEST(ManualTables, EveryButtonIsTold) {
  Texts labels;
  for (const char *file : {"app/main_window.cpp", "quiz/answer_button.cpp", "quiz/toggles.cpp"})
    for (const std::string &label :
         matches(BYTES_OF_FILE(file), "\"( *(?:Quit|Prev|Next|Clr|ReDr|<\\)\\)\\)|< XX|[QR]->[QR]|"
                                      "Question / Response|Verif: Yes/No) *)\""))
      labels.insert(FOLDED(label));
  EXPECT_EQ(labels.size(), 11u);
  EXPECT_EQ(missing(labels, told_in("buttons")), "");
}
