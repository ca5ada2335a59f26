#include "tests/container/hand_sound.h"

namespace vorel::container {

namespace {

Blob SoundDescription(const SoundSettings& sound) {
  return Atom(sound.format, Zeros(6) + Be16(1) + Be16(0) + Be16(0) + Zeros(4) + sound.descriptionTail +
                                Be16(0) + Be16(0) + Be32(u64{48000} << 16));
}

const Blob kSoundTail = Atom("abcd", "of its own") + Table("stss", 1, Be32(1));

Blob SoundStbl(const SoundSettings& sound, const Blob& offsets) {
  return Atom("stbl", Table("stsd", 1, SoundDescription(sound)) +
                          Table("stts", 1, Be32(2 * sound.samplesPerChunk) + Be32(sound.sampleDuration)) +
                          Table("stsc", 1, Be32(1) + Be32(sound.samplesPerChunk) + Be32(1)) + sound.stsz +
                          offsets + kSoundTail);
}

Blob TimecodeTrack(u32 id, u32 duration, const Blob& offsets) {
  const Blob entry = Atom("tmcd", Zeros(6) + Be16(1) + Zeros(18) + Atom("name", "reel"));
  const Blob stbl = Atom("stbl", Table("stsd", 1, entry) + Table("stts", 1, Be32(1) + Be32(3003)) +
                                     Table("stsc", 1, Be32(1) + Be32(1) + Be32(1)) +
                                     Atom("stsz", Be32(0) + Be32(4) + Be32(1)) + offsets);
  const Blob minf =
      Atom("minf", Atom("gmhd", "gm") + Hdlr("dhlr", "alis", "data") + SelfContainedDinf() + stbl);
  return Atom("trak", Tkhd(id, duration, 0, 0, 1) +
                          Atom("mdia", Mdhd(24000, 3003) + Hdlr("mhlr", "tmcd", "time") + minf));
}

Blob WithReferences(const Blob& track, const Blob& references) {
  const Blob payload = track.substr(8);
  return Atom("trak", payload + references);
}

}  // namespace

Blob SoundTrack(const SoundSettings& sound, u32 id, const Blob& offsets) {
  const Blob smhd = Atom("smhd", Be32(0) + Be32(0));
  const Blob minf =
      Atom("minf", smhd + Hdlr("dhlr", "alis", "data") + SelfContainedDinf() + SoundStbl(sound, offsets));
  const Blob edts =
      Atom("edts", Table("elst", 1, Be32(sound.duration) + Be32(sound.mediaTime) + Be32(0x10000)));
  return Atom("trak", Tkhd(id, sound.duration, 0, 0, 1) + edts +
                          Atom("mdia", Mdhd(48000, 2 * sound.samplesPerChunk * sound.sampleDuration) +
                                           Hdlr("mhlr", "soun", "sound") + minf) +
                          Atom("udta", Atom("name", "Stereo")) + sound.references);
}

Blob SourceMovie(const SoundSettings& sound) {
  const Blob media = kThreeFrames + sound.chunks[0] + sound.chunks[1] + "TIME";
  const std::size_t soundAt = kHandFrameOffset + kThreeFrames.size();
  const std::size_t secondAt = soundAt + sound.chunks[0].size();
  const std::size_t timecodeAt = secondAt + sound.chunks[1].size();
  const Blob references = Atom("tref", Atom("tmcd", Be32(7)) + Atom("chap", Be32(99)));
  return Ftyp() + Atom("mdat", media) +
         Atom("moov", Mvhd(600, 1200, 8) + WithReferences(VideoTrak(ThreeFrameTables(28)), references) +
                          SoundTrack(sound, 3, Table("stco", 2, Be32(soundAt) + Be32(secondAt))) +
                          TimecodeTrack(7, 75, Table("stco", 1, Be32(timecodeAt))) +
                          Atom("udta", Atom("\xA9nam", "title")) + Atom("meta", Hdlr("mhlr", "mdta", "")) +
                          Atom("meta", Atom("iloc", "places")));
}

}  // namespace vorel::container
