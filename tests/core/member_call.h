// Frame routines by the parts of their names, and one way to call any of them.
#pragma once
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "frame/catalogue.h"

namespace vorel {

struct Member {
  const FrameRoutine* routine;
  std::string name;
  std::string layout;  // without its scan
  char scan;           // 'p' or 'i'
  std::string pixel;
};

// `Vorel` layout scan `From` pixel `Encode`, or with `To` and `Decode`. One bears its neighbour's name.
inline Member ReadName(const FrameRoutine& routine) {
  const std::string name = routine.name;
  const bool encodes = routine.direction == Direction::encode;
  const std::string_view link = encodes ? "From" : "To";
  const std::string_view verb = encodes ? "Encode" : "Decode";
  const std::size_t at = name.find(link);
  if (!name.starts_with("Vorel") || at == std::string::npos || !name.ends_with(verb))
    throw std::logic_error("not the name of a frame routine: " + name);
  const std::size_t pixelAt = at + link.size();
  Member member = {&routine, name, name.substr(5, at - 6), name[at - 1],
                   name.substr(pixelAt, name.size() - verb.size() - pixelAt)};
  if (routine.pixelFormat == FourCharacterCode("24BG")) member.pixel = "BGR";
  return member;
}

inline std::vector<Member> AllMembers(Direction direction) {
  std::vector<Member> members;
  for (const FrameRoutine& routine : AllRoutines())
    if (routine.direction == direction) members.push_back(ReadName(routine));
  return members;
}

inline const Member& FindMember(Direction direction, std::string_view layoutAndScan, std::string_view pixel) {
  static const std::vector<Member> encoders = AllMembers(Direction::encode);
  static const std::vector<Member> decoders = AllMembers(Direction::decode);
  for (const Member& member : direction == Direction::encode ? encoders : decoders)
    if (member.layout + member.scan == layoutAndScan && member.pixel == pixel) return member;
  throw std::logic_error("no routine for " + std::string(layoutAndScan) + " and " + std::string(pixel));
}

// The arguments as the exported routine takes them.
struct Arguments {
  u32 width;
  u32 height;
  i32 rowBytes;
  u32 standard;
  u32 word;  // cursors: in and out
  u32 bit;
};

inline u32 CallEncoder(const FrameRoutine& routine, Arguments& a, const u8* picture, u8* frame) {
  const ExportedRoutine& to = routine.exported;
  u32* const words = reinterpret_cast<u32*>(frame);
  return routine.takesColourStandard
             ? to.matrixEncode(a.width, a.height, a.rowBytes, picture, a.standard, &a.word, &a.bit, words)
             : to.encode(a.width, a.height, a.rowBytes, picture, &a.word, &a.bit, words);
}

inline u32 CallDecoder(const FrameRoutine& routine, Arguments& a, u8* picture, const u8* frame, u8* scratch) {
  const ExportedRoutine& to = routine.exported;
  const u32* const words = reinterpret_cast<const u32*>(frame);
  if (routine.takesScratch) {
    return routine.takesColourStandard
               ? to.matrixScratchDecode(a.width, a.height, a.rowBytes, picture, a.standard, &a.word, &a.bit,
                                        words, scratch)
               : to.scratchDecode(a.width, a.height, a.rowBytes, picture, &a.word, &a.bit, words, scratch);
  }
  return routine.takesColourStandard
             ? to.matrixDecode(a.width, a.height, a.rowBytes, picture, a.standard, &a.word, &a.bit, words)
             : to.decode(a.width, a.height, a.rowBytes, picture, &a.word, &a.bit, words);
}

// The form that the dispatch calls: only bytes from `readableFrom` to `readableTo` of the frame are read.
inline u32 CallBounded(const FrameRoutine& routine, Arguments& a, u8* picture, u8* frame, u8* scratch,
                       std::size_t readableFrom, std::size_t readableTo) {
  return static_cast<u32>(routine.run({a.width, a.height, a.rowBytes, picture, a.standard, &a.word, &a.bit,
                                       frame, scratch, readableFrom, readableTo}));
}

}  // namespace vorel
