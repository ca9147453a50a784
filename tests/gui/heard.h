// What the window tests hear: the sounds that the program plays, kept.
//
//   Fake_sound sound; // the outputs (sound/device.h)
//   Sounding sounding;
//   window.press(...);
//   EXPECT_EQ(sound.floats, ...);
#ifndef MERTU_TESTS_GUI_HEARD_H
#define MERTU_TESTS_GUI_HEARD_H

#include <string>
#include <vector>

// The sounds played since the last call, in order: "./a.wav 0 500" for a range of frames, "./a.wav"
// for a whole file.
std::vector<std::string> HEARD();

// While it lives sounds also go on to the outputs; else they are only kept.
struct Sounding {
  Sounding();
  ~Sounding();
  Sounding(const Sounding &) = delete;
  Sounding &operator=(const Sounding &) = delete;
};

#endif
