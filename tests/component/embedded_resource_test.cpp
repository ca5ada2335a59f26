// The resource fork, its components, and open resource files.
#include "base/problem.h"
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

ComponentResult Nothing(ComponentParameters*, Handle) {
  return noErr;
}

constexpr NamedEntry kEntries[] = {{"Qd5", Nothing}, {"Qe5", Nothing}};

std::vector<HandResource> SampleResources() {
  std::vector<HandResource> resources = HandComponent(500, "imdcVrl3TmRk", "Qd5");
  for (const HandResource& resource : HandComponent(501, "imcoVrl3TmRk", "Qe5"))
    resources.push_back(resource);
  for (const HandResource& resource : HandComponent(-502, "imtc2vuyVrl3", "Qt5"))
    resources.push_back(resource);
  resources.push_back({"strn", 500,
                       PascalText("S\x83"
                                  "CAM")});
  resources.push_back({"stri", 500, PascalText("Decodes.")});
  resources.push_back({"cdci", 500, "72 bytes"});
  resources.push_back({"cdci", -1, ""});
  resources.push_back({"STR#", 128, Be16(2) + PascalText("one\r") + PascalText("two\r")});
  resources.push_back({"STR#", 129, Be16(2) + PascalText("one") + "\x10short"});
  resources.push_back({"STR#", 130, "\0"});
  return resources;
}

struct ResourceTest : EmbeddedHostTest {
  const Blob fork = HandFork(SampleResources());
  void SetUp() override { Start({.resourceFork = BytesOf(fork), .entries = kEntries}); }
};

TEST_F(ResourceTest, ComponentsAreListedInTheOrderOfTheFork) {
  const std::vector<ComponentListing> all = FindComponents(0, 0, 0);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0].number, 1u);
  EXPECT_EQ(all[0].resource, 500);
  EXPECT_EQ(all[0].type, FourCharacterCode("imdc"));
  EXPECT_EQ(all[0].subtype, FourCharacterCode("Vrl3"));
  EXPECT_EQ(all[0].manufacturer, FourCharacterCode("TmRk"));
  EXPECT_EQ(all[0].version, 0x267u);
  EXPECT_EQ(all[0].flags, 0x10200020u);  // of the platform entry
  EXPECT_EQ(all[0].entry, "Qd5");
  EXPECT_EQ(all[0].name, "SÉCAM");
  EXPECT_EQ(all[0].information, "Decodes.");
  EXPECT_EQ(all[2].resource, -502);
  EXPECT_EQ(all[2].name, "");
}

TEST_F(ResourceTest, ComponentsAreFoundByWhatIsNotZero) {
  EXPECT_EQ(FindComponents(FourCharacterCode("imco"), 0, 0).size(), 1u);
  EXPECT_EQ(FindComponents(0, FourCharacterCode("Vrl3"), 0).size(), 2u);
  EXPECT_EQ(FindComponents(0, 0, FourCharacterCode("Vrl3")).at(0).number, 3u);
  EXPECT_TRUE(FindComponents(FourCharacterCode("imdc"), FourCharacterCode("base"), 0).empty());
}

TEST_F(ResourceTest, GetComponentResourceGivesANewHandle) {
  Handle resource = nullptr;
  ASSERT_EQ(Host->GetComponentResource(AsComponent(1), FourCharacterCode("cdci"), 500, &resource), noErr);
  EXPECT_EQ(TextOfHandle(resource), "72 bytes");
  (*resource)[0] = 'x';
  Handle again = nullptr;
  ASSERT_EQ(Host->GetComponentResource(AsComponent(2), FourCharacterCode("cdci"), 500, &again), noErr);
  EXPECT_EQ(TextOfHandle(again), "72 bytes");
  Host->DisposeHandle(resource);
  Host->DisposeHandle(again);
}

TEST_F(ResourceTest, AnEmptyResourceIsAnEmptyHandle) {
  Handle resource = nullptr;
  ASSERT_EQ(Host->GetComponentResource(AsComponent(1), FourCharacterCode("cdci"), -1, &resource), noErr);
  EXPECT_EQ(Host->GetHandleSize(resource), 0);
  Host->DisposeHandle(resource);
}

TEST_F(ResourceTest, WhatIsNotThereIsTold) {
  Handle resource = reinterpret_cast<Handle>(1);
  EXPECT_EQ(Host->GetComponentResource(AsComponent(1), FourCharacterCode("cdci"), 7, &resource), resNotFound);
  EXPECT_EQ(resource, nullptr);
  EXPECT_EQ(Host->GetComponentResource(AsComponent(4), FourCharacterCode("cdci"), 500, &resource), -3000);
  EXPECT_EQ(Host->GetComponentResource(nullptr, FourCharacterCode("cdci"), 500, &resource), -3000);
  EXPECT_EQ(Host->GetComponentResource(AsComponent(1), FourCharacterCode("cdci"), 500, nullptr), paramErr);
  FailAllocation(1);
  EXPECT_EQ(Host->GetComponentResource(AsComponent(1), FourCharacterCode("cdci"), 500, &resource),
            memFullErr);
}

TEST_F(ResourceTest, AnInstanceStandsForItsComponent) {
  ComponentInstance instance = nullptr;
  ASSERT_EQ(OpenComponent(1, &instance), noErr);
  Handle resource = nullptr;
  EXPECT_EQ(Host->GetComponentResource(instance, FourCharacterCode("cdci"), 500, &resource), noErr);
  Host->DisposeHandle(resource);
  Host->CloseComponent(instance);
}

