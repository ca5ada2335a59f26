#include "tests/reference/pixel_matrix.h"

#include <cstddef>
#include <stdexcept>

namespace reference {
namespace {

// How a full-range sample of white `white` becomes a sample on `span`: (multiply x + round) / divide.
struct ForwardRow {
  Wide white;
  Wide span;
  Wide lumaRound;  // in the sum of the weighted samples, before it is divided by white
  Wide multiply, round, divide;
};

// clang-format off
constexpr ForwardRow kForward[] = {
    // white  span  lumaRound  multiply round divide
    {    255,  219,       127,       73,   42,     85},
    {    511,  219,       255,        3,    3,      7},
    {   1023,  219,       511,       73,  170,    341},
    {    255,  876,       127,      292,   42,     85},
    {   1023,  876,       511,      292,  170,    341},
    {   4095,  876,      2047,      292,  682,   1365},
    {   1023, 3504,       511,     1168,  170,    341},
};
// clang-format on

// How a product sum on `span` becomes a sample of white `white`: (multiply x + round) / divide.
struct BackwardRow {
  Wide span;
  Wide white;
  Wide multiply, round, divide;
};

// clang-format off
constexpr BackwardRow kBackward[] = {
    // span  white  multiply    round   divide
    {   219,   255,       85,    4088,    8176},
    {   219,   511,        7,     168,     336},
    {   219,  1023,      341,    4088,    8176},
    {   876,   255,       85,   65408,  130816},
    {   876,  1023,      341,   65408,  130816},
    {   876,  4095,     1365,   65408,  130816},
    {  3504,  1023,      341, 1046528, 2093056},
};
// clang-format on

template <typename Row, std::size_t N>
const Row& FindRow(const Row (&rows)[N], Wide white, Wide span) {
  for (const Row& row : rows)
    if (row.white == white && row.span == span) return row;
  throw std::invalid_argument("no matrix between this depth and this scale");
}

// Half of the divisor goes the way of the sign, so that the division rounds the same on both sides of zero.
Wide DivideSymmetric(Wide value, Wide half, Wide divisor) {
  return value >= 0 ? (value + half) / divisor : (value - half) / divisor;
}

Wide Wrap32(Wide value) {
  const Wide low = value & 0xFFFFFFFF;
  return low >= 0x80000000 ? low - 0x100000000 : low;
}

// R and B on the scale of Y', and Y' without its offset, give the chroma.
Triple WithChroma(Wide luma, Wide red, Wide blue, Weights weights, Scale scale, Wide offset) {
  const Wide dr = scale.span - weights.kr;
  const Wide db = scale.span - weights.kb;
  const Wide cb = ((blue - luma) * scale.chromaSpan + db * scale.chromaZero + (db >> 1)) / db;
  const Wide cr = ((red - luma) * scale.chromaSpan + dr * scale.chromaZero + (dr >> 1)) / dr;
  return {luma + offset, cb, cr};
}

struct ProductSums {
  Wide luma;  // without its offset
  Wide red, blue;
};

ProductSums SumProducts(Triple ycc, Weights weights, Scale scale, Wide offset) {
  const Wide y = ycc.first - offset;
  const Wide cb = ycc.second - scale.chromaZero;
  const Wide cr = ycc.third - scale.chromaZero;
  const Wide grey = scale.chromaSpan * y;
  return {y, (scale.span - weights.kr) * cr + grey, (scale.span - weights.kb) * cb + grey};
}

// R or B of video range, 8 or 10 bits, offset not yet added.
Wide VideoSample(Wide sum, int bits, Wide span) {
  if (span == 219 && bits == 8) return DivideSymmetric(sum, 56, 112);
  if (span == 876 && bits == 8) return DivideSymmetric(sum, 896, 1792);
  if (span == 219 && bits == 10)
    return (4 * sum + 56) / 112;  // the one that rounds up on either side of zero
  if (span == 876 && bits == 10) return DivideSymmetric(sum, 224, 448);
  throw std::invalid_argument("no video-range RGB on this scale");
}

}  // namespace

Scale ScaleOf(Wide span) {
  if (span == 219) return {219, 16, 128, 112};
  if (span == 876) return {876, 64, 512, 448};
  if (span == 3504) return {3504, 256, 2048, 1792};
  throw std::invalid_argument("no such scale");
}

Weights WeightsOf(int colourStandard, Wide span) {
  //                                          601          709          240      Kr, Kb
  constexpr Wide kWeights[3][3][2] = {{{65, 24}, {46, 15}, {46, 19}},
                                      {{261, 99}, {186, 63}, {185, 76}},
                                      {{1047, 399}, {744, 252}, {742, 304}}};
  const int scaleIndex = span == 219 ? 0 : span == 876 ? 1 : 2;
  const int matrixIndex = colourStandard == 1 ? 1 : colourStandard == 2 ? 2 : 0;
  const Wide kr = kWeights[scaleIndex][matrixIndex][0];
  const Wide kb = kWeights[scaleIndex][matrixIndex][1];
  return {kr, kb, span - kr - kb};
}

Wide Limit(Wide value, Wide low, Wide high) {
  return value < low ? low : value > high ? high : value;
}

Triple FullRgbToYcc(Triple rgb, Wide white, Weights weights, Scale scale, Wide offset) {
  const ForwardRow& row = FindRow(kForward, white, scale.span);
  const Wide sum = weights.kr * rgb.first + weights.kg * rgb.second + weights.kb * rgb.third;
  const Wide luma = (sum + row.lumaRound) / white;
  const Wide red = (row.multiply * rgb.first + row.round) / row.divide;
  const Wide blue = (row.multiply * rgb.third + row.round) / row.divide;
  return WithChroma(luma, red, blue, weights, scale, offset);
}

Triple VideoRgbToYcc(Triple rgb, int bits, Weights weights, Scale scale, Wide offset) {
  const Wide black = bits == 8 ? 16 : 64;
  const Wide red = rgb.first - black;
  const Wide green = rgb.second - black;
  const Wide blue = rgb.third - black;
  const Wide sum = weights.kr * red + weights.kg * green + weights.kb * blue;
  const Wide luma = bits == 8 ? DivideSymmetric(sum, 109, 219) : DivideSymmetric(sum, 438, 876);
  const auto onScale = [bits, &scale](Wide sample) {
    if (bits == 8) return scale.span == 219 ? sample : sample * 4;
    return scale.span == 876 ? sample : DivideSymmetric(sample, 2, 4);
  };
  return WithChroma(luma, onScale(red), onScale(blue), weights, scale, offset);
}

Triple YccToFullRgb(Triple ycc, Wide white, Weights weights, Scale scale, Wide offset, Products products) {
  const BackwardRow& row = FindRow(kBackward, white, scale.span);
  const ProductSums sums = SumProducts(ycc, weights, scale, offset);
  const auto sample = [&row, products](Wide sum) {
    if (products == Products::exact) return (sum * row.multiply + row.round) / row.divide;
    return Wrap32(Wrap32(sum * row.multiply) + row.round) / row.divide;
  };
  const Wide red = sample(sums.red);
  const Wide blue = sample(sums.blue);
  const Wide numerator = sums.luma * white + (weights.kg >> 1) - weights.kb * blue - weights.kr * red;
  const Wide green = numerator / weights.kg;  // from R and B as they are before their limits
  return {Limit(red, 0, white), Limit(green, 0, white), Limit(blue, 0, white)};
}

Triple YccToVideoRgb(Triple ycc, int bits, Weights weights, Scale scale, Wide offset) {
  const ProductSums sums = SumProducts(ycc, weights, scale, offset);
  const Wide red = VideoSample(sums.red, bits, scale.span);
  const Wide blue = VideoSample(sums.blue, bits, scale.span);
  const Wide span = bits == 8 ? 219 : 876;
  const Wide half = weights.kg >> 1;
  const Wide numerator = sums.luma * span - weights.kb * blue - weights.kr * red;
  const bool roundsUp = scale.span == 219 && bits == 10;
  const Wide green =
      roundsUp ? (numerator + half) / weights.kg : DivideSymmetric(numerator, half, weights.kg);
  const Wide black = bits == 8 ? 16 : 64;
  const auto placed = [bits, black](Wide sample) {
    return bits == 8 ? Limit(sample + black, 1, 254) : Limit(sample + black, 4, 1019);
  };
  return {placed(red), placed(green), placed(blue)};
}

}  // namespace reference
