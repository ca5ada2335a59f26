/* Pixel formats: what they are called, how their rows lie in memory, what their codes tell, and whether two
 * pictures are the same.
 *
 * A pixel format is named by a code: 32 and 24 for the two chunky 8-bit R'G'B' formats of the host, and four
 * letters with the first one in the top byte for all others ('b64a' is 0x62363461). Codes are compared as
 * plain integers. Every function here is pure: it reads its arguments and constant tables only.
 */
#ifndef VOREL_PIXEL_FORMATS_H
#define VOREL_PIXEL_FORMATS_H

#include <stddef.h>
#include <stdint.h>

#include "vorel/frame_codec.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Range of R'G'B' pictures, as the setting of a compressor has it. Any other number acts as automatic. */
enum { VOREL_RGB_RANGE_AUTOMATIC = 0, VOREL_RGB_RANGE_FULL = 1, VOREL_RGB_RANGE_VIDEO = 2 };

/* The code that the dispatch functions take, for a picture as a host describes it.
 *
 * depth       bits per pixel of a bitmap; only looked at for the codes of bitmaps
 * code        pixel format code, or what a bitmap header holds in its place: 0 for plain R'G'B', 3 for bit
 *             fields, or letters with the first one in the low byte
 * redMask, greenMask, blueMask   bit fields of a bitmap; only looked at for code 3
 * rgbRange    one of VOREL_RGB_RANGE_*
 *
 * Returns 0 for a bitmap that no pixel format describes. A code that is neither an alias nor a bitmap comes
 * back unchanged, whether or not a frame routine knows it. The integer of 'RGBA' is also a bitmap code and is
 * taken as such: it goes by depth.
 */
VOREL_API uint32_t VorelNormalizePixelFormat(uint32_t depth, uint32_t code, uint32_t redMask,
                                             uint32_t greenMask, uint32_t blueMask, uint32_t rgbRange);

/* What the queries below know: all pixel formats of the frame routines but 'S210', and in addition 'R10k',
 * 'r210', 'V210' and the aliases that VorelNormalizePixelFormat turns into '2vuy' or 'yuvs'.
 */

/* Bytes that a pixel takes, rounded: 2 for 8-bit pairs, 4 for 16-bit pairs, 3 for 'v210'. 0 if unknown. See
 * VorelRowBytes for what a row takes.
 */
VOREL_API uint32_t VorelBytesPerPixel(uint32_t code);

/* How often the colour differences are sampled. */
enum { VOREL_CHROMA_UNKNOWN = 0, VOREL_CHROMA_EVERY_PIXEL = 1, VOREL_CHROMA_EVERY_PAIR = 2 };

/* One of VOREL_CHROMA_*; R'G'B' formats count as sampled at every pixel. */
VOREL_API uint32_t VorelChromaKind(uint32_t code);

/* 4 with a place for alpha, 3 for other R'G'B' and 4:4:4 formats, 2 for 4:2:2 formats, 1 if unknown. */
VOREL_API uint32_t VorelComponentCount(uint32_t code);

/* 1 if the format has a place for alpha, otherwise 0. */
VOREL_API int VorelHasAlpha(uint32_t code);

/* Width of the widest sample that the family of the format can carry: 16, 10, 8 or 5; 0 if unknown. Words of
 * 16 bits count whole.
 */
VOREL_API uint32_t VorelSignificantBits(uint32_t code);

/* Compares a picture with its copy in those bits that a frame keeps.
 *
 * pixelFormat     of both pictures, as the source is described: 'R10k' and 'r210' are known here, 'A46L',
 *                 'F10k', 'S10k', 'F210', 'S210', 'VRGB', 'V416', 'L555' and 'L565' are not
 * hasAlpha        not 0 if the frame keeps alpha; otherwise the fourth sample of a pixel is left out
 * flags           0, or VOREL_LITTLE_ENDIAN_B64A
 * width, height   in pixels; an empty picture has no difference
 * rowBytes        distance of two rows in bytes, the same in both pictures; negative for bottom-up pictures
 * source, copy    lowest addresses of the pictures, at any alignment. Only compared pixels are read, and
 *                 nothing behind the end of a row. 'v216', 'Y216' and 'v210' leave out the last pixel of an
 *                 odd width, the 8-bit 4:2:2 formats compare their last pair whole
 *
 * Returns VOREL_COMPLETE, VOREL_PICTURES_DIFFER, or VOREL_NO_ROUTINE for a pixel format that is not known,
 * whatever else was given.
 */
VOREL_API VorelStatus VorelComparePictures(uint32_t pixelFormat, int hasAlpha, uint32_t flags, uint32_t width,
                                           uint32_t height, int32_t rowBytes, const void* source,
                                           const void* copy);

/* A pixel format of the frame routines. The texts are constants of the library. */
typedef struct VorelPixelFormatInfo {
  uint32_t code;
  const char* name;   /* "32", "24" or the four characters */
  const char* layout; /* what stands where in memory, for people */
  const char* range;  /* which numbers are black and white, for people */
  uint8_t unitBytes;  /* a row is a run of units: pixels, pairs, or groups of three pairs */
  uint8_t unitPixels; /* 1, 2 or 6 */
  uint8_t sampleBits; /* scale of a sample: 8, 10, 14 or 16; 5 where fields of 5 and 6 bits are mixed */
  uint8_t hasAlpha;   /* 1 if a pixel has a place for alpha */
} VorelPixelFormatInfo;

/* All 28 pixel formats that a frame routine reads or writes. Stores their number in `count`. */
VOREL_API const VorelPixelFormatInfo* VorelPixelFormatList(size_t* count);

/* The row of that list with this code, or null. */
VOREL_API const VorelPixelFormatInfo* VorelFindPixelFormat(uint32_t code);

/* Bytes that the pixels of a row take, from the first to the last one. Pairs are whole; a row of 'v210' ends
 * with the last word that holds a sample. 0 for an unknown code, for width 0, and for a row that does not fit
 * into the address space.
 */
VOREL_API size_t VorelRowBytes(uint32_t code, uint32_t width);

/* The smallest distance of two rows that holds these bytes and that frame routines take: VorelRowBytes, up to
 * a multiple of 4. Frame routines are given it as a signed 32-bit number and count the bits of a row in 32
 * bits, so not every width that has a row here can be coded.
 */
VOREL_API size_t VorelAlignedRowBytes(uint32_t code, uint32_t width);

#ifdef __cplusplus
}
#endif

#endif
