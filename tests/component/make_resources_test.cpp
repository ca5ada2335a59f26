// The build tool: what it writes, and that it leaves alone what is there when it refuses.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "component/resources/embedded_fork.h"
#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

struct Outcome {
  int status;
  std::string messages;
};

struct MakeResources : testing::Test {
  std::filesystem::path folder;

  void SetUp() override {
    folder = std::filesystem::temp_directory_path() / ("vorel_make_resources_" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::string Path(const char* name) const { return (folder / name).string(); }

  Outcome Tool(const std::string& arguments) const {
    const std::string command =
        VOREL_BUILD_FOLDER "/make_resources " + arguments + " 2> " + Path("messages") + " < /dev/null";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), Text(Read("messages"))};
  }

  Bytes Read(const char* name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  void Write(const char* name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
  }
};

TEST_F(MakeResources, WritesTheForkThatLibrariesCarry) {
  EXPECT_EQ(Tool(Path("a.rsrc")).status, 0);
  EXPECT_EQ(Read("a.rsrc"), Bytes(kResourceFork, kResourceFork + kResourceForkBytes));
  EXPECT_FALSE(std::filesystem::exists(Path("a.rsrc.partial")));
}

TEST_F(MakeResources, AppendsToALibraryAndLeavesItsBytes) {
  Write("a.dll", "MZ and so on");
  EXPECT_EQ(Tool("--append " + Path("a.dll") + " " + Path("b.dll")).status, 0);
  const Bytes file = Read("b.dll");
  EXPECT_EQ(Text(Read("a.dll")), "MZ and so on");
  EXPECT_EQ(Text({file.begin(), file.begin() + 12}), "MZ and so on");
  const ForkPlace place = FindFork(file.data(), file.size(), "b.dll");
  EXPECT_EQ(place.offset, 12u);
  EXPECT_EQ(ReadFork(file.data() + place.offset, place.bytes, "b.dll"), AllResources());
}

TEST_F(MakeResources, RefusesASecondForkAndKeepsWhatIsThere) {
  Write("a.dll", "MZ");
  Write("c.dll", "kept");
  ASSERT_EQ(Tool("--append " + Path("a.dll") + " " + Path("b.dll")).status, 0);
  const Outcome run = Tool("--append " + Path("b.dll") + " " + Path("c.dll"));
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.messages.find("b.dll: the file carries a resource fork already"), std::string::npos);
  EXPECT_EQ(Text(Read("c.dll")), "kept");
}

TEST_F(MakeResources, NamesFilesThatItCannotReadOrWrite) {
  EXPECT_NE(Tool("--append " + Path("none") + " " + Path("b")).messages.find("none: the file cannot be read"),
            std::string::npos);
  EXPECT_EQ(Tool("--append " + folder.string() + " " + Path("b")).status, 1);
  EXPECT_NE(Tool(Path("none/a.rsrc")).messages.find("none/a.rsrc: the file cannot be written"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(Path("b")));
}

TEST_F(MakeResources, TellsHowItIsUsed) {
  for (const char* arguments : {"", "--append a", "--cpp", "--what", "a b"}) {
    const Outcome run = Tool(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_TRUE(run.messages.starts_with("usage:")) << arguments;
  }
}

}  // namespace
}  // namespace vorel::component
