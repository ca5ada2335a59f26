// The settings dialogs, read with a reader of their own, against items written out by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "component/component_table.h"
#include "component/resources/dialog_items.h"
#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

struct Box {
  int top;
  int left;
  int bottom;
  int right;
  bool operator==(const Box&) const = default;
};

Box BoxAt(const Bytes& bytes, std::size_t at) {
  return {Signed16(bytes, at), Signed16(bytes, at + 2), Signed16(bytes, at + 4), Signed16(bytes, at + 6)};
}

struct Item {
  Box box;
  u32 kind;
  std::string data;
};

std::vector<Item> ItemsOf(int dialog) {
  const Bytes bytes = BytesOf("DITL", dialog);
  std::vector<Item> items(Big(bytes, 0, 2) + 1);
  std::size_t at = 2;
  for (Item& item : items) {
    EXPECT_EQ(Big(bytes, at, 4), 0u);
    item = {BoxAt(bytes, at + 4), bytes.at(at + 12), StringAt(bytes, at + 13)};
    at += 14 + item.data.size();
    at += at % 2;
  }
  EXPECT_EQ(at, bytes.size());
  return items;
}

constexpr u32 kButton = 4;
constexpr u32 kRadio = 6;
constexpr u32 kControl = 0x87;
constexpr u32 kText = 0x88;
constexpr u32 kIcon = 0xA0;

struct Expected {
  int number;
  u32 kind;
  Box box;
  const char* text;  // of a group box: its title
};

const Expected kExpected[] = {
    {1, kButton, {496, 154, 516, 214}, "OK"},
    {2, kButton, {496, 82, 516, 142}, "Cancel"},
    {3, kButton, {496, 10, 516, 70}, "Revert"},
    {4, kIcon, {10, 10, 74, 74}, "\x5C\x20"},
    {5, kControl, {80, 10, 138, 214}, "Algorithm"},
    {6, kRadio, {96, 20, 114, 212}, "One-way (faster)"},
    {7, kRadio, {114, 20, 132, 212}, "Self-check (safer)"},
    {8, kControl, {144, 10, 220, 214}, "Coding"},
    {9, kRadio, {160, 20, 178, 212}, "Progressive"},
    {10, kRadio, {178, 20, 196, 212}, "Interlaced"},
    {11, kRadio, {196, 20, 214, 212}, "Automatic"},
    {12, kControl, {226, 10, 284, 214}, "Pixel Format Conversion"},
    {13, kRadio, {242, 20, 260, 212}, "Perfect"},
    {14, kRadio, {260, 20, 278, 212}, "Best"},
    {15, kControl, {290, 10, 402, 214}, "Video Color Standard"},
    {16, kRadio, {306, 20, 324, 212}, "NTSC"},
    {17, kRadio, {324, 20, 342, 212}, "PAL|S\203CAM"},
    {18, kRadio, {342, 20, 360, 212}, "HD"},
    {19, kRadio, {360, 20, 378, 212}, "HD 1035"},
    {20, kRadio, {378, 20, 396, 212}, "unknown"},
    {21, kControl, {408, 10, 484, 214}, "RGB Input Range"},
    {22, kRadio, {424, 20, 442, 212}, "Full range [0..1023]"},
    {23, kRadio, {442, 20, 460, 212}, "Video range [64..940]"},
    {24, kRadio, {460, 20, 478, 212}, "Automatic"},
    {25, kText, {10, 86, 26, 214}, "VorelVideo"},
    {26, kText, {26, 86, 38, 214}, "Version 2.6.7"},
};

const int kFullDialogs[] = {23616, 23638, 23618, 23630, 23620, 23632, 23624};
constexpr int kShortDialog = 23628;

void ExpectItem(const Item& item, const Expected& expected, const Box& box) {
  EXPECT_EQ(item.box, box) << expected.number;
  EXPECT_EQ(item.kind, expected.kind) << expected.number;
  if (expected.kind != kControl) {
    EXPECT_EQ(item.data, expected.text) << expected.number;
    return;
  }
  ASSERT_EQ(item.data.size(), 2u);
  const Bytes control = BytesOf("CNTL", Signed16({item.data.begin(), item.data.end()}, 0));
  EXPECT_EQ(BoxAt(control, 0), box);
  EXPECT_EQ(Big(control, 8, 2), 0u);       // value
  EXPECT_EQ(Big(control, 10, 2), 0x100u);  // visible
  EXPECT_EQ(Big(control, 16, 2), 160u);    // group box with text
  EXPECT_EQ(Big(control, 18, 4), 0u);
  EXPECT_EQ(StringAt(control, 22), expected.text);
  EXPECT_EQ(control.size(), 23 + std::string(expected.text).size());
}

TEST(DialogResources, FullDialogsHaveTheir26Items) {
  for (const int dialog : kFullDialogs) {
    const std::vector<Item> items = ItemsOf(dialog);
    ASSERT_EQ(items.size(), 26u);
    for (const Expected& expected : kExpected) {
      ExpectItem(items[static_cast<std::size_t>(expected.number) - 1], expected, expected.box);
    }
  }
}

TEST(DialogResources, DialogOf8bwEndsBehindTheSecondGroup) {
  const std::vector<Item> items = ItemsOf(kShortDialog);
  ASSERT_EQ(items.size(), 13u);
  for (std::size_t i = 0; i < 11; ++i) {
    Box box = kExpected[i].box;
    if (kExpected[i].kind == kButton) {
      box.top = 232;
      box.bottom = 252;
    }
    ExpectItem(items[i], kExpected[i], box);
  }
  ExpectItem(items[11], kExpected[24], kExpected[24].box);
  ExpectItem(items[12], kExpected[25], kExpected[25].box);
}

