/* Statuses, sizes and the functions that find the frame routine for a frame or for a picture.
 *
 * Words and cursors. A position in a frame is a pair of numbers: the word cursor counts 32-bit words from the
 * start of the frame, the bit cursor counts the bits used of that word, most significant first. On entry the
 * bit cursor may be 32 or more. On return, also on failure, the bit cursor is 0 to 31 and the word cursor is
 * its value on entry to the frame routine (5 behind a header) PLUS the index of the word in which the routine
 * stopped: the entry value is counted twice. Frames are recorded with the size that these cursors give, (word
 * cursor * 32 + 7 + bit cursor) / 8, which behind a header is 20 bytes more than the bytes that hold bits.
 *
 * Routines keep nothing and allocate nothing, but for code tables that are made when a frame format is first used.
 * They take up to 336 kB of stack, 176 kB in 32-bit programs.
 *
 * All but VorelDecodeBounded accept rows that hold the significant bits of their pixels, of which some formats store
 * more: decoding then stores less than a row behind |row bytes| * height, and what rows have of one another is not
 * defined.
 */
#ifndef VOREL_FRAME_CODEC_H
#define VOREL_FRAME_CODEC_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__) && !defined(_WIN32)
#define VOREL_API __attribute__((visibility("default")))
#else
#define VOREL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What a frame routine or a dispatch function returns. The set is closed. */
typedef uint32_t VorelStatus;
enum {
  VOREL_COMPLETE = 0,                /* the picture or the frame is complete */
  VOREL_FRAME_BOUND_WRITTEN = 1,     /* encode: the stream has gone past the frame bound of its tag */
  VOREL_ROW_LEFT_PICTURE_DECODE = 2, /* decode: the row pointer has left the picture */
  VOREL_ROW_BUFFER_OVERRUN = 3,      /* decode: more was put into the row buffer than a row holds */
  VOREL_FRAME_BOUND_READ = 4,        /* decode: the stream has gone past the frame bound of its tag */
  VOREL_ROW_LEFT_PICTURE_ENCODE = 5, /* encode: the row pointer has left the picture */
  VOREL_PICTURES_DIFFER = 6,         /* compare: the picture decoded again differs from its source */
  VOREL_NO_ROUTINE = 7,           /* dispatch: bad signature, unknown tag, or a pair that no routine serves */
  VOREL_BAD_WIDTH = 8,            /* width below 1, taken as signed */
  VOREL_BAD_HEIGHT = 9,           /* height below 1, taken as signed */
  VOREL_ROW_TOO_SHORT = 10,       /* |row bytes| * 8 below the significant bits of a row */
  VOREL_BASE_MISSING = 11,        /* base is null */
  VOREL_PICTURE_MISALIGNED = 12,  /* row bytes or base not a multiple of 4 */
  VOREL_WORD_CURSOR_MISSING = 13, /* word cursor pointer is null */
  VOREL_WORD_CURSOR_MISALIGNED = 14, /* word cursor pointer not a multiple of 4 */
  VOREL_BIT_CURSOR_MISSING = 15,     /* bit cursor pointer is null */
  VOREL_BIT_CURSOR_MISALIGNED = 16,  /* bit cursor pointer not a multiple of 4 */
  VOREL_FRAME_MISSING = 17,          /* frame pointer is null */
  VOREL_FRAME_MISALIGNED = 18,       /* frame pointer not a multiple of 4 */
  VOREL_SCRATCH_MISSING = 19         /* decode of a progressive frame: scratch is null */
};

/* Bits of `formatChoice`: what an encoder is to keep of its source. */
enum { VOREL_KEEP_ALPHA = 1, VOREL_INTERLACED = 2 };

/* Bit of `flags`: the pixel format 'b64a' holds little-endian words and is served as 'L64A'. */
enum { VOREL_LITTLE_ENDIAN_B64A = 4 };

/* Colour standards: the weights of a conversion between R'G'B' and Y'CbCr. Any other code acts as 0. */
enum { VOREL_COLOUR_601 = 0, VOREL_COLOUR_709 = 1, VOREL_COLOUR_240M = 2 };

/* Bytes of a frame before its bit stream, and the words that they fill. */
enum { VOREL_FRAME_HEADER_BYTES = 20, VOREL_FRAME_HEADER_WORDS = 5 };

/* Whose dispatch a bounded decode goes by: the generic one knows all frames, the others those of a family. */
typedef uint32_t VorelFamily;
enum {
  VOREL_GENERIC = 0,
  VOREL_RGB_10BF = 1,
  VOREL_RGB_8BF = 2,
  VOREL_YCBCR_10BV_444 = 3,
  VOREL_YCBCR_8B_444 = 4,
  VOREL_YCBCR_10BV_422 = 5,
  VOREL_YCBCR_8BV_422 = 6,
  VOREL_YCBCR_8BW_422 = 7
};

