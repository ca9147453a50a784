// The only place that prints: trace, promised lines, complaints, the log, the last line.
#include "util/report.h"

#include <stdarg.h>
#include <stdlib.h>
#include <string.h>

namespace {

// The log for routines that have no book at hand; borrowed, null before the log is opened.
struct {
  FILE *fp_log;
} saved;

void write_line(FILE *fp, const char *format, va_list values) {
  vfprintf(fp, format, values);
  size_t length = strlen(format);
  if (length == 0 || format[length - 1] != '\n')
    fputc('\n', fp);
}

void log_text(FILE *fp_log, const char *format, va_list values) {
  if (fp_log == nullptr)
    return;
  va_list again;
  va_copy(again, values);
  vfprintf(fp_log, format, again);
  va_end(again);
}

} // namespace

bool TRACING() {
  return getenv("MERTU_TRACE") != nullptr;
}

void TRACE(const char *format, ...) {
  if (!TRACING())
    return;
  va_list values;
  va_start(values, format);
  write_line(stdout, format, values);
  va_end(values);
}

void SAY(const char *format, ...) {
  va_list values;
  va_start(values, format);
  write_line(stdout, format, values);
  va_end(values);
}

void COMPLAIN(const char *format, ...) {
  va_list values;
  va_start(values, format);
  vfprintf(stderr, format, values);
  va_end(values);
}

void LOG_LINE(FILE *fp_log, const char *format, ...) {
  va_list values;
  va_start(values, format);
  log_text(fp_log, format, values);
  va_end(values);
}

void LOG_AND_SAY(FILE *fp_log, const char *format, ...) {
  va_list values;
  va_start(values, format);
  log_text(fp_log, format, values);
  write_line(stdout, format, values);
  va_end(values);
}

void STOP_PROGRAM(FILE *fp_log, int status, const char *format, ...) {
  va_list values;
  va_start(values, format);
  log_text(fp_log, format, values);
  write_line(stdout, format, values);
  va_end(values);
  exit(status);
}

FILE *SET_SAVED_LOG(FILE *fp_log) {
  FILE *before = saved.fp_log;
  saved.fp_log = fp_log;
  return before;
}

FILE *SAVED_LOG() {
  return saved.fp_log;
}
