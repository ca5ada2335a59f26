// The base image decompressor, with a target that only keeps account.
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "component/embedded/base_decompressor.h"
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

constexpr i32 kRecordBytes = 48;

struct UserRecord {
  u32 frame;
  u32 uses;  // not cleared between frames
};

// What the target does, and what it saw. Calls are noted by the thread that calls; drawing is not noted.
struct Target {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> calls;
  std::vector<OSErr> completions;
  std::vector<Slot> completedFrames;
  ComponentInstance self = nullptr;
  ComponentInstance base = nullptr;
  Boolean canAsync = 1;
  bool givesWorkFunction = true;
  i32 initializeRecordSize = 0;
  i32 decompressRecordSize = kRecordBytes;
  ComponentResult preflightResult = noErr;
  ComponentResult beginResult = noErr;
  ComponentResult endResult = noErr;
  int busyBlocks = 0;  // as a pool of blocks that BeginBand takes and EndBand gives back
  int blocks = 1000;
  int refusals = 0;
  u32 failingFrame = 0;
  bool inhibit = false;
  u32 releasedFrames = 1000;  // frames up to this one may be drawn
  ImageSubCodecDecompressRecord lastRecord = {};
  u32 lastUses = 0;
  std::atomic<int> drawing = 0;
  std::atomic<int> mostDrawing = 0;
  std::atomic<int> drawnByRefCon = 0;
  std::atomic<bool> drawnElsewhere = false;
  std::thread::id caller;
  std::atomic<int> sequential = 0;
  std::atomic<bool> overlapped = false;
};

std::unique_ptr<Target> target;

void Note(const std::string& call) {
  const std::scoped_lock lock(target->mutex);
  target->calls.push_back(call);
}

void Release(u32 frames) {
  const std::scoped_lock lock(target->mutex);
  target->releasedFrames = frames;
  target->changed.notify_all();
}

ComponentResult DrawFrame(ImageSubCodecDecompressRecord* record) {
  const u32 frame = static_cast<UserRecord*>(record->userDecompressRecord)->frame;
  const int now = ++target->drawing;
  for (int most = target->mostDrawing; now > most && !target->mostDrawing.compare_exchange_weak(most, now);) {
  }
  if (std::this_thread::get_id() != target->caller) target->drawnElsewhere = true;
  {
    std::unique_lock lock(target->mutex);
    target->changed.wait(lock, [frame] { return frame <= target->releasedFrames; });
  }
  record->baseAddr[frame] =
      static_cast<u8>(frame);  // each its own pixel, as frames of a test share a picture
  --target->drawing;
  return frame == target->failingFrame ? codecConditionErr : noErr;
}

ComponentResult DrawByRefCon(void* refCon, ImageSubCodecDecompressRecord* record) {
  EXPECT_EQ(refCon, target.get());
  ++target->drawnByRefCon;
  return DrawFrame(record);
}

// BeginBand and EndBand, which must never run at the same time.
struct InSequence {
  InSequence() {
    if (++target->sequential != 1) target->overlapped = true;
  }
  ~InSequence() { --target->sequential; }
};

ComponentResult Begin(CodecDecompressParams* parameters, ImageSubCodecDecompressRecord* record) {
  const InSequence inSequence;
  const std::string frame = std::to_string(parameters->frameNumber);
  if (target->beginResult != noErr) {
    Note("begin " + frame + " fails");
    return target->beginResult;
  }
  if (target->busyBlocks == target->blocks) {
    Note("begin " + frame + " waits");
    ++target->refusals;
    return codecNoMemoryPleaseWaitErr;
  }
  ++target->busyBlocks;
  Note("begin " + frame);
  record->inhibitMP = target->inhibit ? 1 : 0;
  auto* user = static_cast<UserRecord*>(record->userDecompressRecord);
  user->frame = static_cast<u32>(parameters->frameNumber);
  target->lastUses = ++user->uses;
  target->lastRecord = *record;
  return noErr;
}

ComponentResult End(const ImageSubCodecDecompressRecord* record, OSErr result) {
  const InSequence inSequence;
  --target->busyBlocks;
  const u32 frame = static_cast<UserRecord*>(record->userDecompressRecord)->frame;
  Note("end " + std::to_string(frame) + (result == noErr ? "" : " " + std::to_string(result)));
  return target->endResult;
}

