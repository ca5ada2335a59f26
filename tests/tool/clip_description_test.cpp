// Clip formats to image descriptions and back.
#include "tool/clip_description.h"

#include <gtest/gtest.h>

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;
using picture_io::ScanOrder;

ClipFormat SomeClip(ScanOrder scan, picture_io::Ratio aspect) {
  return {picture_io::kYuvu, 720, 576, {25, 1}, scan, aspect};
}

container::SampleDescription Described(const ClipFormat& clip, u32 colourStandard = 0) {
  return DescribeClip(clip, CodingOfClip(clip, VOREL_GENERIC, true, colourStandard, "clip"));
}

ClipFormat ReadBack(const container::SampleDescription& description) {
  return ClipOfDescription(description, {25, 1}, picture_io::kYuvu);
}

std::vector<u8> FieldBytes(ScanOrder scan) {
  const container::SampleDescription description = Described(SomeClip(scan, {}));
  const container::Extension* const fields = FindExtension(description, container::kFieldOrderType);
  return fields == nullptr ? std::vector<u8>{} : fields->bytes;
}

}  // namespace

TEST(ClipDescription, EveryScanAndAspectComesBack) {
  for (const ScanOrder scan : {ScanOrder::unknown, ScanOrder::progressive, ScanOrder::topFirst,
                               ScanOrder::bottomFirst, ScanOrder::interlaced}) {
    for (const picture_io::Ratio aspect :
         {picture_io::Ratio{}, picture_io::Ratio{1, 1}, picture_io::Ratio{59, 54}}) {
      const ClipFormat clip = SomeClip(scan, aspect);
      EXPECT_EQ(ReadBack(Described(clip)), clip);
    }
  }
}

TEST(ClipDescription, FieldsAreSaidOnlyWhenKnown) {
  EXPECT_EQ(FieldBytes(ScanOrder::unknown), (std::vector<u8>{}));
  EXPECT_EQ(FieldBytes(ScanOrder::progressive), (std::vector<u8>{1, 0}));
  EXPECT_EQ(FieldBytes(ScanOrder::topFirst), (std::vector<u8>{2, 9}));
  EXPECT_EQ(FieldBytes(ScanOrder::bottomFirst), (std::vector<u8>{2, 14}));
  EXPECT_EQ(FieldBytes(ScanOrder::interlaced), (std::vector<u8>{2, 0}));
}

TEST(ClipDescription, CodecAndDepthFollowTheTag) {
  ClipFormat clip = SomeClip(ScanOrder::progressive, {});
  clip.pixelFormat = picture_io::kV210;
  const container::SampleDescription plain = Described(clip);
  EXPECT_EQ(plain.cType, FourCharacterCode("Vrl6"));
  EXPECT_EQ(plain.depth, 24);
  clip.pixelFormat = FourCharacterCode("BGRA");
  const FrameCoding withAlpha = CodingOfClip(clip, VOREL_YCBCR_8BV_422, true, 0, "clip");
  EXPECT_EQ(DescribeClip(clip, withAlpha).cType, FourCharacterCode("Vrl3"));
  EXPECT_EQ(DescribeClip(clip, withAlpha).depth, 32);
  const FrameCoding withoutAlpha = CodingOfClip(clip, VOREL_YCBCR_8BV_422, false, 0, "clip");
  EXPECT_EQ(DescribeClip(clip, withoutAlpha).depth, 24);
}

TEST(ClipDescription, ColourStandardIsAlwaysSaid) {
  const container::SampleDescription description = Described(SomeClip(ScanOrder::progressive, {}), 2);
  const container::Extension* const colour = FindExtension(description, FourCharacterCode("colr"));
  ASSERT_NE(colour, nullptr);
  EXPECT_EQ(colour->bytes, (std::vector<u8>{'n', 'c', 'l', 'c', 0, 6, 0, 7, 0, 7}));
}

TEST(ClipDescription, FieldOrdersOfOtherWritersAreRead) {
  container::SampleDescription description = Described(SomeClip(ScanOrder::progressive, {}));
  const auto scanOf = [&description](u8 detail) {
    SetExtension(description, container::MakeFieldOrder({2, detail}));
    return ReadBack(description).scan;
  };
  EXPECT_EQ(scanOf(1), ScanOrder::topFirst);
  EXPECT_EQ(scanOf(6), ScanOrder::bottomFirst);
  EXPECT_EQ(scanOf(77), ScanOrder::interlaced);
}

TEST(ClipDescription, CodecsOfTheFamilyAreKnown) {
  EXPECT_TRUE(IsVorelCodec(FourCharacterCode("Vrl0")));
  EXPECT_TRUE(IsVorelCodec(FourCharacterCode("Vrl7")));
  EXPECT_FALSE(IsVorelCodec(FourCharacterCode("Vrl8")));
  EXPECT_FALSE(IsVorelCodec(FourCharacterCode("abcd")));
}

}  // namespace vorel::tool