/* The most bytes that the bit stream of a frame may take, in 32-bit arithmetic; 0 for an empty picture or a
 * tag that is not one of the 30 canonical ones.
 *
 * tag            format tag as it stands in word 4 of a frame, read as a little-endian number
 * width, height  of the picture, in pixels
 *
 * A buffer for encoding at word cursor 0 holds the header, this bound and the 20 bytes by which frames are
 * recorded too long: bound + 40 bytes, zeroed before use. An attempted row that was given up may leave codes
 * behind the last word; whoever stores a frame clears what is recorded behind it.
 */
VOREL_API uint32_t VorelMaxFrameBytes(uint32_t tag, uint32_t width, uint32_t height);

/* The canonical tag for any accepted spelling of it; every other word comes back unchanged. */
VOREL_API uint32_t VorelNormalizeFormatTag(uint32_t word);

/* The canonical tag that an encoder chooses for a picture, or 0 if its rule does not know the pixel format. A
 * family's rule may name a tag of another family: VorelSubtypeOfTag tells.
 *
 * family          whose rule, VOREL_GENERIC for the one that goes by the pixel format alone
 * formatChoice    VOREL_KEEP_ALPHA and VOREL_INTERLACED, or 0; alpha counts where the pixel format has a place
 *                 for it and the rule a tag
 */
VOREL_API uint32_t VorelChooseFormatTag(VorelFamily family, uint32_t pixelFormat, uint32_t formatChoice);

/* The component subtype of the family that a canonical tag belongs to, 'Vrl1' (0x56726C31) to 'Vrl7'; 0 for
 * every other word.
 */
VOREL_API uint32_t VorelSubtypeOfTag(uint32_t tag);

/* 1 if these bytes begin with a signature that the family's decoder accepts, otherwise 0. `frame` may have
 * any address; fewer than 20 readable bytes hold no header.
 */
VOREL_API int VorelHasFrameSignature(VorelFamily family, const void* frame, size_t readableBytes);

/* Writes the header that encoders write, with this tag: 20 bytes at any address. */
VOREL_API void VorelWriteFrameHeader(uint32_t tag, void* frame);

/* Bytes of row buffer that serve every frame of this width in pixels, in a block that is 4-byte aligned. */
VOREL_API uint32_t VorelScratchBytes(uint32_t width);

/* The same for frames of one canonical tag, without room to align the block; 0 for every other word. Frames
 * of an interlaced tag need none and are told as their progressive twins.
 */
VOREL_API uint32_t VorelRowStoreBytes(uint32_t tag, uint32_t width);

/* The widest picture, in pixels, that VorelDecodeBounded takes. */
enum { VOREL_MOST_BOUNDED_WIDTH = 1 << 24 };

/* Decodes one frame into a picture and reads nothing outside the bytes it was lent: the way in for every
 * frame that comes from outside.
 *
 * family          whose dispatch decides which signatures, tags and pixel formats are known; any other number
 *                 than the eight returns VOREL_NO_ROUTINE
 * pixelFormat     four-character code ('yuvu' is 0x79757675), or 32 or 24
 * width, height   of the picture in pixels, at least 1; a frame does not carry them. Wider pictures than
 *                 VOREL_MOST_BOUNDED_WIDTH return VOREL_BAD_WIDTH
 * rowBytes        distance of two rows in bytes, a multiple of 4; negative for a bottom-up picture. Less than
 *                 VorelRowBytes returns VOREL_ROW_TOO_SHORT
 * base            lowest address of the picture: |rowBytes| * height bytes, 4-byte aligned. Bytes behind the
 *                 last pixel of a row stay untouched; 4:2:2 rows of odd width hold their last pair whole
 * colourStandard  one of VOREL_COLOUR_*, used where the frame and the picture differ in colour model
 * wordCursor, bitCursor   in: where the bit stream begins, 5 and 0 for a whole frame; out: see above
 * frame           the frame, at any byte address
 * readableBytes   how many bytes from `frame` on may be read; bits behind them read as zero
 * flags           0, or VOREL_LITTLE_ENDIAN_B64A
 * scratch         row buffer of VorelScratchBytes(width) bytes, overwritten; null does for interlaced frames
 *
 * Returns VOREL_COMPLETE and the whole picture, or the first failure; rows decoded before it stay in the
 * picture. A frame that is cut short decodes to the end of the picture from zero bits: compare the cursors
 * with the size of the frame.
 */
