// The recordings of the starter set: their formats, and that the frame numbers in the dictionaries
// are those of the pieces spoken. Needs libsndfile.
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "starter/speaking.h"

namespace {

// Frames that a player may leave unheard at the end of a range: its device's buffer.
const long DEVICE_BUFFER = 4096;
// A sample of silence lies below this (1 is the loudest).
const float SILENT = 0.01F;

struct Recording {
  SF_INFO info = {};
  std::vector<float> samples;
};

Recording recording_of(const std::string &name) {
  Recording recording;
  fs::path path = starter / "SOUND" / name;
  SNDFILE *file = sf_open(path.c_str(), SFM_READ, &recording.info);
  EXPECT_NE(file, nullptr) << name;
  if (file == nullptr)
    return recording;
  recording.samples.resize(size_t(recording.info.frames * recording.info.channels));
  EXPECT_EQ(sf_readf_float(file, recording.samples.data(), recording.info.frames),
            recording.info.frames);
  sf_close(file);
  return recording;
}

std::vector<std::string> recordings() {
  std::vector<std::string> names;
  for (const auto &file : fs::directory_iterator(starter / "SOUND"))
    names.push_back(file.path().filename().string());
  return names;
}

// The loudest sample from frame `start` to before `stop` of a recording with one channel.
float loudest(const Recording &recording, long start, long stop) {
  float most = 0;
  for (long i = start; i < stop; i++)
    most = std::max(most, std::fabs(recording.samples[size_t(i)]));
  return most;
}

} // namespace

TEST(StarterRecordings, AreOggOrFlacWithOneChannelAndNoFloatSamples) {
  for (const std::string &name : recordings()) {
    SF_INFO info = recording_of(name).info;
    EXPECT_EQ(info.channels, 1) << name;
    EXPECT_EQ(info.samplerate, 22050) << name;
    bool flac = info.format == (SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
    bool ogg = info.format == (SF_FORMAT_OGG | SF_FORMAT_VORBIS);
    EXPECT_TRUE(flac || ogg) << name;
  }
}

TEST(StarterRecordings, TakeLessThanTwoMegabytes) {
  size_t bytes = 0;
  for (const std::string &name : recordings())
    bytes += fs::file_size(starter / "SOUND" / name);
  EXPECT_GT(bytes, 0u);
  EXPECT_LT(bytes, 2000000u);
}

TEST(StarterRecordings, AreLoudAndNotClipped) {
  for (const std::string &name : recordings()) {
    Recording recording = recording_of(name);
    float most = loudest(recording, 0, recording.info.frames);
    EXPECT_GT(most, 0.4F) << name;
    EXPECT_LT(most, 0.95F) << name;
  }
}

TEST_F(Speaking, EveryRangeLiesInItsRecordingAndHoldsSpeech) {
  std::map<std::string, Recording> read;
  for (const std::string &name : recordings())
    read[name] = recording_of(name);
  for (const Played &sound : all_sounds()) {
    const Recording &recording = read[sound.name];
    long start = sound.start;
    long stop = sound.whole ? recording.info.frames : sound.stop;
    ASSERT_TRUE(0 <= start && start < stop && stop <= recording.info.frames)
        << sound.name << ' ' << start << ' ' << stop;
    EXPECT_GT(stop - start, 3 * DEVICE_BUFFER) << sound.name << ' ' << start;
    EXPECT_GT(loudest(recording, start, stop), 0.2F) << sound.name << ' ' << start;
    EXPECT_LT(loudest(recording, start, start + 500), SILENT) << sound.name << ' ' << start;
    EXPECT_LT(loudest(recording, stop - DEVICE_BUFFER, stop), SILENT) << sound.name << ' ' << start;
  }
}

TEST_F(Speaking, RangesMeetWithoutAGapAndCoverTheirRecordings) {
  std::map<std::string, std::set<std::pair<long, long>>> ranges;
  for (const Played &sound : all_sounds())
    if (!sound.whole && sound.name.find(".ogg") != std::string::npos)
      ranges[sound.name].insert({sound.start, sound.stop});
  EXPECT_EQ(ranges.size(), 3u);
  for (auto &[name, pieces] : ranges) {
    long length = recording_of(name).info.frames;
    if (name == "spanish-text.ogg") { // the button for all of it
      EXPECT_EQ(pieces.erase({0, length}), 1u);
    }
    long reached = 0;
    for (const auto &[start, stop] : pieces) {
      EXPECT_EQ(start, reached) << name;
      reached = stop;
    }
    EXPECT_EQ(reached, length) << name;
  }
}
