#include "bench/conversions.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/clock.h"
#include "pixel/conversion_table.h"

namespace vorel::bench {
namespace {

constexpr u32 kWidth = 1920;
constexpr u32 kHeight = 1080;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

// No conversion takes another way for other values, so any bytes will do.
std::vector<u8> RandomBytes(std::size_t size) {
  std::mt19937 random(1);
  std::vector<u8> bytes(size);
  for (u8& byte : bytes) byte = static_cast<u8>(random());
  return bytes;
}

// A strip whose samples are legal in the frame.
SampleStrip RandomStrip(const SampleDomain& frame) {
  std::mt19937 random(2);
  SampleStrip strip;
  for (SamplePlane* plane : {&strip.first, &strip.second, &strip.third, &strip.alpha}) {
    for (i16& cell : plane->cells) cell = static_cast<i16>(random() & ((1u << frame.bits) - 1));
  }
  return strip;
}

// The fastest of all rounds, and beside it that of a copy of the picture's bytes in the same rounds.
template <typename Convert>
void Measure(benchmark::State& state, std::size_t rowBytes, Convert convert) {
  const std::vector<u8> source = RandomBytes(rowBytes * kHeight);
  std::vector<u8> target(source.size());
  double fastest = 1;
  double fastestCopy = 1;
  for (auto unused : state) {
    const double start = Now();
    convert(source.data(), target.data());
    benchmark::ClobberMemory();
    const double middle = Now();
    std::memcpy(target.data(), source.data(), source.size());
    benchmark::ClobberMemory();
    fastest = std::min(fastest, middle - start);
    fastestCopy = std::min(fastestCopy, Now() - middle);
  }
  state.counters["ns/px"] = fastest * 1e9 / static_cast<double>(kPixels);
  state.counters["Mpx/s"] = static_cast<double>(kPixels) / fastest / 1e6;
  state.counters["of memcpy"] = fastestCopy / fastest;
}

void Fill(benchmark::State& state, const Conversion<FillFunction>& conversion) {
  const std::size_t rowBytes = BytesOfPixels(*conversion.pixel, kWidth);
  const ColourWeights weights = conversion.weights(1);
  SampleStrip strip;
  Measure(state, rowBytes, [&](const u8* source, u8*) {
    ChromaCarry carry = {};
    for (u32 row = 0; row < kHeight; ++row) {
      for (u32 first = 0; first < kWidth; first += kStripPixels) {
        conversion.run(source + row * rowBytes, {first, kWidth}, weights, carry, strip);
        benchmark::DoNotOptimize(strip);
      }
    }
  });
}

void Drain(benchmark::State& state, const Conversion<DrainFunction>& conversion) {
  const std::size_t rowBytes = BytesOfPixels(*conversion.pixel, kWidth);
  const ColourWeights weights = conversion.weights(1);
  SampleStrip strip = RandomStrip(*conversion.frame);
  Measure(state, rowBytes, [&](const u8*, u8* target) {
    ChromaCarry carry = {};
    for (u32 row = 0; row < kHeight; ++row) {
      for (u32 first = 0; first < kWidth; first += kStripPixels)
        conversion.run(strip, {first, kWidth}, weights, carry, target + row * rowBytes);
    }
  });
}

template <typename Function>
std::string NameOf(const char* direction, const Conversion<Function>& conversion) {
  return std::string("convert/") + direction + '/' + conversion.layout + '/' + conversion.pixelName;
}

}  // namespace

void RegisterConversions() {
  for (const auto& conversion : kFills)
    benchmark::RegisterBenchmark(NameOf("fill", conversion).c_str(), Fill, conversion)
        ->Unit(benchmark::kMillisecond);
  for (const auto& conversion : kDrains)
    benchmark::RegisterBenchmark(NameOf("drain", conversion).c_str(), Drain, conversion)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace vorel::bench
