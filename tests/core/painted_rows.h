// Pictures for tests of any pixel format and any layout: rows of samples, and rows of pixels in whose fillers
// and unused bits anything may stand.
#pragma once
#include <algorithm>
#include <random>
#include <string>
#include <string_view>

#include "base/integers.h"
#include "tests/reference/frame_facts.h"
#include "tests/reference/frame_model.h"
#include "tests/reference/pixel_model.h"

namespace vorel {

enum class Paint { flat, ramp, photo, noise, edges, mixed, patches };
constexpr u32 kPaints = 6;  // besides patches, which need a large picture

// Small enough to be begun anew for every row.
using Random = std::minstd_rand;

inline Random StartRandom(u32 seed) {
  Random random(seed * 2654435761u + 1);
  random.discard(3);  // neighbouring seeds begin alike
  return random;
}

// Paints one picture, row by row.
struct Painter {
  Paint paint;
  Random random;
  u32 row;
};

inline Painter StartPicture(Paint paint, u32 seed) {
  return {paint, StartRandom(seed), 0};
}

inline int PaintSample(Painter& painter, Paint paint, int index, int most, const int* above, int spread) {
  const int row = static_cast<int>(painter.row);
  const int any = static_cast<int>(painter.random() >> 3);
  switch (paint) {
    case Paint::flat:
      return most * 5 / 8;
    case Paint::ramp:
      return (3 * index + 5 * row) % (most + 1);
    case Paint::photo:
      return std::min(most, most / 3 + (index / 4 + row) % (most / 2 + 1) + any % (most / 40 + 2));
    case Paint::noise:
      return any % (most + 1);
    case Paint::edges:
      return any % 5 == 0 ? any / 5 % 2 * most : above != nullptr ? *above : most / 2;
    case Paint::mixed:  // residuals of one size, so that rows of every length come about
      return std::clamp(most / 2 + any % (2 * spread + 1) - spread, 0, most);
    case Paint::patches:  // of one colour each, with a speck now and then
      return any % 10000 == 0 ? any / 10000 % (most + 1) : (index / 230 + row / 45) % 3 * most / 3;
  }
  return 0;
}

inline void PaintLine(Painter& painter, std::vector<int>& line, const std::vector<int>& most,
                      const std::vector<int>* above) {
  // One row in five of an otherwise smooth picture is noise.
  const Paint paint =
      painter.paint == Paint::photo && painter.random() % 5 == 0 ? Paint::noise : painter.paint;
  const int narrowing = static_cast<int>(painter.random() % 9);
  line.resize(most.size());
  for (std::size_t i = 0; i < line.size(); ++i)
    line[i] = PaintSample(painter, paint, static_cast<int>(i), most[i],
                          above != nullptr ? &(*above)[i] : nullptr, most[i] >> narrowing);
}

// `most` has the shape of the row and the greatest value of each sample.
inline reference::RowSamples PaintRow(Painter& painter, const reference::RowSamples& most,
                                      const reference::RowSamples* above) {
  reference::RowSamples row;
  PaintLine(painter, row.first, most.first, above != nullptr ? &above->first : nullptr);
  PaintLine(painter, row.second, most.second, above != nullptr ? &above->second : nullptr);
  PaintLine(painter, row.third, most.third, above != nullptr ? &above->third : nullptr);
  PaintLine(painter, row.alpha, most.alpha, above != nullptr ? &above->alpha : nullptr);
  ++painter.row;
  return row;
}

// Rows of a frame's samples. The pixel past the end of an odd 4:2:2 row is any, like the others.
inline reference::Rows PaintFrame(std::string_view layout, u32 width, u32 height, Paint paint, u32 seed) {
  const reference::FrameFacts& facts = reference::FindFacts(layout);
  const std::size_t units = facts.pixels == 2 ? (width + 1) / 2 : width;
  const std::size_t pixels = units * static_cast<std::size_t>(facts.pixels);
  const int top = (1 << facts.depth) - 1;
  const bool hasAlpha = facts.order.find('A') != std::string_view::npos;
  const reference::RowSamples most = {std::vector<int>(pixels, top), std::vector<int>(units, top),
                                      std::vector<int>(units, top),
                                      std::vector<int>(hasAlpha ? pixels : 0, top)};
  Painter painter = StartPicture(paint, seed);
  reference::Rows rows;
  for (u32 y = 0; y < height; ++y) rows.push_back(PaintRow(painter, most, y == 0 ? nullptr : &rows[y - 1]));
  return rows;
}

// Rows of pixels, each of exactly the bytes that the format takes.
inline std::vector<std::vector<u8>> PaintPixels(std::string_view pixel, u32 width, u32 height, Paint paint,
                                                u32 seed) {
  std::vector<u8> mask(reference::RowBytes(pixel, width), 0xFF);
  const reference::RowSamples most = reference::ReadCodes(pixel, mask.data(), width);
  reference::WriteCodes(pixel, most, width, mask.data());
  const bool isFiller = pixel.starts_with('_') || pixel.ends_with('_');
  Painter painter = StartPicture(paint, seed);
  std::vector<std::vector<u8>> rows;
  reference::Rows codes;
  for (u32 y = 0; y < height; ++y) {
    codes.push_back(PaintRow(painter, most, y == 0 ? nullptr : &codes[y - 1]));
    if (isFiller)
      for (int& code : codes[y].alpha) code = static_cast<int>(painter.random() % 256);
    std::vector<u8>& row = rows.emplace_back(mask.size());
    reference::WriteCodes(pixel, codes[y], width, row.data());
    for (std::size_t i = 0; i < row.size(); ++i)
      row[i] = static_cast<u8>(row[i] | (painter.random() & ~mask[i]));
  }
  return rows;
}

}  // namespace vorel
