// The settings dialogs, one for each compressor: window, items, fonts, and the group boxes, which are controls
// of their own. All have the same items, but that of 8bw, which ends behind the second group.
#include <cstring>

#include "component/component_table.h"
#include "component/resources/dialog_items.h"
#include "component/resources/resource_bytes.h"
#include "component/resources/resource_tables.h"

namespace vorel::component {
namespace {

constexpr u32 kWindow = FourCharacterCode("DLOG");
constexpr u32 kWindowExtras = FourCharacterCode("dlgx");
constexpr u32 kItems = FourCharacterCode("DITL");
constexpr u32 kFonts = FourCharacterCode("dftb");
constexpr u32 kControl = FourCharacterCode("CNTL");

struct Box {
  i16 top;
  i16 left;
  i16 bottom;
  i16 right;
};

// Kinds of items; 0x80 is added where a click means nothing.
enum ItemKind : u32 {
  kButton = 4,
  kRadio = 6,
  kGroupBox = 0x87,  // a control
  kText = 0x88,
  kIcon = 0xA0,
};

struct Item {
  ItemKind kind;
  Box box;
  const char* text;  // null for the icon
};

constexpr Item kFullItems[] = {
    {kButton, {496, 154, 516, 214}, "OK"},
    {kButton, {496, 82, 516, 142}, "Cancel"},
    {kButton, {496, 10, 516, 70}, "Revert"},
    {kIcon, {10, 10, 74, 74}, nullptr},
    {kGroupBox, {80, 10, 138, 214}, "Algorithm"},
    {kRadio, {96, 20, 114, 212}, "One-way (faster)"},
    {kRadio, {114, 20, 132, 212}, "Self-check (safer)"},
    {kGroupBox, {144, 10, 220, 214}, "Coding"},
    {kRadio, {160, 20, 178, 212}, "Progressive"},
    {kRadio, {178, 20, 196, 212}, "Interlaced"},
    {kRadio, {196, 20, 214, 212}, "Automatic"},
    {kGroupBox, {226, 10, 284, 214}, "Pixel Format Conversion"},
    {kRadio, {242, 20, 260, 212}, "Perfect"},
    {kRadio, {260, 20, 278, 212}, "Best"},
    {kGroupBox, {290, 10, 402, 214}, "Video Color Standard"},
    {kRadio, {306, 20, 324, 212}, "NTSC"},
    {kRadio, {324, 20, 342, 212}, "PAL|S\203CAM"},  // Mac Roman
    {kRadio, {342, 20, 360, 212}, "HD"},
    {kRadio, {360, 20, 378, 212}, "HD 1035"},
    {kRadio, {378, 20, 396, 212}, "unknown"},
    {kGroupBox, {408, 10, 484, 214}, "RGB Input Range"},
    {kRadio, {424, 20, 442, 212}, "Full range [0..1023]"},
    {kRadio, {442, 20, 460, 212}, "Video range [64..940]"},
    {kRadio, {460, 20, 478, 212}, "Automatic"},
    {kText, {10, 86, 26, 214}, "VorelVideo"},
    {kText, {26, 86, 38, 214}, "Version 2.6.7"},
};
static_assert(std::size(kFullItems) == kItemVersion);

constexpr Box kFullWindow = {100, 100, 626, 324};
constexpr Box kShortWindow = {100, 100, 362, 324};
constexpr i16 kShortButtonTop = 232;
constexpr i16 kButtonHeight = 20;

constexpr u32 kMovableModal = 5;          // kind of window
constexpr u32 kCentredOnScreen = 0x280A;  // place of the window
constexpr u32 kAllExtras = 0x0F;          // theme background, control hierarchy, movable, theme controls
constexpr u32 kGroupBoxControl = 160;     // kind of control

bool IsShort(const ComponentRow& compressor) {
  return compressor.family == VOREL_YCBCR_8BW_422;
}

std::vector<Item> ItemsOf(const ComponentRow& compressor) {
  std::vector<Item> items(std::begin(kFullItems), std::end(kFullItems));
  if (!IsShort(compressor)) return items;
  items.erase(items.begin() + kItemAutomaticScan, items.begin() + kItemRgbRange + 3);
  for (Item& item : items) {
    if (item.kind != kButton) continue;
    item.box.top = kShortButtonTop;
    item.box.bottom = kShortButtonTop + kButtonHeight;
  }
  return items;
}

void PutBox(Bytes& bytes, const Box& box) {
  for (const i16 side : {box.top, box.left, box.bottom, box.right}) Put16(bytes, static_cast<u16>(side));
}

Bytes Window(const ComponentRow& compressor) {
  Bytes bytes;
  PutBox(bytes, IsShort(compressor) ? kShortWindow : kFullWindow);
  Put16(bytes, kMovableModal);
  Put16(bytes, 0);  // invisible until the buttons are set
  Put16(bytes, 0);  // no close box
  Put32(bytes, 0);
  PutId(bytes, DialogId(compressor));  // of the items
  PutString(bytes, std::string(compressor.name) + " Settings");
  PadToEven(bytes);
  Put16(bytes, kCentredOnScreen);
  return bytes;
}

Bytes WindowExtras() {
  Bytes bytes;
  Put16(bytes, 0);  // version
  Put32(bytes, kAllExtras);
  return bytes;
}

void PutItem(Bytes& bytes, const Item& item, i16 groupBox) {
  PutZeros(bytes, 4);
  PutBox(bytes, item.box);
  Put8(bytes, item.kind);
  if (item.kind == kGroupBox || item.kind == kIcon) {
    Put8(bytes, 2);
    PutId(bytes, item.kind == kIcon ? kIconId : groupBox);
  } else {
    PutString(bytes, item.text);
  }
  PadToEven(bytes);
}

Bytes Items(const ComponentRow& compressor, const std::vector<Item>& items) {
  Bytes bytes;
  Put16(bytes, static_cast<u32>(items.size() - 1));
  int box = 0;
  for (const Item& item : items) {
    PutItem(bytes, item, GroupBoxId(compressor.family, box));
    if (item.kind == kGroupBox) ++box;
  }
  return bytes;
}

// Fonts of texts: the name is bold, the version small. All other items look as the theme has them.
void PutFont(Bytes& bytes, bool isName) {
  constexpr u32 kFace = 2;
  constexpr u32 kSize = 4;
  Put16(bytes, 1);
  Put16(bytes, isName ? kFace : kSize);
  Put16(bytes, 0);               // font
  Put16(bytes, isName ? 0 : 9);  // size
  Put16(bytes, isName ? 1 : 0);  // bold
  Put16(bytes, 0);               // mode
  Put16(bytes, 0);               // justification
  PutZeros(bytes, 6 + 6);        // colours of text and background
  PutString(bytes, "");          // name of a font
}

Bytes Fonts(const std::vector<Item>& items) {
  Bytes bytes;
  Put16(bytes, 0);  // version
  Put16(bytes, static_cast<u32>(items.size()));
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i].kind == kText) {
      PutFont(bytes, i + 2 == items.size());
    } else {
      Put16(bytes, 0);
    }
  }
  return bytes;
}

