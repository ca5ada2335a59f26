// One row for each standard.
#include "tool/colour_standard.h"

#include "vorel/frame_codec.h"

namespace vorel::tool {

namespace {

struct StandardRow {
  const char* name;
  u32 code;
  container::ColourParameters colour;
};

// Frame routines tell 0, 1 and 2 apart; 3 and 4 act as 0 and differ in what movies say.
constexpr StandardRow kStandards[] = {
    {"ntsc", VOREL_COLOUR_601, {6, 1, 6}},     //
    {"hd", VOREL_COLOUR_709, {1, 1, 1}},       //
    {"hd1035", VOREL_COLOUR_240M, {6, 7, 7}},  //
    {"pal", 3, {5, 1, 6}},                     //
    {"unknown", 4, {2, 2, 2}},
};

constexpr u32 kLeastRowsOfHd = 720;
constexpr u16 kMatrix709 = 1;
constexpr u16 kMatrix240M = 7;

}  // namespace

bool ReadStandard(const std::string& text, u32& standard) {
  for (const StandardRow& row : kStandards) {
    if (text != row.name) continue;
    standard = row.code;
    return true;
  }
  return false;
}

u32 StandardForHeight(u32 height) {
  return height >= kLeastRowsOfHd ? VOREL_COLOUR_709 : VOREL_COLOUR_601;
}

container::ColourParameters ColourOfStandard(u32 standard) {
  for (const StandardRow& row : kStandards) {
    if (row.code == standard) return row.colour;
  }
  return kStandards[0].colour;
}

u32 StandardOfDescription(const container::SampleDescription& description) {
  const auto colour = container::FindColour(description);
  if (colour && colour->matrix == kMatrix709) return VOREL_COLOUR_709;
  if (colour && colour->matrix == kMatrix240M) return VOREL_COLOUR_240M;
  return VOREL_COLOUR_601;
}

std::string StandardName(const container::SampleDescription& description) {
  const auto colour = container::FindColour(description);
  for (const StandardRow& row : kStandards) {
    if (colour && colour->primaries == row.colour.primaries && colour->transfer == row.colour.transfer &&
        colour->matrix == row.colour.matrix) {
      return row.name;
    }
  }
  return "";
}

}  // namespace vorel::tool
