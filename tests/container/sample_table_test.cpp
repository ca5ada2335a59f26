// Sample tables written by hand: forms, runs, and every disagreement between counts.
#include "container/sample_table.h"

#include <gtest/gtest.h>

#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

// A table atom whose tables begin at offset 1000 of a.mov.
AtomView ViewOf(const Blob& bytes) {
  return {0x7374626C, 8, reinterpret_cast<const u8*>(bytes.data()), bytes.size(), 992, "stbl", "a.mov"};
}

Blob BytesOf(const HandTables& tables) {
  return tables.stsd + tables.stts + tables.stsc + tables.stsz + tables.stco + tables.more;
}

std::vector<Sample> Samples(const HandTables& tables, u64 fileBytes = 100, u32 descriptions = 1) {
  const Blob bytes = BytesOf(tables);
  return ReadSamples(ViewOf(bytes), descriptions, fileBytes);
}

std::vector<Chunk> Chunks(const HandTables& tables, u64 fileBytes = 100,
                          std::optional<ImpliedSampleSize> implied = std::nullopt) {
  const Blob bytes = BytesOf(tables);
  return ReadChunks(ViewOf(bytes), 1, fileBytes, implied);
}

// The text of the problem that both ways of reading have with the tables.
std::string Refusal(const HandTables& tables, u64 fileBytes = 100) {
  try {
    Chunks(tables, fileBytes);
    ADD_FAILURE() << "chunks were read";
  } catch (const Problem&) {
  }
  try {
    Samples(tables, fileBytes);
  } catch (const Problem& problem) {
    return problem.where + " - " + problem.what;
  }
  return "no problem";
}

HandTables Base() {
  HandTables tables = ThreeFrameTables(28);
  tables.stsd = "";
  return tables;
}

TEST(SampleTable, ConstantSize) {
  HandTables tables = Base();
  tables.stsz = Atom("stsz", Be32(0) + Be32(5) + Be32(3));
  const std::vector<Sample> samples = Samples(tables);
  ASSERT_EQ(samples.size(), 3u);
  EXPECT_EQ(samples[1].offset, 33u);
  EXPECT_EQ(samples[2].offset, 38u);
  EXPECT_EQ(samples[2].bytes, 5u);
}

TEST(SampleTable, CompactSizesOfFourEightAndSixteenBits) {
  HandTables tables = Base();
  for (const Blob& sizes : {Be32(4) + Be32(3) + "\x45\x60", Be32(8) + Be32(3) + "\x04\x05\x06",
                            Be32(16) + Be32(3) + Be16(4) + Be16(5) + Be16(6)}) {
    tables.stsz = Atom("stz2", Be32(0) + sizes);
    const std::vector<Sample> samples = Samples(tables);
    ASSERT_EQ(samples.size(), 3u);
    EXPECT_EQ(samples[0].bytes, 4u);
    EXPECT_EQ(samples[1].bytes, 5u);
    EXPECT_EQ(samples[2].bytes, 6u);
  }
}

TEST(SampleTable, SeveralChunkRunsWithSeveralDescriptions) {
  // Chunks of 1, 1, 2 and 1 samples; the third has the second description.
  HandTables tables = Base();
  tables.stts = Table("stts", 2, Be32(2) + Be32(10) + Be32(3) + Be32(20));
  tables.stsc = Table(
      "stsc", 3, Be32(1) + Be32(1) + Be32(1) + Be32(3) + Be32(2) + Be32(2) + Be32(4) + Be32(1) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(0) + Be32(5) + Be32(1) + Be32(2) + Be32(3) + Be32(4) + Be32(5));
  tables.stco = Table("stco", 4, Be32(50) + Be32(40) + Be32(60) + Be32(90));
  const std::vector<Sample> samples = Samples(tables, 100, 2);
  ASSERT_EQ(samples.size(), 5u);
  const u64 offsets[] = {50, 40, 60, 63, 90};
  const u32 durations[] = {10, 10, 20, 20, 20};
  const u32 descriptions[] = {0, 0, 1, 1, 0};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(samples[i].offset, offsets[i]);
    EXPECT_EQ(samples[i].duration, durations[i]);
    EXPECT_EQ(samples[i].description, descriptions[i]);
    EXPECT_EQ(samples[i].bytes, i + 1);
  }
}

