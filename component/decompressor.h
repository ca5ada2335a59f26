// Decompressors: sub-codecs of the host's base decompressor, which asks them what they want, hands them frames
// and draws them on threads of its own. The eight differ in the frames that they know.
#pragma once
#include "component/codec_information.h"
#include "component/format_lists.h"
#include "component/scratch_pool.h"
#include "component/startup.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

// Row stores of up to this size lie in the frame's own record.
inline constexpr u32 kInlineStoreBytes = 16416;

struct Decompressor {
  ComponentInstance self;
  ComponentInstance delegate;  // the base
  ComponentInstance target;
  Handle wantedPixelTypes;  // the list for the host, 512 bytes, ended by 0
  Fixed gamma;              // of the source; 0 where it is not known
  u32 colourStandard;       // VOREL_COLOUR_*
  HostFacts host;
  u32 rgbRange;  // VOREL_RGB_RANGE_AUTOMATIC
  ScratchPool pool;
  u32 framesDecoded;
  ImageCodecMPDrawBand drawProcedure;  // made when it is first asked for
  VorelFamily family;
  i16 resourceId;
};

// What is known of a frame between BeginBand and EndBand. The base keeps one for each frame in flight and does
// not clear it.
struct FrameRecord {
  u32 tag;
  u32 height;
  u32 width;
  u32 pixelFormat;
  u32 wordCursor;
  u32 bitCursor;
  i32 block;      // of the pool; -1: none
  u8* scratch;    // aligned
  u8* dataCopy;   // the frame, if it came in pieces; else null
  u32 dataBytes;  // of the frame as it was lent
  u8 inlineStore[kInlineStoreBytes + kScratchAlignment];
};

// Functions of the selectors. A null instance gives paramErr, but for Close, which has nothing to do then, and
// DrawBand.
ComponentResult OpenDecompressor(ComponentInstance self, VorelFamily family, i16 resourceId);
ComponentResult CloseDecompressor(Decompressor* instance, ComponentInstance self);
ComponentResult GetWorkFunction(Decompressor* instance, ComponentMPWorkFunction* function, void** refCon);
ComponentResult SetDecompressorTarget(Decompressor* instance, ComponentInstance target);
ComponentResult GetDecompressorInfo(Decompressor* instance, CodecInfo* info);
ComponentResult GetCompressedImageSize(Decompressor* instance, ImageDescriptionHandle description, Ptr data,
                                       i32 bufferSize, ICMDataProcRecord* dataProcedure, i32* size);
ComponentResult RequestGammaLevel(Decompressor* instance, Fixed source, Fixed destination, i32* canMatch);
ComponentResult GetSourceDataGammaLevel(Decompressor* instance, Fixed* gamma);
ComponentResult Preflight(Decompressor* instance, CodecDecompressParams* parameters);
ComponentResult Initialize(Decompressor* instance, ImageSubCodecDecompressCapabilities* capabilities);
ComponentResult BeginBand(Decompressor* instance, CodecDecompressParams* parameters,
                          ImageSubCodecDecompressRecord* record, i32 flags);
ComponentResult DrawBand(Decompressor* instance, ImageSubCodecDecompressRecord* record);
ComponentResult EndBand(Decompressor* instance, ImageSubCodecDecompressRecord* record, OSErr result,
                        i32 flags);

}  // namespace vorel::component
