#include "bench/left_prediction.h"

#include <emmintrin.h>

namespace vorel::bench {
namespace {

constexpr std::size_t kVectorBytes = 16;

__m128i Load(const u8* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

void Store(__m128i vector, void* bytes) {
  _mm_storeu_si128(static_cast<__m128i*>(bytes), vector);
}

// Every word the sum of itself and those below it, and of `before` in all words; then the last one in all words.
__m128i SumWords(__m128i words, __m128i& before) {
  words = _mm_add_epi16(words, _mm_slli_si128(words, 2));
  words = _mm_add_epi16(words, _mm_slli_si128(words, 4));
  words = _mm_add_epi16(words, _mm_slli_si128(words, 8));
  words = _mm_add_epi16(words, before);
  const __m128i high = _mm_shufflehi_epi16(words, 0xFF);
  before = _mm_unpackhi_epi64(high, high);
  return words;
}

void PredictBytes(const u8* __restrict samples, std::size_t count, u8* __restrict residuals) {
  residuals[0] = samples[0];
  for (std::size_t i = 1; i < count; ++i) residuals[i] = static_cast<u8>(samples[i] - samples[i - 1]);
}

void PredictWords(const u16* __restrict samples, std::size_t count, u8* __restrict low, u8* __restrict high) {
  low[0] = static_cast<u8>(samples[0]);
  high[0] = static_cast<u8>(samples[0] >> 8);
  for (std::size_t i = 1; i < count; ++i) {
    const u16 residual = static_cast<u16>(samples[i] - samples[i - 1]);
    low[i] = static_cast<u8>(residual);
    high[i] = static_cast<u8>(residual >> 8);
  }
}

// Every sum waits for the one before, which no compiler makes vectors of.
void RestoreBytes(const u8* residuals, std::size_t count, u8* samples) {
  __m128i before = _mm_setzero_si128();
  std::size_t i = 0;
  for (; i + kVectorBytes <= count; i += kVectorBytes) {
    __m128i sums = Load(residuals + i);
    sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 1));
    sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 2));
    sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 4));
    sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 8));
    // The last byte of this vector in all bytes takes three steps, off the way of the next vector's sums.
    __m128i last = _mm_unpackhi_epi8(sums, sums);
    last = _mm_shufflehi_epi16(last, 0xFF);
    last = _mm_unpackhi_epi64(last, last);
    Store(_mm_add_epi8(sums, before), samples + i);
    before = _mm_add_epi8(before, last);
  }
  for (; i < count; ++i) samples[i] = static_cast<u8>(residuals[i] + (i > 0 ? samples[i - 1] : 0));
}

void RestoreWords(const u8* low, const u8* high, std::size_t count, u16* samples) {
  __m128i before = _mm_setzero_si128();
  std::size_t i = 0;
  for (; i + kVectorBytes <= count; i += kVectorBytes) {
    const __m128i lowBytes = Load(low + i);
    const __m128i highBytes = Load(high + i);
    Store(SumWords(_mm_unpacklo_epi8(lowBytes, highBytes), before), samples + i);
    Store(SumWords(_mm_unpackhi_epi8(lowBytes, highBytes), before), samples + i + kVectorBytes / 2);
  }
  for (; i < count; ++i) {
    const u32 residual = low[i] + (u32{high[i]} << 8);
    samples[i] = static_cast<u16>(residual + (i > 0 ? samples[i - 1] : 0u));
  }
}

}  // namespace

Bytes& RoomForResiduals(const Samples& picture) {
  static Bytes residuals;
  residuals.resize(picture.bytes.size());
  return residuals;
}

const Bytes& PredictFromLeft(const Samples& picture) {
  const SampleShape& shape = picture.shape;
  const std::size_t size = BytesOfSample(shape);
  Bytes& residuals = RoomForResiduals(picture);
  for (u32 i = 0; i < shape.components; ++i) {
    const SamplePlace place = PlaceOf(shape, i);
    const std::size_t count = std::size_t{place.width} * shape.height;
    const u8* const samples = &picture.bytes[place.first * size];
    u8* const out = &residuals[place.first * size];
    if (size == 1) {
      PredictBytes(samples, count, out);
    } else {
      PredictWords(reinterpret_cast<const u16*>(samples), count, out, out + count);
    }
  }
  return residuals;
}

void RestoreFromLeft(const Bytes& residuals, Samples& picture) {
  const SampleShape& shape = picture.shape;
  const std::size_t size = BytesOfSample(shape);
  for (u32 i = 0; i < shape.components; ++i) {
    const SamplePlace place = PlaceOf(shape, i);
    const std::size_t count = std::size_t{place.width} * shape.height;
    const u8* const in = &residuals[place.first * size];
    u8* const samples = &picture.bytes[place.first * size];
    if (size == 1) {
      RestoreBytes(in, count, samples);
    } else {
      RestoreWords(in, in + count, count, reinterpret_cast<u16*>(samples));
    }
  }
}

}  // namespace vorel::bench
