// The walk over all routines: which pictures each of them gets, and how a difference is told.
#pragma once
#include <gtest/gtest.h>

#include "tests/core/member_call.h"
#include "tests/core/painted_rows.h"

namespace vorel {

struct Setting {
  Arguments arguments;
  Paint paint;
  u32 seed;
};

inline std::ostream& operator<<(std::ostream& out, const Setting& s) {
  const Arguments& a = s.arguments;
  return out << a.width << " x " << a.height << ", row bytes " << a.rowBytes << ", standard " << a.standard
             << ", cursors " << a.word << '/' << a.bit << ", paint " << static_cast<int>(s.paint) << ", seed "
             << s.seed;
}

inline std::size_t Distance(const Arguments& a) {
  return static_cast<std::size_t>(std::abs(a.rowBytes));
}

// Where a row of the order of coding begins.
inline std::size_t RowAt(const Arguments& a, std::size_t y) {
  return Distance(a) * (a.rowBytes < 0 ? a.height - 1 - y : y);
}

inline u64 FirstBit(const Arguments& a) {
  return u64{a.word} * 32 + a.bit;
}

// Another sample of the settings for every member: `turn` counts the settings of one member.
inline Setting MakeSetting(std::size_t member, u32 turn, std::string_view pixel) {
  static constexpr u32 kWide[] = {95, 96, 97, 127, 128, 129, 131, 193};
  static constexpr u32 kTall[] = {8, 9, 17, 18, 33, 35};
  static constexpr u32 kCursors[][2] = {{5, 0}, {0, 0}, {0, 1}, {5, 31}, {3, 37}, {5, 1}};
  const u32 seed = static_cast<u32>(member) * 64 + turn;
  Random random = StartRandom(seed);
  u32 width = 1 + (static_cast<u32>(member) * 11 + turn * 5) % 67;
  u32 height = 1 + static_cast<u32>(random() % 5);
  if (turn % 8 == 6) width = 1 + (static_cast<u32>(member) + turn / 8) % 9;
  if (turn % 8 == 7) width = kWide[(member + turn / 8) % 8];
  if (turn % 8 == 5) height = kTall[(member + turn / 8) % 6];
  const std::size_t least = (reference::RowBytes(pixel, width) + 3) / 4 * 4;
  const i32 rowBytes = static_cast<i32>(least + random() % 3 * 4);
  const auto& cursors = kCursors[random() % std::size(kCursors)];
  return {{width, height, random() % 2 == 0 ? rowBytes : -rowBytes, static_cast<u32>(random() % 4),
           cursors[0], cursors[1]},
          static_cast<Paint>((seed / 64 + turn) % kPaints),
          seed};
}

// Broad rows are coded in pieces.
inline Setting MakeBroad(std::size_t member, std::string_view pixel) {
  static constexpr u32 kBroad[] = {4200, 12401, 4097, 4200, 37000};
  const u32 width = kBroad[member / 26 % 5];
  const i32 rowBytes = static_cast<i32>((reference::RowBytes(pixel, width) + 3) / 4 * 4);
  const u32 height = width < 5000 ? 5 : 2;
  return {{width, height, rowBytes, static_cast<u32>(member % 3), 5, 0},
          member % 2 == 0 ? Paint::photo : Paint::mixed,
          static_cast<u32>(member)};
}

inline std::string Differs(std::string_view what, u64 found, u64 expected) {
  if (found == expected) return {};
  return std::string(what) + " is " + std::to_string(found) + ", not " + std::to_string(expected);
}

inline std::string DiffersAt(std::string_view what, const u8* found, const std::vector<u8>& expected) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (found[i] != expected[i])
      return Differs(std::string(what) + " byte " + std::to_string(i), found[i], expected[i]);
  }
  return {};
}

inline std::string CursorsDiffer(const Arguments& before, const Arguments& after, u64 position) {
  std::string what = Differs("word cursor", after.word, before.word + position / 32);
  return what.empty() ? Differs("bit cursor", after.bit, position % 32) : what;
}

struct Seen {
  u32 status[5];
  u32 raw;
  u32 predicted;
};

using Compare = std::string(const Member&, const Setting&, Seen&);

// One line for each member that fails.
inline void Walk(Direction direction, std::size_t count, u32 turns, Compare compare, Seen& seen) {
  const std::vector<Member> members = AllMembers(direction);
  ASSERT_EQ(members.size(), count);
  for (std::size_t m = 0; m < members.size(); ++m) {
    const Member& member = members[m];
    ASSERT_EQ(member.scan == 'p', member.routine->scan == Scan::p);
    ASSERT_EQ(member.routine->takesScratch, direction == Direction::decode && member.scan == 'p');
    // The broad picture comes to every pixel format, and to every layout, somewhere.
    const bool broad = m % 26 == 5;
    for (u32 turn = 0; turn < turns + broad; ++turn) {
      const Setting setting = turn == turns ? MakeBroad(m, member.pixel) : MakeSetting(m, turn, member.pixel);
      const std::string what = compare(member, setting, seen);
      if (what.empty()) continue;
      ADD_FAILURE() << member.name << " (" << member.pixel << "), " << setting << ": " << what;
      break;
    }
  }
}

}  // namespace vorel
