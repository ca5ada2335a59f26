// The settings record that a host keeps with its compression options: pairs of a key and a value, 32 bits each,
// in the byte order of the machine that wrote them.
//
//   Vrl0   mode             0 one-way, 1 self-check           the record's first key, by which it is known
//   Scan   coding           0 automatic, 1 progressive, 2 interlaced
//   Dest   conversion       0 perfect, 1 best
//   Vide   colour standard  0 NTSC, 1 HD, 2 HD 1035, 3 PAL or SECAM, 4 unknown
//   Rnge   RGB input range  0 automatic, 1 full, 2 video
#pragma once
#include <optional>

#include "component/compressor.h"

namespace vorel::component {

inline constexpr i32 kPairBytes = 8;

struct SettingKey {
  OSType key;
  OSType published;  // the process-wide value of the same setting
  u32 Settings::*value;
};

// In the order of the record.
inline constexpr SettingKey kSettingKeys[] = {
    {FourCharacterCode("Vrl0"), FourCharacterCode("Vorl"), &Settings::mode},
    {FourCharacterCode("Scan"), FourCharacterCode("Scan"), &Settings::scan},
    {FourCharacterCode("Dest"), FourCharacterCode("Dest"), &Settings::conversion},
    {FourCharacterCode("Vide"), FourCharacterCode("Vide"), &Settings::videoStandard},
    {FourCharacterCode("Rnge"), FourCharacterCode("Rnge"), &Settings::rgbRange},
};

inline constexpr i32 kRecordBytes = static_cast<i32>(std::size(kSettingKeys)) * kPairBytes;

// Writes a record of all five pairs: kRecordBytes.
void WriteRecord(const Settings& settings, u8* pairs);

// Whether a block begins with the first key, in either byte order.
bool IsSettingsRecord(const u8* pairs, i32 count);

// The value of a key's last pair, in either byte order.
std::optional<u32> FindSetting(const u8* pairs, i32 count, OSType key);

// Replaces the value in a key's last pair, in the order that the pair has; nothing if there is none.
void ReplaceSetting(u8* pairs, i32 count, OSType key, u32 value);

ComponentResult GetSettings(Compressor* instance, Handle settings);
ComponentResult SetSettings(Compressor* instance, Handle settings);
// Runs the dialog on the record. userCanceledErr leaves the record as it was.
ComponentResult RequestSettings(Compressor* instance, Handle settings, Rect* rectangle, ModalFilter filter);
// Makes a handle with the settings as lines of text, each ending in CR.
ComponentResult GetSettingsAsText(Compressor* instance, Handle* text);

}  // namespace vorel::component
