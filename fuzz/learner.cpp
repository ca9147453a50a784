// A learner's records without a window, and the files that targets read back by plain means.
#include "fuzz/learner.h"

#include <glib.h>

#include <algorithm>

#include "db/idx1_format.h"
#include "fuzz/harness.h"
#include "score/merge_sort.h"
#include "text/button_block.h"

namespace {

const size_t HISTORY_BYTES = 52;

void close_stream(FILE *fp) {
  if (fp != nullptr)
    fclose(fp);
}

} // namespace

Learner::Learner(const char *list, const char *aliases, int nb) {
  START_REGISTRY(&registry);
  g_free(registry.st_lesson);
  registry.st_lesson = g_strdup(list);
  registry.st_alias = g_strdup(aliases);
  registry.nb_lesson = nb;
  ALLOCATE_POSIT(5, &table);
  book.G_kentel = &registry;
  book.nbt_lesson = nb;
  book.t_posit = &table;
  book.t_err = &weights;
  book.fp_log = NO_LOG();
  book.ilesson = 1;
  book.sens_qr = book.sens_qrm = 1;
  START_LABELS(&book);
}

Learner::~Learner() {
  close_stream(book.fp);
  close_stream(book.fp_gene);
  close_stream(book.fp_idx1);
  g_free(book.lessons);
  g_free(book.path_of_lesson);
  g_free(book.s_label);
  g_free(book.nc_label);
  FREE_POSIT(&table);
  FREE_REGISTRY(&registry);
}

std::vector<std::string> LINES_OF(const std::string &text) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < text.size();) {
    size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    lines.push_back(line);
    at = end + 1;
  }
  return lines;
}

std::vector<Index_record> RECORDS_OF(const std::string &index, const std::string &path) {
  std::vector<std::string> lines = LINES_OF(index);
  HOLDS(lines.size() >= 3);
  HOLDS(lines[0].compare(0, path.size() + 1, path + " ") == 0);
  HOLDS(lines[1] == std::string(NB_HEADER_MARKS, '#'));
  HOLDS(lines.back().find(END_MARK) != std::string::npos);
  std::vector<Index_record> records;
  for (size_t i = 2; i + 1 < lines.size();) {
    HOLDS(!lines[i].empty() && lines[i][0] == '#');
    // A name that begins with a mark makes a "##" line with histories; a double line has none.
    bool has_history = i + 2 < lines.size() && lines[i + 1].size() == HISTORY_BYTES &&
                       lines[i + 1][0] != '#' && lines[i + 2].size() == HISTORY_BYTES;
    if (lines[i][1] == '#' && !has_history) {
      i++;
      continue;
    }
    HOLDS(has_history);
    records.push_back({lines[i], QUESTION_OF_NAME_LINE(lines[i]), lines[i + 1], lines[i + 2]});
    i += 3;
  }
  return records;
}

bool MAY_BE_REREAD(const std::string &text) {
  for (size_t i = 0; i + 1 < text.size(); i++)
    if ((unsigned char)text[i] >= 0xC0 && ((unsigned char)text[i + 1] & 0xC0) == 0x80)
      return true;
  return false;
}

bool HAS_BARE_CR(const std::string &text) {
  for (size_t i = text.find('\r'); i != text.npos; i = text.find('\r', i + 1))
    if (text.compare(i + 1, 1, "\n") != 0)
      return true;
  return false;
}

void CHECK_ORDER(int sens, Trf_posit *table) {
  Trf_side side = SIDE_OF_TABLE(sens, table);
  std::vector<bool> met((size_t)table->nb_posit + 1, false);
  for (int rank = 1; rank <= table->nb_posit; rank++) {
    int entry = side.ord[rank];
    HOLDS(entry >= 1 && entry <= table->nb_posit);
    HOLDS(!met[(size_t)entry]);
    met[(size_t)entry] = true;
    HOLDS(side.cum_err[entry] >= 0 || side.cum_err[entry] == -1);
  }
}

void CHECK_TABLE(Trf_posit *table) {
  HOLDS(table->nb_posit >= 0 && table->nb_posit < table->nbmx_posit);
  for (int sens : {1, 2}) {
    CHECK_ORDER(sens, table);
    Trf_side side = SIDE_OF_TABLE(sens, table);
    for (int rank = 2; rank <= table->nb_posit; rank++)
      HOLDS(COMPARE_ERR(side.cum_err[side.ord[rank - 1]], side.cum_err[side.ord[rank]]) <= 0);
  }
}
