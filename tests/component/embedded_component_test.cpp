// Opening, calling and closing of instances, with a component of the test's own.
#include <array>

#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

constexpr i16 kSlotsSelect = 20;
constexpr i16 kDelegateSelect = 21;
constexpr i16 kParamSizeSelect = 22;

struct Probe {
  std::vector<std::string> calls;
  ComponentInstance self = nullptr;
  ComponentInstance delegate = nullptr;
  ComponentResult openResult = noErr;
  ComponentResult closeResult = noErr;
  Handle openStorage = nullptr;
  Handle closeStorage = nullptr;
  std::array<Slot, kMostSlots> slots = {};
};

Probe probe;

ComponentResult KeepSlots(Handle storage, Slot a, Slot b, Slot c, Slot d, Slot e, Slot f, Slot g, Slot h,
                          Slot i, Slot j) {
  probe.slots = {a, b, c, d, e, f, g, h, i, j};
  return storage == probe.openStorage ? 42 : 43;
}

ComponentResult ProbeEntry(ComponentParameters* parameters, Handle storage) {
  switch (parameters->what) {
    case kComponentOpenSelect:
      probe.calls.emplace_back("open");
      EXPECT_EQ(storage, nullptr);
      EXPECT_EQ(parameters->paramSize, sizeof(Slot));
      probe.self = reinterpret_cast<ComponentInstance>(parameters->params[0]);
      if (probe.openResult != noErr) return probe.openResult;
      probe.openStorage = Host->NewHandleClear(8);
      Host->SetComponentInstanceStorage(probe.self, probe.openStorage);
      return noErr;
    case kComponentCloseSelect:
      probe.calls.emplace_back("close");
      probe.closeStorage = storage;
      EXPECT_EQ(reinterpret_cast<ComponentInstance>(parameters->params[0]), probe.self);
      Host->DisposeHandle(storage);
      return probe.closeResult;
    case kSlotsSelect:
      return Host->CallWithStorage(storage, parameters, KeepSlots);
    case kParamSizeSelect:
      EXPECT_EQ(parameters->flags, 0);
      return parameters->paramSize;
    case kDelegateSelect:
      return Host->DelegateComponentCall(parameters, probe.delegate);
    default:
      return badComponentSelector;
  }
}

ComponentResult EchoEntry(ComponentParameters* parameters, Handle /*storage*/) {
  if (parameters->what != kDelegateSelect) return noErr;
  return static_cast<ComponentResult>(parameters->params[0] * 10 + parameters->params[1]);
}

constexpr NamedEntry kEntries[] = {{"Probe", ProbeEntry}, {"Echo", EchoEntry}};

struct ComponentTest : EmbeddedHostTest {
  Blob fork;
  void SetUp() override {
    std::vector<HandResource> resources = HandComponent(1, "imdcVrl3TmRk", "Probe");
    for (const auto& resource : HandComponent(2, "imcoVrl3TmRk", "Echo")) resources.push_back(resource);
    for (const auto& resource : HandComponent(3, "imcoVrl4TmRk", "Gone")) resources.push_back(resource);
    fork = HandFork(resources);
    probe = {};
    Start({.resourceFork = BytesOf(fork), .entries = kEntries});
  }
  static ComponentInstance OpenProbe() {
    ComponentInstance instance = nullptr;
    EXPECT_EQ(OpenComponent(1, &instance), noErr);
    return instance;
  }
};

TEST_F(ComponentTest, OpenAndCloseReachTheEntryWithSelfAndStorage) {
  const ComponentInstance instance = OpenProbe();
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(probe.self, instance);
  EXPECT_EQ(CountsInUse().instances, 1);
  EXPECT_EQ(Host->CloseComponent(instance), noErr);
  EXPECT_EQ(probe.calls, (std::vector<std::string>{"open", "close"}));
  EXPECT_EQ(probe.closeStorage, probe.openStorage);
}

TEST_F(ComponentTest, AFailingOpenGivesNoInstanceAndIsNotClosed) {
  probe.openResult = -2093;
  ComponentInstance instance = reinterpret_cast<ComponentInstance>(1);
  EXPECT_EQ(OpenComponent(1, &instance), -2093);
  EXPECT_EQ(instance, nullptr);
  EXPECT_EQ(probe.calls, std::vector<std::string>{"open"});
  EXPECT_EQ(CountsInUse().instances, 0);
  EXPECT_EQ(CallSelector(probe.self, kParamSizeSelect), badComponentInstance);
}

