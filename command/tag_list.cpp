// The tags in use, with the number of entries that carry each; the file ./mertu_ltag.
#include "command/tag_list.h"

#include <glib.h>
#include <string.h>

#include <algorithm>

#include "config/registry.h"
#include "db/idx1_walk.h"
#include "db/mend_forgotten.h"
#include "lesson/visited_index.h"
#include "score/merge_runs.h"
#include "util/accents.h"
#include "util/owned.h"
#include "util/report.h"

namespace {

const size_t MAX_TAG_LINE = 100; // a line of so many characters is too long
const int CAPACITY_STEP = 10;    // of the arrays of tags
const int NB_SPARE = 5;

// QUIRK unnamed index: a damaged history line met here is logged with the words "fp_class" in place
// of its index's path. One would expect the path; it is meant: the line stays the same whatever is
// read, and a check of the database tells which index it is. Test:
// TagList.DamagedHistoryLineIsLoggedWithoutThePathOfItsIndex
const char UNNAMED_INDEX[] = "fp_class";

const Trf_walk_texts texts = {"TAGS_EXTRACT and CHECK_4LINT", "TAGS_EXTRACT and CHECK_4LINT", ""};

// The two histories of an entry, as far as they count here.
struct Asked {
  bool QR;
  bool RQ;
};

template <typename Number> void grow_array(int nb_before, int nb, Number **array) {
  *array = g_renew(Number, *array, static_cast<gsize>(nb));
  std::fill(*array + nb_before, *array + nb, static_cast<Number>(0));
}

// Makes room for one tag more.
void make_room(Trf_classmt *classmt) {
  if (classmt->order != nullptr && classmt->nb < classmt->nb_tot)
    return;
  int nb_before = classmt->order == nullptr ? 0 : classmt->nb_tot + NB_SPARE;
  classmt->nb_tot += CAPACITY_STEP;
  int nb = classmt->nb_tot + NB_SPARE;
  grow_array(nb_before, nb, &classmt->order);
  for (long **array : {&classmt->value, &classmt->nk_QR, &classmt->nk_RQ})
    grow_array(nb_before, nb, array);
}

// The number of a tag, which is new when it was not met before.
int number_of(const std::string &tag, Trf_tags *tags) {
  auto found = tags->number.find(tag);
  if (found != tags->number.end())
    return found->second;
  make_room(&tags->classmt);
  int number = ++tags->classmt.nb;
  tags->classmt.order[number] = number;
  tags->text.push_back(tag);
  tags->counted.push_back(0);
  tags->number[tag] = number;
  return number;
}

// "Q" or "R", and then digits alone.
bool is_mark(const std::string &word) {
  return word.size() > 1 && (word[0] == 'Q' || word[0] == 'R') &&
         word.find_first_not_of("0123456789", 1) == std::string::npos;
}

// The text behind the second '*' of a name line; null where there is none.
const char *tags_of_line(const char *line) {
  const char *star = strchr(line + 1, '*');
  star = star == nullptr ? nullptr : strchr(star + 1, '*');
  return star == nullptr ? nullptr : star + 1;
}

bool read_asked(int sens, Trf_idx1_walk *walk) {
  long values[NB_FIELDS + 1] = {};
  if (!NEXT_HISTORY(sens, walk, values))
    STOP_PROGRAM(walk->fp_log, 1, "TAGS_EXTRACT error 1 \n");
  return values[1] >= 1 || values[2] >= 1;
}

// Counts each of an entry's tags once.
void count_entry(const char *line, const Asked &asked, Trf_tags *tags) {
  const char *rest = tags_of_line(line);
  std::string tag;
  tags->nb_entries++;
  while (rest != nullptr && TAGGED_WORD_LINE(&rest, &tag)) {
    int number = number_of(tag, tags);
    if (tags->counted[static_cast<size_t>(number)] == tags->nb_entries)
      continue;
    tags->counted[static_cast<size_t>(number)] = tags->nb_entries;
    tags->classmt.value[number]++;
    tags->classmt.nk_QR[number] += asked.QR ? 1 : 0;
    tags->classmt.nk_RQ[number] += asked.RQ ? 1 : 0;
  }
}

// Adds the tags of a dictionary.
void collect_dictionary(const Trf_visited_index &index, Trf_tags *tags) {
  tags->classmt.fp_class = index.fp.get();
  tags->classmt.s_idx1 = index.s_idx1.get();
  TAGS_EXTRACT(tags);
  tags->classmt.fp_class = nullptr;
  tags->classmt.s_idx1 = nullptr;
}

// The text without accents.
std::string key_of(std::string text) {
  text.resize(2 * text.size() + 1, '\0'); // room for the second letters of ligatures
  RM_ACCENTS(text.data());
  text.resize(strlen(text.c_str()));
  return text;
}

} // namespace

