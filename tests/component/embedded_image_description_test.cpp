// Extensions of image descriptions, whole and damaged.
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

constexpr i32 kKesp = FourCharacterCode("Kesp");
constexpr i32 kColr = FourCharacterCode("colr");

struct ImageDescriptionTest : EmbeddedHostTest {
  ImageDescriptionHandle description = nullptr;

  void SetUp() override {
    Start({});
    description = MakeImageDescription(FourCharacterCode("Vrl3"), 720, 486);
  }
  void TearDown() override {
    Host->DisposeHandle(AsHandle());
    EmbeddedHostTest::TearDown();
  }
  Handle AsHandle() const { return reinterpret_cast<Handle>(description); }
  i32 Size() const { return Host->GetHandleSize(AsHandle()); }

  void Add(i32 type, const std::string& data) {
    const Handle handle = Host->NewHandleClear(static_cast<i32>(data.size()));
    std::memcpy(*handle, data.data(), data.size());
    EXPECT_EQ(Host->AddImageDescriptionExtension(description, handle, type), noErr);
    Host->DisposeHandle(handle);
  }
  // Bytes behind the last extension, which idSize counts or does not.
  void AppendRaw(const Blob& bytes, bool counted) {
    const i32 before = Size();
    Host->SetHandleSize(AsHandle(), before + static_cast<i32>(bytes.size()));
    std::memcpy(*AsHandle() + before, bytes.data(), bytes.size());
    if (counted) (*description)->idSize = Size();
  }
  std::string Get(i32 type, i32 index) {
    Handle handle = nullptr;
    if (Host->GetImageDescriptionExtension(description, &handle, type, index) != noErr) return "absent";
    const std::string data = TextOfHandle(handle);
    Host->DisposeHandle(handle);
    return data;
  }
};

TEST_F(ImageDescriptionTest, ANewDescriptionHasNoExtensions) {
  EXPECT_EQ(Size(), 86);
  EXPECT_EQ((*description)->idSize, 86);
  EXPECT_EQ((*description)->cType, FourCharacterCode("Vrl3"));
  EXPECT_EQ((*description)->width, 720);
  EXPECT_EQ((*description)->height, 486);
  EXPECT_EQ((*description)->hRes, 0x00480000);
  Handle data = reinterpret_cast<Handle>(1);
  EXPECT_EQ(Host->GetImageDescriptionExtension(description, &data, kKesp, 1), codecExtensionNotFoundErr);
  EXPECT_EQ(data, nullptr);
  EXPECT_TRUE(ExtensionBytes(description).empty());
}

TEST_F(ImageDescriptionTest, AddedExtensionsAreFoundByTypeAndIndex) {
  Add(kKesp, "BYRY");
  Add(kColr, "nclc");
  Add(kKesp, "second");
  EXPECT_EQ(Get(kKesp, 1), "BYRY");
  EXPECT_EQ(Get(kKesp, 2), "second");
  EXPECT_EQ(Get(kColr, 1), "nclc");
  EXPECT_EQ(Get(kKesp, 3), "absent");
  EXPECT_EQ(Get(kKesp, 0), "absent");
  EXPECT_EQ(Get(kKesp, -1), "absent");
  EXPECT_EQ(Size(), 86 + 12 + 12 + 14);
  EXPECT_EQ((*description)->idSize, Size());
}

TEST_F(ImageDescriptionTest, EmptyDataMakeAnExtension) {
  Add(kKesp, "");
  EXPECT_EQ(Get(kKesp, 1), "");
  EXPECT_EQ(Size(), 94);
}

TEST_F(ImageDescriptionTest, RemoveTakesTheOneAndKeepsTheOthers) {
  Add(kKesp, "one");
  Add(kColr, "two");
  Add(kKesp, "three");
  EXPECT_EQ(Host->RemoveImageDescriptionExtension(description, kKesp, 1), noErr);
  EXPECT_EQ(Get(kKesp, 1), "three");
  EXPECT_EQ(Get(kColr, 1), "two");
  EXPECT_EQ((*description)->idSize, 86 + 11 + 13);
  EXPECT_EQ(Size(), (*description)->idSize);
  EXPECT_EQ(Host->RemoveImageDescriptionExtension(description, kKesp, 2), codecExtensionNotFoundErr);
}

TEST_F(ImageDescriptionTest, TheFileFormIsBigEndian) {
  Add(kKesp, "BYRY");
  Add(kColr, "x");
  const std::vector<u8> bytes = ExtensionBytes(description);
  EXPECT_EQ(Blob(bytes.begin(), bytes.end()), Be32(12) + "KespBYRY" + Be32(9) + "colrx");
}

TEST_F(ImageDescriptionTest, TheFileFormIsReadBack) {
  const Blob bytes = Be32(12) + "KespBYRY" + Be32(9) + "colrx" + Be32(0);
  Add(kKesp, "first");
  EXPECT_EQ(AddExtensionBytes(description, BytesOf(bytes)), noErr);
  EXPECT_EQ(Get(kKesp, 1), "first");
  EXPECT_EQ(Get(kKesp, 2), "BYRY");
  EXPECT_EQ(Get(kColr, 1), "x");
  EXPECT_EQ((*description)->idSize, Size());
}

