// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileWriter.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <limits>
#include <utility>

#include "FileSizeLimit.h"
#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

namespace {

using Names = std::set<std::string>;

class FileWriterTest : public testing::Test {
 protected:
  TemporaryFolder m_Folder;
  std::string m_Name = m_Folder.Path("file");
  FileWriter m_Writer;
};

std::span<const ui8_t> BytesOfText(std::string_view text) {
  return {reinterpret_cast<const ui8_t*>(text.data()), text.size()};
}

}  // namespace

TEST_F(FileWriterTest, FileAppearsWithCommit) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_TRUE(m_Writer.IsOpen());
  EXPECT_EQ(m_Writer.Write("abc"), RESULT_OK);
  EXPECT_EQ(m_Writer.Write(BytesOfText("def")), RESULT_OK);
  EXPECT_EQ(m_Writer.Tell(), 6U);
  EXPECT_FALSE(std::filesystem::exists(m_Name));
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_FALSE(m_Writer.IsOpen());
  EXPECT_EQ(BytesOf(m_Name), "abcdef");
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
}

TEST_F(FileWriterTest, TemporaryNameLiesInTheSameFolder) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  const Names names = m_Folder.Names();
  ASSERT_EQ(names.size(), 1U);
  EXPECT_TRUE(names.begin()->starts_with(".file.")) << *names.begin();
  EXPECT_TRUE(names.begin()->ends_with(".tmp")) << *names.begin();
}

TEST_F(FileWriterTest, DestructionWithoutCommitLeavesNothing) {
  {
    FileWriter writer;
    ASSERT_EQ(writer.OpenWrite(m_Name), RESULT_OK);
    EXPECT_EQ(writer.Write("abc"), RESULT_OK);
  }
  EXPECT_EQ(m_Folder.Names(), Names{});
}

TEST_F(FileWriterTest, AbandonKeepsWhatStoodThere) {
  MakeFile(m_Name, "before");
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("after"), RESULT_OK);
  m_Writer.Abandon();
  m_Writer.Abandon();
  EXPECT_FALSE(m_Writer.IsOpen());
  EXPECT_EQ(BytesOf(m_Name), "before");
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
}

TEST_F(FileWriterTest, CommitReplacesWhatStoodThere) {
  MakeFile(m_Name, "before, and longer");
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("after"), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "before, and longer");
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "after");
}

TEST_F(FileWriterTest, WriteAtLeavesTheCursor) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("abcdef"), RESULT_OK);
  EXPECT_EQ(m_Writer.WriteAt(1, BytesOfText("XY")), RESULT_OK);
  EXPECT_EQ(m_Writer.Tell(), 6U);
  EXPECT_EQ(m_Writer.Write("g"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "aXYdefg");
}

TEST_F(FileWriterTest, SeekOverwritesAndLeavesHolesOfZeros) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("abc"), RESULT_OK);
  EXPECT_EQ(m_Writer.Seek(5), RESULT_OK);
  EXPECT_EQ(m_Writer.Tell(), 5U);
  EXPECT_EQ(m_Writer.Write("f"), RESULT_OK);
  EXPECT_EQ(m_Writer.Seek(0), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("A"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), std::string("Abc\0\0f", 6));
}

TEST_F(FileWriterTest, PositionsBeyondWhatAFileCanHoldAreRefused) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Seek(0x8000000000000000), RESULT_BADSEEK);
  EXPECT_EQ(m_Writer.Tell(), 0U);
  EXPECT_EQ(m_Writer.WriteAt(0x7fffffffffffffff, BytesOfText("a")), RESULT_WRITEFAIL);
  EXPECT_EQ(m_Writer.WriteAt(std::numeric_limits<fsize_t>::max(), BytesOfText("a")), RESULT_WRITEFAIL);
}

