// Sequences on disk: every kind of file from end to end, and files that don't go with the first.
#include "picture_io/picture_file.h"

#include <filesystem>
#include <fstream>
#include <map>

#include "picture_io/dpx.h"
#include "picture_io/png.h"
#include "picture_io/tiff.h"
#include "tests/picture_io/picture_files.h"

namespace vorel::picture_io {

namespace {

class PictureFileFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = ::testing::TempDir() + "vorel-pictures-XXXXXX";
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    folder = name + "/";
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  static void Write(const std::string& path, const StoredPicture& file) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  }
  void Store(const PictureFileKind& kind, const std::string& name, const Picture& picture) const {
    StoredPicture file;
    kind.write(picture, FormatOfPicture(picture), file);
    Write(folder + name, file);
  }
  PictureSource Open(const PictureFileKind& kind, const std::string& pattern) const {
    return OpenSequenceSource(kind, FindSequence(ReadSequencePattern(folder + pattern), {}));
  }
  // The pixels of all pictures, unpacked in another order than they were fetched.
  static std::vector<StoredPicture> PicturesOf(const PictureSource& source) {
    std::vector<StoredPicture> fetched;
    for (StoredPicture stored; source.fetch(stored);) fetched.push_back(stored);
    std::vector<StoredPicture> pictures(fetched.size());
    Picture picture;
    for (std::size_t i = fetched.size(); i-- > 0;) {
      source.unpack(fetched[i], picture);
      pictures[i] = PixelsOf(picture);
    }
    return pictures;
  }
  std::string Refusal(const PictureFileKind& kind, const std::string& pattern) const {
    return ProblemText([&] { PicturesOf(Open(kind, pattern)); });
  }

  std::string folder;
};

Picture PictureOf(u32 pixelFormat, u32 width, u32 height, u32 number) {
  Picture picture = NoisePicture(pixelFormat, width, height);
  for (u8& byte : picture.bytes) byte = static_cast<u8>((byte + number) & 0xFC);
  return picture;
}

}  // namespace

TEST(PictureFileKind, GoesByTheEndingOfTheName) {
  const std::map<std::string, const PictureFileKind*> kinds = {
      {"a.png", &kPngFiles},      {"x/A.%d.PNG", &kPngFiles}, {"a.tif", &kTiffFiles}, {"a.Tiff", &kTiffFiles},
      {"a.%04d.dpx", &kDpxFiles}, {"a.mov", nullptr},         {"png", nullptr},       {"", nullptr},
      {"a.png.y4m", nullptr},
  };
  for (const auto& [path, kind] : kinds) EXPECT_EQ(FindPictureFileKind(path), kind) << path;
}

TEST_F(PictureFileFolder, SequencesOfEveryKindComeBack) {
  for (const char* const ending : {".png", ".tif", ".dpx"}) {
    const PictureFileKind& kind = *FindPictureFileKind(ending);
    for (const u32 pixelFormat : kind.pixelFormats) {
      const std::string pattern = std::to_string(pixelFormat) + ".%03d" + ending;
      std::vector<Picture> pictures;
      for (u32 i = 0; i < 4; ++i) pictures.push_back(PictureOf(pixelFormat, 5, 3, 8 * i));
      const PictureSink sink = OpenSequenceSink(kind, FormatOfPicture(pictures[0]),
                                                ReadSequencePattern(folder + pattern), 98, Write);
      for (const Picture& picture : pictures) {
        Picture copy = picture;
        StoredPicture stored;
        sink.pack(copy, stored);
        sink.store(stored);
      }
      EXPECT_TRUE(std::filesystem::exists(folder + std::to_string(pixelFormat) + ".101" + ending));
      const PictureSource source = Open(kind, pattern);
      EXPECT_EQ(source.name, folder + pattern);
      EXPECT_EQ(source.expectedFrames, 4u);
      EXPECT_EQ(source.format, FormatOfPicture(pictures[0]));
      const std::vector<StoredPicture> back = PicturesOf(source);
      ASSERT_EQ(back.size(), 4u);
      for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(back[i], PixelsOf(pictures[i])) << pattern << " " << i;
    }
  }
}

TEST_F(PictureFileFolder, PictureOfAnotherSizeIsRefusedByName) {
  Store(kPngFiles, "a1.png", NoisePicture(24, 4, 3));
  Store(kPngFiles, "a2.png", NoisePicture(24, 3, 4));
  EXPECT_EQ(Refusal(kPngFiles, "a%d.png"),
            folder +
                "a2.png: the picture is 3 x 4, 8-bit RGB, but the sequence began with 4 x 3, 8-bit RGB " +
                "(convert it to the size and kind of the others, or part the sequence there)");
}

TEST_F(PictureFileFolder, PictureOfAnotherKindIsRefusedByName) {
  Store(kTiffFiles, "a1.tif", NoisePicture(kRgb16, 4, 3));
  Store(kTiffFiles, "a2.tif", NoisePicture(kArgb16, 4, 3));
  EXPECT_EQ(Refusal(kTiffFiles, "a%d.tif"),
            folder +
                "a2.tif: the picture is 4 x 3, 16-bit RGB with alpha, but the sequence began with 4 x 3, " +
                "16-bit RGB (convert it to the size and kind of the others, or part the sequence there)");
}

TEST_F(PictureFileFolder, DamagedPictureIsNamed) {
  Store(kDpxFiles, "a1.dpx", NoisePicture(kRgb10, 4, 3));
  Write(folder + "a2.dpx", Bytes("00"));
  EXPECT_EQ(Refusal(kDpxFiles, "a%d.dpx"),
            folder + "a2.dpx: not a DPX file: it begins with neither SDPX nor XPDS ()");
}

TEST_F(PictureFileFolder, EmptyFileIsNamed) {
  Write(folder + "a1.png", {});
  EXPECT_EQ(Refusal(kPngFiles, "a%d.png"), folder + "a1.png: the file is empty ()");
}

TEST_F(PictureFileFolder, FileThatIsGoneMeanwhileIsNamed) {
  Store(kPngFiles, "a1.png", NoisePicture(24, 4, 3));
  Store(kPngFiles, "a2.png", NoisePicture(24, 4, 3));
  const PictureSource source = Open(kPngFiles, "a%d.png");
  std::filesystem::remove(folder + "a2.png");
  EXPECT_EQ(ProblemText([&] { PicturesOf(source); }),
            folder + "a2.png: cannot open: No such file or directory ()");
}

TEST_F(PictureFileFolder, FolderWithTheNameOfAPictureIsNamed) {
  std::filesystem::create_directory(folder + "a1.png");
  EXPECT_EQ(Refusal(kPngFiles, "a%d.png"),
            folder + "a1.png: cannot read: it is a folder (name the files in it)");
}

TEST(PictureFileSink, OtherPixelFormatsAreRefusedWithThoseThatGo) {
  ClipFormat format;
  format.pixelFormat = k2vuy;
  format.width = 2;
  format.height = 2;
  const SequencePattern pattern = ReadSequencePattern("a%d.png");
  EXPECT_EQ(ProblemText([&] { OpenSequenceSink(kPngFiles, format, pattern, 1, nullptr); }),
            "a%d.png: PNG files hold no pictures of this pixel format (those written here hold 8-bit RGB, "
            "8-bit RGB "
            "with alpha, 16-bit RGB, 16-bit RGB with alpha)");
}

}  // namespace vorel::picture_io
