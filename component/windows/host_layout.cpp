// Every field of the host's records, where the host has it. Compiled for 32-bit Windows, where a foreign host makes
// them; those without pointers lie so everywhere.
#include "component/host_types.h"

namespace vorel::component {

static_assert(VOREL_HOST_PACKING == 2);

#define VOREL_AT(RECORD, FIELD, OFFSET) static_assert(offsetof(RECORD, FIELD) == (OFFSET))

VOREL_AT(Rect, top, 0);
VOREL_AT(Rect, left, 2);
VOREL_AT(Rect, bottom, 4);
VOREL_AT(Rect, right, 6);
VOREL_AT(ComponentParameters, flags, 0);
VOREL_AT(ComponentParameters, paramSize, 1);
VOREL_AT(ComponentParameters, what, 2);
VOREL_AT(ComponentParameters, params, 4);
VOREL_AT(ICMProgressProcRecord, progressProc, 0);
VOREL_AT(ICMProgressProcRecord, progressRefCon, 4);
VOREL_AT(ICMCompletionProcRecord, completionProc, 0);
VOREL_AT(ICMCompletionProcRecord, completionRefCon, 4);
VOREL_AT(ICMDataProcRecord, dataProc, 0);
VOREL_AT(ICMDataProcRecord, dataRefCon, 4);
VOREL_AT(ICMFlushProcRecord, flushProc, 0);
VOREL_AT(ICMFlushProcRecord, flushRefCon, 4);

VOREL_AT(ImageDescription, idSize, 0);
VOREL_AT(ImageDescription, cType, 4);
VOREL_AT(ImageDescription, resvd1, 8);
VOREL_AT(ImageDescription, resvd2, 12);
VOREL_AT(ImageDescription, dataRefIndex, 14);
VOREL_AT(ImageDescription, version, 16);
VOREL_AT(ImageDescription, revisionLevel, 18);
VOREL_AT(ImageDescription, vendor, 20);
VOREL_AT(ImageDescription, temporalQuality, 24);
VOREL_AT(ImageDescription, spatialQuality, 28);
VOREL_AT(ImageDescription, width, 32);
VOREL_AT(ImageDescription, height, 34);
VOREL_AT(ImageDescription, hRes, 36);
VOREL_AT(ImageDescription, vRes, 40);
VOREL_AT(ImageDescription, dataSize, 44);
VOREL_AT(ImageDescription, frameCount, 48);
VOREL_AT(ImageDescription, name, 50);
VOREL_AT(ImageDescription, depth, 82);
VOREL_AT(ImageDescription, clutID, 84);

VOREL_AT(CodecInfo, typeName, 0);
VOREL_AT(CodecInfo, version, 32);
VOREL_AT(CodecInfo, revisionLevel, 34);
VOREL_AT(CodecInfo, vendor, 36);
VOREL_AT(CodecInfo, decompressFlags, 40);
VOREL_AT(CodecInfo, compressFlags, 44);
VOREL_AT(CodecInfo, formatFlags, 48);
VOREL_AT(CodecInfo, compressionAccuracy, 52);
VOREL_AT(CodecInfo, decompressionAccuracy, 53);
VOREL_AT(CodecInfo, compressionSpeed, 54);
VOREL_AT(CodecInfo, decompressionSpeed, 56);
VOREL_AT(CodecInfo, compressionLevel, 58);
VOREL_AT(CodecInfo, resvd, 59);
VOREL_AT(CodecInfo, minimumHeight, 60);
VOREL_AT(CodecInfo, minimumWidth, 62);
VOREL_AT(CodecInfo, decompressPipelineLatency, 64);
VOREL_AT(CodecInfo, compressPipelineLatency, 66);
VOREL_AT(CodecInfo, privateData, 68);

VOREL_AT(CodecCapabilities, flags, 0);
VOREL_AT(CodecCapabilities, wantedPixelSize, 4);
VOREL_AT(CodecCapabilities, extendWidth, 6);
VOREL_AT(CodecCapabilities, extendHeight, 8);
VOREL_AT(CodecCapabilities, bandMin, 10);
VOREL_AT(CodecCapabilities, bandInc, 12);
VOREL_AT(CodecCapabilities, pad, 14);
VOREL_AT(CodecCapabilities, time, 16);
VOREL_AT(CodecCapabilities, flags2, 20);

VOREL_AT(CodecCompressParams, sequenceID, 0);
VOREL_AT(CodecCompressParams, imageDescription, 4);
VOREL_AT(CodecCompressParams, data, 8);
VOREL_AT(CodecCompressParams, bufferSize, 12);
VOREL_AT(CodecCompressParams, frameNumber, 16);
VOREL_AT(CodecCompressParams, startLine, 20);
VOREL_AT(CodecCompressParams, stopLine, 24);
VOREL_AT(CodecCompressParams, conditionFlags, 28);
VOREL_AT(CodecCompressParams, callerFlags, 32);
VOREL_AT(CodecCompressParams, capabilities, 34);
VOREL_AT(CodecCompressParams, progressProcRecord, 38);
VOREL_AT(CodecCompressParams, completionProcRecord, 46);
VOREL_AT(CodecCompressParams, flushProcRecord, 54);
VOREL_AT(CodecCompressParams, srcPixMap, 62);
VOREL_AT(CodecCompressParams, prevPixMap, 112);
VOREL_AT(CodecCompressParams, spatialQuality, 162);
VOREL_AT(CodecCompressParams, temporalQuality, 166);
VOREL_AT(CodecCompressParams, similarity, 170);
VOREL_AT(CodecCompressParams, dataRateParams, 174);
VOREL_AT(CodecCompressParams, reserved, 178);
VOREL_AT(CodecCompressParams, majorSourceChangeSeed, 182);
VOREL_AT(CodecCompressParams, minorSourceChangeSeed, 184);
VOREL_AT(CodecCompressParams, sourceData, 186);
VOREL_AT(CodecCompressParams, preferredPacketSizeInBytes, 190);
VOREL_AT(CodecCompressParams, requestedBufferWidth, 194);
VOREL_AT(CodecCompressParams, requestedBufferHeight, 198);
VOREL_AT(CodecCompressParams, wantedSourcePixelType, 202);
VOREL_AT(CodecCompressParams, compressedDataSize, 206);
VOREL_AT(CodecCompressParams, taskWeight, 210);
VOREL_AT(CodecCompressParams, taskName, 214);

VOREL_AT(CodecDecompressParams, sequenceID, 0);
VOREL_AT(CodecDecompressParams, imageDescription, 4);
VOREL_AT(CodecDecompressParams, data, 8);
VOREL_AT(CodecDecompressParams, bufferSize, 12);
VOREL_AT(CodecDecompressParams, frameNumber, 16);
VOREL_AT(CodecDecompressParams, startLine, 20);
VOREL_AT(CodecDecompressParams, stopLine, 24);
VOREL_AT(CodecDecompressParams, conditionFlags, 28);
VOREL_AT(CodecDecompressParams, callerFlags, 32);
VOREL_AT(CodecDecompressParams, capabilities, 34);
VOREL_AT(CodecDecompressParams, progressProcRecord, 38);
VOREL_AT(CodecDecompressParams, completionProcRecord, 46);
VOREL_AT(CodecDecompressParams, dataProcRecord, 54);
VOREL_AT(CodecDecompressParams, port, 62);
VOREL_AT(CodecDecompressParams, dstPixMap, 66);
VOREL_AT(CodecDecompressParams, maskBits, 116);
VOREL_AT(CodecDecompressParams, mattePixMap, 120);
VOREL_AT(CodecDecompressParams, srcRect, 124);
VOREL_AT(CodecDecompressParams, matrix, 132);
VOREL_AT(CodecDecompressParams, accuracy, 136);
VOREL_AT(CodecDecompressParams, transferMode, 140);
VOREL_AT(CodecDecompressParams, frameTime, 142);
VOREL_AT(CodecDecompressParams, reserved, 146);
VOREL_AT(CodecDecompressParams, matrixFlags, 150);
VOREL_AT(CodecDecompressParams, matrixType, 151);
VOREL_AT(CodecDecompressParams, dstRect, 152);
VOREL_AT(CodecDecompressParams, majorSourceChangeSeed, 160);
VOREL_AT(CodecDecompressParams, minorSourceChangeSeed, 162);
VOREL_AT(CodecDecompressParams, sourceData, 164);
VOREL_AT(CodecDecompressParams, maskRegion, 168);
VOREL_AT(CodecDecompressParams, wantedDestinationPixelTypes, 172);
VOREL_AT(CodecDecompressParams, screenFloodMethod, 176);
VOREL_AT(CodecDecompressParams, screenFloodValue, 180);
VOREL_AT(CodecDecompressParams, preferredOffscreenPixelSize, 184);
VOREL_AT(CodecDecompressParams, syncFrameTime, 186);
VOREL_AT(CodecDecompressParams, needUpdateOnTimeChange, 190);
VOREL_AT(CodecDecompressParams, enableBlackLining, 191);
VOREL_AT(CodecDecompressParams, needUpdateOnSourceChange, 192);
VOREL_AT(CodecDecompressParams, pad, 193);
VOREL_AT(CodecDecompressParams, unused, 194);
VOREL_AT(CodecDecompressParams, finalDestinationPort, 198);
VOREL_AT(CodecDecompressParams, requestedBufferWidth, 202);
VOREL_AT(CodecDecompressParams, requestedBufferHeight, 206);
VOREL_AT(CodecDecompressParams, displayableAreaOfRequestedBuffer, 210);
VOREL_AT(CodecDecompressParams, requestedSingleField, 218);
VOREL_AT(CodecDecompressParams, needUpdateOnNextIdle, 219);
VOREL_AT(CodecDecompressParams, pad2, 220);
VOREL_AT(CodecDecompressParams, bufferGammaLevel, 222);
VOREL_AT(CodecDecompressParams, taskWeight, 226);
VOREL_AT(CodecDecompressParams, taskName, 230);

VOREL_AT(ImageSubCodecDecompressCapabilities, recordSize, 0);
VOREL_AT(ImageSubCodecDecompressCapabilities, decompressRecordSize, 4);
VOREL_AT(ImageSubCodecDecompressCapabilities, canAsync, 8);
VOREL_AT(ImageSubCodecDecompressCapabilities, pad0, 9);
VOREL_AT(ImageSubCodecDecompressCapabilities, suggestedQueueSize, 10);
VOREL_AT(ImageSubCodecDecompressCapabilities, canProvideTrigger, 12);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecFlushesScreen, 13);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecCallsDrawBandComplete, 14);
VOREL_AT(ImageSubCodecDecompressCapabilities, pad2, 15);
VOREL_AT(ImageSubCodecDecompressCapabilities, isChildCodec, 16);
VOREL_AT(ImageSubCodecDecompressCapabilities, reserved1, 17);
VOREL_AT(ImageSubCodecDecompressCapabilities, pad4, 18);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecIsMultiBufferAware, 19);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecSupportsOutOfOrderDisplayTimes, 20);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecSupportsScheduledBackwardsPlaybackWithDifferenceFrames,
         21);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecNeedsHelpReportingNonDisplayableFrames, 22);