TEST_F(FileWriterTest, PositionsBeyondFourGiB) {
  constexpr fsize_t Far = 5ULL << 30;
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Seek(Far), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("far"), RESULT_OK);
  EXPECT_EQ(m_Writer.Tell(), Far + 3);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(std::filesystem::file_size(m_Name), Far + 3);
}

TEST_F(FileWriterTest, EmptyFileIsAFile) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write(""), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "");
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
}

TEST_F(FileWriterTest, NamesThatCannotBeWrittenSayWhy) {
  EXPECT_EQ(m_Writer.OpenWrite(""), RESULT_NULL_STR);
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Path("missing/file")), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Folder()), RESULT_NOTAFILE);
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Path("")), RESULT_NOTAFILE);
  EXPECT_EQ(m_Writer.OpenWrite("/dev/null"), RESULT_NOTAFILE);
  EXPECT_EQ(m_Writer.OpenWrite(m_Name + std::string("\0x", 2)), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Folder.Names(), Names{});
}

TEST_F(FileWriterTest, FolderWithoutPermissionIsNoPerm) {
  ASSERT_EQ(chmod(m_Folder.Folder().c_str(), 0555), 0);
  const auto open_unprivileged = [this] {
    if (geteuid() == 0 && setuid(65534) != 0) _exit(2);
    _exit(m_Writer.OpenWrite(m_Name) == RESULT_NO_PERM ? 0 : 1);
  };
  EXPECT_EXIT(open_unprivileged(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(chmod(m_Folder.Folder().c_str(), 0755), 0);
}

TEST_F(FileWriterTest, SecondOpenIsAStateError) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Path("other")), RESULT_STATE);
  EXPECT_EQ(m_Writer.Write("abc"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "abc");
}

TEST_F(FileWriterTest, WriterCanBeUsedAgainAfterCommit) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("abc"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  ASSERT_EQ(m_Writer.OpenWrite(m_Folder.Path("second")), RESULT_OK);
  EXPECT_EQ(m_Writer.Tell(), 0U);
  EXPECT_EQ(m_Writer.Write("d"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Folder.Path("second")), "d");
}

TEST_F(FileWriterTest, ClosedWriterIsNotInitialised) {
  EXPECT_EQ(m_Writer.Write("a"), RESULT_INIT);
  EXPECT_EQ(m_Writer.WriteAt(0, BytesOfText("a")), RESULT_INIT);
  EXPECT_EQ(m_Writer.Seek(1), RESULT_INIT);
  EXPECT_EQ(m_Writer.Commit(), RESULT_INIT);
}

TEST_F(FileWriterTest, FullDiskIsWriteFailAndLeavesNothing) {
  MakeFile(m_Name, "before");
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  {
    const FileSizeLimit limit(4096);
    EXPECT_EQ(m_Writer.Write(std::string(5000, 'a')), RESULT_WRITEFAIL);
    EXPECT_EQ(m_Writer.Tell(), 0U);
  }
  EXPECT_EQ(m_Writer.FailureReason(), "File too large");
  EXPECT_EQ(m_Writer.Commit(), RESULT_WRITEFAIL);
  EXPECT_EQ(m_Writer.FailureReason(), "File too large");
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
  EXPECT_EQ(BytesOf(m_Name), "before");
}

TEST_F(FileWriterTest, CommitFailsWhenTheFolderHasGone) {
  const std::string folder = m_Folder.Path("inner");
  std::filesystem::create_directory(folder);
  ASSERT_EQ(m_Writer.OpenWrite(folder + "/file"), RESULT_OK);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(m_Writer.Commit(), RESULT_WRITEFAIL);
  EXPECT_FALSE(m_Writer.IsOpen());
  EXPECT_EQ(m_Writer.FailureReason(), "No such file or directory");
}

