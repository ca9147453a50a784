// What the window tests hear: CMake puts these before the two routines of sound/play.
#include "support/prelude.h"

#include "gui/heard.h"

namespace {

struct {
  std::vector<std::string> sounds;
  bool sounding = false; // they go on to the outputs
} heard;

} // namespace

extern "C" {

int real_range(char *file, long rg_start, long rg_stop) __asm__("__real__Z10play_rangePcll");
int real_total(char *file) __asm__("__real__Z10play_totalPc");
int heard_range(char *file, long rg_start, long rg_stop) __asm__("__wrap__Z10play_rangePcll");
int heard_total(char *file) __asm__("__wrap__Z10play_totalPc");

int heard_range(char *file, long rg_start, long rg_stop) {
  heard.sounds.push_back(std::string(file) + " " + std::to_string(rg_start) + " " +
                         std::to_string(rg_stop));
  return heard.sounding ? real_range(file, rg_start, rg_stop) : 0;
}

int heard_total(char *file) {
  heard.sounds.push_back(file);
  return heard.sounding ? real_total(file) : 0;
}
}

std::vector<std::string> HEARD() {
  std::vector<std::string> sounds;
  sounds.swap(heard.sounds);
  return sounds;
}

Sounding::Sounding() {
  heard.sounding = true;
}

Sounding::~Sounding() {
  heard.sounding = false;
}
