// Pixel formats and pixel maps.
#include "component/embedded/pixel_formats.h"
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

struct PixelTest : EmbeddedHostTest {
  void SetUp() override { Start({}); }
};

constexpr OSType kV210 = FourCharacterCode("v210");
constexpr OSType kV410 = FourCharacterCode("v410");

void Register(OSType format, i16 bits) {
  ICMPixelFormatInfo info = {};
  info.size = sizeof info;
  info.bitsPerPixel[0] = bits;
  ASSERT_EQ(Host->ICMSetPixelFormatInfo(format, &info), noErr);
}

TEST_F(PixelTest, TheHostKnowsClassicFormatsOnly) {
  ICMPixelFormatInfo info = {};
  for (const OSType known : {OSType{32}, OSType{24}, FourCharacterCode("2vuy"), FourCharacterCode("b64a")})
    EXPECT_EQ(Host->ICMGetPixelFormatInfo(known, &info), noErr) << known;
  for (const OSType codec : {kV210, FourCharacterCode("v216"), kV410, FourCharacterCode("yuv2")})
    EXPECT_EQ(Host->ICMGetPixelFormatInfo(codec, &info), paramErr) << codec;
}

TEST_F(PixelTest, SizesAreBitsOfAPixel) {
  EXPECT_EQ(Host->QTGetPixelSize(32), 32);
  EXPECT_EQ(Host->QTGetPixelSize(FourCharacterCode("b48r")), 48);
  EXPECT_EQ(Host->QTGetPixelSize(FourCharacterCode("2vuy")), 16);
  EXPECT_EQ(Host->QTGetPixelSize(kV410), 0);
  Register(kV410, 30);
  EXPECT_EQ(Host->QTGetPixelSize(kV410), 30);
}

TEST_F(PixelTest, RegisteredFormatsAreGivenBack) {
  ICMPixelFormatInfo info = {};
  info.size = sizeof info;
  info.formatFlags = 0x80;
  info.bitsPerPixel[0] = 64;
  info.defaultGammaLevel = 0x00023333;
  info.cmpCount = 4;
  info.cmpSize = 16;
  ASSERT_EQ(Host->ICMSetPixelFormatInfo(FourCharacterCode("V416"), &info), noErr);
  ICMPixelFormatInfo read = {};
  read.size = sizeof read;
  ASSERT_EQ(Host->ICMGetPixelFormatInfo(FourCharacterCode("V416"), &read), noErr);
  EXPECT_EQ(std::memcmp(&read, &info, sizeof info), 0);
  EXPECT_EQ(RegisteredPixelFormats(), std::vector<OSType>{FourCharacterCode("V416")});
}

TEST_F(PixelTest, OnlyTheRoomOfTheCallerIsWritten) {
  ICMPixelFormatInfo info;
  std::memset(&info, 0xEE, sizeof info);
  info.size = 40;
  ASSERT_EQ(Host->ICMGetPixelFormatInfo(32, &info), noErr);
  EXPECT_EQ(info.size, 40);
  EXPECT_EQ(info.bitsPerPixel[0], 32);
  EXPECT_EQ(info.defaultGammaLevel, 0);
  EXPECT_EQ(info.horizontalSubsampling[0], static_cast<i16>(0xEEEE));
  EXPECT_EQ(info.cmpSize, static_cast<i16>(0xEEEE));
}

TEST_F(PixelTest, WithoutASizeTheAnswerIsWhetherItIsKnown) {
  ICMPixelFormatInfo info;
  std::memset(&info, 0xEE, sizeof info);
  ASSERT_EQ(Host->ICMGetPixelFormatInfo(32, &info), noErr);  // a negative size
  EXPECT_EQ(info.bitsPerPixel[0], static_cast<i16>(0xEEEE));
}

TEST_F(PixelTest, TheHostsOwnFormatsStay) {
  ICMPixelFormatInfo info = {};
  info.size = sizeof info;
  info.bitsPerPixel[0] = 99;
  EXPECT_EQ(Host->ICMSetPixelFormatInfo(32, &info), paramErr);
  EXPECT_EQ(Host->QTGetPixelSize(32), 32);
  info.size = 8;
  EXPECT_EQ(Host->ICMSetPixelFormatInfo(kV410, &info), paramErr);
  EXPECT_EQ(Host->ICMSetPixelFormatInfo(kV410, nullptr), paramErr);
}

TEST_F(PixelTest, PixelsStartWhereTheirGroupsDo) {
  Register(kV210, 20);
  Register(kV410, 30);
  EXPECT_EQ(BytesToPixel(32, 10), 40);
  EXPECT_EQ(BytesToPixel(24, 3), 9);
  EXPECT_EQ(BytesToPixel(kV410, 3), 12);  // told as 30 bits, stored in 32
  EXPECT_EQ(BytesToPixel(kV210, 12), 32);
  EXPECT_EQ(BytesToPixel(kV210, 4), std::nullopt);
  EXPECT_EQ(BytesToPixel(FourCharacterCode("2vuy"), 6), 12);
  EXPECT_EQ(BytesToPixel(FourCharacterCode("2vuy"), 5), std::nullopt);
  EXPECT_EQ(BytesToPixel(FourCharacterCode("nope"), 1), std::nullopt);
  EXPECT_EQ(BytesToPixel(FourCharacterCode("nope"), 0), 0);
}

TEST_F(PixelTest, ShortRowsStandInTheMapItself) {
  PixMap map = {};
  map.rowBytes = static_cast<i16>(0x8000 | 0x1234);
  EXPECT_EQ(Host->QTGetPixMapPtrRowBytes(&map), 0x1234);
  EXPECT_EQ(Host->QTGetPixMapPtrGammaLevel(&map), 0);
  EXPECT_EQ(Host->QTGetPixMapPtrRowBytes(nullptr), 0);
  EXPECT_EQ(Host->QTGetPixMapPtrGammaLevel(nullptr), 0);
}

TEST_F(PixelTest, RowsOfAnySizeAndSignGoThroughTheExtension) {
  PixMap map = {};
  PixelMapExtension extension;
  for (const i32 rowBytes : {0, 7680, 0x3FFF, 0x4000, 1 << 20, -7680}) {
    SetPixelMapRows(map, extension, rowBytes, 0x00023333);
    EXPECT_EQ(Host->QTGetPixMapPtrRowBytes(&map), rowBytes);
    EXPECT_EQ(Host->QTGetPixMapPtrGammaLevel(&map), 0x00023333);
    EXPECT_NE(map.rowBytes & 0x8000, 0);
  }
}

TEST_F(PixelTest, BaseAddressIsThatOfTheMap) {
  u8 pixels[4];
  PixMap map = {};
  map.baseAddr = pixels;
  PixMap* pointer = &map;
  EXPECT_EQ(Host->GetPixBaseAddr(&pointer), pixels);
  pointer = nullptr;
  EXPECT_EQ(Host->GetPixBaseAddr(&pointer), nullptr);
  EXPECT_EQ(Host->GetPixBaseAddr(nullptr), nullptr);
}

}  // namespace
}  // namespace vorel::component::embedded