VOREL_AT(ImageSubCodecDecompressCapabilities, baseCodecShouldCallDecodeBandForAllFrames, 23);
VOREL_AT(ImageSubCodecDecompressCapabilities, pad5, 24);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecSupportsDrawInDecodeOrder, 26);
VOREL_AT(ImageSubCodecDecompressCapabilities, subCodecSupportsDecodeSmoothing, 27);
VOREL_AT(ImageSubCodecDecompressCapabilities, pad6, 28);

VOREL_AT(ImageSubCodecDecompressRecord, baseAddr, 0);
VOREL_AT(ImageSubCodecDecompressRecord, rowBytes, 4);
VOREL_AT(ImageSubCodecDecompressRecord, codecData, 8);
VOREL_AT(ImageSubCodecDecompressRecord, progressProcRecord, 12);
VOREL_AT(ImageSubCodecDecompressRecord, dataProcRecord, 20);
VOREL_AT(ImageSubCodecDecompressRecord, userDecompressRecord, 28);
VOREL_AT(ImageSubCodecDecompressRecord, frameType, 32);
VOREL_AT(ImageSubCodecDecompressRecord, inhibitMP, 33);
VOREL_AT(ImageSubCodecDecompressRecord, pad, 34);
VOREL_AT(ImageSubCodecDecompressRecord, priv, 36);
VOREL_AT(ImageSubCodecDecompressRecord, drawBandCompleteUPP, 44);
VOREL_AT(ImageSubCodecDecompressRecord, drawBandCompleteRefCon, 48);

