// The icon of the components, drawn by letters: in colours of the standard palette for the host's lists, and
// in black and white for the settings dialogs.
#include "base/bytes.h"
#include "component/component_table.h"
#include "component/resources/resource_bytes.h"
#include "component/resources/resource_tables.h"

namespace vorel::component {
namespace {

constexpr int kSide = 32;

constexpr const char* kDrawing[] = {
    "................................", "................................",
    "...##########################...", "..##------------------------##..",
    "..#--------------------------#..", "..#-##--------------------##-#..",
    "..#-##--------------------##-#..", "..#-----RRR----------BBB-----#..",
    "..#-----RRR----------BBB-----#..", "..#-##---RRR--------BBB---##-#..",
    "..#-##---RRR--------BBB---##-#..", "..#------RRR--------BBB------#..",
    "..#-------RRR------BBB-------#..", "..#-##----RRR------BBB----##-#..",
    "..#-##----RRR------BBB----##-#..", "..#--------RRR----BBB--------#..",
    "..#--------RRR----BBB--------#..", "..#-##------RRR--BBB------##-#..",
    "..#-##------RRR--BBB------##-#..", "..#---------RRR--BBB---------#..",
    "..#----------RRRBBB----------#..", "..#-##-------RRRBBB-------##-#..",
    "..#-##-------RGGGGB-------##-#..", "..#-----------GGGG-----------#..",
    "..#-----------GGGG-----------#..", "..#-##--------GGGG--------##-#..",
    "..#-##--------------------##-#..", "..#--------------------------#..",
    "..##------------------------##..", "...##########################...",
    "................................", "................................",
};
static_assert(std::size(kDrawing) == kSide);

// The palette is a cube of six steps a colour from white at 0 on, red slowest, then ramps, and black at 255.
struct Ink {
  char letter;
  u8 colour;
  bool isBlack;  // in the drawing of one bit
};

constexpr Ink kInks[] = {
    {'.', 0, false},    // white
    {'-', 245, false},  // light grey
    {'#', 255, true},   // black
    {'R', 35, true},    // red: (5, 0, 0) counted from the dark end
    {'G', 185, true},   // green
    {'B', 210, true},   // blue
};

const Ink& InkOf(char letter) {
  for (const Ink& ink : kInks) {
    if (ink.letter == letter) return ink;
  }
  throw Problem{std::string("the icon has an unknown letter ") + letter, "icon", ""};
}

Bytes ColourIcon() {
  Bytes bytes;
  for (const char* row : kDrawing) {
    for (int x = 0; x < kSide; ++x) Put8(bytes, InkOf(row[x]).colour);
  }
  return bytes;
}

Bytes BlackIcon() {
  Bytes bytes;
  for (const char* row : kDrawing) {
    u32 bits = 0;
    for (int x = 0; x < kSide; ++x) bits = bits << 1 | (InkOf(row[x]).isBlack ? 1u : 0u);
    Put32(bytes, bits);
  }
  return bytes;
}

}  // namespace

void AppendPictureResources(std::vector<Resource>& resources) {
  resources.push_back({.type = FourCharacterCode("icl8"), .id = kIconId, .bytes = ColourIcon()});
  resources.push_back({.type = FourCharacterCode("ICON"), .id = kIconId, .bytes = BlackIcon()});
}

}  // namespace vorel::component
