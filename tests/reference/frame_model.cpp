#include "tests/reference/frame_model.h"

#include <array>
#include <string>
#include <utility>

#include "tests/reference/frame_facts.h"

namespace reference {
namespace {

using std::size_t;
using std::string_view;
using std::uint32_t;
using std::uint64_t;

size_t Number(char channel) {
  return channel == 'A' ? 3 : static_cast<size_t>(channel - '1');
}

constexpr std::vector<int> RowSamples::*kLines[4] = {&RowSamples::first, &RowSamples::second,
                                                     &RowSamples::third, &RowSamples::alpha};

// Codes by number of the channel.
std::array<const PrefixCode*, 4> CodesOf(const FrameFacts& facts, char scan) {
  const std::string set = std::string(facts.codes) + ' ' + scan;
  std::array<const PrefixCode*, 4> codes = {};
  for (size_t i = 0; i < 4; ++i) codes[i] = &FindCode(set, facts.classes[i]);
  return codes;
}

int Masked(const FrameFacts& facts, int value) {
  return value & ((1 << facts.depth) - 1);
}

size_t UnitsOf(const FrameFacts& facts, uint32_t width) {
  return facts.pixels == 2 ? (size_t{width} + 1) / 2 : width;
}

// What sample n of a channel is predicted from; `row` is complete up to it. Shifts of negative numbers round
// toward minus infinity.
int Predict(const FrameFacts& facts, char scan, const RowSamples* above, const RowSamples& row, char channel,
            size_t n) {
  const auto line = kLines[Number(channel)];
  if (scan == 'i' || above == nullptr) {
    if (n > 0) return (row.*line)[n - 1];
    if (above != nullptr && facts.laterStart == Start::above) return (above->*line)[0];
    if (channel == 'A') return scan == 'p' ? facts.start[2] : facts.alphaInterlaced;
    return channel == '1' ? facts.start[0] : facts.start[1];
  }
  const bool isHalfGradient = facts.chroma != Chroma::asLuma && (channel == '2' || channel == '3');
  const auto value = [&](int sample) {
    return isHalfGradient && facts.chroma == Chroma::signedBytes && sample >= 128 ? sample - 256 : sample;
  };
  const int top = value((above->*line)[n]);
  const int left = n > 0 ? value((row.*line)[n - 1]) : top;
  const int topLeft = n > 0 ? value((above->*line)[n - 1]) : top;
  return isHalfGradient ? top + ((left - topLeft) >> 1) : (3 * (left + top) - 2 * topLeft) >> 2;
}

}  // namespace

uint64_t FrameBound(string_view layout, uint32_t width, uint32_t height) {
  const FrameFacts& facts = FindFacts(layout);
  if (width == 0 || height == 0) return 0;
  const uint64_t units = UnitsOf(facts, width);
  const uint64_t rawBits = units * static_cast<uint64_t>(facts.rawBits) * height;
  const uint64_t attempt = units * static_cast<uint64_t>(facts.longestBits);
  return (height + rawBits + attempt + 7) / 8 + 4;
}

bool IsPastBound(uint64_t position, uint64_t firstWord, uint64_t bound) {
  return position / 32 * 4 + 4 > firstWord * 4 + bound;
}

void AppendRow(string_view layout, char scan, const RowSamples* above, const RowSamples& row, bool raw,
               Bits& bits) {
  const FrameFacts& facts = FindFacts(layout);
  const auto codes = CodesOf(facts, scan);
  bits.push_back(raw);
  size_t next[4] = {};
  for (size_t unit = 0; unit < row.second.size(); ++unit) {
    int colourError = 0;
    for (const char channel : facts.order) {
      const size_t n = next[Number(channel)]++;
      const int sample = (row.*kLines[Number(channel)])[n];
      if (raw) {
        AppendField(bits, static_cast<uint32_t>(sample), facts.depth);
        continue;
      }
      const int error = sample - Predict(facts, scan, above, row, channel, n);
      int symbol = error;
      if (facts.chained && channel != 'A') {
        symbol = error - colourError;
        colourError = error;
      }
      AppendSymbol(bits, *codes[Number(channel)], Masked(facts, symbol));
    }
  }
}

bool PredictedRowStays(string_view layout, uint32_t width, uint64_t rowStart, uint64_t rowEnd) {
  const FrameFacts& facts = FindFacts(layout);
  const uint64_t counted = facts.budgetOf == Budget::perPair ? UnitsOf(facts, width) : width;
  return (rowEnd / 32 - rowStart / 32) * 32 <= counted * static_cast<uint64_t>(facts.budget);
}

EncodedFrame EncodeFrame(string_view layout, char scan, const Rows& rows, uint32_t width, Bits bits,
                         uint64_t bound) {
  const uint64_t firstWord = bits.size() / 32;
  EncodedFrame frame = {0, std::move(bits), {}};
  for (size_t y = 0; y < rows.size() && frame.status == 0; ++y) {
    const RowSamples* above = y == 0 ? nullptr : &rows[y - 1];
    const size_t rowStart = frame.bits.size();
    AppendRow(layout, scan, above, rows[y], false, frame.bits);
    const bool isTooLong = !PredictedRowStays(layout, width, rowStart, frame.bits.size());
    // The attempt is judged before it is given up.
    if (isTooLong && !IsPastBound(frame.bits.size(), firstWord, bound)) {
      frame.bits.resize(rowStart);
      AppendRow(layout, scan, above, rows[y], true, frame.bits);
    }
    frame.raw.push_back(isTooLong);
    if (IsPastBound(frame.bits.size(), firstWord, bound)) frame.status = 1;
  }
  return frame;
}

DecodedFrame DecodeFrame(string_view layout, char scan, const Bits& bits, uint64_t position, uint32_t width,
                         uint32_t height, uint64_t bound) {
  const FrameFacts& facts = FindFacts(layout);
  const auto codes = CodesOf(facts, scan);
  const uint64_t firstWord = position / 32;
  BitSource source = {bits, position};
  DecodedFrame frame = {};
  for (uint32_t y = 0; y < height && frame.status == 0; ++y) {
    frame.rows.emplace_back();
    RowSamples& row = frame.rows[y];
    const RowSamples* above = y == 0 ? nullptr : &frame.rows[y - 1];
    const bool raw = TakeField(source, 1) == 1;
    for (size_t unit = 0; unit < UnitsOf(facts, width); ++unit) {
      int colourError = 0;
      for (const char channel : facts.order) {
        std::vector<int>& line = row.*kLines[Number(channel)];
        if (raw) {
          line.push_back(TakeField(source, facts.depth));
          continue;
        }
        int error = TakeSymbol(source, *codes[Number(channel)]);
        if (facts.chained && channel != 'A') {
          error += colourError;
          colourError = error;
        }
        const int prediction = Predict(facts, scan, above, row, channel, line.size());
        line.push_back(Masked(facts, prediction + error));
      }
    }
    if (IsPastBound(source.position, firstWord, bound)) frame.status = 4;
  }
  frame.position = source.position;
  return frame;
}

}  // namespace reference
