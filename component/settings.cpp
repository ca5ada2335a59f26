#include "component/settings.h"

#include <cstring>

#include "base/bytes.h"
#include "component/host_errors.h"

namespace vorel::component {

namespace {

const u8* PairAt(const u8* pairs, i32 index) {
  return pairs + static_cast<std::ptrdiff_t>(index) * kPairBytes;
}

// The last pair with a key, -1 for none. A pair of the other byte order is told by its key.
i32 FindPair(const u8* pairs, i32 count, OSType key, bool& isSwapped) {
  for (const bool swapped : {false, true}) {
    const u32 wanted = swapped ? SwapBytes(key) : key;
    for (i32 i = count - 1; i >= 0; --i) {
      if (LoadNative<u32>(PairAt(pairs, i)) != wanted) continue;
      isSwapped = swapped;
      return i;
    }
  }
  return -1;
}

}  // namespace

void WriteRecord(const Settings& settings, u8* pairs) {
  for (const SettingKey& row : kSettingKeys) {
    StoreNative(pairs, row.key);
    StoreNative(pairs + 4, settings.*row.value);
    pairs += kPairBytes;
  }
}

bool IsSettingsRecord(const u8* pairs, i32 count) {
  if (count <= 0) return false;
  const u32 key = LoadNative<u32>(pairs);
  return key == kSettingKeys[0].key || key == SwapBytes(kSettingKeys[0].key);
}

std::optional<u32> FindSetting(const u8* pairs, i32 count, OSType key) {
  bool isSwapped = false;
  const i32 pair = FindPair(pairs, count, key, isSwapped);
  if (pair < 0) return std::nullopt;
  const u32 value = LoadNative<u32>(PairAt(pairs, pair) + 4);
  return isSwapped ? SwapBytes(value) : value;
}

void ReplaceSetting(u8* pairs, i32 count, OSType key, u32 value) {
  bool isSwapped = false;
  const i32 pair = FindPair(pairs, count, key, isSwapped);
  if (pair < 0) return;
  StoreNative(pairs + static_cast<std::ptrdiff_t>(pair) * kPairBytes + 4,
              isSwapped ? SwapBytes(value) : value);
}

ComponentResult GetSettings(Compressor* instance, Handle settings) {
  if (instance == nullptr || settings == nullptr) return paramErr;
  Host->SetHandleSize(settings, kRecordBytes);
  if (const OSErr error = Host->MemError(); error != noErr) return error;
  WriteRecord(instance->settings, *settings);
  return noErr;
}

ComponentResult SetSettings(Compressor* instance, Handle settings) {
  if (instance == nullptr) return paramErr;
  if (settings == nullptr) return noErr;
  const i32 size = Host->GetHandleSize(settings);
  if (size <= 0) return noErr;
  const i32 count = size / kPairBytes;
  if (size % kPairBytes != 0 || !IsSettingsRecord(*settings, count)) return paramErr;
  for (const SettingKey& row : kSettingKeys) {
    if (const std::optional<u32> value = FindSetting(*settings, count, row.key))
      instance->settings.*row.value = *value;
    Host->SetGestaltValue(row.published, static_cast<i32>(instance->settings.*row.value));
  }
  return noErr;
}

}  // namespace vorel::component