template <typename Pointer>
Pointer PointerIn(const ComponentParameters* parameters, int slot) {
  const Slot* slots = parameters->params;
  return reinterpret_cast<Pointer>(slots[slot]);
}

ComponentResult TargetEntry(ComponentParameters* parameters, Handle /*storage*/) {
  switch (parameters->what) {
    case kComponentOpenSelect:
      target->self = PointerIn<ComponentInstance>(parameters, 0);
      Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("base"), &target->base);
      return CallSelector(target->base, kComponentTargetSelect, target->self);
    case kComponentCloseSelect:
      return Host->CloseComponent(target->base);
    case kComponentGetMPWorkFunctionSelect:
      if (!target->givesWorkFunction) return codecUnimpErr;
      return CallSelector(target->base, kImageCodecGetBaseMPWorkFunctionSelect,
                          PointerIn<void*>(parameters, 0), PointerIn<void*>(parameters, 1), &DrawByRefCon,
                          target.get());
    case kImageCodecPreflightSelect:
      Note("preflight");
      return target->preflightResult;
    case kImageCodecInitializeSelect: {
      Note("initialize");
      auto* capabilities = PointerIn<ImageSubCodecDecompressCapabilities*>(parameters, 0);
      target->initializeRecordSize = capabilities->recordSize;
      capabilities->decompressRecordSize = target->decompressRecordSize;
      capabilities->canAsync = target->canAsync;
      return noErr;
    }
    case kImageCodecBeginBandSelect:
      return Begin(PointerIn<CodecDecompressParams*>(parameters, 0),
                   PointerIn<ImageSubCodecDecompressRecord*>(parameters, 1));
    case kImageCodecDrawBandSelect:
      return DrawFrame(PointerIn<ImageSubCodecDecompressRecord*>(parameters, 0));
    case kImageCodecEndBandSelect:
      return End(PointerIn<ImageSubCodecDecompressRecord*>(parameters, 0),
                 static_cast<OSErr>(PointerIn<Slot>(parameters, 1)));
    case kImageCodecQueueStartingSelect:
      Note("starting");
      return noErr;
    case kImageCodecQueueStoppingSelect:
      Note("stopping");
      return noErr;
    default:
      return Host->DelegateComponentCall(parameters, target->base);
  }
}

constexpr NamedEntry kEntries[] = {{"Qd5", TargetEntry}};

void Completed(OSErr result, i16 flags, Slot frame) {
  EXPECT_EQ(flags, 3);
  target->completions.push_back(result);
  target->completedFrames.push_back(frame);
}

struct BaseTest : EmbeddedHostTest {
  const Blob fork = HandFork(HandComponent(1, "imdcVrl3TmRk", "Qd5"));
  ComponentInstance instance = nullptr;
  ImageDescriptionHandle description = nullptr;
  std::vector<u8> pixels = std::vector<u8>(64 * 16 * 4);
  PixelMapExtension extension = {};
  CodecDecompressParams parameters = {};

  void SetUp() override { target = std::make_unique<Target>(); }

  void Open(u32 threads, i32 version = kLatestQuickTime) {
    target->caller = std::this_thread::get_id();
    Start({.quickTimeVersion = version,
           .baseThreads = threads,
           .resourceFork = BytesOf(fork),
           .entries = kEntries});
    ASSERT_EQ(OpenComponent(1, &instance), noErr);
    description = MakeImageDescription(FourCharacterCode("Vrl3"), 64, 16);
    parameters.imageDescription = description;
    parameters.dstPixMap.baseAddr = pixels.data();
    parameters.dstPixMap.bounds = {0, 0, 16, 64};
    parameters.dstPixMap.pixelFormat = 32;
    SetPixelMapRows(parameters.dstPixMap, extension, 64 * 4, 0);
    parameters.dstRect = {0, 0, 16, 64};
  }
  void OpenPrepared(u32 threads) {
    Open(threads);
    ASSERT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), noErr);
    target->calls.clear();
  }
  ComponentResult Band(i32 frame) {
    parameters.frameNumber = frame;
    return CallSelector(instance, kImageCodecBandDecompressSelect, &parameters);
  }
  ComponentResult AsyncBand(i32 frame) {
    parameters.completionProcRecord = {Completed, frame};
    return Band(frame);
  }
  void TearDown() override {
    Release(1000);
    if (instance != nullptr) Host->CloseComponent(instance);
    Host->DisposeHandle(reinterpret_cast<Handle>(description));
    EXPECT_FALSE(target->overlapped);
    EXPECT_EQ(target->busyBlocks, 0);
    EmbeddedHostTest::TearDown();
  }
};

