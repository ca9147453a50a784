// What the window tests hear: the sounds that the program plays, kept instead of played.
#ifndef MERTU_TESTS_GUI_HEARD_H
#define MERTU_TESTS_GUI_HEARD_H

#include <string>
#include <vector>

// The sounds played since the last call, in order: "./a.wav 0 500" for a range of frames, "./a.wav"
// for a whole file.
std::vector<std::string> HEARD();

#endif
