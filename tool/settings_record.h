// Settings of compressors as files hold them and as the command line says them.
#pragma once
#include <string>
#include <vector>

#include "component/compressor.h"
#include "component/settings.h"
#include "tool/options.h"

namespace vorel::tool {

// Reads a record from a file. Throws Problem if it isn't one.
std::vector<u8> ReadSettingsRecord(const std::string& path);

// Sets one value by a text such as "scan=interlaced". Throws UsageError.
void SetByText(component::Settings& settings, const std::string& text);

// "mode=one-way|self-check, ...".
std::string SettingTexts();

component::Settings SettingsOfRecord(const std::vector<u8>& record);
std::vector<u8> RecordOfSettings(const component::Settings& settings);

// Lets a record decide on what the command line leaves open.
void ApplyRecord(EncodeOptions& options);

}  // namespace vorel::tool