using Calls = std::vector<std::string>;

TEST_F(BaseTest, PreDecompressAsksTheTarget) {
  Open(1);
  EXPECT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), noErr);
  EXPECT_EQ(target->calls, (Calls{"preflight", "initialize"}));
  EXPECT_EQ(target->initializeRecordSize, 32);
  EXPECT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, nullptr), paramErr);
}

TEST_F(BaseTest, BeforeVersion7TheCapabilitiesAreShorter) {
  Open(1, 0x06508000);
  EXPECT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), noErr);
  EXPECT_EQ(target->initializeRecordSize, 20);
}

TEST_F(BaseTest, AFailingPreflightEndsTheCall) {
  Open(1);
  target->preflightResult = codecExtensionNotFoundErr;
  EXPECT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), codecExtensionNotFoundErr);
  EXPECT_EQ(target->calls, Calls{"preflight"});
  EXPECT_EQ(Band(1), paramErr);
}

TEST_F(BaseTest, ASynchronousFrameIsBegunDrawnAndEnded) {
  OpenPrepared(4);
  EXPECT_EQ(Band(7), noErr);
  EXPECT_EQ(target->calls, (Calls{"begin 7", "end 7"}));
  EXPECT_EQ(pixels[7], 7);
  EXPECT_FALSE(target->drawnElsewhere);
}

TEST_F(BaseTest, TheRecordTellsWhereToDraw) {
  Open(1);
  const Handle handle = reinterpret_cast<Handle>(description);
  (*description)->width = 32;
  (*description)->height = 8;
  EXPECT_EQ(Host->GetHandleSize(handle), 86);
  ASSERT_EQ(CallSelector(instance, kImageCodecPreDecompressSelect, &parameters), noErr);
  u8 data[5];
  parameters.data = data;
  parameters.bufferSize = 5;
  parameters.dataProcRecord.dataRefCon = 11;
  parameters.progressProcRecord.progressRefCon = 12;
  parameters.dstPixMap.bounds = {100, 200, 116, 264};
  parameters.dstRect = {103, 205, 111, 237};
  ASSERT_EQ(Band(1), noErr);
  EXPECT_EQ(target->lastRecord.baseAddr, pixels.data() + 3 * 256 + 5 * 4);
  EXPECT_EQ(target->lastRecord.rowBytes, 256);
  EXPECT_EQ(target->lastRecord.codecData, data);
  EXPECT_EQ(target->lastRecord.dataProcRecord.dataRefCon, 11);
  EXPECT_EQ(target->lastRecord.progressProcRecord.progressRefCon, 12);
  EXPECT_NE(target->lastRecord.userDecompressRecord, nullptr);
}

TEST_F(BaseTest, RowsMayRunUpwards) {
  OpenPrepared(1);
  SetPixelMapRows(parameters.dstPixMap, extension, -256, 0);
  parameters.dstPixMap.baseAddr = pixels.data() + 15 * 256;
  ASSERT_EQ(Band(1), noErr);
  EXPECT_EQ(target->lastRecord.rowBytes, -256);
}

TEST_F(BaseTest, APictureThatDoesNotFitItsMapIsRefused) {
  OpenPrepared(1);
  parameters.dstPixMap.bounds.bottom = 15;
  parameters.dstRect.bottom = 15;
  EXPECT_EQ(Band(1), paramErr);
  parameters.dstPixMap.bounds.bottom = 16;
  parameters.dstRect = {0, -1, 16, 63};
  EXPECT_EQ(Band(1), paramErr);
  parameters.dstRect = {0, 1, 16, 65};
  EXPECT_EQ(Band(1), paramErr);
  parameters.dstRect = {};
  EXPECT_EQ(Band(2), noErr);  // the whole map
  EXPECT_EQ(target->calls, (Calls{"begin 2", "end 2"}));
}

