// A book whose one lesson is the dictionary words/a.txt, without a window.
#ifndef MERTU_TESTS_TEXT_TEXT_BOOK_H
#define MERTU_TESTS_TEXT_TEXT_BOOK_H

#include <glib.h>
#include <gtest/gtest.h>

#include <string>

#include "config/registry.h"
#include "support/scratch.h"
#include "text/button_block.h"
#include "util/book.h"

struct Text_book {
  Scratch_dir dir;
  Trf_string registry = {};
  Trf_book book = {};

  Text_book() {
    START_REGISTRY(&registry);
    g_free(registry.st_lesson);
    registry.st_lesson = g_strdup("words/a.txt ");
    registry.nb_lesson = 1;
    book.G_kentel = &registry;
    book.ilesson = 1;
    book.fp_log = fopen("log", "w");
    START_LABELS(&book);
    testing::internal::CaptureStdout();
  }
  ~Text_book() {
    testing::internal::GetCapturedStdout();
    close();
    g_free(book.lessons);
    g_free(book.path_of_lesson);
    g_free(book.s_label);
    g_free(book.nc_label);
    fclose(book.fp_log);
    FREE_REGISTRY(&registry);
  }
  Text_book(const Text_book &) = delete;
  Text_book &operator=(const Text_book &) = delete;

  // Makes `bytes` the open working copy.
  void open(const std::string &bytes) {
    close();
    dir.write("copy", bytes);
    book.fp = fopen("copy", "r");
    book.exfp = 1;
  }
  void close() {
    if (book.fp != nullptr)
      fclose(book.fp);
    book.fp = nullptr;
    book.exfp = 0;
  }
  // What the log holds.
  std::string log() {
    fflush(book.fp_log);
    return dir.read("log");
  }
  // The same, when standard output (captured since the test began) holds nothing else.
  std::string logged_and_said() {
    std::string said = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    return said == log() ? said : "log: " + log() + "standard output: " + said;
  }
};

#endif
