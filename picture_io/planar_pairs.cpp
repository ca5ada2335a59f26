// Plain loops over whole pairs, free of aliasing so that they vectorise; the pair of an odd width is done by
// hand.
#include "picture_io/planar_pairs.h"

#include <type_traits>

#include "base/bytes.h"

namespace vorel::picture_io {

namespace {

// Places are those of a pair's four samples.
struct PairForm {
  u32 pixelFormat;
  u32 planeBits;
  std::size_t luma;  // of Y'0; Y'1 stands two places behind
  std::size_t cb;
  std::size_t cr;
  u32 shift;       // how much higher a sample stands in the pair than in the planes
  u32 chromaFlip;  // the bit in which chroma differs
};

constexpr PairForm kFormYuvu = {kYuvu, 8, 0, 1, 3, 0, 0x80};
constexpr PairForm kForm2vuy = {k2vuy, 8, 1, 0, 2, 0, 0};
constexpr PairForm kFormV216 = {kV216, 10, 1, 0, 2, 6, 0};

template <const PairForm& Form>
using Sample = std::conditional_t<Form.planeBits == 8, u8, u16>;

template <const PairForm& Form>
constexpr std::size_t kSampleBytes = sizeof(Sample<Form>);

template <const PairForm& Form>
void Raise(const u8* from, u32 flip, u8* to) {
  StoreNative(to, static_cast<Sample<Form>>((LoadNative<Sample<Form>>(from) ^ flip) << Form.shift));
}

template <const PairForm& Form>
void Lower(const u8* from, u32 flip, u8* to) {
  StoreNative(to, static_cast<Sample<Form>>((LoadNative<Sample<Form>>(from) >> Form.shift) ^ flip));
}

template <const PairForm& Form>
void InterleavePairs(const u8* __restrict luma, const u8* __restrict cb, const u8* __restrict cr,
                     std::size_t pairs, u8* __restrict out) {
  constexpr std::size_t kBytes = kSampleBytes<Form>;
  for (std::size_t i = 0; i < pairs; ++i) {
    u8* const pair = out + 4 * i * kBytes;
    Raise<Form>(luma + 2 * i * kBytes, 0, pair + Form.luma * kBytes);
    Raise<Form>(luma + (2 * i + 1) * kBytes, 0, pair + (Form.luma + 2) * kBytes);
    Raise<Form>(cb + i * kBytes, Form.chromaFlip, pair + Form.cb * kBytes);
    Raise<Form>(cr + i * kBytes, Form.chromaFlip, pair + Form.cr * kBytes);
  }
}

template <const PairForm& Form>
void PartPairs(const u8* __restrict in, std::size_t pairs, u8* __restrict luma, u8* __restrict cb,
               u8* __restrict cr) {
  constexpr std::size_t kBytes = kSampleBytes<Form>;
  for (std::size_t i = 0; i < pairs; ++i) {
    const u8* const pair = in + 4 * i * kBytes;
    Lower<Form>(pair + Form.luma * kBytes, 0, luma + 2 * i * kBytes);
    Lower<Form>(pair + (Form.luma + 2) * kBytes, 0, luma + (2 * i + 1) * kBytes);
    Lower<Form>(pair + Form.cb * kBytes, Form.chromaFlip, cb + i * kBytes);
    Lower<Form>(pair + Form.cr * kBytes, Form.chromaFlip, cr + i * kBytes);
  }
}

template <const PairForm& Form>
void InterleaveRow(const u8* luma, const u8* cb, const u8* cr, std::size_t width, u8* out) {
  constexpr std::size_t kBytes = kSampleBytes<Form>;
  const std::size_t pairs = width / 2;
  InterleavePairs<Form>(luma, cb, cr, pairs, out);
  if (width % 2 != 0) {
    u8 last[2 * kBytes];
    for (std::size_t i = 0; i < sizeof last; ++i) last[i] = luma[2 * pairs * kBytes + i % kBytes];
    InterleavePairs<Form>(last, cb + pairs * kBytes, cr + pairs * kBytes, 1, out + 4 * pairs * kBytes);
  }
}

template <const PairForm& Form>
void PartRow(const u8* in, std::size_t width, u8* luma, u8* cb, u8* cr) {
  constexpr std::size_t kBytes = kSampleBytes<Form>;
  const std::size_t pairs = width / 2;
  PartPairs<Form>(in, pairs, luma, cb, cr);
  if (width % 2 != 0) {
    u8 last[2 * kBytes];
    PartPairs<Form>(in + 4 * pairs * kBytes, 1, last, cb + pairs * kBytes, cr + pairs * kBytes);
    for (std::size_t i = 0; i < kBytes; ++i) luma[2 * pairs * kBytes + i] = last[i];
  }
}

// Bytes of one row of each plane, and where the chroma planes begin.
struct PlanePlaces {
  std::size_t lumaBytes;
  std::size_t chromaBytes;
  std::size_t cbStart;
  std::size_t crStart;
};

template <const PairForm& Form>
PlanePlaces PlacesOfPlanes(std::size_t width, std::size_t height) {
  const std::size_t lumaBytes = width * kSampleBytes<Form>;
  const std::size_t chromaBytes = (width + 1) / 2 * kSampleBytes<Form>;
  return {lumaBytes, chromaBytes, lumaBytes * height, (lumaBytes + chromaBytes) * height};
}

template <const PairForm& Form>
void AllRowsFromPlanes(const u8* planes, std::size_t width, std::size_t height, u8* rows) {
  const PlanePlaces places = PlacesOfPlanes<Form>(width, height);
  const std::size_t rowBytes = (width + 1) / 2 * 4 * kSampleBytes<Form>;
  for (std::size_t row = 0; row < height; ++row) {
    InterleaveRow<Form>(planes + row * places.lumaBytes, planes + places.cbStart + row * places.chromaBytes,
                        planes + places.crStart + row * places.chromaBytes, width, rows + row * rowBytes);
  }
}

template <const PairForm& Form>
void AllPlanesFromRows(const u8* rows, std::size_t width, std::size_t height, u8* planes) {
  const PlanePlaces places = PlacesOfPlanes<Form>(width, height);
  const std::size_t rowBytes = (width + 1) / 2 * 4 * kSampleBytes<Form>;
  for (std::size_t row = 0; row < height; ++row) {
    PartRow<Form>(rows + row * rowBytes, width, planes + row * places.lumaBytes,
                  planes + places.cbStart + row * places.chromaBytes,
                  planes + places.crStart + row * places.chromaBytes);
  }
}

template <const PairForm& Form>
constexpr PlanarRoutines kRoutinesOf = {
    Form.pixelFormat, {Form.planeBits, 3, true}, AllRowsFromPlanes<Form>, AllPlanesFromRows<Form>};

constexpr PlanarRoutines kRoutines[] = {kRoutinesOf<kFormYuvu>, kRoutinesOf<kForm2vuy>,
                                        kRoutinesOf<kFormV216>};

}  // namespace

std::span<const PlanarRoutines> PairRoutines() {
  return kRoutines;
}

}  // namespace vorel::picture_io