VOREL_API VorelStatus VorelDecodeBounded(VorelFamily family, uint32_t pixelFormat, uint32_t width,
                                         uint32_t height, int32_t rowBytes, void* base,
                                         uint32_t colourStandard, uint32_t* wordCursor, uint32_t* bitCursor,
                                         const void* frame, size_t readableBytes, uint32_t flags,
                                         void* scratch);

/* Lenient decode: as VorelDecodeBounded, without the number of readable bytes. It relies on the frame bound:
 * the caller's buffer holds 20 bytes of header, VorelMaxFrameBytes, one row of codes at their longest (16
 * bits a sample) and two words.
 */
#define VOREL_LENIENT_DECODE(NAME)                                                                           \
  VOREL_API VorelStatus NAME(uint32_t pixelFormat, uint32_t width, uint32_t height, int32_t rowBytes,        \
                             void* base, uint32_t colourStandard, uint32_t* wordCursor, uint32_t* bitCursor, \
                             const uint32_t* frame, uint32_t flags, void* scratch)

VOREL_LENIENT_DECODE(VorelGenericLenientDecode);
VOREL_LENIENT_DECODE(VorelRGB10bfLenientDecode);
VOREL_LENIENT_DECODE(VorelRGB8bfLenientDecode);
VOREL_LENIENT_DECODE(VorelYCbCr10bv444LenientDecode);
VOREL_LENIENT_DECODE(VorelYCbCr8b444LenientDecode);
VOREL_LENIENT_DECODE(VorelYCbCr10bv422LenientDecode);
VOREL_LENIENT_DECODE(VorelYCbCr8bv422LenientDecode);
VOREL_LENIENT_DECODE(VorelYCbCr8bw422LenientDecode);
#undef VOREL_LENIENT_DECODE

/* Encode: chooses the tag for a picture, writes the header at the word cursor, advances it by 5 and encodes
 * the rows.
 *
 * formatChoice    VOREL_KEEP_ALPHA and VOREL_INTERLACED, or 0
 * base            the picture, only read; rows as in VorelDecodeBounded
 * frame           VorelMaxFrameBytes + 40 zeroed bytes, 4-byte aligned; nothing is stored behind the bound
 *
 * Returns VOREL_NO_ROUTINE with the frame untouched if the pixel format has no tag here, and with the header
 * written if no routine serves the pair. The generic form takes no colour standard and acts as for 0.
 */
#define VOREL_ENCODE(NAME, COLOUR_STANDARD)                                                                \
  VOREL_API VorelStatus NAME(uint32_t pixelFormat, uint32_t formatChoice, uint32_t width, uint32_t height, \
                             int32_t rowBytes, const void* base COLOUR_STANDARD, uint32_t* wordCursor,     \
                             uint32_t* bitCursor, uint32_t* frame, uint32_t flags)
#define VOREL_COLOUR_STANDARD , uint32_t colourStandard

VOREL_ENCODE(VorelGenericEncode, );
VOREL_ENCODE(VorelRGB10bfEncode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelRGB8bfEncode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelYCbCr10bv444Encode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelYCbCr8b444Encode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelYCbCr10bv422Encode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelYCbCr8bv422Encode, VOREL_COLOUR_STANDARD);
VOREL_ENCODE(VorelYCbCr8bw422Encode, VOREL_COLOUR_STANDARD);
#undef VOREL_ENCODE

/* Strict decode: decodes a frame that the encode function of the same name has just made, for comparing it
 * with its source. It accepts only the signature and the tag that the encoder would write; header words are
 * looked for at the word cursor (the signature at word 0), which moves by 5 before the signature is judged.
 * The generic form knows RGB sources only, and 'A46L' is not among them.
 */
#define VOREL_STRICT_DECODE(NAME, COLOUR_STANDARD)                                                         \
  VOREL_API VorelStatus NAME(uint32_t pixelFormat, uint32_t formatChoice, uint32_t width, uint32_t height, \
                             int32_t rowBytes, void* base COLOUR_STANDARD, uint32_t* wordCursor,           \
                             uint32_t* bitCursor, const uint32_t* frame, uint32_t flags, void* scratch)

VOREL_STRICT_DECODE(VorelGenericStrictDecode, );
VOREL_STRICT_DECODE(VorelRGB10bfStrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelRGB8bfStrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelYCbCr10bv444StrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelYCbCr8b444StrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelYCbCr10bv422StrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelYCbCr8bv422StrictDecode, VOREL_COLOUR_STANDARD);
VOREL_STRICT_DECODE(VorelYCbCr8bw422StrictDecode, VOREL_COLOUR_STANDARD);
#undef VOREL_STRICT_DECODE
#undef VOREL_COLOUR_STANDARD

#ifdef __cplusplus
}
#endif

#endif
