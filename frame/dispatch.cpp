#include "frame/dispatch.h"

#include <algorithm>

#include "frame/frame_header.h"
#include "frame/frame_tags.h"
#include "frame/tag_rules.h"

namespace vorel {
namespace {

// What the eight decoders and encoders differ in.
struct FamilyRow {
  u32 subtype;               // of the tags that the decoder knows; 0 for all
  bool readsBothSignatures;  // 10-bit families know the written one alone
  u32 decodeWithheld;        // a pixel format that the decoder lacks; 0 for none
  u32 encodeWithheld;        // a pixel format whose tag leads to no routine in the encoder; 0 for none
};

constexpr FamilyRow kFamilies[] = {
    {0, true, 0,
     FourCharacterCode(
         "V416")},  // the rule gives 'V416' a tag of 10bv 4:4:4, for which this encoder has no row
    {FourCharacterCode("Vrl7"), false, 0, 0},
    {FourCharacterCode("Vrl1"), true, 0, 0},
    {FourCharacterCode("Vrl5"), false, 0, 0},
    {FourCharacterCode("Vrl2"), true, 0, 0},
    {FourCharacterCode("Vrl6"), false, FourCharacterCode("A46L"), 0},
    {FourCharacterCode("Vrl3"), true, 0, 0},
    {FourCharacterCode("Vrl4"), true, 0, 0},
};

// All that the generic strict decode knows. A self-check in the generic compressor of any other source fails.
constexpr u32 kGenericStrictFormats[] = {
    24,
    FourCharacterCode("24BG"),
    32,
    FourCharacterCode("ABGR"),
    FourCharacterCode("RGBA"),
    FourCharacterCode("BGRA"),
    FourCharacterCode("VRGB"),
    FourCharacterCode("b64a"),
    FourCharacterCode("L64A"),
    FourCharacterCode("F10k"),
    FourCharacterCode("S10k"),
    FourCharacterCode("F210"),
    FourCharacterCode("S210"),
    FourCharacterCode("b48r"),
};

u32 ServedPixelFormat(u32 pixelFormat, u32 flags) {
  const bool littleEndian = (flags & VOREL_LITTLE_ENDIAN_B64A) != 0;
  return littleEndian && pixelFormat == FourCharacterCode("b64a") ? FourCharacterCode("L64A") : pixelFormat;
}

// Runs the routine for a pair. Withheld formats are those that were asked for, before the flag turns 'b64a'
// into 'L64A'.
Status RunRoutine(Direction direction, u32 pixelFormat, u32 tag, const FrameCall& call, u32 flags) {
  const FrameRoutine* routine = FindRoutine(direction, ServedPixelFormat(pixelFormat, flags), tag);
  return routine == nullptr ? Status::noRoutine : routine->run(call);
}

// Encoders and strict decoders look through the word cursor and the frame before a routine has checked them.
// Both may be misaligned: the routine then says so.
Status CheckPointers(const FrameCall& call) {
  if (call.wordCursor == nullptr) return Status::wordCursorMissing;
  return call.frame == nullptr ? Status::frameMissing : Status::complete;
}

u32 WordCursor(const FrameCall& call) {
  return LoadNative<u32>(call.wordCursor);
}

// Moves the word cursor behind the header.
void SkipHeader(const FrameCall& call) {
  StoreNative(call.wordCursor, WordCursor(call) + VOREL_FRAME_HEADER_WORDS);
}

// The five header words, at any address. Bytes that must not be read are zero.
HeaderWords LoadHeader(const u8* frame, std::size_t readableBytes) {
  u8 bytes[VOREL_FRAME_HEADER_BYTES] = {};
  std::copy_n(frame, std::min<std::size_t>(readableBytes, sizeof bytes), bytes);
  HeaderWords header{};
  for (std::size_t i = 0; i < header.size(); ++i) header[i] = LoadLittle32(bytes + 4 * i);
  return header;
}

bool AcceptsSignature(const FamilyRow& row, const HeaderWords& header) {
  return row.readsBothSignatures ? IsReadableSignature(header) : IsWrittenSignature(header);
}

// Makes the frame pointer a multiple of 4, and lets the cursor skip the bytes that come in so. The last step
// moves backward; it looks wrong and is required, and with the bit cursor at 0 it is never reached. A bit
// cursor of exactly 32 stays.
void AlignFrame(FrameCall& call, std::size_t readableBytes) {
  const u32 leading = static_cast<u32>(reinterpret_cast<std::uintptr_t>(call.frame) % 4);
  if (leading == 0) {
    call.readableTo = readableBytes;
    return;
  }
  std::size_t moved = leading;
  u32 bit = LoadNative<u32>(call.bitCursor) + 8 * leading;
  if (bit > 32) {
    moved += 4;
    bit -= 32;
  }
  StoreNative(call.bitCursor, bit);
  call.frame = reinterpret_cast<u8*>(reinterpret_cast<std::uintptr_t>(call.frame) - moved);
  call.readableFrom = moved;
  const std::size_t most = std::numeric_limits<std::size_t>::max();
  call.readableTo = readableBytes > most - moved ? most : readableBytes + moved;
}

}  // namespace

bool HasSignature(VorelFamily family, const u8* frame, std::size_t readableBytes) {
  if (family >= std::size(kFamilies) || frame == nullptr || readableBytes < VOREL_FRAME_HEADER_BYTES)
    return false;
  return AcceptsSignature(kFamilies[family], LoadHeader(frame, readableBytes));
}

void WriteHeader(u32 tag, u8* frame) {
  for (std::size_t i = 0; i < kWrittenSignature.size(); ++i)
    StoreLittle32(frame + 4 * i, kWrittenSignature[i]);
  StoreLittle32(frame + 16, tag);
}

Status DecodeLenient(VorelFamily family, u32 pixelFormat, FrameCall call, std::size_t readableBytes,
                     u32 flags) {
  if (family >= std::size(kFamilies)) return Status::noRoutine;
  if (call.frame == nullptr) return Status::frameMissing;
  const bool aligned = reinterpret_cast<std::uintptr_t>(call.frame) % 4 == 0;
  if (!aligned && call.bitCursor == nullptr) return Status::bitCursorMissing;
  const FamilyRow& row = kFamilies[family];
  const HeaderWords header = LoadHeader(call.frame, readableBytes);
  const bool signatureFits = AcceptsSignature(row, header);
  const u32 tag = NormalizeFormatTag(header[4]);
  AlignFrame(call, readableBytes);
  if (!signatureFits) return Status::noRoutine;
  if (row.subtype != 0 && FamilyOfTag(tag) != row.subtype) return Status::noRoutine;
  if (row.decodeWithheld == pixelFormat) return Status::noRoutine;
  return RunRoutine(Direction::decode, pixelFormat, tag, call, flags);
}

Status DecodeStrict(VorelFamily family, u32 pixelFormat, u32 formatChoice, const FrameCall& call, u32 flags) {
  const u32 tag = ChooseTag(family, pixelFormat, formatChoice);
  if (tag == 0) return Status::noRoutine;
  if (const Status status = CheckPointers(call); status != Status::complete) return status;
  const HeaderWords header = LoadHeader(call.frame, VOREL_FRAME_HEADER_BYTES);
  const u32 tagOfFrame = LoadLittle32(call.frame + (std::size_t{WordCursor(call)} + 4) * 4);
  SkipHeader(call);  // also if the frame is refused
  if (tagOfFrame != tag || !IsWrittenSignature(header)) return Status::noRoutine;
  const bool known = family != VOREL_GENERIC || std::ranges::find(kGenericStrictFormats, pixelFormat) !=
                                                    std::ranges::end(kGenericStrictFormats);
  return known ? RunRoutine(Direction::decode, pixelFormat, tag, call, flags) : Status::noRoutine;
}

const FrameRoutine* FindEncoder(VorelFamily family, u32 pixelFormat, u32 formatChoice) {
  const u32 tag = ChooseTag(family, pixelFormat, formatChoice);
  if (tag == 0 || kFamilies[family].encodeWithheld == pixelFormat) return nullptr;
  return FindRoutine(Direction::encode, pixelFormat, tag);
}

Status Encode(VorelFamily family, u32 pixelFormat, u32 formatChoice, const FrameCall& call, u32 flags) {
  const u32 tag = ChooseTag(family, pixelFormat, formatChoice);
  if (tag == 0) return Status::noRoutine;
  if (const Status status = CheckPointers(call); status != Status::complete) return status;
  WriteHeader(tag, call.frame + std::size_t{WordCursor(call)} * 4);
  SkipHeader(call);
  if (kFamilies[family].encodeWithheld == pixelFormat) return Status::noRoutine;
  return RunRoutine(Direction::encode, pixelFormat, tag, call, flags);
}

}  // namespace vorel
