// The 21 entries and the tables of selectors that their components share.
#include "component/entries.h"

#include "component/compressor.h"
#include "component/decompressor.h"
#include "component/host_errors.h"
#include "component/selector_dispatch.h"
#include "component/settings.h"
#include "component/transcoder.h"

namespace vorel::component {

namespace {

constexpr ComponentResult kVersion = 615;

template <typename Storage>
ComponentResult Version(Storage* /* instance */) {
  return kVersion;
}

// Selectors that take a call and have no use for it.
ComponentResult TrimImage(Compressor* /* instance */, ImageDescriptionHandle /* description */,
                          Ptr /* data */, i32 /* dataSize */, ICMDataProcRecord* /* dataProcedure */,
                          Ptr /* result */, i32 /* resultSize */, ICMFlushProcRecord* /* flushProcedure */,
                          Rect* /* rectangle */, ICMProgressProcRecord* /* progressProcedure */) {
  return codecUnimpErr;
}

// Calls that a component with a delegate would pass on. A compressor has nobody to pass them to.
template <typename... Arguments>
ComponentResult PassOn(Compressor* /* instance */, Arguments... /* arguments */) {
  return badComponentSelector;
}

// Lists of parameters and their dialog belong to effects; the settings have a dialog of their own.
template <typename... Arguments>
ComponentResult HasNoParameters(Compressor* /* instance */, Arguments... /* arguments */) {
  return codecUnimpErr;
}

template <VorelFamily Family>
ComponentResult OpenAsDecompressor(Decompressor* instance, ComponentInstance self);
template <VorelFamily Family>
ComponentResult OpenAsCompressor(Compressor* instance, ComponentInstance self);
template <VorelFamily Family>
ComponentResult OpenAsTranscoder(Transcoder* instance, ComponentInstance self);

ComponentResult CanDecompress(Decompressor* instance, i16 selector);
ComponentResult CanCompress(Compressor* instance, i16 selector);
ComponentResult CanTranscode(Transcoder* instance, i16 selector);

// Rows of selectors -8 to -1.
template <VorelFamily Family>
constexpr std::array<SelectorRow, 8> kDecompressorNegative = {
    CallRow<GetWorkFunction>(),       kUnsupported,
    CallRow<SetDecompressorTarget>(), kUnsupported,
    CallRow<Version<Decompressor>>(), CallRow<CanDecompress>(),
    CallRow<CloseDecompressor>(),     CallRow<OpenAsDecompressor<Family>>()};

constexpr std::array<SelectorRow, 61> kDecompressorRows = [] {
  std::array<SelectorRow, 61> rows = {};
  rows[kImageCodecGetCodecInfoSelect] = CallRow<GetDecompressorInfo>();
  rows[kImageCodecGetCompressedImageSizeSelect] = CallRow<GetCompressedImageSize>();
  rows[kImageCodecRequestGammaLevelSelect] = CallRow<RequestGammaLevel>();
  rows[kImageCodecGetSourceDataGammaLevelSelect] = CallRow<GetSourceDataGammaLevel>();
  return rows;
}();

constexpr std::array<SelectorRow, 16> kBandRows = {CallRow<Preflight>(),
                                                   CallRow<Initialize>(),
                                                   CallRow<BeginBand>(),
                                                   CallRow<DrawBand>(),
                                                   CallRow<EndBand>(),
                                                   kNothing,
                                                   kNothing};

template <VorelFamily Family>
constexpr SelectorTables kDecompressorTables = {kDecompressorNegative<Family>,
                                                {kDecompressorRows, {}, kBandRows}};

// Rows of selectors -6 to -1.
template <VorelFamily Family>
constexpr std::array<SelectorRow, 6> kCompressorNegative = {
    CallRow<SetCompressorTarget>(), kUnsupported,
    CallRow<Version<Compressor>>(), CallRow<CanCompress>(),
    CallRow<CloseCompressor>(),     CallRow<OpenAsCompressor<Family>>()};

using Any = void*;  // an argument that nobody looks at

constexpr std::array<SelectorRow, 35> kCompressorRows = {
    CallRow<GetCompressorInfo>(),                                         // 0
    CallRow<GetCompressionTime>(),                                        // 1
    CallRow<GetMaxCompressionSize>(),                                     // 2
    CallRow<PreCompress>(),                                               // 3
    CallRow<BandCompress>(),                                              // 4
    kUnsupported,                                                         // 5
    kUnsupported,                                                         // 6
    CallRow<CompressorBusy>(),                                            // 7
    kUnsupported,                                                         // 8
    kUnsupported,                                                         // 9
    CallRow<TrimImage>(),                                                 // 10
    CallRow<RequestSettings>(),                                           // 11
    CallRow<GetSettings>(),                                               // 12
    CallRow<SetSettings>(),                                               // 13
    kUnsupported,                                                         // 14
    kUnsupported,                                                         // 15
    kUnsupported,                                                         // 16
    CallRow<PassOn<Any, i32, i32, Any, Any>>(),                           // 17
    CallRow<PassOn<Any>>(),                                               // 18
    kUnsupported,                                                         // 19
    CallRow<PassOn<Any, i32, Any, Any>>(),                                // 20
    CallRow<PassOn<i32, Any, i32, Any, Any, i32, Any, Any, Any, Any>>(),  // 21
    CallRow<PassOn<Any, Any, i16, u32, Any, Any>>(),                      // 22
    CallRow<PassOn<Any>>(),                                               // 23
    CallRow<PassOn<u32, u32, Any, Any>>(),                                // 24
    kUnsupported,                                                         // 25
    CallRow<GetSettingsAsText>(),                                         // 26
    CallRow<HasNoParameters<Any>>(),                                      // 27
    CallRow<HasNoParameters<Any>>(),                                      // 28
    CallRow<HasNoParameters<Any, Any, i32, Any, i16, Any>>(),             // 29
    CallRow<HasNoParameters<Any, i32>>(),                                 // 30
    CallRow<HasNoParameters<i32>>(),                                      // 31
    CallRow<HasNoParameters<i32, i32, Any>>(),                            // 32
    CallRow<HasNoParameters<Any, Any, i32>>(),                            // 33
    CallRow<HasNoParameters<Any>>(),                                      // 34
};

constexpr std::array<SelectorRow, 7> kNoBandRows = {kUnsupported, kUnsupported, kUnsupported, kUnsupported,
                                                    kUnsupported, kUnsupported, kUnsupported};

template <VorelFamily Family>
constexpr SelectorTables kCompressorTables = {kCompressorNegative<Family>,
                                              {kCompressorRows, {}, kNoBandRows}};

template <VorelFamily Family>
constexpr std::array<SelectorRow, 6> kTranscoderNegative = {
    CallRow<SetTranscoderTarget>(), kUnsupported,
    CallRow<Version<Transcoder>>(), CallRow<CanTranscode>(),
    CallRow<CloseTranscoder>(),     CallRow<OpenAsTranscoder<Family>>()};

constexpr std::array<SelectorRow, 5> kTranscoderRows = {kUnsupported, CallRow<BeginTranscoding>(),
                                                        CallRow<Transcode>(), CallRow<DisposeFrame>(),
                                                        CallRow<EndTranscoding>()};

template <VorelFamily Family>
constexpr SelectorTables kTranscoderTables = {kTranscoderNegative<Family>, {kTranscoderRows, {}, {}}};

constexpr const ComponentRow& RowOf(OSType type, VorelFamily family) {
  for (const ComponentRow& row : kComponents) {
    if (row.type == type && row.family == family) return row;
  }
  return kComponents[0];
}

template <VorelFamily Family>
ComponentResult OpenAsDecompressor(Decompressor* /* instance */, ComponentInstance self) {
  return OpenDecompressor(self, Family, RowOf(kDecompressorType, Family).id);
}

template <VorelFamily Family>
ComponentResult OpenAsCompressor(Compressor* /* instance */, ComponentInstance self) {
  return OpenCompressor(self, RowOf(kCompressorType, Family));
}

template <VorelFamily Family>
ComponentResult OpenAsTranscoder(Transcoder* /* instance */, ComponentInstance self) {
  return OpenTranscoder(self, RowOf(kTranscoderType, Family));
}

// The families' tables differ in one function alone, so that of any family answers for all.
ComponentResult CanDecompress(Decompressor* instance, i16 selector) {
  if (HasOwnRow(kDecompressorTables<VOREL_GENERIC>, selector)) return 1;
  if (instance == nullptr || instance->delegate == nullptr) return 0;
  return CallSelector(instance->delegate, kComponentCanDoSelect, selector);
}

ComponentResult CanCompress(Compressor* /* instance */, i16 selector) {
  return HasOwnRow(kCompressorTables<VOREL_GENERIC>, selector) ? 1 : 0;
}

ComponentResult CanTranscode(Transcoder* /* instance */, i16 selector) {
  return HasOwnRow(kTranscoderTables<VOREL_YCBCR_8B_444>, selector) ? 1 : 0;
}

template <VorelFamily Family>
ComponentResult ServeDecompressor(ComponentParameters* parameters, Handle storage) {
  const auto* const instance = reinterpret_cast<const Decompressor*>(storage);
  return ServeSelector(kDecompressorTables<Family>, parameters, storage,
                       instance == nullptr ? nullptr : instance->delegate);
}

template <VorelFamily Family>
ComponentResult ServeCompressor(ComponentParameters* parameters, Handle storage) {
  return ServeSelector(kCompressorTables<Family>, parameters, storage, nullptr);
}

template <VorelFamily Family>
ComponentResult ServeTranscoder(ComponentParameters* parameters, Handle storage) {
  return ServeSelector(kTranscoderTables<Family>, parameters, storage, nullptr);
}

#define VOREL_ENTRIES(X)                     \
  X(Qd_, Decompressor, VOREL_GENERIC)        \
  X(Qd0, Decompressor, VOREL_RGB_10BF)       \
  X(Qd1, Decompressor, VOREL_RGB_8BF)        \
  X(Qd2, Decompressor, VOREL_YCBCR_10BV_444) \
  X(Qd3, Decompressor, VOREL_YCBCR_8B_444)   \
  X(Qd4, Decompressor, VOREL_YCBCR_10BV_422) \
  X(Qd5, Decompressor, VOREL_YCBCR_8BV_422)  \
  X(Qd6, Decompressor, VOREL_YCBCR_8BW_422)  \
  X(Qe_, Compressor, VOREL_GENERIC)          \
  X(Qe0, Compressor, VOREL_RGB_10BF)         \
  X(Qe1, Compressor, VOREL_RGB_8BF)          \
  X(Qe2, Compressor, VOREL_YCBCR_10BV_444)   \
  X(Qe3, Compressor, VOREL_YCBCR_8B_444)     \
  X(Qe4, Compressor, VOREL_YCBCR_10BV_422)   \
  X(Qe5, Compressor, VOREL_YCBCR_8BV_422)    \
  X(Qe6, Compressor, VOREL_YCBCR_8BW_422)    \
  X(Qt2, Transcoder, VOREL_YCBCR_10BV_444)   \
  X(Qt3, Transcoder, VOREL_YCBCR_8B_444)     \
  X(Qt4, Transcoder, VOREL_YCBCR_10BV_422)   \
  X(Qt5, Transcoder, VOREL_YCBCR_8BV_422)    \
  X(Qt6, Transcoder, VOREL_YCBCR_8BW_422)

}  // namespace

std::span<const NamedEntry> Entries() {
#define VOREL_NAMED_ENTRY(NAME, KIND, FAMILY) {#NAME, NAME},
  static constexpr NamedEntry kEntries[] = {VOREL_ENTRIES(VOREL_NAMED_ENTRY)};
#undef VOREL_NAMED_ENTRY
  static_assert(std::size(kEntries) == 21);
  return kEntries;
}

const SelectorTables* FindTables(std::string_view entry) {
#define VOREL_FIND_TABLES(NAME, KIND, FAMILY) \
  if (entry == #NAME) return &k##KIND##Tables<FAMILY>;
  VOREL_ENTRIES(VOREL_FIND_TABLES)
#undef VOREL_FIND_TABLES
  return nullptr;
}

}  // namespace vorel::component

#define VOREL_DEFINE_ENTRY(NAME, KIND, FAMILY)                         \
  VOREL_COMPONENT_ENTRY(NAME) {                                        \
    return vorel::component::Serve##KIND<FAMILY>(parameters, storage); \
  }
VOREL_ENTRIES(VOREL_DEFINE_ENTRY)
#undef VOREL_DEFINE_ENTRY
#undef VOREL_ENTRIES
