// What tests of compressors and transcoders share: image descriptions, settings, and pictures in front of a
// compressor.
#pragma once
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "component/compressor.h"
#include "tests/component/component_fixture.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

using Bytes = std::vector<u8>;

constexpr i32 kWholeFirstFrame = 7;  // first band, last band, first frame
constexpr i32 kWholeFrame = 3;

inline Bytes BytesOfHandle(Handle handle) {
  const auto size = static_cast<std::size_t>(Host->GetHandleSize(handle));
  return Bytes(*handle, *handle + size);
}

inline Handle HandleOf(const Bytes& bytes) {
  const Handle handle = Host->NewHandleClear(static_cast<i32>(bytes.size()));
  if (!bytes.empty()) std::memcpy(*handle, bytes.data(), bytes.size());
  return handle;
}

inline void Dispose(ImageDescriptionHandle description) {
  Host->DisposeHandle(reinterpret_cast<Handle>(description));
}

inline void AddExtension(ImageDescriptionHandle description, OSType type, const Bytes& bytes) {
  const Handle data = HandleOf(bytes);
  EXPECT_EQ(Host->AddImageDescriptionExtension(description, data, static_cast<i32>(type)), noErr);
  Host->DisposeHandle(data);
}

inline std::optional<Bytes> Extension(ImageDescriptionHandle description, OSType type, i32 index = 1) {
  Handle data = nullptr;
  if (Host->GetImageDescriptionExtension(description, &data, static_cast<i32>(type), index) != noErr)
    return std::nullopt;
  const Bytes bytes = BytesOfHandle(data);
  Host->DisposeHandle(data);
  return bytes;
}

// A tag as the bytes of its extension in memory of this machine.
inline Bytes TagBytes(u32 tag) {
  Bytes bytes(4);
  StoreNative(bytes.data(), tag);
  return bytes;
}

inline std::string NameOf(ImageDescriptionHandle description) {
  const u8* const name = (*description)->name;
  return std::string(reinterpret_cast<const char*>(name) + 1, name[0]);
}

// A value of the process; nothing if no component has set it.
inline std::optional<i32> Published(OSType selector) {
  i32 value = 0;
  return Host->Gestalt(selector, &value) == noErr ? std::optional<i32>(value) : std::nullopt;
}

// Pairs of a settings record in the order of the machine.
inline Bytes Pairs(const std::vector<std::pair<OSType, u32>>& pairs) {
  Bytes bytes(pairs.size() * 8);
  u8* out = bytes.data();
  for (const auto& [key, value] : pairs) {
    StoreNative(out, key);
    StoreNative(out + 4, value);
    out += 8;
  }
  return bytes;
}

inline Bytes Record(const Settings& settings) {
  return Pairs({{FourCharacterCode("Vrl0"), settings.mode},
                {FourCharacterCode("Scan"), settings.scan},
                {FourCharacterCode("Dest"), settings.conversion},
                {FourCharacterCode("Vide"), settings.videoStandard},
                {FourCharacterCode("Rnge"), settings.rgbRange}});
}

inline ComponentResult SetRecord(ComponentInstance compressor, const Bytes& record) {
  const Handle handle = HandleOf(record);
  const ComponentResult result = embedded::CallSelector(compressor, kImageCodecSetSettingsSelect, handle);
  Host->DisposeHandle(handle);
  return result;
}

inline Bytes GetRecord(ComponentInstance compressor) {
  const Handle handle = Host->NewHandleClear(0);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecGetSettingsSelect, handle), noErr);
  const Bytes record = BytesOfHandle(handle);
  Host->DisposeHandle(handle);
  return record;
}