TEST_F(BaseTest, TheRecordOfAFrameIsNotCleared) {
  OpenPrepared(1);
  ASSERT_EQ(Band(1), noErr);
  EXPECT_EQ(target->lastUses, 1u);
  ASSERT_EQ(Band(2), noErr);
  EXPECT_EQ(target->lastUses, 2u);
}

TEST_F(BaseTest, WithoutMemoryForTheRecordTheFrameIsNotBegun) {
  OpenPrepared(1);
  FailAllocation(1);
  EXPECT_EQ(Band(1), memFullErr);
  EXPECT_EQ(target->calls, Calls{});
  EXPECT_EQ(Band(2), noErr);
}

TEST_F(BaseTest, AFailingBeginIsNotEnded) {
  OpenPrepared(1);
  target->beginResult = -19;
  EXPECT_EQ(Band(1), -19);
  EXPECT_EQ(AsyncBand(2), -19);
  EXPECT_EQ(target->calls, (Calls{"begin 1 fails", "starting", "begin 2 fails", "stopping"}));
  EXPECT_TRUE(target->completions.empty());
  target->beginResult = noErr;
  EXPECT_EQ(Band(3), noErr);
}

TEST_F(BaseTest, AFailingDrawIsEndedWithItsResultAndTheNextFrameIsFine) {
  OpenPrepared(1);
  target->failingFrame = 1;
  parameters.completionProcRecord = {};
  EXPECT_EQ(Band(1), codecConditionErr);
  EXPECT_EQ(Band(2), noErr);
  EXPECT_EQ(target->calls, (Calls{"begin 1", "end 1 -8972", "begin 2", "end 2"}));
}

TEST_F(BaseTest, AFailingEndIsTold) {
  OpenPrepared(1);
  target->endResult = -50;
  EXPECT_EQ(Band(1), -50);
  EXPECT_EQ(AsyncBand(2), noErr);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completions, std::vector<OSErr>{-50});
}

TEST_F(BaseTest, AFrameThatIsNotAsyncCompletesAtOnce) {
  target->canAsync = 0;
  OpenPrepared(4);
  target->failingFrame = 2;
  EXPECT_EQ(AsyncBand(1), noErr);
  EXPECT_EQ(AsyncBand(2), noErr);
  EXPECT_EQ(target->completions, (std::vector<OSErr>{noErr, codecConditionErr}));
  EXPECT_EQ(target->calls, (Calls{"begin 1", "end 1", "begin 2", "end 2 -8972"}));
  EXPECT_FALSE(target->drawnElsewhere);
}

TEST_F(BaseTest, WithoutThreadsEveryFrameIsSynchronous) {
  OpenPrepared(0);
  EXPECT_EQ(AsyncBand(1), noErr);
  EXPECT_EQ(target->completions.size(), 1u);
  EXPECT_FALSE(target->drawnElsewhere);
}

