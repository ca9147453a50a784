// The ends of the program that are meant.
#include "damage/ends.h"

#include <algorithm>
#include <iterator>

namespace {

// An end of the program that is meant: its status, and what its last line says.
struct Meant_end {
  int status;
  const char *line;
};

const Meant_end MEANT_ENDS[] = {
    {0, "order unknown =-1"},
    {1, "file ./mertu.conf unreachable stop"},
    {1, "error in line s="},
    {1, "error 1 while reading in "},
    {2, "error 2 while reading in "},
    {1, "error in EXTRACT_LEVEL n_pages="},
    {1, "error in FLOAT_EXTRACT_LEVEL n_pages="},
    {1, "error in EXTRACT_COLOR n_pages="},
    {1, "EXTRACT_WHICH_LESSONS error in line s="},
    {2, "EXTRACT_WHICH_LESSONS error 2 STOP"},
    {11, "EXTRACT_WHICH_LESSONS error dim STOP"},
    {13, "RECUR_EXTR_ARROW error 13"},
    {9, "erreur in EXTRACT_2NB stop"},
    {3, "S_LESSON_FROM_NUM error i=0 STOP"},
    {1, "does not exist stop"},
    {1, "cannot read file "},
    {1, "cannot write file "},
    {32, ""}, // without a message
    {32, "MAKE_ST_ALIAS error 32 CPY for lesson "},
    {32, "MAKE_ST_ALIAS no alias in file "},
    {1, "n file : "},
    {1, "IDX1_DICO erreur 1 stop c="},
    {3, "remove its last name line"},
    {2, "in file : "},
    {3, "in file : "},
    {2, "LESSON_FROM_ORDER error 1 i_order="},
    {1, "VERIF_LESSON STOP  nb_errors > 0"},
    {1, "VERIF_LESSON error 1"},
    {1, "RECORD_LESSON error 1"},
    {2, "RECORD_LESSON error 2"},
    {1, "RECORD_FILE error cannot extract nc1"},
    {5, "WHAT_QR not existing s_alias="},
    {1, "TAGS_EXTRACT error 1"},
    {2, "DICO_TAGS error length ss="},
    {13, "MERGE_ABC_FILE error 13"},
    {14, "MERGE_ABC_FILE error 14"},
    {14, "MERTU_DICO error 14"},
    {1, "sub SYNCHRO_IDX1_FILE error fp_class STOP"},
};

std::string last_line(const std::string &output) {
  size_t end = output.find_last_not_of('\n');
  if (end == std::string::npos)
    return "";
  size_t begin = output.rfind('\n', end);
  return output.substr(begin + 1, end - begin);
}

} // namespace

bool IS_MEANT_END(int status, const std::string &output) {
  std::string line = last_line(output);

  return std::any_of(std::begin(MEANT_ENDS), std::end(MEANT_ENDS), [&](const Meant_end &end) {
    return end.status == status && line.find(end.line) != std::string::npos;
  });
}
