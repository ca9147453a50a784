// The sound outputs as a test wants them: what the machine has, what fails, what has come.
//
// A program that CMake gives them (mertu_fake_sound) reaches ALSA, OSS and "/proc/asound/cards"
// through here. While a Fake_sound lives they are answered as it says; else they are the machine's.
#ifndef MERTU_TESTS_SOUND_DEVICE_H
#define MERTU_TESTS_SOUND_DEVICE_H

#include <deque>
#include <map>
#include <string>
#include <vector>

struct Fake_sound {
  Fake_sound();
  ~Fake_sound();
  Fake_sound(const Fake_sound &) = delete;
  Fake_sound &operator=(const Fake_sound &) = delete;

  // What the machine has.
  bool alsa_cards = true;            // "/proc/asound/cards" can be read
  bool alsa_answers = true;          // ALSA is answered here; false: by the real library
  std::string dsp = "/dev/dsp";      // the OSS device that opens; empty when there is none
  unsigned long period_size = 0;     // frames that the ALSA device says it took; 0: those asked for
  unsigned long buffer_size = 0;     // the same
  std::map<std::string, int> fails;  // the routine ("snd_pcm_open") or ioctl ("SYNC") that fails,
                                     // and its code: negative for ALSA, errno for OSS
  std::map<std::string, int> passes; // how often such a routine succeeds before it fails
  std::deque<long> writes; // what the coming writes answer: at most so many frames (OSS: bytes), or
                           // a negative code; then all is taken

  // What has come.
  std::vector<std::string> calls; // every call with what it was given, in order
  std::vector<float> floats;      // samples that ALSA took
  std::vector<short> shorts;      // samples that OSS took
  std::string odd_byte;           // half a sample that OSS took
  std::vector<long> sizes;        // of every write asked for: frames (OSS: bytes)
  int channels = 0;               // as the device was set
  long allocations = 0; // blocks allocated between the first write of a sound and its last

  // The calls that begin with this text.
  std::vector<std::string> calls_of(const std::string &beginning) const;
};

#endif
