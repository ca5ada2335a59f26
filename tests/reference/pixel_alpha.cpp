#include "tests/reference/pixel_alpha.h"

#include <stdexcept>

namespace reference {
namespace {

[[noreturn]] void NoSuchRule() {
  throw std::invalid_argument("no rule for alpha of this frame and pixel format");
}

}  // namespace

AlphaKind AlphaKindOf(std::string_view pixel) {
  switch (KindOf(pixel)) {
    case Kind::rgb8:
    case Kind::vrgb:  // only its colour is video range
    case Kind::r408:
      return AlphaKind::full8;
    case Kind::deep:
      return AlphaKind::deep;
    case Kind::ycc8:
      return AlphaKind::video8;
    case Kind::v216:
      return AlphaKind::V416;
    default:
      NoSuchRule();
  }
}

Wide AlphaIntoFrame(AlphaKind source, Range frame, Wide x) {
  switch (source) {
    case AlphaKind::full8:
      if (frame == Range::f8 || frame == Range::u8) return x;
      if (frame == Range::v8) return (x * 219 + 126) / 255 + 16;
      if (frame == Range::v10) return (x * 876 + 127) / 255 + 64;
      if (frame == Range::f10) return x << 2;
      break;
    case AlphaKind::deep:
      if (frame == Range::f8 || frame == Range::u8) return x >> 8;
      if (frame == Range::v8) return ((x >> 7) * 219 + 255) / 511 + 16;
      if (frame == Range::v10) return ((x >> 4) * 876 + 2047) / 4095 + 64;
      if (frame == Range::f10) return x >> 6;
      break;
    case AlphaKind::video8:
      if (frame == Range::f8) return Limit(((x - 16) * 255 + 109) / 219, 0, 255);
      if (frame == Range::v8) return x;
      if (frame == Range::v10) return x << 2;
      if (frame == Range::f10) return Limit(((x - 16) * 1023 + 109) / 219, 0, 1023);
      break;
    case AlphaKind::V416:
      if (frame == Range::f8) return Limit((((x >> 6) - 64) * 255 + 438) / 876, 0, 255);
      if (frame == Range::v8) return x >> 8;
      if (frame == Range::v10) return x >> 6;
      if (frame == Range::f10) return Limit((((x >> 4) - 256) * 1023 + 1752) / 3504, 0, 1023);
      break;
  }
  NoSuchRule();
}

Wide AlphaFromFrame(AlphaKind target, Range frame, Wide x) {
  switch (target) {
    case AlphaKind::full8:
      if (frame == Range::f8 || frame == Range::u8) return x;
      if (frame == Range::v8) return Limit(((x - 16) * 255 + 109) / 219, 0, 255);
      if (frame == Range::v10) return Limit(((x - 64) * 255 + 438) / 876, 0, 255);
      if (frame == Range::f10) return x >> 2;
      break;
    case AlphaKind::deep:
      if (frame == Range::f8 || frame == Range::u8) return x << 8;
      if (frame == Range::v8) return Limit(((x - 16) * 511 + 109) / 219, 0, 511) << 7;
      if (frame == Range::v10) return Limit(((x - 64) * 4095 + 438) / 876, 0, 4095) << 4;
      if (frame == Range::f10) return x << 6;
      break;
    case AlphaKind::video8:
      if (frame == Range::f8 || frame == Range::u8) return (x * 219 + 126) / 255 + 16;
      if (frame == Range::v8) return x;
      if (frame == Range::v10) return x >> 2;
      if (frame == Range::f10) return (x * 219 + 510) / 1023 + 16;
      break;
    case AlphaKind::V416:
      if (frame == Range::f8) return ((x * 876 + 126) / 255 + 64) << 6;
      if (frame == Range::u8) return ((x * 219 + 126) / 255 + 16) << 8;
      if (frame == Range::v8) return x << 8;
      if (frame == Range::v10) return x << 6;
      if (frame == Range::f10) return ((x * 3504 + 510) / 1023 + 256) << 4;
      break;
  }
  NoSuchRule();
}

Wide OpaqueCode(AlphaKind target, Range frame) {
  switch (target) {
    case AlphaKind::full8:
      return 0xFF;
    case AlphaKind::video8:
      return 0xEB;
    case AlphaKind::V416:
      return 0xEB00;
    case AlphaKind::deep:
      if (frame == Range::f8) return 0xFF00;
      if (frame == Range::f10) return 0xFFC0;
      if (frame == Range::v8 || frame == Range::u8) return 0xFF80;
      if (frame == Range::v10) return 0xFFF0;
  }
  NoSuchRule();
}

}  // namespace reference
