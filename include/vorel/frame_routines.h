/* The frame routines, each for one frame format, one pixel format and one direction: `Vorel`, frame layout
 * with its scan (p or i), `From` and a pixel name and `Encode`, or `To` and a pixel name and `Decode`.
 *
 * width, height    of the picture in pixels, at least 1
 * rowBytes         distance of two rows in bytes, a multiple of 4; negative for a bottom-up picture
 * base             lowest address of the picture, |rowBytes| * height bytes, 4-byte aligned
 * colourStandard   VOREL_COLOUR_*; only where frame and pixel format differ in colour model
 * wordCursor, bitCursor   in: where the bit stream begins, 5 and 0 behind a header; out: see frame_codec.h
 * frame            the frame's first word, 4-byte aligned. Encoders store nothing at or behind the bound:
 *                  4 * (word cursor + bit cursor / 32) + VorelMaxFrameBytes. Decoders load at most two words
 *                  behind the last coded bit of a whole frame; a damaged one is read on up to the bound, one row
 *                  of codes at their longest (16 bits a sample) and two words. See VorelDecodeBounded
 * scratch          row buffer of VorelScratchBytes(width) bytes; only in decoders of progressive frames
 *
 * Returns VOREL_COMPLETE or the first failure. Arguments are tested first, in a fixed order, and nothing is
 * touched if one fails; after any other status the cursors are written, and what was coded or decoded stays.
 */
#ifndef VOREL_FRAME_ROUTINES_H
#define VOREL_FRAME_ROUTINES_H

#include "vorel/frame_codec.h"
#include "vorel/frame_members.inc"

#ifdef __cplusplus
extern "C" {
#endif

#define VOREL_COLOUR_ARGUMENT_S
#define VOREL_COLOUR_ARGUMENT_M uint32_t colourStandard,

#define VOREL_DECLARE_ENCODE(K, LAYOUT, SCAN, PIXEL)                       \
  VOREL_API VorelStatus Vorel##LAYOUT##SCAN##From##PIXEL##Encode(          \
      uint32_t width, uint32_t height, int32_t rowBytes, const void* base, \
      VOREL_COLOUR_ARGUMENT_##K uint32_t* wordCursor, uint32_t* bitCursor, uint32_t* frame);
#define VOREL_DECLARE_DECODE_P(K, LAYOUT, SCAN, PIXEL)                                            \
  VOREL_API VorelStatus Vorel##LAYOUT##SCAN##To##PIXEL##Decode(                                   \
      uint32_t width, uint32_t height, int32_t rowBytes, void* base,                              \
      VOREL_COLOUR_ARGUMENT_##K uint32_t* wordCursor, uint32_t* bitCursor, const uint32_t* frame, \
      void* scratch);
#define VOREL_DECLARE_DECODE_I(K, LAYOUT, SCAN, PIXEL)               \
  VOREL_API VorelStatus Vorel##LAYOUT##SCAN##To##PIXEL##Decode(      \
      uint32_t width, uint32_t height, int32_t rowBytes, void* base, \
      VOREL_COLOUR_ARGUMENT_##K uint32_t* wordCursor, uint32_t* bitCursor, const uint32_t* frame);

VOREL_ENCODERS(VOREL_DECLARE_ENCODE, p)
VOREL_ENCODERS(VOREL_DECLARE_ENCODE, i)
VOREL_DECODERS(VOREL_DECLARE_DECODE_P, p)
VOREL_DECODERS(VOREL_DECLARE_DECODE_I, i)

/* Interlaced 8bv 4:2:2 whose rows may have reduced precision: a row begins with n ones and a zero, is raw if n is
 * odd, and has samples of 8 - n / 2 bits. No tag stands for such frames and no dispatch function leads here. In a
 * damaged frame a run of ones ends at the frame bound.
 */
VOREL_API VorelStatus VorelYCbCr8bv422irTo2vuyDecode(uint32_t width, uint32_t height, int32_t rowBytes,
                                                     void* base, uint32_t* wordCursor, uint32_t* bitCursor,
                                                     const uint32_t* frame);

#undef VOREL_DECLARE_ENCODE
#undef VOREL_DECLARE_DECODE_P
#undef VOREL_DECLARE_DECODE_I
#undef VOREL_COLOUR_ARGUMENT_S
#undef VOREL_COLOUR_ARGUMENT_M

#ifdef __cplusplus
}
#endif

#endif