TEST(SampleTable, ChunksTellBytesFirstSampleAndStart) {
  HandTables tables = Base();
  tables.stts = Table("stts", 3, Be32(1) + Be32(10) + Be32(0) + Be32(99) + Be32(2) + Be32(20));
  tables.stsc = Table("stsc", 2, Be32(1) + Be32(2) + Be32(1) + Be32(2) + Be32(1) + Be32(1));
  tables.stco = Table("stco", 2, Be32(50) + Be32(30));
  const std::vector<Chunk> chunks = Chunks(tables);
  ASSERT_EQ(chunks.size(), 2u);
  EXPECT_EQ(chunks[0].offset, 50u);
  EXPECT_EQ(chunks[0].bytes, 9u);
  EXPECT_EQ(chunks[0].start, 0u);
  EXPECT_EQ(chunks[1].bytes, 6u);
  EXPECT_EQ(chunks[1].firstSample, 2u);
  EXPECT_EQ(chunks[1].start, 30u);
}

TEST(SampleTable, ImpliedSizeReplacesAConstantOne) {
  HandTables tables = Base();
  tables.stts = Table("stts", 1, Be32(12) + Be32(1));
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(12) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(1) + Be32(12));
  EXPECT_EQ(Chunks(tables).at(0).bytes, 12u);
  EXPECT_EQ(Chunks(tables, 100, ImpliedSampleSize{4, 1}).at(0).bytes, 48u);
  EXPECT_EQ(Chunks(tables, 100, ImpliedSampleSize{2, 6}).at(0).bytes, 4u);
  EXPECT_THROW(Chunks(tables, 100, ImpliedSampleSize{34, 64}), Problem);
}

TEST(SampleTable, SyncSamplesAreMarked) {
  HandTables tables = Base();
  tables.more = Table("stss", 2, Be32(1) + Be32(3));
  const std::vector<Sample> samples = Samples(tables);
  EXPECT_TRUE(samples[0].sync);
  EXPECT_FALSE(samples[1].sync);
  EXPECT_TRUE(samples[2].sync);
}

TEST(SampleTable, EmptyTrackHasNoSamples) {
  HandTables tables = Base();
  tables.stts = Table("stts", 0, "");
  tables.stsc = Table("stsc", 0, "");
  tables.stsz = Atom("stsz", Be32(0) + Be32(0) + Be32(0));
  tables.stco = Table("stco", 0, "");
  EXPECT_TRUE(Samples(tables).empty());
  EXPECT_TRUE(Chunks(tables).empty());
}

TEST(SampleTable, SampleMayEndWhereTheFileEnds) {
  EXPECT_EQ(Samples(Base(), 43).size(), 3u);
  EXPECT_EQ(Refusal(Base(), 42),
            "a.mov: stbl/stco at 1084 - chunk 1 reaches beyond the end of the file: 6 bytes at 37, but the "
            "file has only 42");
}

TEST(SampleTable, HugeOffsetDoesNotWrapAround) {
  HandTables tables = Base();
  tables.stco = Table("co64", 1, Be64(~u64{0} - 3));
  EXPECT_NE(Refusal(tables).find("stbl/co64 at 1084 - chunk 1 reaches beyond"), std::string::npos);
}

TEST(SampleTable, CountsAreCheckedAgainstTheAtom) {
  HandTables tables = Base();
  tables.stsz = Atom("stsz", Be32(0) + Be32(0) + Be32(0xFFFFFFFF) + Be32(4));
  EXPECT_EQ(Refusal(tables),
            "a.mov: stbl/stsz at 1052 - the table says 4294967295 entries of 4 bytes, but the atom has only "
            "4 bytes for them");
  tables = Base();
  tables.stts = Table("stts", 0x20000001, Be32(3) + Be32(1001));
  EXPECT_NE(Refusal(tables).find("a.mov: stbl/stts at 1000 - the table says 536870913"), std::string::npos);
  tables = Base();
  tables.stsc = Table("stsc", 0x15555556, Be32(1) + Be32(3) + Be32(1));
  EXPECT_NE(Refusal(tables).find("a.mov: stbl/stsc at 1024 - the table says 357913942"), std::string::npos);
  tables = Base();
  tables.stco = Table("stco", 2, Be32(28));
  EXPECT_NE(Refusal(tables).find("a.mov: stbl/stco at 1084 - the table says 2"), std::string::npos);
}

TEST(SampleTable, HostileConstantSizeCountNeedsNoMemory) {
  HandTables tables = Base();
  tables.stts = Table("stts", 1, Be32(0xFFFFFFFF) + Be32(1));
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(0xFFFFFFFF) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(1) + Be32(0xFFFFFFFF));
  EXPECT_NE(Refusal(tables).find("a.mov: stbl/stsz at 1052 - the track says 4294967295 samples"),
            std::string::npos);
  tables.stts = Table("stts", 1, Be32(1000) + Be32(1));
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(1000) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(1) + Be32(1000));
  EXPECT_NE(Refusal(tables).find("1000 samples of 1 bytes are more than the file has"), std::string::npos);
}