Bytes GroupBox(const Item& item) {
  Bytes bytes;
  PutBox(bytes, item.box);
  Put16(bytes, 0);  // value
  Put8(bytes, 1);   // visible
  Put8(bytes, 0);
  Put16(bytes, 0);  // maximum stands before minimum
  Put16(bytes, 0);
  Put16(bytes, kGroupBoxControl);
  Put32(bytes, 0);
  PutString(bytes, item.text);
  return bytes;
}

template <typename Make>
void AppendOfEach(std::vector<Resource>& resources, u32 type, Make make) {
  for (const ComponentRow& row : kComponents) {
    if (row.type != kCompressorType) continue;
    resources.push_back({.type = type, .id = DialogId(row), .bytes = make(row, ItemsOf(row))});
  }
}

}  // namespace

void AppendDialogResources(std::vector<Resource>& resources) {
  using Row = const ComponentRow&;
  using List = const std::vector<Item>&;
  AppendOfEach(resources, kWindow, [](Row row, List) { return Window(row); });
  AppendOfEach(resources, kWindowExtras, [](Row, List) { return WindowExtras(); });
  AppendOfEach(resources, kItems, [](Row row, List items) { return Items(row, items); });
  AppendOfEach(resources, kFonts, [](Row, List items) { return Fonts(items); });
  for (const ComponentRow& row : kComponents) {
    if (row.type != kCompressorType) continue;
    int box = 0;
    for (const Item& item : ItemsOf(row)) {
      if (item.kind != kGroupBox) continue;
      resources.push_back({.type = kControl, .id = GroupBoxId(row.family, box++), .bytes = GroupBox(item)});
    }
  }
}

}  // namespace vorel::component
