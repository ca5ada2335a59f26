// What passes between a component and its host: numbers, handles and records, as the host lays them out.
//
// Records without pointers are packed to 2 bytes everywhere, for they also travel as bytes. Records with
// pointers are packed to 2 on 32-bit Windows, where a foreign host makes them, and lie naturally elsewhere.
#pragma once
#include <cstddef>

#include "base/integers.h"

namespace vorel::component {

using Boolean = u8;
using OSErr = i16;
using OSType = u32;           // 'abcd' is 0x61626364 in every build
using ComponentResult = i32;  // a host error, or what a call is asked for
using Fixed = i32;            // 16.16
using Ptr = u8*;
using Handle = Ptr*;  // to a master pointer: the block is at *handle and may move when it is resized

// An instance may stand wherever a component is asked for.
using ComponentInstance = struct HostInstance*;
using DialogRef = struct HostDialog*;    // also a window and a port
using ControlRef = struct HostControl*;  // of a dialog item

// Arguments of a component call come in slots that hold a number or a pointer. The upper bits of a slot with
// a shorter number are not to be trusted.
using Slot = std::intptr_t;
inline constexpr std::size_t kMostSlots = 10;

// The compiler for Windows expands no macro within a pragma, so the pragma is the macro.
#if defined(_WIN32) && !defined(_WIN64)
#define VOREL_HOST_PACKING 2
#define VOREL_HOST_PACK_BEGIN _Pragma("pack(push, 2)")
#else
#define VOREL_HOST_PACKING 8
#define VOREL_HOST_PACK_BEGIN _Pragma("pack(push, 8)")
#endif
#define VOREL_HOST_PACK_END _Pragma("pack(pop)")

VOREL_HOST_PACK_BEGIN

struct ComponentParameters {
  u8 flags;      // 0 in calls that are made, not to be looked at in calls that come
  u8 paramSize;  // bytes of the slots in use; hosts differ in it, so no call is refused for it
  i16 what;      // selector
  Slot params[1];
};

VOREL_HOST_PACK_END

#pragma pack(push, 2)

struct Rect {
  i16 top;
  i16 left;
  i16 bottom;
  i16 right;
};

// In memory native numbers; extensions follow in the handle and are reached through the host only.
struct ImageDescription {
  i32 idSize;  // of the whole handle
  OSType cType;
  i32 resvd1;
  i16 resvd2;
  i16 dataRefIndex;
  i16 version;
  i16 revisionLevel;
  OSType vendor;
  u32 temporalQuality;
  u32 spatialQuality;
  i16 width;
  i16 height;
  Fixed hRes;
  Fixed vRes;
  i32 dataSize;
  i16 frameCount;
  u8 name[32];  // length byte and text
  i16 depth;
  i16 clutID;
};

struct CodecInfo {
  u8 typeName[32];
  i16 version;
  i16 revisionLevel;
  OSType vendor;
  i32 decompressFlags;
  i32 compressFlags;
  i32 formatFlags;
  u8 compressionAccuracy;
  u8 decompressionAccuracy;
  u16 compressionSpeed;
  u16 decompressionSpeed;
  u8 compressionLevel;
  u8 resvd;
  i16 minimumHeight;
  i16 minimumWidth;
  i16 decompressPipelineLatency;
  i16 compressPipelineLatency;
  i32 privateData;
};

struct CodecCapabilities {
  i32 flags;
  i16 wantedPixelSize;
  i16 extendWidth;
  i16 extendHeight;
  i16 bandMin;
  i16 bandInc;
  i16 pad;
  u32 time;
  i32 flags2;
};

struct ImageSubCodecDecompressCapabilities {
  i32 recordSize;
  i32 decompressRecordSize;
  Boolean canAsync;
  u8 pad0;
  u16 suggestedQueueSize;
  Boolean canProvideTrigger;
  Boolean subCodecFlushesScreen;
  Boolean subCodecCallsDrawBandComplete;
  u8 pad2;
  Boolean isChildCodec;
  u8 reserved1;
  u8 pad4;
  Boolean subCodecIsMultiBufferAware;  // here older hosts have padding
  Boolean subCodecSupportsOutOfOrderDisplayTimes;
  Boolean subCodecSupportsScheduledBackwardsPlaybackWithDifferenceFrames;
  Boolean subCodecNeedsHelpReportingNonDisplayableFrames;
  Boolean baseCodecShouldCallDecodeBandForAllFrames;
  u8 pad5[2];
  Boolean subCodecSupportsDrawInDecodeOrder;
  Boolean subCodecSupportsDecodeSmoothing;
  u8 pad6[4];
};

inline constexpr std::size_t kMostPlanes = 14;

struct ICMPixelFormatInfo {
  i32 size;  // of the part that is valid
  u32 formatFlags;
  i16 bitsPerPixel[kMostPlanes];
  Fixed defaultGammaLevel;
  i16 horizontalSubsampling[kMostPlanes];
  i16 verticalSubsampling[kMostPlanes];
  i16 cmpCount;
  i16 cmpSize;
};

#pragma pack(pop)

VOREL_HOST_PACK_BEGIN

struct PixMap {
  Ptr baseAddr;
  i16 rowBytes;  // of short rows only: ask the host
  Rect bounds;
  i16 pmVersion;
  i16 packType;
  i32 packSize;
  Fixed hRes;
  Fixed vRes;
  i16 pixelType;
  i16 pixelSize;
  i16 cmpCount;
  i16 cmpSize;
  OSType pixelFormat;  // 0: pixelSize says it
  void* pmTable;
  void* pmExt;
};

using PixMapHandle = PixMap**;
using ImageDescriptionHandle = ImageDescription**;

// The part of a drawing port that is looked at.
struct CGrafPort {
  i16 device;
  PixMapHandle portPixMap;
};

using ICMDataProc = OSErr (*)(Ptr* data, i32 bytesNeeded, Slot refCon);
using ICMFlushProc = OSErr (*)(Ptr data, i32 bytesAdded, Slot refCon);
using ICMProgressProc = OSErr (*)(i16 message, Fixed completeness, Slot refCon);
using ICMCompletionProc = void (*)(OSErr result, i16 flags, Slot refCon);

struct ICMDataProcRecord {
  ICMDataProc dataProc;  // null: all data are in memory
  Slot dataRefCon;
};

struct ICMFlushProcRecord {
  ICMFlushProc flushProc;
  Slot flushRefCon;
};

struct ICMProgressProcRecord {
  ICMProgressProc progressProc;
  Slot progressRefCon;
};

struct ICMCompletionProcRecord {
  ICMCompletionProc completionProc;
  Slot completionRefCon;
};

struct CodecCompressParams {
  i32 sequenceID;
  ImageDescriptionHandle imageDescription;
  Ptr data;
  i32 bufferSize;
  i32 frameNumber;
  i32 startLine;
  i32 stopLine;
  i32 conditionFlags;
  u16 callerFlags;
  CodecCapabilities* capabilities;
  ICMProgressProcRecord progressProcRecord;
  ICMCompletionProcRecord completionProcRecord;
  ICMFlushProcRecord flushProcRecord;
  PixMap srcPixMap;
  PixMap prevPixMap;
  u32 spatialQuality;
  u32 temporalQuality;
  Fixed similarity;
  void* dataRateParams;
  i32 reserved;
  u16 majorSourceChangeSeed;
  u16 minorSourceChangeSeed;
  void* sourceData;
  i32 preferredPacketSizeInBytes;
  i32 requestedBufferWidth;
  i32 requestedBufferHeight;
  OSType wantedSourcePixelType;
  i32 compressedDataSize;
  u32 taskWeight;
  OSType taskName;
};

// Older hosts make a shorter record, which ends behind taskName at the earliest; nothing behind it is touched.
struct CodecDecompressParams {
  i32 sequenceID;
  ImageDescriptionHandle imageDescription;
  Ptr data;
  i32 bufferSize;
  i32 frameNumber;
  i32 startLine;
  i32 stopLine;
  i32 conditionFlags;
  u16 callerFlags;
  CodecCapabilities* capabilities;
  ICMProgressProcRecord progressProcRecord;
  ICMCompletionProcRecord completionProcRecord;
  ICMDataProcRecord dataProcRecord;
  void* port;
  PixMap dstPixMap;
  void* maskBits;
  void* mattePixMap;
  Rect srcRect;
  void* matrix;
  u32 accuracy;
  i16 transferMode;
  void* frameTime;
  i32 reserved;
  i8 matrixFlags;
  i8 matrixType;
  Rect dstRect;
  u16 majorSourceChangeSeed;
  u16 minorSourceChangeSeed;
  void* sourceData;
  void* maskRegion;
  OSType** wantedDestinationPixelTypes;
  i32 screenFloodMethod;
  i32 screenFloodValue;
  i16 preferredOffscreenPixelSize;
  void* syncFrameTime;
  Boolean needUpdateOnTimeChange;
  Boolean enableBlackLining;
  Boolean needUpdateOnSourceChange;
  u8 pad;
  i32 unused;
  CGrafPort* finalDestinationPort;
  i32 requestedBufferWidth;
  i32 requestedBufferHeight;
  Rect displayableAreaOfRequestedBuffer;
  Boolean requestedSingleField;
  Boolean needUpdateOnNextIdle;
  u8 pad2[2];
  Fixed bufferGammaLevel;
  u32 taskWeight;
  OSType taskName;
};

struct ImageSubCodecDecompressRecord {
  Ptr baseAddr;  // first pixel of the destination
  i32 rowBytes;
  Ptr codecData;
  ICMProgressProcRecord progressProcRecord;
  ICMDataProcRecord dataProcRecord;
  void* userDecompressRecord;  // the component's own record of this frame, not cleared between frames
  u8 frameType;
  Boolean inhibitMP;
  u8 pad[2];
  i32 priv[2];
  void* drawBandCompleteUPP;
  void* drawBandCompleteRefCon;
};

using ImageCodecMPDrawBand = ComponentResult (*)(void* refCon, ImageSubCodecDecompressRecord* record);
using ComponentMPWorkFunction = ComponentResult (*)(void* refCon, void* header);
using ModalFilter = Boolean (*)(DialogRef dialog, void* event, i16* itemHit);

VOREL_HOST_PACK_END

// How selector functions look to a host that calls them: storage, then slots. The 32-bit host puts on the stack
// the slots that a call has and no more. What lies above them is the host's own, and a function that declared
// all slots might write there.
#if VOREL_HOST_PACKING == 2
using SelectorFunction = ComponentResult (*)(Handle storage, ...);
#else
using SelectorFunction = ComponentResult (*)(Handle storage, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot,
                                             Slot, Slot);
#endif

static_assert(sizeof(Rect) == 8 && sizeof(ImageDescription) == 86 && sizeof(CodecInfo) == 72);
static_assert(offsetof(ImageDescription, dataSize) == 44 && offsetof(ImageDescription, name) == 50 &&
              offsetof(ImageDescription, depth) == 82);
static_assert(offsetof(CodecInfo, vendor) == 36 && offsetof(CodecInfo, compressionAccuracy) == 52 &&
              offsetof(CodecInfo, minimumHeight) == 60);
static_assert(sizeof(CodecCapabilities) == 24 && offsetof(CodecCapabilities, time) == 16);
static_assert(sizeof(ImageSubCodecDecompressCapabilities) == 32 &&
              offsetof(ImageSubCodecDecompressCapabilities, canAsync) == 8 &&
              offsetof(ImageSubCodecDecompressCapabilities, subCodecIsMultiBufferAware) == 19);
static_assert(sizeof(ICMPixelFormatInfo) == 100 && offsetof(ICMPixelFormatInfo, defaultGammaLevel) == 36 &&
              offsetof(ICMPixelFormatInfo, cmpCount) == 96);

#if VOREL_HOST_PACKING == 2  // windows/host_layout.cpp has every offset
static_assert(sizeof(Slot) == 4 && sizeof(Handle) == 4 && sizeof(ICMDataProcRecord) == 8 &&
              sizeof(ICMFlushProcRecord) == 8 && sizeof(ICMProgressProcRecord) == 8 &&
              sizeof(ICMCompletionProcRecord) == 8);
static_assert(sizeof(ComponentParameters) == 8);
static_assert(sizeof(PixMap) == 50);
static_assert(sizeof(CodecCompressParams) == 218);
static_assert(sizeof(CodecDecompressParams) == 234);
static_assert(sizeof(ImageSubCodecDecompressRecord) == 52);
#endif

#undef VOREL_HOST_PACK_BEGIN
#undef VOREL_HOST_PACK_END

}  // namespace vorel::component
