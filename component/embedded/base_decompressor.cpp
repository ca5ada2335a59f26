// What the base image decompressor answers to each selector.
#include "component/embedded/base_decompressor.h"

#include "component/embedded/base_frames.h"
#include "component/embedded/embedded_host.h"
#include "component/embedded/instances.h"
#include "component/embedded/operations.h"
#include "component/host_errors.h"
#include "component/selectors.h"

namespace vorel::component::embedded {

namespace {

constexpr ComponentResult kVersion = 0x00020000;  // interface 2, as codecs have it
constexpr i32 kQuickTime7 = 0x07000000;
constexpr i32 kCapabilityBytesBefore7 = 20;

ComponentResult WorkFunction(void* refCon, void* header) {
  auto* request = static_cast<WorkFunctionHeader*>(header);
  const u32 flags = request == nullptr ? kWorkDo : request->workFlags;
  if ((flags & kWorkGetProcessorCount) != 0) request->processorCount = static_cast<u16>(BaseThreads());
  if ((flags & kWorkGetIsRunning) != 0) request->isRunning = BaseThreads() > 0 ? 1 : 0;
  if ((flags & kWorkDo) != 0) DrawWaitingFrame(refCon);
  return noErr;
}

ComponentResult Open(ComponentInstance self) {
  auto base = std::make_shared<BaseDecompressor>();
  base->target = self;
  GiveMemory(self, std::move(base));
  return noErr;
}

ComponentResult Close(BaseDecompressor& base) {
  EndAllFrames(base);
  FreeIdleFrames(base);
  return noErr;
}

ComponentResult PreDecompress(BaseDecompressor& base, CodecDecompressParams* parameters) {
  if (parameters == nullptr) return paramErr;
  EndAllFrames(base);
  FreeIdleFrames(base);
  base.initialized = false;
  base.draw = nullptr;
  ComponentResult result = CallSelector(base.target, kImageCodecPreflightSelect, parameters);
  if (result != noErr) return result;
  i32 version = 0;
  Gestalt(FourCharacterCode("qtim"), &version);  // without an answer it stays below every version
  ImageSubCodecDecompressCapabilities capabilities = {};
  capabilities.recordSize =
      version < kQuickTime7 ? kCapabilityBytesBefore7 : i32{sizeof(ImageSubCodecDecompressCapabilities)};
  result = CallSelector(base.target, kImageCodecInitializeSelect, &capabilities);
  if (result != noErr) return result;
  if (capabilities.decompressRecordSize < 0) return paramErr;
  base.userRecordBytes = static_cast<std::size_t>(capabilities.decompressRecordSize);
  base.canAsync = capabilities.canAsync != 0;
  base.initialized = true;
  if (base.canAsync) {
    // The target asks back for the base's own work function and leaves its draw procedure there.
    ComponentMPWorkFunction work = nullptr;
    void* workRefCon = nullptr;
    result = CallSelector(base.target, kComponentGetMPWorkFunctionSelect, &work, &workRefCon);
    if (result != noErr || work != &WorkFunction || workRefCon != &base) base.draw = nullptr;
  }
  return noErr;
}

ComponentResult BandDecompress(BaseDecompressor& base, CodecDecompressParams* parameters) {
  if (parameters == nullptr || !base.initialized) return paramErr;
  const bool wantsLater = parameters->completionProcRecord.completionProc != nullptr;
  if (wantsLater && base.canAsync && BaseThreads() > 0) return DecompressLater(base, *parameters);
  return DecompressNow(base, *parameters);
}

ComponentResult Busy(BaseDecompressor& base) {
  EndDoneFrames(base);
  return base.busy.empty() ? 0 : 1;
}

ComponentResult Flush(BaseDecompressor& base) {
  EndAllFrames(base);
  return noErr;
}

ComponentResult SetTarget(BaseDecompressor& base, ComponentInstance target) {
  EndAllFrames(base);
  base.target = target;
  base.initialized = false;
  return noErr;
}

ComponentResult GetBaseWorkFunction(BaseDecompressor& base, ComponentMPWorkFunction* work, void** refCon,
                                    ImageCodecMPDrawBand draw, void* drawRefCon) {
  if (work == nullptr || refCon == nullptr) return paramErr;
  base.draw = draw;
  base.drawRefCon = drawRefCon;
  *work = WorkFunction;
  *refCon = &base;
  return noErr;
}

ComponentResult CanDo(i16 selector) {
  switch (selector) {
    case kComponentOpenSelect:
    case kComponentCloseSelect:
    case kComponentCanDoSelect:
    case kComponentVersionSelect:
    case kComponentTargetSelect:
    case kImageCodecPreDecompressSelect:
    case kImageCodecBandDecompressSelect:
    case kImageCodecBusySelect:
    case kImageCodecFlushSelect:
    case kImageCodecGetBaseMPWorkFunctionSelect:
      return 1;
    default:
      return 0;
  }
}

template <typename Argument>
Argument As(Slot slot) {
  return reinterpret_cast<Argument>(slot);
}

}  // namespace

ComponentResult BaseDecompressorEntry(ComponentParameters* parameters, Handle storage) {
  const auto slots = SlotsOf(*parameters);
  const i16 selector = parameters->what;
  if (selector == kComponentOpenSelect) return Open(As<ComponentInstance>(slots[0]));
  if (selector == kComponentCanDoSelect) return CanDo(static_cast<i16>(slots[0]));
  if (selector == kComponentVersionSelect) return kVersion;
  if (CanDo(selector) == 0) return badComponentSelector;
  auto* base = reinterpret_cast<BaseDecompressor*>(storage);
  if (base == nullptr) return paramErr;
  const std::scoped_lock lock(base->calls);
  switch (selector) {
    case kComponentCloseSelect:
      return Close(*base);
    case kComponentTargetSelect:
      return SetTarget(*base, As<ComponentInstance>(slots[0]));
    case kImageCodecPreDecompressSelect:
      return PreDecompress(*base, As<CodecDecompressParams*>(slots[0]));
    case kImageCodecBandDecompressSelect:
      return BandDecompress(*base, As<CodecDecompressParams*>(slots[0]));
    case kImageCodecBusySelect:
      return Busy(*base);
    case kImageCodecFlushSelect:
      return Flush(*base);
    case kImageCodecGetBaseMPWorkFunctionSelect:
      return GetBaseWorkFunction(*base, As<ComponentMPWorkFunction*>(slots[0]), As<void**>(slots[1]),
                                 As<ImageCodecMPDrawBand>(slots[2]), As<void*>(slots[3]));
    default:
      return badComponentSelector;
  }
}

}  // namespace vorel::component::embedded