TEST_F(BaseTest, FramesAreDrawnOnThreadsAndEndedInOrder) {
  OpenPrepared(8);
  Release(0);
  for (i32 frame = 1; frame <= 8; ++frame) EXPECT_EQ(AsyncBand(frame), noErr);
  while (target->drawing < 8) std::this_thread::yield();  // all eight at the same time
  EXPECT_TRUE(target->completions.empty());
  EXPECT_EQ(CallSelector(instance, kImageCodecBusySelect, 0), 1);
  Release(8);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completedFrames, (std::vector<Slot>{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(target->mostDrawing, 8);
  EXPECT_EQ(target->drawnByRefCon, 8);
  EXPECT_TRUE(target->drawnElsewhere);
  EXPECT_EQ(target->calls.front(), "starting");
  EXPECT_EQ(target->calls.back(), "stopping");
  EXPECT_EQ(target->calls.size(), 18u);
  EXPECT_EQ(CallSelector(instance, kImageCodecBusySelect, 0), 0);
}

TEST_F(BaseTest, WithoutAWorkFunctionTheTargetIsCalledToDraw) {
  target->givesWorkFunction = false;
  OpenPrepared(2);
  EXPECT_EQ(AsyncBand(1), noErr);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->drawnByRefCon, 0);
  EXPECT_TRUE(target->drawnElsewhere);
  EXPECT_EQ(pixels[1], 1);
}

TEST_F(BaseTest, FinishedFramesAreEndedInTheNextCall) {
  OpenPrepared(1);
  EXPECT_EQ(AsyncBand(1), noErr);
  while (CallSelector(instance, kImageCodecBusySelect, 0) == 1) std::this_thread::yield();
  EXPECT_EQ(target->completedFrames, std::vector<Slot>{1});
  EXPECT_EQ(target->calls, (Calls{"starting", "begin 1", "end 1", "stopping"}));
}

TEST_F(BaseTest, ATargetWithoutMemoryIsAskedAgainWhenAFrameHasEnded) {
  OpenPrepared(2);
  target->blocks = 2;
  for (i32 frame = 1; frame <= 50; ++frame) EXPECT_EQ(AsyncBand(frame), noErr);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completedFrames.size(), 50u);
  for (Slot frame = 1; frame <= 50; ++frame)
    EXPECT_EQ(target->completedFrames[static_cast<std::size_t>(frame - 1)], frame);
}

TEST_F(BaseTest, TheOldestFrameIsWaitedForAndEndedBeforeTheRetry) {
  OpenPrepared(2);
  target->blocks = 1;
  Release(0);
  EXPECT_EQ(AsyncBand(1), noErr);
  std::thread later([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    Release(2);
  });
  EXPECT_EQ(AsyncBand(2), noErr);
  later.join();
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->calls,
            (Calls{"starting", "begin 1", "begin 2 waits", "end 1", "begin 2", "end 2", "stopping"}));
}

TEST_F(BaseTest, WithNothingInFlightPleaseWaitIsTheResult) {
  OpenPrepared(2);
  target->blocks = 0;
  EXPECT_EQ(AsyncBand(1), codecNoMemoryPleaseWaitErr);
  EXPECT_EQ(target->refusals, 1);
}

TEST_F(BaseTest, AFailingFrameAmongOthersReachesItsOwnCompletion) {
  OpenPrepared(4);
  target->failingFrame = 3;
  for (i32 frame = 1; frame <= 5; ++frame) EXPECT_EQ(AsyncBand(frame), noErr);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completions, (std::vector<OSErr>{0, 0, codecConditionErr, 0, 0}));
}

TEST_F(BaseTest, AFrameThatIsKeptOffTheThreadsIsDrawnInTheCall) {
  OpenPrepared(2);
  target->inhibit = true;
  EXPECT_EQ(AsyncBand(1), noErr);
  EXPECT_FALSE(target->drawnElsewhere);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completedFrames, std::vector<Slot>{1});
}

TEST_F(BaseTest, ASynchronousFrameComesAfterThoseInFlight) {
  OpenPrepared(2);
  EXPECT_EQ(AsyncBand(1), noErr);
  parameters.completionProcRecord = {};
  EXPECT_EQ(Band(2), noErr);
  EXPECT_EQ(target->calls, (Calls{"starting", "begin 1", "end 1", "stopping", "begin 2", "end 2"}));
}

BaseTest* nextFrameOf = nullptr;

void BeginNextFrame(OSErr result, i16 /*flags*/, Slot frame) {
  EXPECT_EQ(result, noErr);
  target->completedFrames.push_back(frame);
  if (frame == 3) return;
  nextFrameOf->parameters.completionProcRecord = {BeginNextFrame, frame + 1};
  EXPECT_EQ(nextFrameOf->Band(static_cast<i32>(frame + 1)), noErr);
}

TEST_F(BaseTest, ACompletionMayBeginTheNextFrame) {
  OpenPrepared(2);
  nextFrameOf = this;
  parameters.completionProcRecord = {BeginNextFrame, 1};
  EXPECT_EQ(Band(1), noErr);
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completedFrames, (std::vector<Slot>{1, 2, 3}));
  EXPECT_EQ(target->calls,
            (Calls{"starting", "begin 1", "end 1", "begin 2", "end 2", "begin 3", "end 3", "stopping"}));
}

