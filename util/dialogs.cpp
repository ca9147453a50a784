// How the core asks and tells the learner something: a record of procedures.
#include "util/dialogs.h"

namespace {

// The dialogs in use; borrowed from whoever registered them.
struct {
  const Trf_dialogs *dialogs;
} registered;

} // namespace

void SET_DIALOGS(const Trf_dialogs *dialogs) {
  registered.dialogs = dialogs;
}

Trf_answer ASK_LEARNER(Trf_question kind, const char *text, Trf_book *book) {
  if (registered.dialogs == nullptr)
    return ANSWER_NO;
  return registered.dialogs->ask(kind, text, book);
}

void TELL_LEARNER(Trf_notice kind, const char *text, Trf_book *book) {
  if (registered.dialogs != nullptr)
    registered.dialogs->tell(kind, text, book);
}