Trf_tags::~Trf_tags() {
  g_free(classmt.order);
  g_free(classmt.value);
  g_free(classmt.nk_QR);
  g_free(classmt.nk_RQ);
}

bool TAGGED_WORD_LINE(const char **rest, std::string *tag) {
  do {
    *rest += strspn(*rest, " ");
    tag->assign(*rest, strcspn(*rest, " "));
    *rest += tag->size();
  } while (is_mark(*tag));
  return !tag->empty();
}

void TAGS_EXTRACT(Trf_tags *tags) {
  Trf_classmt *classmt = &tags->classmt;
  Trf_idx1_walk walk(classmt->fp_class, classmt->s_idx1, classmt->fp_log, &texts);
  SKIP_HEADER(&walk);
  walk.path = UNNAMED_INDEX;
  ALLOW_LINES(MAX_IDX1_LINES, &walk);
  for (Trf_walk_line kind = NEXT_NAME(&walk); kind != WALK_END; kind = NEXT_NAME(&walk)) {
    if (kind == WALK_DOUBLE)
      continue;
    bool asked_qr = read_asked(1, &walk);
    bool asked_rq = read_asked(2, &walk);
    count_entry(walk.line.text, {asked_qr, asked_rq}, tags);
  }
}

void COLLECT_TAGS(Trf_book *book, Trf_tags *tags) {
  MEND_FORGOTTEN(book->fp_log);
  tags->classmt.fp_log = book->fp_log;
  Trf_registry_walk dictionaries(book->G_kentel);
  for (int k = 1; k <= book->nbt_lesson; k++) {
    Trf_visited_index index;
    if (OPEN_VISITED_INDEX(k, &dictionaries, book->fp_log, &index))
      collect_dictionary(index, tags);
  }
}

void MERGESORT_STG_CLASS(int i0, int i1, int *order, const std::vector<std::string> &text) {
  if (i1 <= i0)
    return;
  std::vector<std::string> key(text.size());
  std::transform(text.begin(), text.end(), key.begin(), key_of);
  std::vector<int> work(static_cast<size_t>(i1) + 1);
  MSORT_STG_CLASS(i0, i1, order, work.data(), key);
}

void MSORT_STG_CLASS(int i0, int i1, int *order, int *work, const std::vector<std::string> &key) {
  SORT_HALVES(i0, i1, [order, work, &key](int left, int mid, int right) {
    MERGE_STG_CLASS(left, mid, right, order, work, key);
  });
}

void MERGE_STG_CLASS(int i0, int m, int i1, int *order, int *work,
                     const std::vector<std::string> &key) {
  MERGE_RUNS(i0, m, i1, order, work, [&key](int first, int second) {
    return key[static_cast<size_t>(first)].compare(key[static_cast<size_t>(second)]);
  });
}

std::string TAG_LINE(const Trf_tags &tags, int k) {
  Owned_text line(g_strdup_printf(" %s nb=%ld  QR=%ld  RQ=%ld ",
                                  tags.text[static_cast<size_t>(k)].c_str(), tags.classmt.value[k],
                                  tags.classmt.nk_QR[k], tags.classmt.nk_RQ[k]));
  if (strlen(line.get()) >= MAX_TAG_LINE)
    STOP_PROGRAM(tags.classmt.fp_log, 2, "DICO_TAGS error length ss=%s@@@ \n", line.get());
  return line.get();
}
