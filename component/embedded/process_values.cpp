// The values of the process, and the answers about executable and processor that the settings may replace.
#include "component/embedded/process_values.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>

#include "base/bytes.h"
#include "component/embedded/operations.h"
#include "component/host_errors.h"

namespace vorel::component::embedded {

namespace {

constexpr OSType kQuickTimeVersion = FourCharacterCode("qtim");
constexpr u32 kKilohertz = 1000;

struct ProcessValues {
  std::mutex mutex;
  std::map<OSType, i32> gestalt;
  // Set before components run and not changed while they do.
  std::string executablePath;
  std::optional<ExecutableMajors> executableMajors;
  u32 processorMegahertz = 0;
};

ProcessValues values;

std::string PathOfThisProcess() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : path.string();
}

// The highest clock that the system names, else the present one; 0 if it names none.
u32 MegahertzOfThisMachine() {
  std::ifstream highest("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
  u32 kilohertz = 0;
  if (highest >> kilohertz && kilohertz >= kKilohertz) return kilohertz / kKilohertz;
  std::ifstream processors("/proc/cpuinfo");
  for (std::string line; std::getline(processors, line);) {
    if (line.rfind("cpu MHz", 0) != 0) continue;
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const double megahertz = std::strtod(line.c_str() + colon + 1, nullptr);
    if (megahertz >= 1 && megahertz < 1e6) return static_cast<u32>(megahertz);
  }
  return 0;
}

}  // namespace

OSErr Gestalt(OSType selector, i32* value) {
  if (value == nullptr) return paramErr;
  const std::scoped_lock lock(values.mutex);
  const auto found = values.gestalt.find(selector);
  if (found == values.gestalt.end()) return gestaltUndefSelectorErr;
  *value = found->second;
  return noErr;
}

OSErr SetGestaltValue(OSType selector, i32 value) {
  const std::scoped_lock lock(values.mutex);
  values.gestalt[selector] = value;
  return noErr;
}

// The path with an end 0, cut to the room there is. Returns its length without the end.
u32 ExecutablePath(char* path, u32 room) {
  if (path == nullptr || room == 0) return 0;
  const std::size_t length = std::min<std::size_t>(values.executablePath.size(), room - 1);
  std::memcpy(path, values.executablePath.data(), length);
  path[length] = 0;
  return static_cast<u32>(length);
}

Boolean ExecutableVersions(u32* product, u32* file) {
  if (!values.executableMajors) return 0;
  if (product != nullptr) *product = values.executableMajors->product;
  if (file != nullptr) *file = values.executableMajors->file;
  return 1;
}

u32 ProcessorMegahertz() {
  return values.processorMegahertz;
}

void TakeProcessValues(const HostSettings& settings) {
  const std::scoped_lock lock(values.mutex);
  values.gestalt.clear();
  if (settings.quickTimeVersion != 0) values.gestalt[kQuickTimeVersion] = settings.quickTimeVersion;
  values.executablePath = settings.executablePath.empty() ? PathOfThisProcess() : settings.executablePath;
  values.executableMajors = settings.executableMajors;
  values.processorMegahertz =
      settings.processorMegahertz ? *settings.processorMegahertz : MegahertzOfThisMachine();
}

void ForgetProcessValues() {
  const std::scoped_lock lock(values.mutex);
  values.gestalt.clear();
}

}  // namespace vorel::component::embedded
