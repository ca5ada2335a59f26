// A hand-made movie with sound and timecode: what tracks are copied from.
#pragma once
#include "tests/container/hand_movie.h"

namespace vorel::container {

// What differs between sound tracks: the size table, in the description the format, channels (2) and bits
// (2), and times.
struct SoundSettings {
  Blob chunks[2] = {"sound-0!", "sound-1!"};
  u32 samplesPerChunk = 2;
  Blob stsz = Atom("stsz", Be32(0) + Be32(4) + Be32(4));
  Blob descriptionTail = Be16(2) + Be16(16);
  Blob format = "sowt";
  u32 sampleDuration = 24000;  // half a second
  u32 mediaTime = 77;          // where the only edit begins
  Blob references;             // tref, or nothing
  u32 duration = 1200;         // of edit and track, in the movie's timescale
};

// Two chunks.
Blob SoundTrack(const SoundSettings& sound, u32 id, const Blob& offsets);

// A movie in timescale 600 with a video track (id 1), a sound track (id 3) and a timecode track (id 7):
//   frames "AAAABBBBBCCCCCC" at 28, the two sound chunks at 43, timecode "TIME"
Blob SourceMovie(const SoundSettings& sound = {});

}  // namespace vorel::container
