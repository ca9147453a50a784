// The only place that prints: trace, promised lines, complaints, the log, the last line.
#ifndef MERTU_UTIL_REPORT_H
#define MERTU_UTIL_REPORT_H

#include <stdio.h>

// True when the environment holds MERTU_TRACE, so that costly listings can be skipped unseen.
bool TRACING();

// Writes one trace line to standard output, only while TRACING. A line end is added to a text
// without one.
void TRACE(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Writes one promised line to standard output. A line end is added to a text without one.
void SAY(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Writes to standard error, exactly as given.
void COMPLAIN(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Writes to the log, exactly as given; nothing where fp_log is null.
void LOG_LINE(FILE *fp_log, const char *format, ...) __attribute__((format(printf, 2, 3)));

// LOG_LINE and SAY of the same text.
void LOG_AND_SAY(FILE *fp_log, const char *format, ...) __attribute__((format(printf, 2, 3)));

// Ends the program with exit(status) after writing the text to standard output and, where fp_log
// is not null, to the log.
[[noreturn]] void STOP_PROGRAM(FILE *fp_log, int status, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

// Registers the log for routines that have no book at hand (SAVED_LOG). The stream is borrowed:
// whoever closes it registers null first. Returns the stream registered before.
FILE *SET_SAVED_LOG(FILE *fp_log);

// The log registered with SET_SAVED_LOG, or null.
FILE *SAVED_LOG();

// Registers a log for the length of a scope; the one before comes back at its end.
struct Log_registered {
  explicit Log_registered(FILE *fp_log) : before(SET_SAVED_LOG(fp_log)) {
  }
  ~Log_registered() {
    SET_SAVED_LOG(before);
  }
  Log_registered(const Log_registered &) = delete;
  Log_registered &operator=(const Log_registered &) = delete;
  FILE *before;
};

#endif