TEST(SampleTable, CountsOfSamplesMustAgree) {
  HandTables tables = Base();
  tables.stts = Table("stts", 1, Be32(2) + Be32(1001));
  EXPECT_EQ(Refusal(tables), "a.mov: stbl/stts at 1000 - there are durations for 2 samples, but sizes for 3");
  tables = Base();
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(4) + Be32(1));
  EXPECT_EQ(Refusal(tables),
            "a.mov: stbl/stsc at 1024 - the chunks hold 4 samples, but there are sizes for 3");
}

TEST(SampleTable, ChunkRunsMustAscendFromOne) {
  HandTables tables = Base();
  tables.stsc = Table("stsc", 1, Be32(2) + Be32(3) + Be32(1));
  EXPECT_NE(Refusal(tables).find("the first entry begins with chunk 2, not 1"), std::string::npos);
  tables.stsc = Table("stsc", 1, Be32(0) + Be32(3) + Be32(1));
  EXPECT_NE(Refusal(tables).find("the first entry begins with chunk 0, not 1"), std::string::npos);
  tables.stsc = Table("stsc", 2, Be32(1) + Be32(1) + Be32(1) + Be32(1) + Be32(2) + Be32(1));
  EXPECT_NE(Refusal(tables).find("entry 2 does not follow the one before"), std::string::npos);
  tables.stsc = Table("stsc", 2, Be32(1) + Be32(1) + Be32(1) + Be32(2) + Be32(2) + Be32(1));
  EXPECT_NE(Refusal(tables).find("entry 2 begins with chunk 2, but there are only 1"), std::string::npos);
}

TEST(SampleTable, DescriptionMustExist) {
  HandTables tables = Base();
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(3) + Be32(2));
  EXPECT_NE(Refusal(tables).find("names sample description 2, but there are only 1"), std::string::npos);
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(3) + Be32(0));
  EXPECT_NE(Refusal(tables).find("names sample description 4294967296"), std::string::npos);
}

TEST(SampleTable, DurationsMustFitSixtyFourBits) {
  // Five times just below 2^62.
  HandTables tables = Base();
  Blob runs;
  for (int i = 0; i < 5; ++i) runs += Be32(0x7FFFFFFF) + Be32(0x7FFFFFFF);
  tables.stts = Table("stts", 5, runs);
  EXPECT_NE(Refusal(tables).find("the durations add up to more than 64 bits hold"), std::string::npos);
}

TEST(SampleTable, MissingAndDoubleTables) {
  HandTables tables = Base();
  tables.stts = "";
  EXPECT_EQ(Refusal(tables), "a.mov: stbl at 992 - the atom stts is missing");
  tables = Base();
  tables.stco = "";
  EXPECT_EQ(Refusal(tables), "a.mov: stbl at 992 - the chunks' offsets (stco or co64) are missing");
  tables = Base();
  tables.more = tables.stts;
  EXPECT_EQ(Refusal(tables), "a.mov: stbl/stts at 1104 - the atom stands twice in stbl");
  tables = Base();
  tables.more = Table("co64", 1, Be64(28));
  EXPECT_EQ(Refusal(tables),
            "a.mov: stbl/co64 at 1104 - the chunks' offsets stand twice, in stco and in co64");
}

TEST(SampleTable, ChunksOnTopOfEachOtherAreNotCopied) {
  HandTables tables = Base();
  tables.stsc = Table("stsc", 1, Be32(1) + Be32(1) + Be32(1));
  tables.stsz = Atom("stsz", Be32(0) + Be32(40) + Be32(3));
  tables.stco = Table("stco", 3, Be32(28) + Be32(28) + Be32(28));
  EXPECT_THROW(Chunks(tables), Problem);
}

TEST(SampleTable, SyncTableMustAscendWithinTheTrack) {
  HandTables tables = Base();
  tables.more = Table("stss", 1, Be32(4));
  EXPECT_THROW(Samples(tables), Problem);
  tables.more = Table("stss", 2, Be32(2) + Be32(2));
  EXPECT_THROW(Samples(tables), Problem);
  tables.more = Table("stss", 1, Be32(0));
  EXPECT_THROW(Samples(tables), Problem);
}

}  // namespace
}  // namespace vorel::container
