// Compressors: one picture in, one frame out, and if asked for the frame decoded again and compared with the
// picture. The generic compressor chooses the family by the pixel format, the seven others have one each.
#pragma once
#include "component/codec_information.h"
#include "component/component_table.h"
#include "component/format_lists.h"
#include "component/startup.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

// The settings that a host keeps. Their meaning is told in settings.h.
struct Settings {
  u32 mode;
  u32 scan;
  u32 conversion;
  u32 videoStandard;
  u32 rgbRange;
};

enum : u32 { kModeOneWay = 0, kModeSelfCheck = 1 };
enum : u32 { kScanAutomatic = 0, kScanProgressive = 1, kScanInterlaced = 2 };
enum : u32 { kConversionPerfect = 0, kConversionBest = 1 };
enum : u32 { kVideoNtsc = 0, kVideoHd = 1, kVideoHd1035 = 2, kVideoPal = 3, kVideoUnknown = 4 };

inline constexpr u32 kAlphaKept = 2;  // alpha modes and alpha flags
inline constexpr u32 kAlphaNone = 1;

// Memory that grows and is used again from frame to frame.
struct WorkMemory {
  u8* bytes;
  std::size_t size;
};

struct Compressor {
  ComponentInstance self;
  ComponentInstance target;
  HostFacts host;
  u32 busy;        // 1 from PreCompress or BandCompress on, 0 after a frame that went well
  OSType subtype;  // compression type of the frames that are asked for
  u32 frames;
  u32 alphaMode;  // kAlphaKept or kAlphaNone; 0 before the first picture
  Settings settings;
  u32 fields;  // of the description: 1 or 2
  u32 tag;
  WorkMemory picture;   // the picture decoded again
  WorkMemory rowStore;  // for decoding it
  WorkMemory frame;     // for a frame whose room is too small for the worst case
  const ComponentRow* row;
};

// Functions of the selectors. A null instance gives paramErr, but for Close and Busy.
ComponentResult OpenCompressor(ComponentInstance self, const ComponentRow& row);
ComponentResult CloseCompressor(Compressor* instance, ComponentInstance self);
ComponentResult SetCompressorTarget(Compressor* instance, ComponentInstance target);
ComponentResult GetCompressorInfo(Compressor* instance, CodecInfo* info);
ComponentResult GetCompressionTime(Compressor* instance, PixMapHandle source, const Rect* rectangle,
                                   i16 depth, u32* spatialQuality, u32* temporalQuality, u32* time);
ComponentResult GetMaxCompressionSize(Compressor* instance, PixMapHandle source, const Rect* rectangle,
                                      i16 depth, u32 quality, i32* size);
ComponentResult PreCompress(Compressor* instance, CodecCompressParams* parameters);
ComponentResult BandCompress(Compressor* instance, CodecCompressParams* parameters);
ComponentResult CompressorBusy(Compressor* instance, i32 sequence);

}  // namespace vorel::component
