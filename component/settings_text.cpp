// The settings as people read them, from the component's strings.
#include <array>
#include <cstring>

#include "base/bytes.h"
#include "component/host_errors.h"
#include "component/settings.h"

namespace vorel::component {

namespace {

constexpr i16 kLines = 5;
constexpr i16 kLinesOfWideRange = 2;  // whose list has no more strings

// What is kept is known from the last picture, and if there was none here from any compressor's.
u32 AlphaMode(const Compressor& instance) {
  if (instance.alphaMode != 0) return instance.alphaMode;
  i32 value = 0;
  return Host->Gestalt(FourCharacterCode("Alfa"), &value) == noErr ? static_cast<u32>(value) : 0;
}

// By video standard; any other is told as the first.
i16 StandardLine(u32 standard) {
  constexpr std::array<i16, 5> kStrings = {11, 13, 14, 12, 15};
  return kStrings[standard < kStrings.size() ? standard : 0];
}

// Indices into the list of strings, from 1.
std::array<i16, kLines> LinesOf(const Compressor& instance) {
  const Settings& settings = instance.settings;
  const bool isScanSaid = settings.scan == kScanProgressive || settings.scan == kScanInterlaced;
  const i16 scan = isScanSaid ? static_cast<i16>(settings.scan + 1) : i16{1};
  const i16 name = static_cast<i16>(scan + (AlphaMode(instance) == kAlphaKept ? 3 : 0));
  const i16 mode = settings.mode == kModeOneWay ? 7 : 8;
  const i16 conversion = settings.conversion == kConversionPerfect ? 9 : 10;
  const i16 range = settings.rgbRange == 1 ? 16 : settings.rgbRange == 2 ? 17 : 18;
  return {name, mode, conversion, StandardLine(settings.videoStandard), range};
}

OSErr AppendLine(const Compressor& instance, i16 index, Handle text) {
  u8 line[256] = {};
  const OSErr error = Host->GetComponentIndString(instance.self, line, SettingsTextId(*instance.row), index);
  if (error != noErr) return error;
  const i32 size = Host->GetHandleSize(text);
  Host->SetHandleSize(text, size + line[0]);
  if (const OSErr full = Host->MemError(); full != noErr) return full;
  std::memcpy(*text + size, line + 1, line[0]);
  return noErr;
}

}  // namespace

ComponentResult GetSettingsAsText(Compressor* instance, Handle* text) {
  if (instance == nullptr || text == nullptr) return paramErr;
  const Handle lines = Host->NewHandleClear(0);
  if (lines == nullptr) return memFullErr;
  const std::array<i16, kLines> indices = LinesOf(*instance);
  const i16 count = instance->row->family == VOREL_YCBCR_8BW_422 ? kLinesOfWideRange : kLines;
  for (i16 i = 0; i < count; ++i) {
    const OSErr error = AppendLine(*instance, indices[static_cast<std::size_t>(i)], lines);
    if (error == noErr) continue;
    Host->DisposeHandle(lines);
    return error;
  }
  *text = lines;
  return noErr;
}

}  // namespace vorel::component