// Noise that the nearest frames of a pixel format keep whole: bits that are cut, or that no sample has, are zero.
inline Bytes Noise(u32 pixelFormat, std::size_t size, u32 seed) {
  std::mt19937 random(seed);
  u8 mask[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  switch (pixelFormat) {
    case FourCharacterCode("b64a"):
    case FourCharacterCode("b48r"):
      for (const int i : {1, 3, 5, 7}) mask[i] = 0xC0;
      break;
    case FourCharacterCode("L64A"):
    case FourCharacterCode("A46L"):
    case FourCharacterCode("V416"):
    case FourCharacterCode("v216"):
      for (const int i : {0, 2, 4, 6}) mask[i] = 0xC0;
      break;
    case FourCharacterCode("Y216"):
      for (const int i : {0, 2, 4, 6}) mask[i] = 0xF0;
      for (const int i : {1, 3, 5, 7}) mask[i] = 0x3F;
      break;
    case FourCharacterCode("v210"):
      for (const int i : {3, 7}) mask[i] = 0x3F;
      break;
    case FourCharacterCode("v410"):
      for (const int i : {0, 4}) mask[i] = 0xFC;
      break;
    case FourCharacterCode("R10k"):
    case FourCharacterCode("F10k"):
    case FourCharacterCode("S10k"):
      for (const int i : {3, 7}) mask[i] = 0xFC;
      break;
    case FourCharacterCode("r210"):
    case FourCharacterCode("F210"):
    case FourCharacterCode("S210"):
      for (const int i : {0, 4}) mask[i] = 0x3F;
      break;
    default:
      break;
  }
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<u8>(random() & mask[i % 8]);
  if (pixelFormat == FourCharacterCode("Y216")) {  // whose lowest and highest codes are limited
    for (std::size_t i = 1; i < size; i += 2) bytes[i] = static_cast<u8>((bytes[i] & 0x1F) | 0x10);
  }
  return bytes;
}

// A picture in front of a compressor. The frame's buffer has exactly `buffer.size()` bytes.
struct CompressJob {
  Bytes picture;
  Bytes buffer;
  CodecCapabilities capabilities = {};
  embedded::PixelMapExtension rows = {};
  CodecCompressParams parameters = {};
  CompressJob() = default;
  CompressJob(const CompressJob&) = delete;
  CompressJob& operator=(const CompressJob&) = delete;
  ~CompressJob() { Dispose(parameters.imageDescription); }
  ImageDescriptionHandle Description() const { return parameters.imageDescription; }
};

inline constexpr std::size_t kAmple = 1 << 16;

inline void SetBuffer(CompressJob& job, std::size_t size) {
  job.buffer = Bytes(size, 0xA5);
  job.buffer.shrink_to_fit();
  job.parameters.data = job.buffer.data();
  job.parameters.bufferSize = static_cast<i32>(size);
}

inline void SetRows(CompressJob& job, i32 rowBytes) {
  embedded::SetPixelMapRows(job.parameters.srcPixMap, job.rows, rowBytes, 0x00018000);
  const std::size_t stride = static_cast<std::size_t>(rowBytes < 0 ? -rowBytes : rowBytes);
  const auto height = static_cast<std::size_t>(job.parameters.srcPixMap.bounds.bottom);
  u32 code = job.parameters.srcPixMap.pixelFormat;
  job.picture = Noise(code, stride * height, 7);
  job.parameters.srcPixMap.baseAddr = job.picture.data();
}

// `hostFormat` as a host names it; 24 and 32 are told by the depth of the pixel map alone.
inline std::unique_ptr<CompressJob> MakeJob(OSType subtype, OSType hostFormat, i16 width, i16 height,
                                            i16 depth = 24) {
  auto job = std::make_unique<CompressJob>();
  CodecCompressParams& parameters = job->parameters;
  parameters.imageDescription = embedded::MakeImageDescription(subtype, width, height);
  (*parameters.imageDescription)->depth = depth;
  parameters.capabilities = &job->capabilities;
  parameters.conditionFlags = kWholeFirstFrame;
  parameters.srcPixMap.bounds = {0, 0, height, width};
  parameters.srcPixMap.pixelSize = hostFormat <= 32 ? static_cast<i16>(hostFormat) : i16{32};
  parameters.srcPixMap.cmpCount = 3;
  parameters.srcPixMap.pixelFormat = hostFormat <= 32 ? 0 : hostFormat;
  const u32 code = VorelNormalizePixelFormat(32, hostFormat, 0, 0, 0, VOREL_RGB_RANGE_AUTOMATIC);
  SetRows(*job, static_cast<i32>(VorelAlignedRowBytes(code, static_cast<u32>(width))));
  SetBuffer(*job, kAmple);
  return job;
}

inline ComponentResult Prepare(ComponentInstance compressor, CompressJob& job) {
  return embedded::CallSelector(compressor, kImageCodecPreCompressSelect, &job.parameters);
}

inline ComponentResult Compress(ComponentInstance compressor, CompressJob& job) {
  return embedded::CallSelector(compressor, kImageCodecBandCompressSelect, &job.parameters);
}

inline Bytes FrameOf(const CompressJob& job) {
  const auto size = static_cast<std::ptrdiff_t>((*job.Description())->dataSize);
  return Bytes(job.buffer.begin(), job.buffer.begin() + size);
}

struct EncodingTest : ComponentTest {
  static ComponentInstance OpenCompressorOf(OSType subtype) {
    const ComponentInstance instance = Open(kCompressorType, subtype);
    EXPECT_NE(instance, nullptr);
    return instance;
  }

  // Opens a component and tells where its own record lies.
  template <typename Instance>
  static ComponentInstance OpenWithStorage(OSType type, OSType subtype, OSType manufacturer,
                                           Instance*& storage) {
    static Handle seen;
    static const HostOperations* usual;
    usual = Host;
    HostOperations operations = *Host;
    operations.SetComponentInstanceStorage = [](ComponentInstance self, Handle handle) {
      seen = handle;
      usual->SetComponentInstanceStorage(self, handle);
    };
    Host = &operations;
    const ComponentInstance instance = Open(type, subtype, manufacturer);
    Host = usual;
    storage = reinterpret_cast<Instance*>(seen);
    return instance;
  }
};

}  // namespace vorel::component