TEST_F(FileWriterTest, ReasonIsOfThePresentFileAndMovesWithTheWriter) {
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Path("missing/file")), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Writer.FailureReason(), "No such file or directory");
  const FileWriter other = std::move(m_Writer);
  EXPECT_EQ(other.FailureReason(), "No such file or directory");
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Path("missing/file")), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Writer.OpenWrite(m_Folder.Folder()), RESULT_NOTAFILE);
  EXPECT_EQ(m_Writer.FailureReason(), "");
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.WriteAt(0x7fffffffffffffff, BytesOfText("a")), RESULT_WRITEFAIL);
  EXPECT_EQ(m_Writer.FailureReason(), "File too large");
}

TEST_F(FileWriterTest, SeveralWritersOfOneNameDoNotCollide) {
  FileWriter second;
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  ASSERT_EQ(second.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("first"), RESULT_OK);
  EXPECT_EQ(second.Write("second"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "first");
  EXPECT_EQ(second.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Name), "second");
}

TEST_F(FileWriterTest, SymbolicLinksStayAndTheirFileIsReplaced) {
  namespace fs = std::filesystem;
  MakeFile(m_Folder.Path("target"), "target");
  fs::create_symlink("target", m_Folder.Path("link"));  // relative to its folder
  fs::create_symlink(m_Folder.Path("link"), m_Name);
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("new"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(BytesOf(m_Folder.Path("target")), "new");
  EXPECT_TRUE(fs::is_symlink(m_Name));
  EXPECT_TRUE(fs::is_symlink(m_Folder.Path("link")));
}

TEST_F(FileWriterTest, FileBehindALinkThatLeadsNowhereIsMade) {
  std::filesystem::create_symlink("target", m_Name);
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_TRUE(std::filesystem::is_regular_file(m_Folder.Path("target")));
}

TEST_F(FileWriterTest, LinksInACircleAreRefused) {
  std::filesystem::create_symlink(m_Name, m_Name);
  EXPECT_EQ(m_Writer.OpenWrite(m_Name), RESULT_FILEOPEN);
  EXPECT_EQ(m_Writer.FailureReason(), "Too many levels of symbolic links");
}

TEST_F(FileWriterTest, PermissionsOfTheFileBeforeStay) {
  namespace fs = std::filesystem;
  for (const fs::perms permissions : {fs::perms(0600), fs::perms(0644), fs::perms(0666), fs::perms(0755)}) {
    MakeFile(m_Name, "old");
    fs::permissions(m_Name, permissions);
    FileWriter writer;
    ASSERT_EQ(writer.OpenWrite(m_Name), RESULT_OK);
    EXPECT_EQ(writer.Commit(), RESULT_OK);
    EXPECT_EQ(fs::status(m_Name).permissions(), permissions);
  }
}

TEST_F(FileWriterTest, LongestNameIsWritten) {
  const std::string name = m_Folder.Path(std::string(255, 'n'));
  ASSERT_EQ(m_Writer.OpenWrite(name), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_TRUE(std::filesystem::exists(name));
}

TEST_F(FileWriterTest, NameWithoutFolderIsWrittenIntoTheCurrentOne) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(m_Folder.Folder());
  ASSERT_EQ(m_Writer.OpenWrite("file"), RESULT_OK);
  EXPECT_EQ(m_Writer.Commit(), RESULT_OK);
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
  std::filesystem::current_path(before);
}

TEST_F(FileWriterTest, MovesHandTheOpenFileOver) {
  ASSERT_EQ(m_Writer.OpenWrite(m_Name), RESULT_OK);
  EXPECT_EQ(m_Writer.Write("abc"), RESULT_OK);
  FileWriter second(std::move(m_Writer));
  EXPECT_FALSE(m_Writer.IsOpen());  // NOLINT: the moved-from state is the subject
  FileWriter third;
  ASSERT_EQ(third.OpenWrite(m_Folder.Path("abandoned")), RESULT_OK);
  third = std::move(second);
  EXPECT_EQ(third.Tell(), 3U);
  EXPECT_EQ(third.Commit(), RESULT_OK);
  EXPECT_EQ(m_Folder.Names(), Names{"file"});
}