TEST_F(ImageDescriptionTest, ADamagedFileFormAddsNothing) {
  for (const Blob& bytes : {Be32(12) + "KespBYRY" + Be32(10) + "colrx", Be32(7) + "Kesp",
                            Be32(0xFFFFFFFF) + "Kesp", Be32(12) + "KespBYRY" + Be32(9)}) {
    EXPECT_EQ(AddExtensionBytes(description, BytesOf(bytes)), codecBadDataErr);
    EXPECT_EQ(Size(), 86);
  }
}

TEST_F(ImageDescriptionTest, TheWalkEndsAtAnExtensionThatReachesBeyondTheEnd) {
  Add(kKesp, "BYRY");
  const u32 size = 1000;
  AppendRaw(Blob(reinterpret_cast<const char*>(&size), 4) + "rloc" + "abc", true);
  EXPECT_EQ(Get(kKesp, 1), "BYRY");
  EXPECT_EQ(Get(FourCharacterCode("colr"), 1), "absent");
}

TEST_F(ImageDescriptionTest, TheWalkEndsAtASizeBelowItsHeader) {
  for (const i32 size : {0, 7, -1, INT32_MIN}) {
    (*description)->idSize = 86;
    Host->SetHandleSize(AsHandle(), 86);
    AppendRaw(Blob(reinterpret_cast<const char*>(&size), 4) + "rloc" + "abcdefgh", true);
    EXPECT_EQ(Get(kColr, 1), "absent") << size;
  }
}

TEST_F(ImageDescriptionTest, NewExtensionsGoInFrontOfWhatCannotBeRead) {
  Add(kColr, "one");
  AppendRaw(Blob("\0\0\0\0", 4), true);
  Add(kKesp, "BYRY");
  EXPECT_EQ(Get(kKesp, 1), "BYRY");
  EXPECT_EQ(TextOfHandle(AsHandle()).substr(static_cast<std::size_t>(Size() - 8)), Blob("BYRY\0\0\0\0", 8));
  EXPECT_EQ((*description)->idSize, Size());
}

TEST_F(ImageDescriptionTest, ASizeThatIsTooLargeOrTooSmallIsBounded) {
  Add(kKesp, "BYRY");
  (*description)->idSize = 100000;
  EXPECT_EQ(Get(kKesp, 1), "BYRY");
  (*description)->idSize = -5;
  EXPECT_EQ(Get(kKesp, 1), "absent");
}

TEST_F(ImageDescriptionTest, BytesBehindTheDescriptionStayOutsideIt) {
  AppendRaw("tail", false);
  Add(kKesp, "BYRY");
  EXPECT_EQ((*description)->idSize, 98);
  EXPECT_EQ(TextOfHandle(AsHandle()).substr(98), "tail");
}

TEST_F(ImageDescriptionTest, AHandleThatIsTooShortIsNoDescription) {
  const Handle shortHandle = Host->NewHandleClear(85);
  const auto notOne = reinterpret_cast<ImageDescriptionHandle>(shortHandle);
  Handle data;
  EXPECT_EQ(Host->GetImageDescriptionExtension(notOne, &data, kKesp, 1), paramErr);
  EXPECT_EQ(Host->AddImageDescriptionExtension(notOne, shortHandle, kKesp), paramErr);
  EXPECT_EQ(Host->RemoveImageDescriptionExtension(notOne, kKesp, 1), paramErr);
  EXPECT_EQ(Host->GetImageDescriptionExtension(nullptr, &data, kKesp, 1), paramErr);
  EXPECT_EQ(Host->GetImageDescriptionExtension(description, nullptr, kKesp, 1), paramErr);
  EXPECT_EQ(Host->AddImageDescriptionExtension(description, nullptr, kKesp), paramErr);
  Host->DisposeHandle(shortHandle);
}

TEST_F(ImageDescriptionTest, WithoutMemoryTheDescriptionStays) {
  Add(kKesp, "BYRY");
  const Blob before = TextOfHandle(AsHandle());
  const Handle data = Host->NewHandleClear(4);
  FailAllocation(1);
  EXPECT_EQ(Host->AddImageDescriptionExtension(description, data, kColr), memFullErr);
  FailAllocation(1);
  EXPECT_EQ(Host->RemoveImageDescriptionExtension(description, kKesp, 1), memFullErr);
  FailAllocation(1);
  EXPECT_EQ(AddExtensionBytes(description, BytesOf(Be32(8) + "colr")), memFullErr);
  FailAllocation(1);
  Handle copy = nullptr;
  EXPECT_EQ(Host->GetImageDescriptionExtension(description, &copy, kKesp, 1), memFullErr);
  EXPECT_EQ(copy, nullptr);
  EXPECT_EQ(TextOfHandle(AsHandle()), before);
  Host->DisposeHandle(data);
}

}  // namespace
}  // namespace vorel::component::embedded
