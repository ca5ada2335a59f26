// A form of interlaced 8bv 4:2:2 in which each row may have reduced precision. No tag stands for it, nothing writes
// it and no dispatch leads here: the decoder is kept so that the form stays on record.
//
// A row begins with a run of n ones and a zero. n & 1 tells whether it is raw, s = n >> 1 by how many bits its
// samples are reduced. Every row stands alone: it starts from the start values, reduced. Raw fields have 8 - s
// bits, none from s = 8 on. Samples are put back by a shift of the whole pair, so that one which is too large for
// the reduced range spills into the next byte: that is how it stands.
#include "entropy/row_codes.h"
#include "entropy/symbol_reader.h"
#include "frame/argument_check.h"
#include "frame/frame_limits.h"
#include "frame/member_macros.h"
#include "frame/row_walk.h"
#include "pixel/pixel_layout.h"

namespace vorel {
namespace {

struct Pair {
  u8 luma0;
  u8 cb;
  u8 luma1;
  u8 cr;
};

constexpr u32 ShiftedWord(const Pair& pair, u64 shift) {
  if (shift >= 32) return 0;
  return static_cast<u32>(u64{pair.cb} << shift | u64{pair.luma0} << (shift + 8) |
                          u64{pair.cr} << (shift + 16) | u64{pair.luma1} << (shift + 24));
}

constexpr u8 Reduced(i16 sample, u64 shift) {
  return shift < 8 ? static_cast<u8>(sample >> shift) : u8{0};
}

// Ones up to the zero that ends them. A damaged run ends where the frame must have ended.
u64 GetRun(BitReader& reader, u64 limit) {
  u64 ones = 0;
  while (!IsPastLimit(reader, limit) && GetBit(reader) != 0) ++ones;
  return ones;
}

u8 GetField(BitReader& reader, u64 shift) {
  if (shift >= 8) return 0;
  const u32 bits = 8 - static_cast<u32>(shift);
  const u32 field = PeekWord(reader) >> (32 - bits);
  reader.position += bits;
  return static_cast<u8>(field);
}

u8 GetResidual(BitReader& reader, CodeClass codeClass) {
  const DecodedSymbol decoded = DecodeSymbol(kVideo8Interlaced422, codeClass, PeekWord(reader));
  reader.position += decoded.length;
  return static_cast<u8>(decoded.symbol);
}

Status DecodeReducedRows(const FrameCall& call) {
  const Status checked =
      CheckArguments(call, SignificantBits(Px2vuy, false), "VorelYCbCr8bv422irTo2vuyDecode");
  if (checked != Status::complete) return checked;
  const StreamCursor cursor = Fold({*call.wordCursor, *call.bitCursor});
  const u64 limit = FrameLimit<YCbCr8bv422>(call, cursor);
  const u32 pairs = UnitsPerRow(YCbCr8bv422, call.width);
  BitReader reader = OpenReader(call.frame, cursor, call.readableFrom, call.readableTo);
  RowWalk walk = OpenRowWalk(call.base, call.height, call.rowBytes);
  Status status = Status::complete;
  for (u32 row = 0; row < call.height; ++row) {
    u8* const target = CurrentRow(walk);
    const u64 run = GetRun(reader, limit);
    const u64 shift = run >> 1;
    Pair pair = {0, Reduced(YCbCr8bv422.start.chroma, shift), Reduced(YCbCr8bv422.start.luma, shift),
                 Reduced(YCbCr8bv422.start.chroma, shift)};
    for (std::size_t i = 0; i < pairs; ++i) {
      if ((run & 1) != 0) {
        pair.luma0 = GetField(reader, shift);
        pair.cb = GetField(reader, shift);
        pair.luma1 = GetField(reader, shift);
        pair.cr = GetField(reader, shift);
      } else {
        pair.luma0 = static_cast<u8>(pair.luma1 + GetResidual(reader, CodeClass::a));
        pair.cb = static_cast<u8>(pair.cb + GetResidual(reader, CodeClass::b));
        pair.luma1 = static_cast<u8>(pair.luma0 + GetResidual(reader, CodeClass::a));
        pair.cr = static_cast<u8>(pair.cr + GetResidual(reader, CodeClass::b));
      }
      StoreLittle32(target + 4 * i, ShiftedWord(pair, shift));
    }
    if (!StepRow(walk)) {
      status = Status::rowLeftPictureDecode;
      break;
    }
    if (IsPastLimit(reader, limit)) {
      status = Status::frameBoundRead;
      break;
    }
  }
  StoreCursors(call, reader.position);
  return status;
}

}  // namespace
}  // namespace vorel

extern "C" VorelStatus VorelYCbCr8bv422irTo2vuyDecode(uint32_t width, uint32_t height, int32_t rowBytes,
                                                      void* base, uint32_t* wordCursor, uint32_t* bitCursor,
                                                      const uint32_t* frame) {
  const vorel::FrameCall call = {width,  height,     rowBytes,  vorel::Writable<vorel::u8>(base),
                                 0,      wordCursor, bitCursor, vorel::Writable<vorel::u8>(frame),
                                 nullptr};
  return static_cast<VorelStatus>(vorel::DecodeReducedRows(call));
}
