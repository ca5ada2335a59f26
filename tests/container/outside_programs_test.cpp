// Programs by other people read what the writer wrote: size, rate, number of frames, code of the codec, and
// no complaint.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "container/movie_writer.h"
#include "tests/container/hand_movie.h"
#include "tests/container/hand_sound.h"

namespace vorel::container {
namespace {

struct Outcome {
  int status;
  std::string text;
};

// Runs a command line; both outputs together are its text.
Outcome RunCommand(const std::string& commandLine) {
  std::FILE* pipe = popen((commandLine + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return {-1, "no shell"};
  Outcome outcome = {0, ""};
  std::array<char, 4096> part;
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
    outcome.text.append(part.data(), count);
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class OutsidePrograms : public testing::Test {
 protected:
  void SetUp() override {
    MovieSettings settings;
    settings.time = TimeBaseOfRate({24000, 1001});
    MovieWriter writer(Path(), settings);
    SampleDescription description;
    description.cType = FourCharacterCode("Vrl4");
    description.vendor = FourCharacterCode("Vorl");
    description.spatialQuality = 1024;
    description.width = 640;
    description.height = 360;
    description.name = "VorelVideo";
    SetExtension(description, {FourCharacterCode("Kesp"), {'8', 'b', 'w', 'p'}});
    SetExtension(description, MakeFieldOrder({2, 9}));
    SetExtension(description, MakeColour({1, 1, 1}));
    SetExtension(description, MakePixelAspect({1, 1}));
    writer.AddDescription(description);
    for (u8 i = 0; i < 8; ++i) {
      const std::vector<u8> frame(1000u + i, i);
      writer.AppendFrame(frame.data(), frame.size(), 0);
    }
    writer.Finish();
  }

  std::string Path() const { return folder.path + "/a.mov"; }

  Outcome RunOnMovie(const std::string& program, const std::string& arguments) const {
    if (RunCommand("command -v " + program).status != 0) {
      ADD_FAILURE() << program << " is not installed; script/bootstrap installs it";
      return {-1, ""};
    }
    return RunCommand("timeout 60 " + program + " " + arguments);
  }

  TestFolder folder;
};

TEST_F(OutsidePrograms, Mediainfo) {
  const Outcome outcome = RunOnMovie("mediainfo", "--Output=JSON " + Path());
  EXPECT_EQ(outcome.status, 0);
  for (const char* part :
       {R"("Format_Profile": "QuickTime")", R"("Format": "Vrl4")", R"("CodecID": "Vrl4")",
        R"("Width": "640")", R"("Height": "360")", R"("FrameRate": "23.976")", R"("FrameCount": "8")",
        R"("FrameRate_Mode": "CFR")", R"("ScanType": "Interlaced")", R"("ScanOrder": "TFF")",
        R"("matrix_coefficients": "BT.709")", R"("colour_primaries": "BT.709")",
        R"("PixelAspectRatio": "1.000")"}) {
    EXPECT_TRUE(Contains(outcome.text, part)) << part << "\n" << outcome.text;
  }
  EXPECT_FALSE(Contains(outcome.text, "IsTruncated")) << outcome.text;
  EXPECT_FALSE(Contains(outcome.text, "ConformanceErrors")) << outcome.text;
}

TEST_F(OutsidePrograms, Exiftool) {
  const Outcome outcome = RunOnMovie("exiftool", "-j " + Path());
  EXPECT_EQ(outcome.status, 0);
  for (const char* part :
       {R"("FileType": "MOV")", R"("CompressorID": "Vrl4")", R"("ImageWidth": 640)", R"("ImageHeight": 360)",
        R"("VideoFrameRate": 23.976)", R"("CompressorName": "VorelVideo")", R"("BitDepth": 24)",
        R"("MatrixStructure": "1 0 0 0 1 0 0 0 1")"}) {
    EXPECT_TRUE(Contains(outcome.text, part)) << part << "\n" << outcome.text;
  }
  EXPECT_FALSE(Contains(outcome.text, "\"Warning\"")) << outcome.text;
  EXPECT_FALSE(Contains(outcome.text, "\"Error\"")) << outcome.text;
}

TEST_F(OutsidePrograms, ExiftoolFindsTheStructureValid) {
  const Outcome outcome = RunOnMovie("exiftool", "-validate -warning -error -a " + Path());
  EXPECT_EQ(outcome.text, "Validate                        : OK\n");
}

TEST_F(OutsidePrograms, Mkvmerge) {
  const Outcome outcome = RunOnMovie("mkvmerge", "-J " + Path());
  EXPECT_EQ(outcome.status, 0);
  for (const char* part :
       {R"("recognized": true)", R"("type": "QuickTime/MP4")", R"("errors": [])", R"("warnings": [])",
        R"("codec": "0x56726c34 \"Vrl4\"")", R"("pixel_dimensions": "640x360")", R"("type": "video")"}) {
    EXPECT_TRUE(Contains(outcome.text, part)) << part << "\n" << outcome.text;
  }
}

TEST_F(OutsidePrograms, GstLaunch) {
  const Outcome outcome =
      RunOnMovie("gst-launch-1.0", "-v filesrc location=" + Path() + " ! qtdemux ! fakesink silent=false");
  EXPECT_EQ(outcome.status, 0) << outcome.text;
  EXPECT_FALSE(Contains(outcome.text, "ERROR")) << outcome.text;
  EXPECT_FALSE(Contains(outcome.text, "WARN")) << outcome.text;
  for (const char* part : {"width=(int)640", "height=(int)360", "framerate=(fraction)24000/1001"}) {
    EXPECT_TRUE(Contains(outcome.text, part)) << part << "\n" << outcome.text;
  }
  // One line for each frame with its size in bytes.
  for (int bytes = 1000; bytes < 1008; ++bytes) {
    EXPECT_TRUE(Contains(outcome.text, "(" + std::to_string(bytes) + " bytes")) << bytes << "\n"
                                                                                << outcome.text;
  }
}

TEST_F(OutsidePrograms, GstLaunchExtractsTheFramesByteForByte) {
  const std::string extracted = folder.path + "/frames";
  const Outcome outcome = RunOnMovie(
      "gst-launch-1.0", "filesrc location=" + Path() + " ! qtdemux ! filesink location=" + extracted);
  EXPECT_EQ(outcome.status, 0) << outcome.text;
  Blob frames;
  for (char i = 0; i < 8; ++i) frames += Blob(1000u + static_cast<unsigned>(i), i);
  EXPECT_EQ(ContentsOf(extracted), frames);
}

TEST_F(OutsidePrograms, GstLaunchExtractsACopiedSoundTrack) {
  SoundSettings sound;
  // Two chunks of a tenth of a second: 4800 samples of 2 channels and 2 bytes.
  sound.chunks[0].clear();
  sound.chunks[1].clear();
  for (int i = 0; i < 19200; ++i) {
    sound.chunks[0] += static_cast<char>(i % 251);
    sound.chunks[1] += static_cast<char>(i % 241);
  }
  sound.samplesPerChunk = 4800;
  sound.stsz = Atom("stsz", Be32(0) + Be32(4) + Be32(9600));
  sound.sampleDuration = 1;
  sound.mediaTime = 0;
  sound.duration = 120;
  const MemoryFile from(SourceMovie(sound));
  const Movie source = OpenMovie(from.descriptor, "source.mov");
  MovieSettings settings;
  settings.time = {48000, 9600};  // one frame as long as the sound
  settings.overwrite = true;
  MovieWriter writer(Path(), settings);
  writer.AddDescription(ReadVideoTrack(source, 0).descriptions[0]);
  writer.CopyTrack(source, 1);
  writer.AppendFrame(reinterpret_cast<const u8*>("frame"), 5, 0);
  writer.Finish();
  const std::string extracted = folder.path + "/sound";
  const Outcome outcome = RunOnMovie("gst-launch-1.0", "filesrc location=" + Path() +
                                                           " ! qtdemux name=movie movie.audio_0 ! "
                                                           "audio/x-raw,rate=48000,channels=2,format=S16LE ! "
                                                           "filesink location=" +
                                                           extracted);
  EXPECT_EQ(outcome.status, 0) << outcome.text;
  EXPECT_TRUE(ContentsOf(extracted) == sound.chunks[0] + sound.chunks[1]) << outcome.text;
}

// A movie by another writer is read, written again with its sound, and taken apart by that other program:
// frames and sound are the same bytes.
TEST_F(OutsidePrograms, MovieOfAnotherWriterIsReadAndRewritten) {
  const std::string other = folder.path + "/other.mov";
  const Outcome made = RunOnMovie(
      "gst-launch-1.0",
      "-q videotestsrc num-buffers=8 ! video/x-raw,width=64,height=48,framerate=24000/1001 ! jpegenc ! "
      "qtmux name=movie ! filesink location=" +
          other +
          " audiotestsrc num-buffers=10 samplesperbuffer=1600 ! "
          "audio/x-raw,rate=48000,channels=2,format=S16LE ! movie.");
  ASSERT_EQ(made.status, 0) << made.text;
  const Movie movie = OpenMovie(other);
  ASSERT_EQ(movie.tracks.size(), 2u);
  EXPECT_EQ(movie.tracks[1].firstFormat, FourCharacterCode("sowt"));
  const auto video = ReadVideoTrack(movie, ChooseVideoTrack(movie));
  EXPECT_EQ(video.rate, (FrameRate{24000, 1001}));
  EXPECT_EQ(video.samples.size(), 8u);
  EXPECT_EQ(video.descriptions.at(0).cType, FourCharacterCode("jpeg"));
  EXPECT_EQ(video.descriptions.at(0).width, 64);
  EXPECT_EQ(video.descriptions.at(0).height, 48);

  MovieSettings settings;
  settings.time = TimeBaseOfRate(video.rate);
  settings.overwrite = true;
  MovieWriter writer(Path(), settings);
  writer.AddDescription(video.descriptions[0]);
  writer.StandFor(movie, video.track);
  writer.CopyTrack(movie, 1);
  writer.CopyMovieData(movie);
  std::vector<u8> frame;
  for (const Sample& sample : video.samples) {
    ReadSample(movie, sample, frame);
    writer.AppendFrame(frame.data(), frame.size(), 0);
  }
  writer.Finish();

  for (const std::string& name : {other, Path()}) {
    const Outcome outcome = RunOnMovie(
        "gst-launch-1.0", "-q filesrc location=" + name +
                              " ! qtdemux name=movie movie.video_0 ! queue ! filesink "
                              "location=" +
                              name + ".video movie.audio_0 ! queue ! filesink location=" + name + ".sound");
    EXPECT_EQ(outcome.status, 0) << outcome.text;
    EXPECT_EQ(outcome.text, "");
  }
  EXPECT_EQ(ContentsOf(other + ".sound").size(), 10u * 1600 * 4);
  EXPECT_TRUE(ContentsOf(other + ".sound") == ContentsOf(Path() + ".sound"));
  EXPECT_GT(ContentsOf(other + ".video").size(), 1000u);
  EXPECT_TRUE(ContentsOf(other + ".video") == ContentsOf(Path() + ".video"));
}

// It has no decoder for the frames, and names the code for which it lacks one.
TEST_F(OutsidePrograms, GstDiscoverer) {
  const Outcome outcome = RunOnMovie("gst-discoverer-1.0", "-v " + Path());
  EXPECT_TRUE(Contains(outcome.text, "Done discovering")) << outcome.text;
  EXPECT_TRUE(Contains(outcome.text, "x-gst-fourcc-Vrl4")) << outcome.text;
}

}  // namespace
}  // namespace vorel::container
