// Files appear under their name whole or not at all, and nobody else's file is lost.
#include "container/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "base/problem.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

void Write(OutputFile& file, const Blob& bytes) {
  WriteAt(file, 0, reinterpret_cast<const u8*>(bytes.data()), bytes.size());
}

std::string ProblemOfCreating(const std::string& path, bool overwrite) {
  OutputFile file;
  try {
    CreateOutputFile(file, path, overwrite);
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, path);
    return problem.what;
  }
  return "no problem";
}

TEST(OutputFile, AppearsUnderItsNameWhenPublished) {
  const TestFolder folder;
  OutputFile file;
  CreateOutputFile(file, folder.path + "/a.mov", false);
  Write(file, "new");
  const std::vector<std::string> before = NamesIn(folder.path);
  ASSERT_EQ(before.size(), 1u);
  EXPECT_EQ(before[0].rfind(".a.mov.", 0), 0u);
  EXPECT_EQ(file.temporaryPath, folder.path + "/" + before[0]);
  PublishOutputFile(file);
  EXPECT_EQ(NamesIn(folder.path), std::vector<std::string>{"a.mov"});
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "new");
  EXPECT_TRUE(file.temporaryPath.empty());
}

TEST(OutputFile, AbandonedLeavesNothingAndTheTargetAsItWas) {
  const TestFolder folder;
  StoreFile(folder.path + "/a.mov", "old");
  {
    OutputFile file;
    CreateOutputFile(file, folder.path + "/a.mov", true);
    Write(file, "new");
    EXPECT_EQ(NamesIn(folder.path).size(), 2u);
  }
  EXPECT_EQ(NamesIn(folder.path), std::vector<std::string>{"a.mov"});
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "old");
}

TEST(OutputFile, TargetStaysOldUntilPublished) {
  const TestFolder folder;
  StoreFile(folder.path + "/a.mov", "old");
  OutputFile file;
  CreateOutputFile(file, folder.path + "/a.mov", true);
  Write(file, "new");
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "old");
  PublishOutputFile(file);
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "new");
  EXPECT_EQ(NamesIn(folder.path).size(), 1u);
}

TEST(OutputFile, ExistingTargetIsRefusedAtOnce) {
  const TestFolder folder;
  StoreFile(folder.path + "/a.mov", "old");
  EXPECT_EQ(ProblemOfCreating(folder.path + "/a.mov", false), "the file exists already");
  EXPECT_EQ(NamesIn(folder.path).size(), 1u);
}

TEST(OutputFile, TargetThatAppearsMeanwhileIsNotLost) {
  const TestFolder folder;
  {
    OutputFile file;
    CreateOutputFile(file, folder.path + "/a.mov", false);
    Write(file, "new");
    StoreFile(folder.path + "/a.mov", "somebody else's");
    try {
      PublishOutputFile(file);
      ADD_FAILURE();
    } catch (const Problem& problem) {
      EXPECT_EQ(problem.what, "the file exists already");
    }
  }
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "somebody else's");
  EXPECT_EQ(NamesIn(folder.path), std::vector<std::string>{"a.mov"});
}

// In a process of its own the system says, as some file systems do, that it cannot rename without replacing.
// Ends with 0 when the file was published, 1 when Problem was thrown, 2 when the system does not allow such
// filters.
[[noreturn]] void PublishWithoutTheSystemsOwnStep(const std::string& path, bool targetAppears) {
  const sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_renameat2, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter = {4, const_cast<sock_filter*>(program)};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
    _exit(2);
  int result = 0;
  {
    OutputFile file;
    CreateOutputFile(file, path, false);
    Write(file, "new");
    if (targetAppears) StoreFile(path, "somebody else's");
    try {
      PublishOutputFile(file);
    } catch (const Problem&) {
      result = 1;
    }
  }
  _exit(result);
}

int StatusOfPublishing(const std::string& path, bool targetAppears) {
  const pid_t child = fork();
  if (child == 0) PublishWithoutTheSystemsOwnStep(path, targetAppears);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(OutputFile, FileSystemsWithoutThatRenameUseLinks) {
  const TestFolder folder;
  const int published = StatusOfPublishing(folder.path + "/a.mov", false);
  if (published == 2) GTEST_SKIP() << "the system does not allow filters of its calls";
  EXPECT_EQ(published, 0);
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "new");
  EXPECT_EQ(StatusOfPublishing(folder.path + "/b.mov", true), 1);
  EXPECT_EQ(ContentsOf(folder.path + "/b.mov"), "somebody else's");
  EXPECT_EQ(NamesIn(folder.path), (std::vector<std::string>{"a.mov", "b.mov"}));
}

TEST(OutputFile, SymbolicLinkIsFollowedWhenOverwriting) {
  const TestFolder folder;
  ASSERT_EQ(mkdir((folder.path + "/elsewhere").c_str(), 0777), 0);
  StoreFile(folder.path + "/elsewhere/real.mov", "old");
  ASSERT_EQ(symlink("elsewhere/real.mov", (folder.path + "/a.mov").c_str()), 0);
  OutputFile file;
  CreateOutputFile(file, folder.path + "/a.mov", true);
  Write(file, "new");
  PublishOutputFile(file);
  EXPECT_EQ(ContentsOf(folder.path + "/elsewhere/real.mov"), "new");
  struct stat status;
  ASSERT_EQ(lstat((folder.path + "/a.mov").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
}

TEST(OutputFile, OtherThanRegularFilesAreRefused) {
  const TestFolder folder;
  EXPECT_EQ(ProblemOfCreating(folder.path, true), "is not a regular file and cannot be replaced");
  EXPECT_EQ(ProblemOfCreating("/dev/null", true), "is not a regular file and cannot be replaced");
  EXPECT_EQ(ProblemOfCreating(folder.path + "/", true), "is not the name of a file");
  ASSERT_EQ(symlink("nowhere", (folder.path + "/a.mov").c_str()), 0);
  EXPECT_EQ(ProblemOfCreating(folder.path + "/a.mov", true), "is a symbolic link that leads nowhere");
}

TEST(OutputFile, MissingFolderIsReportedWithTheReason) {
  EXPECT_EQ(ProblemOfCreating("/nowhere/a.mov", false),
            "a temporary file cannot be created beside the target: No such file or directory");
}

TEST(OutputFile, PermissionsAreThoseOfAnyNewFile) {
  const TestFolder folder;
  const mode_t before = umask(027);
  OutputFile file;
  CreateOutputFile(file, folder.path + "/a.mov", false);
  PublishOutputFile(file);
  umask(before);
  struct stat status;
  ASSERT_EQ(stat((folder.path + "/a.mov").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST(OutputFile, LongestNameStillGetsATemporaryOne) {
  const TestFolder folder;
  const std::string path = folder.path + "/" + std::string(251, 'n') + ".mov";
  OutputFile file;
  CreateOutputFile(file, path, false);
  Write(file, "new");
  PublishOutputFile(file);
  EXPECT_EQ(ContentsOf(path), "new");
}

TEST(OutputFile, FullDiskIsReportedWithAdvice) {
  const int full = open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  OutputFile file;
  BorrowOutputFile(file, full, "full.mov");
  try {
    Write(file, "x");
    ADD_FAILURE();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what, "cannot be written: No space left on device");
    EXPECT_EQ(problem.where, "full.mov");
    EXPECT_EQ(problem.advice, "make room on the disk, or write elsewhere");
  }
  close(full);
}

}  // namespace
}  // namespace vorel::container