TEST_F(ComponentTest, CloseReturnsTheComponentsResult) {
  const ComponentInstance instance = OpenProbe();
  probe.closeResult = -50;
  EXPECT_EQ(Host->CloseComponent(instance), -50);
  EXPECT_EQ(CountsInUse().instances, 0);
}

TEST_F(ComponentTest, WhatIsNotOpenIsRefused) {
  const ComponentInstance instance = OpenProbe();
  Host->CloseComponent(instance);
  EXPECT_EQ(CallSelector(instance, kParamSizeSelect), badComponentInstance);
  EXPECT_EQ(CallSelector(nullptr, kParamSizeSelect), badComponentInstance);
  EXPECT_EQ(Host->CloseComponent(instance), static_cast<OSErr>(badComponentInstance));
  EXPECT_EQ(probe.calls.size(), 2u);
}

TEST_F(ComponentTest, AComponentWithoutItsEntryCannotBeOpened) {
  ComponentInstance instance = nullptr;
  EXPECT_EQ(OpenComponent(3, &instance), -3000);
  EXPECT_EQ(OpenComponent(0, &instance), -3000);
  EXPECT_EQ(OpenComponent(4, &instance), -3000);
  EXPECT_EQ(OpenComponent(1, nullptr), paramErr);
}

TEST_F(ComponentTest, TheDefaultIsTheFirstOfTypeAndSubtype) {
  ComponentInstance instance = nullptr;
  ASSERT_EQ(Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("Vrl3"), &instance),
            noErr);
  EXPECT_EQ(instance, probe.self);
  Host->CloseComponent(instance);
  EXPECT_EQ(Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("Vrl5"), &instance),
            -3000);
  EXPECT_EQ(instance, nullptr);
  EXPECT_EQ(Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("Vrl3"), nullptr),
            paramErr);
}

TEST_F(ComponentTest, NumbersAndPointersTravelInSlots) {
  const ComponentInstance instance = OpenProbe();
  int target = 0;
  EXPECT_EQ(
      CallSelector(instance, kSlotsSelect, i16{-5}, &target, nullptr, u32{0x89ABCDEF}, true, 6, 7, 8, 9, 10),
      42);
  EXPECT_EQ(probe.slots, (std::array<Slot, kMostSlots>{-5, reinterpret_cast<Slot>(&target), 0, 0x89ABCDEF, 1,
                                                       6, 7, 8, 9, 10}));
  EXPECT_EQ(CallSelector(instance, kParamSizeSelect, 1, 2, 3), static_cast<i32>(3 * sizeof(Slot)));
  Host->CloseComponent(instance);
}

TEST_F(ComponentTest, SlotsThatACallDoesNotHaveAreZero) {
  const ComponentInstance instance = OpenProbe();
  probe.slots.fill(99);
  EXPECT_EQ(CallSelector(instance, kSlotsSelect, 1, 2), 42);
  EXPECT_EQ(probe.slots, (std::array<Slot, kMostSlots>{1, 2}));
  EXPECT_EQ(CallSelector(instance, kSlotsSelect), 42);
  EXPECT_EQ(probe.slots, (std::array<Slot, kMostSlots>{}));
  Host->CloseComponent(instance);
}

TEST_F(ComponentTest, CallWithStorageNeedsAFunction) {
  ComponentParameters parameters = {};
  EXPECT_EQ(Host->CallWithStorage(nullptr, &parameters, nullptr), paramErr);
  EXPECT_EQ(Host->CallWithStorage(nullptr, nullptr, KeepSlots), paramErr);
}

TEST_F(ComponentTest, ADelegateGetsTheWholeCall) {
  const ComponentInstance instance = OpenProbe();
  ASSERT_EQ(OpenComponent(2, &probe.delegate), noErr);
  EXPECT_EQ(CallSelector(instance, kDelegateSelect, 4, 2), 42);
  Host->CloseComponent(probe.delegate);
  EXPECT_EQ(CallSelector(instance, kDelegateSelect, 4, 2), badComponentInstance);
  Host->CloseComponent(instance);
}

TEST_F(ComponentTest, StopFreesOpenInstancesWithoutCallingThem) {
  OpenProbe();
  HostCounts left;
  left.instances = 1;
  left.handles = 1;
  EXPECT_EQ(StopEmbeddedHost(), left);
  EXPECT_EQ(probe.calls, std::vector<std::string>{"open"});
}

}  // namespace
}  // namespace vorel::component::embedded
