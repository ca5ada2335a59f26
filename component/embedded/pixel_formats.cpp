// The register of pixel formats. The host knows the classic depths and the formats that are part of its image
// compression; 'v210', 'v216', 'v410' and 'yuv2' are to it types of codecs only, until a component registers
// them.
#include "component/embedded/pixel_formats.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "base/bytes.h"
#include "component/embedded/operations.h"
#include "component/host_errors.h"

namespace vorel::component::embedded {

namespace {

constexpr u32 kIndexed = 0x10;
constexpr u32 kQuickDraw = 0x20;
constexpr u32 kGrey = 0x40;
constexpr u32 kAlpha = 0x80;
constexpr Fixed kVideoGamma = 0x00023333;  // 2.2

struct KnownFormat {
  OSType code;
  u32 flags;
  i16 bits;
  Fixed gamma;
  i16 components;
  i16 componentBits;
};

constexpr KnownFormat kKnownFormats[] = {
    {1, kIndexed | kQuickDraw, 1, 0, 1, 1},
    {2, kIndexed | kQuickDraw, 2, 0, 1, 2},
    {4, kIndexed | kQuickDraw, 4, 0, 1, 4},
    {8, kIndexed | kQuickDraw, 8, 0, 1, 8},
    {16, kQuickDraw, 16, 0, 3, 5},
    {24, 0, 24, 0, 3, 8},
    {32, kQuickDraw | kAlpha, 32, 0, 4, 8},
    {33, kIndexed | kGrey, 1, 0, 1, 1},
    {34, kIndexed | kGrey, 2, 0, 1, 2},
    {36, kIndexed | kGrey, 4, 0, 1, 4},
    {40, kIndexed | kGrey, 8, 0, 1, 8},
    {FourCharacterCode("24BG"), 0, 24, 0, 3, 8},
    {FourCharacterCode("ABGR"), kAlpha, 32, 0, 4, 8},
    {FourCharacterCode("RGBA"), kAlpha, 32, 0, 4, 8},
    {FourCharacterCode("BGRA"), kAlpha, 32, 0, 4, 8},
    {FourCharacterCode("L555"), 0, 16, 0, 3, 5},
    {FourCharacterCode("L565"), 0, 16, 0, 3, 5},
    {FourCharacterCode("b64a"), kAlpha, 64, 0, 4, 16},
    {FourCharacterCode("b48r"), 0, 48, 0, 3, 16},
    {FourCharacterCode("2vuy"), 0, 16, kVideoGamma, 3, 8},
    {FourCharacterCode("yuvs"), 0, 16, kVideoGamma, 3, 8},
    {FourCharacterCode("yuvu"), 0, 16, kVideoGamma, 3, 8},
    {FourCharacterCode("v308"), 0, 24, kVideoGamma, 3, 8},
    {FourCharacterCode("v408"), kAlpha, 32, kVideoGamma, 4, 8},
    {FourCharacterCode("r408"), kAlpha, 32, kVideoGamma, 4, 8},
};

// Formats whose pixels lie in groups, or in more bits than are told; all others lie one behind the other in the
// bits that are registered.
struct PixelGroup {
  OSType code;
  i32 pixels;
  i32 bytes;
};

constexpr PixelGroup kGroups[] = {
    {FourCharacterCode("2vuy"), 2, 4},  {FourCharacterCode("2Vuy"), 2, 4}, {FourCharacterCode("2VUY"), 2, 4},
    {FourCharacterCode("yuvs"), 2, 4},  {FourCharacterCode("yuvu"), 2, 4}, {FourCharacterCode("yuv2"), 2, 4},
    {FourCharacterCode("v216"), 2, 8},  {FourCharacterCode("Y216"), 2, 8}, {FourCharacterCode("v210"), 6, 16},
    {FourCharacterCode("V210"), 6, 16},
};
constexpr i32 kThirtyBits = 30;  // three components of 10 bits, in 32

// A component says by the version of QuickTime how much of a record it fills; what it leaves out is 0.
constexpr i32 kShortestInfo = offsetof(ICMPixelFormatInfo, defaultGammaLevel);
constexpr i32 kInfoBytes = sizeof(ICMPixelFormatInfo);

struct RegisteredFormat {
  OSType code;
  ICMPixelFormatInfo info;
};

std::mutex mutex;
std::vector<RegisteredFormat> registered;

const KnownFormat* FindKnown(OSType code) {
  const KnownFormat* found = std::find_if(std::begin(kKnownFormats), std::end(kKnownFormats),
                                          [code](const KnownFormat& format) { return format.code == code; });
  return found == std::end(kKnownFormats) ? nullptr : found;
}

ICMPixelFormatInfo InfoOf(const KnownFormat& format) {
  ICMPixelFormatInfo info = {};
  info.size = kInfoBytes;
  info.formatFlags = format.flags;
  info.bitsPerPixel[0] = format.bits;
  info.defaultGammaLevel = format.gamma;
  info.horizontalSubsampling[0] = 1;
  info.verticalSubsampling[0] = 1;
  info.cmpCount = format.components;
  info.cmpSize = format.componentBits;
  return info;
}

std::optional<ICMPixelFormatInfo> FindInfo(OSType code) {
  if (const KnownFormat* known = FindKnown(code)) return InfoOf(*known);
  const std::scoped_lock lock(mutex);
  for (const RegisteredFormat& format : registered)
    if (format.code == code) return format.info;
  return std::nullopt;
}

}  // namespace

OSErr ICMGetPixelFormatInfo(OSType pixelFormat, ICMPixelFormatInfo* info) {
  const std::optional<ICMPixelFormatInfo> found = FindInfo(pixelFormat);
  if (!found || info == nullptr) return paramErr;
  const i32 room = std::clamp(info->size, 0, kInfoBytes);
  if (room < kShortestInfo) return noErr;  // known, and nothing more is asked
  std::memcpy(info, &*found, static_cast<std::size_t>(room));
  info->size = std::min(room, found->size);
  return noErr;
}

i16 QTGetPixelSize(OSType pixelFormat) {
  const std::optional<ICMPixelFormatInfo> found = FindInfo(pixelFormat);
  return found ? found->bitsPerPixel[0] : i16{0};
}

OSErr ICMSetPixelFormatInfo(OSType pixelFormat, ICMPixelFormatInfo* info) {
  if (info == nullptr || info->size < kShortestInfo || FindKnown(pixelFormat) != nullptr) return paramErr;
  RegisteredFormat format = {pixelFormat, {}};
  const i32 valid = std::min(info->size, kInfoBytes);
  std::memcpy(&format.info, info, static_cast<std::size_t>(valid));
  format.info.size = valid;
  const std::scoped_lock lock(mutex);
  for (RegisteredFormat& before : registered) {
    if (before.code != pixelFormat) continue;
    before = format;
    return noErr;
  }
  registered.push_back(format);
  return noErr;
}

std::vector<OSType> RegisteredPixelFormats() {
  const std::scoped_lock lock(mutex);
  std::vector<OSType> codes;
  codes.reserve(registered.size());
  for (const RegisteredFormat& format : registered) codes.push_back(format.code);
  return codes;
}

std::optional<i64> BytesToPixel(OSType pixelFormat, i32 pixel) {
  if (pixel == 0) return 0;
  for (const PixelGroup& group : kGroups) {
    if (group.code != pixelFormat) continue;
    if (pixel % group.pixels != 0) return std::nullopt;
    return i64{pixel} / group.pixels * group.bytes;
  }
  const i32 told = QTGetPixelSize(pixelFormat);
  const i64 bits = i64{pixel} * (told == kThirtyBits ? 32 : told);
  if (told <= 0 || bits % 8 != 0) return std::nullopt;
  return bits / 8;
}

void ForgetPixelFormats() {
  const std::scoped_lock lock(mutex);
  registered.clear();
}

}  // namespace vorel::component::embedded
