#include "component/startup.h"

#include <array>
#include <string_view>

#include "base/bytes.h"
#include "component/host_errors.h"

namespace vorel::component {

namespace {

struct RegisteredFormat {
  OSType code;
  i16 bitsPerPixel;
  bool hasAlpha;
  Fixed gamma;
  i16 components;
  i16 componentBits;
};

constexpr Fixed kVideoGamma = 0x00023333;  // 2.2

// 4:2:2 formats count as not subsampled, and the two with words of 16 bits as 32 bits a pixel: so the host has
// to be told.
constexpr RegisteredFormat kRegistered[] = {
    {FourCharacterCode("L64A"), 64, true, 0, 4, 16},
    {FourCharacterCode("F10k"), 30, false, 0, 3, 10},
    {FourCharacterCode("R10k"), 30, false, 0, 3, 10},
    {FourCharacterCode("S10k"), 30, false, 0, 3, 10},
    {FourCharacterCode("F210"), 30, false, 0, 3, 10},
    {FourCharacterCode("r210"), 30, false, 0, 3, 10},
    {FourCharacterCode("S210"), 30, false, 0, 3, 10},
    {FourCharacterCode("VRGB"), 32, true, 0, 4, 8},
    {FourCharacterCode("V416"), 64, true, kVideoGamma, 4, 16},
    {FourCharacterCode("v410"), 30, false, kVideoGamma, 3, 10},
    {FourCharacterCode("VUYA"), 32, true, kVideoGamma, 4, 8},
    {FourCharacterCode("v210"), 20, false, kVideoGamma, 3, 10},
    {FourCharacterCode("v216"), 32, false, kVideoGamma, 3, 16},
    {FourCharacterCode("Y216"), 32, false, kVideoGamma, 3, 16},
    {FourCharacterCode("2Vuy"), 16, false, kVideoGamma, 3, 8},
};

constexpr u32 kAlphaFlag = 0x80;

void Register(const RegisteredFormat& format, u32 quickTimeVersion) {
  ICMPixelFormatInfo known = {};
  known.size = sizeof known;
  if (Host->ICMGetPixelFormatInfo(format.code, &known) == noErr) return;
  ICMPixelFormatInfo info = {};
  info.size = sizeof info;
  info.formatFlags = format.hasAlpha ? kAlphaFlag : 0;
  info.bitsPerPixel[0] = format.bitsPerPixel;
  if (quickTimeVersion >= kQuickTime6) {
    info.horizontalSubsampling[0] = 1;
    info.verticalSubsampling[0] = 1;
  }
  info.defaultGammaLevel = format.gamma;
  if (quickTimeVersion >= kQuickTime65) {
    info.cmpCount = format.components;
    info.cmpSize = format.componentBits;
  }
  Host->ICMSetPixelFormatInfo(format.code, &info);  // a host that refuses it shows so later
}

struct SubtypeDepth {
  OSType subtype;
  u32 depth;
};

constexpr SubtypeDepth kDepths[] = {
    {FourCharacterCode("Vrl5"), 30}, {FourCharacterCode("Vrl7"), 30}, {FourCharacterCode("Vrl1"), 24},
    {FourCharacterCode("Vrl6"), 20}, {FourCharacterCode("Vrl3"), 16}, {FourCharacterCode("Vrl4"), 16},
};
constexpr u32 kOtherDepth = 24;

u32 DepthOf(OSType subtype) {
  for (const SubtypeDepth& row : kDepths) {
    if (row.subtype == subtype) return row.depth;
  }
  return kOtherDepth;
}

constexpr u32 kUnknownSpeed = 1000;  // MHz

}  // namespace

// Only the end of the path counts, so a longer name that ends so is taken, too.
bool HostIsAfterEffects() {
  constexpr u32 kMostPath = 4096;
  constexpr std::string_view kName = "AfterFX.exe";
  std::array<char, kMostPath> path = {};
  const u32 length = Host->ExecutablePath(path.data(), kMostPath);
  return length <= kMostPath && std::string_view(path.data(), length).ends_with(kName);
}

bool HostIsOldAfterEffects() {
  constexpr u32 kFirstNew = 8;
  u32 product = 0;
  u32 file = 0;
  return HostIsAfterEffects() && Host->ExecutableVersions(&product, &file) != 0 &&
         (product < kFirstNew || file < kFirstNew);
}

OSErr ProbeHost(HostFacts& facts) {
  facts.hostIsOldAfterEffects = HostIsOldAfterEffects();
  facts.hostIsAfterEffects = HostIsAfterEffects();
  i32 version = 0;
  if (Host->Gestalt(FourCharacterCode("qtim"), &version) != noErr) return qtmlDllLoadErr;
  facts.quickTimeVersion = static_cast<u32>(version);
  return noErr;
}

void RegisterPixelFormats(u32 quickTimeVersion) {
  for (const RegisteredFormat& format : kRegistered) Register(format, quickTimeVersion);
}

void RegisterPixelFormat(OSType pixelFormat, u32 quickTimeVersion) {
  for (const RegisteredFormat& format : kRegistered) {
    if (format.code == pixelFormat) Register(format, quickTimeVersion);
  }
}

u32 CompressionTime(OSType subtype, i32 width, i32 height) {
  const u32 speed = Host->ProcessorMegahertz();
  const u32 bits = DepthOf(subtype) * static_cast<u32>(width) * static_cast<u32>(height);
  // A division by 3375: the factor is 2^37 / 3375, up to the next integer.
  const u64 units = u64{(bits + 2) >> 8} * 40722653 >> 37;
  return static_cast<u32>(units) * 1000 / (speed == 0 ? kUnknownSpeed : speed);
}

}  // namespace vorel::component