TEST_F(ResourceTest, IndexedStringsCountFromOne) {
  u8 text[256];
  ASSERT_EQ(Host->GetComponentIndString(AsComponent(1), text, 128, 2), noErr);
  EXPECT_EQ(std::string(text + 1, text + 1 + text[0]), "two\r");
  for (const i16 index : {i16{0}, i16{3}, i16{-1}, i16{INT16_MAX}}) {
    EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), text, 128, index), resNotFound) << index;
    EXPECT_EQ(text[0], 0);
  }
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), text, 127, 1), resNotFound);
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(9), text, 128, 1), -3000);
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), nullptr, 128, 1), paramErr);
}

TEST_F(ResourceTest, ADamagedStringListGivesNoString) {
  u8 text[256];
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), text, 129, 1), noErr);
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), text, 129, 2), resNotFound);
  EXPECT_EQ(text[0], 0);
  EXPECT_EQ(Host->GetComponentIndString(AsComponent(1), text, 130, 1), resNotFound);
}

TEST_F(ResourceTest, OpeningAFileMakesItCurrent) {
  EXPECT_EQ(Host->CurResFile(), 0);
  const i16 first = Host->OpenComponentResFile(AsComponent(1));
  EXPECT_GT(first, 0);
  EXPECT_EQ(Host->ResError(), noErr);
  const i16 second = Host->OpenComponentResFile(AsComponent(1));
  EXPECT_NE(second, first);
  EXPECT_EQ(Host->CurResFile(), second);
  Host->UseResFile(0);
  EXPECT_EQ(Host->CurResFile(), 0);
  Host->UseResFile(second);
  EXPECT_EQ(CountsInUse().resourceFiles, 2);
  EXPECT_EQ(Host->CloseComponentResFile(second), noErr);
  EXPECT_EQ(Host->CurResFile(), first);
  Host->CloseResFile(first);
  EXPECT_EQ(Host->ResError(), noErr);
  EXPECT_EQ(Host->CurResFile(), 0);
}

TEST_F(ResourceTest, AFileThatIsNotOpenIsTold) {
  EXPECT_EQ(Host->OpenComponentResFile(AsComponent(4)), 0);
  EXPECT_EQ(Host->ResError(), -193);
  const i16 file = Host->OpenComponentResFile(AsComponent(1));
  Host->UseResFile(99);
  EXPECT_EQ(Host->ResError(), -193);
  EXPECT_EQ(Host->CurResFile(), file);
  Host->CloseResFile(99);
  EXPECT_EQ(Host->ResError(), -193);
  EXPECT_EQ(Host->CloseComponentResFile(file), noErr);
  EXPECT_EQ(Host->CloseComponentResFile(file), -193);
}

// Starts with a fork and says whether that was refused, with `Host` left unset.
bool IsRefused(const Blob& fork) {
  try {
    StartEmbeddedHost({.resourceFork = BytesOf(fork), .entries = kEntries});
  } catch (const Problem& problem) {
    EXPECT_FALSE(problem.what.empty());
    EXPECT_FALSE(problem.where.empty());
    EXPECT_EQ(Host, nullptr);
    EXPECT_TRUE(FindComponents(0, 0, 0).empty());
    return true;
  }
  return false;
}

using DamagedForkTest = EmbeddedHostTest;

TEST_F(DamagedForkTest, EveryCutForkIsRefused) {
  const Blob whole = HandFork(SampleResources());
  // Without its last bytes the map ends early; the list of names behind it is empty.
  for (std::size_t size = 1; size < whole.size(); ++size) {
    // A span of exactly these bytes, so that a read behind them is seen.
    EXPECT_TRUE(IsRefused(whole.substr(0, size))) << size;
    StopEmbeddedHost();
  }
  EXPECT_FALSE(IsRefused(whole));
}

TEST_F(DamagedForkTest, NoByteOfTheForkLeadsOutOfIt) {
  const Blob whole = HandFork(SampleResources());
  for (std::size_t position = 0; position < whole.size(); ++position) {
    if (position == 16) position = 256;  // no meaning in between
    for (const char value : {'\x00', '\x7F', '\xFF'}) {
      Blob damaged = whole;
      damaged[position] = value;
      const std::vector<u8> bytes(damaged.begin(), damaged.end());
      try {
        StartEmbeddedHost({.resourceFork = bytes, .entries = kEntries});
      } catch (const Problem&) {
        EXPECT_EQ(Host, nullptr);
      }
      StopEmbeddedHost();
    }
  }
}

TEST_F(DamagedForkTest, AComponentThatCannotBeUnderstoodIsRefused) {
  std::vector<HandResource> shortThing = HandComponent(1, "imdcVrl3TmRk", "Qd5");
  shortThing[0].bytes.resize(60);
  EXPECT_TRUE(IsRefused(HandFork(shortThing)));
  std::vector<HandResource> noEntry = HandComponent(1, "imdcVrl3TmRk", "Qd5");
  noEntry.pop_back();
  EXPECT_TRUE(IsRefused(HandFork(noEntry)));
  std::vector<HandResource> endless = HandComponent(1, "imdcVrl3TmRk", "Qd5");
  endless[1].bytes = "Qd5";
  EXPECT_TRUE(IsRefused(HandFork(endless)));
  std::vector<HandResource> oldForm = HandComponent(1, "imdcVrl3TmRk", "Qd5");
  oldForm[0].bytes.resize(44);
  EXPECT_TRUE(IsRefused(HandFork(oldForm)));
}

TEST_F(DamagedForkTest, WithoutAForkThereAreNoComponents) {
  Start({});
  EXPECT_TRUE(FindComponents(0, 0, 0).empty());
}

}  // namespace
}  // namespace vorel::component::embedded
