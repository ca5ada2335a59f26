// Small pictures and their frames as text: one '0' or '1' for each bit.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "tests/core/guarded.h"
#include "tests/core/member_call.h"
#include "tests/reference/pixel_rows.h"
#include "vorel/vorel.h"

namespace vorel {

using reference::Bytes;
using PictureRows = std::vector<Bytes>;

inline std::string Field(u32 value, int count) {
  std::string text;
  for (int i = count - 1; i >= 0; --i) text += (value >> i & 1) != 0 ? '1' : '0';
  return text;
}

inline std::string Zeros(std::size_t count) {
  return std::string(count, '0');
}

inline std::string WithoutSpaces(std::string text) {
  std::erase(text, ' ');
  return text;
}

inline Arguments TightArguments(std::string_view pixel, u32 width, u32 height) {
  const std::size_t rowBytes = (reference::RowBytes(pixel, width) + 3) / 4 * 4;
  return {width, height, static_cast<i32>(rowBytes), 0, 0, 0};
}

// The stream of a picture, from the first bit to the one at which the encoder stopped. The frame has exactly
// the room of its bound.
inline std::string EncodeToText(std::string_view layoutAndScan, std::string_view pixel, u32 width,
                                const PictureRows& rows) {
  const FrameRoutine& routine = *FindMember(Direction::encode, layoutAndScan, pixel).routine;
  Arguments a = TightArguments(pixel, width, static_cast<u32>(rows.size()));
  const std::size_t rowBytes = static_cast<std::size_t>(a.rowBytes);
  Guarded picture(rowBytes * rows.size(), 0x5A);
  for (std::size_t y = 0; y < rows.size(); ++y) {
    EXPECT_EQ(rows[y].size(), reference::RowBytes(pixel, width));
    std::copy(rows[y].begin(), rows[y].end(), picture.data() + y * rowBytes);
  }
  const u32 tag = routine.layout->tags[layoutAndScan.ends_with('i')];
  Guarded frame(VorelMaxFrameBytes(tag, width, a.height), 0);
  EXPECT_EQ(CallEncoder(routine, a, picture.data(), frame.data()), 0u);
  EXPECT_TRUE(frame.MarksIntact());
  const std::size_t bits = std::size_t{a.word} * 32 + a.bit;
  std::string text;
  for (std::size_t i = 0; i < bits; ++i) text += (frame.data()[i / 8] << i % 8 & 0x80) != 0 ? '1' : '0';
  return text;
}

// The rows of a stream, which must end at its last bit.
inline PictureRows DecodeFromText(std::string_view layoutAndScan, std::string_view pixel, u32 width,
                                  u32 height, const std::string& spaced) {
  const std::string text = WithoutSpaces(spaced);
  const FrameRoutine& routine = *FindMember(Direction::decode, layoutAndScan, pixel).routine;
  Arguments a = TightArguments(pixel, width, height);
  const std::size_t rowBytes = static_cast<std::size_t>(a.rowBytes);
  std::vector<u32> words(text.size() / 32 + 3);
  u8* const frame = reinterpret_cast<u8*>(words.data());
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == '1') frame[i / 8] = static_cast<u8>(frame[i / 8] | 0x80 >> i % 8);
  Guarded picture(rowBytes * height, 0x5A);
  Guarded scratch(VorelScratchBytes(width), 0);
  EXPECT_EQ(CallDecoder(routine, a, picture.data(), frame, scratch.data()), 0u);
  EXPECT_EQ(std::size_t{a.word} * 32 + a.bit, text.size());
  EXPECT_TRUE(picture.MarksIntact());
  PictureRows rows;
  for (std::size_t y = 0; y < height; ++y) {
    const u8* row = picture.data() + y * rowBytes;
    const std::size_t used = reference::RowBytes(pixel, width);
    rows.emplace_back(row, row + used);
    for (std::size_t i = used; i < rowBytes; ++i) EXPECT_EQ(row[i], 0x5A);
  }
  return rows;
}

// What comes back from a frame made of these rows.
inline PictureRows ThroughFrame(std::string_view layoutAndScan, std::string_view from, std::string_view to,
                                u32 width, const PictureRows& rows) {
  return DecodeFromText(layoutAndScan, to, width, static_cast<u32>(rows.size()),
                        EncodeToText(layoutAndScan, from, width, rows));
}

}  // namespace vorel
