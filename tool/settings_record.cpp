#include "tool/settings_record.h"

#include "base/bytes.h"
#include "base/problem.h"
#include "container/input_file.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using component::Settings;

struct NamedValue {
  const char* key;
  const char* name;
  u32 Settings::*setting;
  u32 value;
};

constexpr NamedValue kNamedValues[] = {
    {"mode", "one-way", &Settings::mode, component::kModeOneWay},
    {"mode", "self-check", &Settings::mode, component::kModeSelfCheck},
    {"scan", "auto", &Settings::scan, component::kScanAutomatic},
    {"scan", "progressive", &Settings::scan, component::kScanProgressive},
    {"scan", "interlaced", &Settings::scan, component::kScanInterlaced},
    {"conversion", "perfect", &Settings::conversion, component::kConversionPerfect},
    {"conversion", "best", &Settings::conversion, component::kConversionBest},
    {"standard", "ntsc", &Settings::videoStandard, component::kVideoNtsc},
    {"standard", "pal", &Settings::videoStandard, component::kVideoPal},
    {"standard", "hd", &Settings::videoStandard, component::kVideoHd},
    {"standard", "hd1035", &Settings::videoStandard, component::kVideoHd1035},
    {"standard", "unknown", &Settings::videoStandard, component::kVideoUnknown},
    {"range", "auto", &Settings::rgbRange, VOREL_RGB_RANGE_AUTOMATIC},
    {"range", "full", &Settings::rgbRange, VOREL_RGB_RANGE_FULL},
    {"range", "video", &Settings::rgbRange, VOREL_RGB_RANGE_VIDEO},
};

}  // namespace

std::vector<u8> ReadSettingsRecord(const std::string& path) {
  constexpr u64 kMostBytes = 1 << 16;
  const auto file = container::OpenInputFile(path);
  const u64 size = file->bytes;
  const char* const advice = "make one with vorel settings -o";
  if (size == 0 || size > kMostBytes || size % component::kPairBytes != 0)
    throw Problem{"not a settings record: " + std::to_string(size) + " bytes are not a list of pairs", path,
                  advice};
  std::vector<u8> record(size);
  container::ReadAt(*file, 0, record.data(), record.size());
  if (!component::IsSettingsRecord(record.data(), static_cast<i32>(size / component::kPairBytes)))
    throw Problem{"not a settings record: its first key is not 'Vrl0'", path, advice};
  return record;
}

void SetByText(Settings& settings, const std::string& text) {
  for (const NamedValue& row : kNamedValues) {
    if (text != std::string(row.key) + "=" + row.name) continue;
    settings.*row.setting = row.value;
    return;
  }
  throw UsageError{"\"" + text + "\" is not one of " + SettingTexts()};
}

std::string SettingTexts() {
  std::string texts;
  const char* key = "";
  for (const NamedValue& row : kNamedValues) {
    const bool isSameKey = std::string(key) == row.key;
    texts += isSameKey ? std::string("|") + row.name
                       : (texts.empty() ? "" : ", ") + std::string(row.key) + "=" + row.name;
    key = row.key;
  }
  return texts;
}

Settings SettingsOfRecord(const std::vector<u8>& record) {
  Settings settings = {};
  settings.conversion = component::kConversionBest;
  const i32 count = static_cast<i32>(record.size() / component::kPairBytes);
  for (const component::SettingKey& row : component::kSettingKeys) {
    if (const auto value = component::FindSetting(record.data(), count, row.key))
      settings.*row.value = *value;
  }
  return settings;
}

std::vector<u8> RecordOfSettings(const Settings& settings) {
  std::vector<u8> record(component::kRecordBytes);
  component::WriteRecord(settings, record.data());
  return record;
}

void ApplyRecord(EncodeOptions& options) {
  if (options.settings.empty()) return;
  const Settings settings = SettingsOfRecord(ReadSettingsRecord(options.settings));
  options.selfCheck = options.selfCheck || settings.mode != component::kModeOneWay;
  if (!options.source.scan && settings.scan == component::kScanProgressive)
    options.source.scan = picture_io::ScanOrder::progressive;
  if (!options.source.scan && settings.scan == component::kScanInterlaced)
    options.source.scan = picture_io::ScanOrder::interlaced;
  if (settings.conversion == component::kConversionPerfect) options.conversion = Conversion::perfect;
  if (!options.colourStandard) options.colourStandard = settings.videoStandard;
  // 32 is the one pixel format of raw pictures that a range gives another meaning.
  if (options.source.pixelFormat) {
    options.source.pixelFormat =
        VorelNormalizePixelFormat(32, *options.source.pixelFormat, 0, 0, 0, settings.rgbRange);
  }
}

}  // namespace vorel::tool
