// Selectors of component calls, by the host's own names.
#pragma once
#include "component/host_types.h"

namespace vorel::component {

enum Selector : i16 {
  kComponentGetMPWorkFunctionSelect = -8,
  kComponentUnregisterSelect = -7,
  kComponentTargetSelect = -6,
  kComponentRegisterSelect = -5,
  kComponentVersionSelect = -4,
  kComponentCanDoSelect = -3,
  kComponentCloseSelect = -2,
  kComponentOpenSelect = -1,

  kImageCodecGetCodecInfoSelect = 0,
  kImageCodecGetCompressionTimeSelect = 1,
  kImageCodecGetMaxCompressionSizeSelect = 2,
  kImageCodecPreCompressSelect = 3,
  kImageCodecBandCompressSelect = 4,
  kImageCodecPreDecompressSelect = 5,
  kImageCodecBandDecompressSelect = 6,
  kImageCodecBusySelect = 7,
  kImageCodecGetCompressedImageSizeSelect = 8,
  kImageCodecTrimImageSelect = 10,
  kImageCodecRequestSettingsSelect = 11,
  kImageCodecGetSettingsSelect = 12,
  kImageCodecSetSettingsSelect = 13,
  kImageCodecFlushSelect = 14,
  kImageCodecGetSettingsAsTextSelect = 26,
  kImageCodecGetBaseMPWorkFunctionSelect = 37,
  kImageCodecRequestGammaLevelSelect = 40,
  kImageCodecGetSourceDataGammaLevelSelect = 41,

  kImageCodecPreflightSelect = 0x200,
  kImageCodecInitializeSelect = 0x201,
  kImageCodecBeginBandSelect = 0x202,
  kImageCodecDrawBandSelect = 0x203,
  kImageCodecEndBandSelect = 0x204,
  kImageCodecQueueStartingSelect = 0x205,
  kImageCodecQueueStoppingSelect = 0x206,

  kImageTranscoderBeginSequenceSelect = 1,
  kImageTranscoderConvertSelect = 2,
  kImageTranscoderDisposeDataSelect = 3,
  kImageTranscoderEndSequenceSelect = 4,
};

// Bits of conditionFlags in calls for a band.
inline constexpr i32 kConditionFirstBand = 1;
inline constexpr i32 kConditionLastBand = 2;
inline constexpr i32 kConditionFirstFrame = 4;

}  // namespace vorel::component
