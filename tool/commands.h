// The commands of the tool. Each handles its inputs one after the other, reports what goes wrong with one and
// goes on with the next, and returns whether all went well. UsageError passes through.
#pragma once
#include <new>

#include "tool/console.h"
#include "tool/options.h"

namespace vorel::tool {

bool RunEncode(const EncodeOptions& options, Console& console);
bool RunDecode(const DecodeOptions& options, Console& console);
bool RunVerify(const VerifyOptions& options, Console& console);
bool RunTranscode(const TranscodeOptions& options, Console& console);
bool RunSettings(const SettingsOptions& options, Console& console);
bool RunInfo(const InfoOptions& options, Console& console);
bool RunFormats(const FormatsOptions& options, Console& console);

// Calls handle(index) for every input; false if one returned false or ended in a Problem.
template <typename Handle>
bool ForEachInput(const std::vector<std::string>& inputs, Console& console, Handle handle) {
  bool isGood = true;
  for (std::size_t index = 0; index < inputs.size(); ++index) {
    try {
      isGood = handle(index) && isGood;
    } catch (const Problem& problem) {
      Report(console, problem);
      isGood = false;
    } catch (const std::bad_alloc&) {
      Report(console, {"not enough memory", inputs[index], "use fewer threads with -j"});
      isGood = false;
    }
  }
  return isGood;
}

}  // namespace vorel::tool