TEST_F(BaseTest, ClosingWaitsForTheFramesInFlight) {
  OpenPrepared(2);
  Release(0);
  for (i32 frame = 1; frame <= 4; ++frame) EXPECT_EQ(AsyncBand(frame), noErr);
  std::thread later([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    Release(4);
  });
  EXPECT_EQ(Host->CloseComponent(instance), noErr);
  later.join();
  instance = nullptr;
  EXPECT_EQ(target->completedFrames, (std::vector<Slot>{1, 2, 3, 4}));
}

TEST_F(BaseTest, StopEndsTheThreadsWhileFramesWait) {
  OpenPrepared(1);
  Release(0);
  for (i32 frame = 1; frame <= 3; ++frame) EXPECT_EQ(AsyncBand(frame), noErr);
  std::thread later([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    Release(3);
  });
  HostCounts left;
  left.handles = 1;
  left.blocks = 3;
  left.instances = 2;
  EXPECT_EQ(StopEmbeddedHost(), left);
  later.join();
  instance = nullptr;
  description = nullptr;
  target->busyBlocks = 0;
  Start({});
}

TEST_F(BaseTest, TheWorkFunctionDrawsAFrameInTheCallersThread) {
  OpenPrepared(1);
  Release(0);
  EXPECT_EQ(AsyncBand(1), noErr);
  while (target->drawing < 1) std::this_thread::yield();
  EXPECT_EQ(AsyncBand(2), noErr);  // waits behind the first
  ComponentMPWorkFunction work = nullptr;
  void* refCon = nullptr;
  ASSERT_EQ(CallSelector(target->base, kImageCodecGetBaseMPWorkFunctionSelect, &work, &refCon, &DrawByRefCon,
                         target.get()),
            noErr);
  WorkFunctionHeader header = {};
  header.workFlags = kWorkGetProcessorCount | kWorkGetIsRunning;
  EXPECT_EQ(work(refCon, &header), noErr);
  EXPECT_EQ(header.processorCount, 1);
  EXPECT_EQ(header.isRunning, 1);
  Release(2);
  header.workFlags = kWorkDo;
  EXPECT_EQ(work(refCon, &header), noErr);
  EXPECT_EQ(work(refCon, &header), noErr);  // nothing left to do
  EXPECT_EQ(CallSelector(instance, kImageCodecFlushSelect), noErr);
  EXPECT_EQ(target->completedFrames, (std::vector<Slot>{1, 2}));
  EXPECT_EQ(CallSelector(target->base, kImageCodecGetBaseMPWorkFunctionSelect, nullptr, &refCon), paramErr);
}

TEST_F(BaseTest, SelectorsOfTheBase) {
  Open(1);
  const ComponentInstance base = target->base;
  EXPECT_EQ(CallSelector(base, kComponentVersionSelect) >> 16, 2);
  for (const int known : {-6, -4, -3, -2, -1, 5, 6, 7, 14, 37})
    EXPECT_EQ(CallSelector(base, kComponentCanDoSelect, known), 1) << known;
  for (const int unknown : {-8, -5, 0, 1, 13, 36, 0x200, 0x204})
    EXPECT_EQ(CallSelector(base, kComponentCanDoSelect, unknown), 0) << unknown;
  // Upper bits of a slot with a short number say nothing.
  EXPECT_EQ(CallSelector(base, kComponentCanDoSelect, 0x12340005), 1);
  for (const int unknown : {-8, -5, 0, 1, 13, 36, 0x100, 0x204, 0x300})
    EXPECT_EQ(CallSelector(base, static_cast<i16>(unknown)), badComponentSelector) << unknown;
}

TEST_F(BaseTest, ABaseWithoutATargetFailsAndEndsWell) {
  Open(1);
  ComponentInstance base = nullptr;
  ASSERT_EQ(Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("base"), &base), noErr);
  EXPECT_EQ(CallSelector(base, kImageCodecPreDecompressSelect, &parameters), badComponentSelector);
  EXPECT_EQ(CallSelector(base, kImageCodecBandDecompressSelect, &parameters), paramErr);
  EXPECT_EQ(Host->CloseComponent(base), noErr);
}

}  // namespace
}  // namespace vorel::component::embedded