VOREL_AT(ICMPixelFormatInfo, size, 0);
VOREL_AT(ICMPixelFormatInfo, formatFlags, 4);
VOREL_AT(ICMPixelFormatInfo, bitsPerPixel, 8);
VOREL_AT(ICMPixelFormatInfo, defaultGammaLevel, 36);
VOREL_AT(ICMPixelFormatInfo, horizontalSubsampling, 40);
VOREL_AT(ICMPixelFormatInfo, verticalSubsampling, 68);
VOREL_AT(ICMPixelFormatInfo, cmpCount, 96);
VOREL_AT(ICMPixelFormatInfo, cmpSize, 98);

VOREL_AT(PixMap, baseAddr, 0);
VOREL_AT(PixMap, rowBytes, 4);
VOREL_AT(PixMap, bounds, 6);
VOREL_AT(PixMap, pmVersion, 14);
VOREL_AT(PixMap, packType, 16);
VOREL_AT(PixMap, packSize, 18);
VOREL_AT(PixMap, hRes, 22);
VOREL_AT(PixMap, vRes, 26);
VOREL_AT(PixMap, pixelType, 30);
VOREL_AT(PixMap, pixelSize, 32);
VOREL_AT(PixMap, cmpCount, 34);
VOREL_AT(PixMap, cmpSize, 36);
VOREL_AT(PixMap, pixelFormat, 38);
VOREL_AT(PixMap, pmTable, 42);
VOREL_AT(PixMap, pmExt, 46);

VOREL_AT(CGrafPort, device, 0);
VOREL_AT(CGrafPort, portPixMap, 2);

#undef VOREL_AT

}  // namespace vorel::component