TEST(DialogResources, WindowOfTheGenericDialogByteForByte) {
  EXPECT_EQ(BytesOf("DLOG", 23616), Hex("0064 0064 0272 0144 0005 00 00 00 00 00000000 5C40"
                                        "0E 566F72656C2053657474696E6773 00 280A"));
  EXPECT_EQ(BytesOf("dlgx", 23616), Hex("0000 0000000F"));
}

TEST(DialogResources, WindowsHaveTheirTitlesAndSizes) {
  const struct {
    int id;
    const char* title;
  } windows[] = {{23616, "Vorel Settings"},
                 {23638, "Vorel RGB[A] 10bf Settings"},
                 {23618, "Vorel RGB[A] 8bf Settings"},
                 {23630, "Vorel Y'CbCr[A] 10bv 4:4:4[:4] Settings"},
                 {23620, "Vorel Y'CbCr[A] 8bv 4:4:4[:4] Settings"},
                 {23632, "Vorel Y'CbCr[A] 10bv 4:2:2[:4] Settings"},
                 {23624, "Vorel Y'CbCr[A] 8bv 4:2:2[:4] Settings"},
                 {23628, "Vorel Y'CbCr 8bw 4:2:2 Settings"}};
  EXPECT_EQ(IdsOf("DLOG").size(), std::size(windows));
  for (const auto& window : windows) {
    const Bytes bytes = BytesOf("DLOG", window.id);
    const Box expected = window.id == kShortDialog ? Box{100, 100, 362, 324} : Box{100, 100, 626, 324};
    EXPECT_EQ(BoxAt(bytes, 0), expected);
    EXPECT_EQ(Signed16(bytes, 18), window.id);  // its items
    EXPECT_EQ(StringAt(bytes, 20), window.title);
    EXPECT_EQ(bytes.size() % 2, 0u);
    EXPECT_NE(Big(BytesOf("dlgx", window.id), 2, 4) & 2, 0u);  // items are controls
  }
}

TEST(DialogResources, ItemsLieInsideTheirWindowAndRadiosInsideTheirGroup) {
  for (const int dialog : IdsOf("DLOG")) {
    const Box window = BoxAt(BytesOf("DLOG", dialog), 0);
    Box group = {};
    for (const Item& item : ItemsOf(dialog)) {
      EXPECT_GE(item.box.top, 0);
      EXPECT_GE(item.box.left, 0);
      EXPECT_LT(item.box.top, item.box.bottom);
      EXPECT_LT(item.box.left, item.box.right);
      EXPECT_LE(item.box.bottom, window.bottom - window.top);
      EXPECT_LE(item.box.right, window.right - window.left);
      if (item.kind == kControl) group = item.box;
      if (item.kind != kRadio) continue;
      EXPECT_TRUE(item.box.top > group.top && item.box.bottom < group.bottom);
      EXPECT_TRUE(item.box.left > group.left && item.box.right < group.right);
    }
  }
}

TEST(DialogResources, EveryGroupBoxBelongsToOneItem) {
  std::vector<int> used;
  for (const int dialog : IdsOf("DITL")) {
    for (const Item& item : ItemsOf(dialog)) {
      if (item.kind == kControl) used.push_back(Signed16({item.data.begin(), item.data.end()}, 0));
    }
  }
  std::vector<int> ids = IdsOf("CNTL");
  EXPECT_EQ(used.size(), 7u * 5 + 2);
  std::sort(used.begin(), used.end());
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(used, ids);
}

TEST(DialogResources, FontsAreToldForEveryItem) {
  for (const int dialog : IdsOf("dftb")) {
    const Bytes bytes = BytesOf("dftb", dialog);
    const std::vector<Item> items = ItemsOf(dialog);
    EXPECT_EQ(Big(bytes, 0, 2), 0u);
    ASSERT_EQ(Big(bytes, 2, 2), items.size());
    std::size_t at = 4;
    for (const Item& item : items) {
      const u32 isTold = Big(bytes, at, 2);
      EXPECT_EQ(isTold, item.kind == kText ? 1u : 0u);
      at += 2;
      if (isTold == 0) continue;
      EXPECT_EQ(Big(bytes, at, 2) & ~0x27Fu, 0u);
      at += 6 * 2 + 6 + 6;
      at += 1u + bytes.at(at);
    }
    EXPECT_EQ(at, bytes.size());
  }
}

TEST(DialogResources, NumbersOfItemsNameTheItems) {
  const struct {
    int number;
    const char* text;
  } rows[] = {{kItemOk, "OK"},
              {kItemRevert, "Revert"},
              {kItemOneWay, "One-way (faster)"},
              {kItemSelfCheck, "Self-check (safer)"},
              {kItemProgressive, "Progressive"},
              {kItemInterlaced, "Interlaced"},
              {kItemAutomaticScan, "Automatic"},
              {kItemPerfect, "Perfect"},
              {kItemBest, "Best"},
              {kItemNtsc, "NTSC"},
              {kItemHd, "HD"},
              {kItemHd1035, "HD 1035"},
              {kItemUnknownStandard, "unknown"},
              {kItemFullRange, "Full range [0..1023]"},
              {kItemVideoRange, "Video range [64..940]"},
              {kItemAutomaticRange, "Automatic"},
              {kItemVersion, "Version 2.6.7"}};
  const std::vector<Item> items = ItemsOf(23616);
  for (const auto& row : rows) EXPECT_EQ(items[static_cast<std::size_t>(row.number) - 1].data, row.text);
}

}  // namespace
}  // namespace vorel::component
