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

std::vector<u8> FieldBytes(ScanOrder scan) {
  const container::SampleDescription description = DescribeClip(SomeClip(scan, {}), 1);
  const container::Extension* const fields = FindExtension(description, container::kFieldOrderType);
  return fields == nullptr ? std::vector<u8>{} : fields->bytes;
}

}  // namespace

TEST(ClipDescription, EveryScanAndAspectComesBack) {
  for (const ScanOrder scan :
       {ScanOrder::unknown, ScanOrder::progressive, ScanOrder::topFirst, ScanOrder::bottomFirst}) {
    for (const picture_io::Ratio aspect :
         {picture_io::Ratio{}, picture_io::Ratio{1, 1}, picture_io::Ratio{59, 54}}) {
      const ClipFormat clip = SomeClip(scan, aspect);
      EXPECT_EQ(ClipOfDescription(DescribeClip(clip, 1), {25, 1}), clip);
    }
  }
}

TEST(ClipDescription, FieldsAreSaidOnlyWhenKnown) {
  EXPECT_EQ(FieldBytes(ScanOrder::unknown), (std::vector<u8>{}));
  EXPECT_EQ(FieldBytes(ScanOrder::progressive), (std::vector<u8>{1, 0}));
  EXPECT_EQ(FieldBytes(ScanOrder::topFirst), (std::vector<u8>{2, 9}));
  EXPECT_EQ(FieldBytes(ScanOrder::bottomFirst), (std::vector<u8>{2, 14}));
}

TEST(ClipDescription, TagFollowsTheScan) {
  EXPECT_EQ(TagOfDescription(DescribeClip(SomeClip(ScanOrder::unknown, {}), 1)), 0x72596259u);
  EXPECT_EQ(TagOfDescription(DescribeClip(SomeClip(ScanOrder::progressive, {}), 1)), 0x72596259u);
  EXPECT_EQ(TagOfDescription(DescribeClip(SomeClip(ScanOrder::bottomFirst, {}), 1)), 0x72796259u);
}

TEST(ClipDescription, TemporalFieldOrdersOfOtherWritersAreRead) {
  container::SampleDescription description = DescribeClip(SomeClip(ScanOrder::progressive, {}), 1);
  SetExtension(description, container::MakeFieldOrder({2, 1}));
  EXPECT_EQ(ClipOfDescription(description, {25, 1}).scan, ScanOrder::topFirst);
  SetExtension(description, container::MakeFieldOrder({2, 6}));
  EXPECT_EQ(ClipOfDescription(description, {25, 1}).scan, ScanOrder::bottomFirst);
}

TEST(ClipDescription, CodecsOfTheFamilyAreKnown) {
  EXPECT_TRUE(IsVorelCodec(FourCharacterCode("Vrl0")));
  EXPECT_TRUE(IsVorelCodec(FourCharacterCode("Vrl7")));
  EXPECT_FALSE(IsVorelCodec(FourCharacterCode("Vrl8")));
  EXPECT_FALSE(IsVorelCodec(FourCharacterCode("abcd")));
}

}  // namespace vorel::tool
