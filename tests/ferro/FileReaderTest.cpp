// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileReader.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <limits>
#include <utility>

#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

namespace {

using Bytes = std::vector<ui8_t>;

class FileReaderTest : public testing::Test {
 protected:
  void SetUp() override { MakeFile(m_Name, "0123456789"); }

  TemporaryFolder m_Folder;
  std::string m_Name = m_Folder.Path("digits");
  FileReader m_Reader;
};

}  // namespace

TEST_F(FileReaderTest, OpensARegularFileAndKnowsItsSize) {
  EXPECT_FALSE(m_Reader.IsOpen());
  EXPECT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  EXPECT_TRUE(m_Reader.IsOpen());
  EXPECT_EQ(m_Reader.Filename(), m_Name);
  EXPECT_EQ(m_Reader.Size(), 10U);
  m_Reader.AdviseSequential();
  m_Reader.Close();
  EXPECT_FALSE(m_Reader.IsOpen());
  EXPECT_EQ(m_Reader.Size(), 0U);
}

TEST_F(FileReaderTest, NamesThatCannotBeOpenedSayWhy) {
  EXPECT_EQ(m_Reader.OpenRead(""), RESULT_NULL_STR);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Path("missing")), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Reader.OpenRead(m_Name + "/below"), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Reader.OpenRead(m_Name + std::string("\0.mxf", 5)), RESULT_NOT_FOUND);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Path(std::string(300, 'n'))), RESULT_FILEOPEN);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Folder()), RESULT_NOTAFILE);
  EXPECT_EQ(m_Reader.OpenRead("/dev/null"), RESULT_NOTAFILE);
  EXPECT_FALSE(m_Reader.IsOpen());
}

TEST_F(FileReaderTest, PipeIsRefusedWithoutWaitingForItsWriter) {
  ASSERT_EQ(mkfifo((m_Folder.Path("pipe")).c_str(), 0600), 0);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Path("pipe")), RESULT_NOTAFILE);
}

TEST_F(FileReaderTest, SocketIsNotAFile) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string name = m_Folder.Path("socket");
  ASSERT_LT(name.size(), sizeof(address.sun_path));
  name.copy(address.sun_path, sizeof(address.sun_path) - 1);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  EXPECT_EQ(m_Reader.OpenRead(name), RESULT_NOTAFILE);
  close(descriptor);
}

TEST_F(FileReaderTest, FileWithoutPermissionIsNoPerm) {
  ASSERT_EQ(chmod(m_Folder.Folder().c_str(), 0755), 0);
  ASSERT_EQ(chmod(m_Name.c_str(), 0), 0);
  // In a child process, which can give up the privilege that lets root read everything.
  const auto open_unprivileged = [this] {
    if (geteuid() == 0 && setuid(65534) != 0) _exit(2);
    _exit(m_Reader.OpenRead(m_Name) == RESULT_NO_PERM ? 0 : 1);
  };
  EXPECT_EXIT(open_unprivileged(), testing::ExitedWithCode(0), "");
}

TEST_F(FileReaderTest, FailedOpenClosesTheOneBefore) {
  EXPECT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  EXPECT_EQ(m_Reader.OpenRead(m_Folder.Path("missing")), RESULT_NOT_FOUND);
  EXPECT_FALSE(m_Reader.IsOpen());
  EXPECT_EQ(m_Reader.Filename(), "");
}

TEST_F(FileReaderTest, ReadsByPositionInAnyOrder) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  Bytes bytes(3);
  EXPECT_EQ(m_Reader.ReadAt(7, bytes), RESULT_OK);
  EXPECT_EQ(bytes, (Bytes{'7', '8', '9'}));
  EXPECT_EQ(m_Reader.ReadAt(0, bytes), RESULT_OK);
  EXPECT_EQ(bytes, (Bytes{'0', '1', '2'}));
}

TEST_F(FileReaderTest, ReadingAcrossTheEndIsEndOfFile) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  Bytes bytes(3);
  EXPECT_EQ(m_Reader.ReadAt(8, bytes), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadAt(10, bytes), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadAt(0x7fffffffffffffff, bytes), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadAt(0x8000000000000000, bytes), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadAt(std::numeric_limits<fsize_t>::max(), bytes), RESULT_ENDOFFILE);
}

TEST_F(FileReaderTest, NothingIsReadAnywhereWithSuccess) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  EXPECT_EQ(m_Reader.ReadAt(10, {}), RESULT_OK);
  EXPECT_EQ(m_Reader.ReadAt(11, {}), RESULT_OK);
}

TEST_F(FileReaderTest, ReadUpToCountsWhatIsThere) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  Bytes bytes(4);
  size_t count = 77;
  EXPECT_EQ(m_Reader.ReadUpTo(8, bytes, count), RESULT_OK);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(bytes, (Bytes{'8', '9', 0, 0}));
  EXPECT_EQ(m_Reader.ReadUpTo(10, bytes, count), RESULT_OK);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(m_Reader.ReadUpTo(0xffffffffffffffff, bytes, count), RESULT_OK);
  EXPECT_EQ(count, 0U);
}

TEST_F(FileReaderTest, ReadsConsecutiveBytesIntoSeveralParts) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  Bytes first(2);
  Bytes second(3);
  const std::array<std::span<ui8_t>, 4> parts{first, std::span<ui8_t>(), second, std::span<ui8_t>()};
  EXPECT_EQ(m_Reader.ReadPartsAt(4, parts), RESULT_OK);
  EXPECT_EQ(first, (Bytes{'4', '5'}));
  EXPECT_EQ(second, (Bytes{'6', '7', '8'}));
  EXPECT_EQ(m_Reader.ReadPartsAt(5, parts), RESULT_OK);
  EXPECT_EQ(m_Reader.ReadPartsAt(6, parts), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadPartsAt(0x7ffffffffffffffe, parts), RESULT_ENDOFFILE);
  EXPECT_EQ(m_Reader.ReadPartsAt(std::numeric_limits<fsize_t>::max(), parts), RESULT_ENDOFFILE);
}

TEST_F(FileReaderTest, PartsAreAtMostSixteen) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  std::array<ui8_t, 17> bytes{};
  std::vector<std::span<ui8_t>> parts;
  for (ui8_t& byte : bytes) parts.emplace_back(&byte, 1);
  EXPECT_EQ(m_Reader.ReadPartsAt(0, parts), RESULT_PARAM);
  parts.resize(10);
  EXPECT_EQ(m_Reader.ReadPartsAt(0, parts), RESULT_OK);
  EXPECT_EQ(bytes[9], '9');
  EXPECT_EQ(m_Reader.ReadPartsAt(20, {}), RESULT_OK);
}

TEST_F(FileReaderTest, ClosedReaderIsNotInitialised) {
  Bytes bytes(1);
  size_t count = 77;
  EXPECT_EQ(m_Reader.ReadAt(0, bytes), RESULT_INIT);
  EXPECT_EQ(m_Reader.ReadPartsAt(0, {}), RESULT_INIT);
  EXPECT_EQ(m_Reader.ReadUpTo(0, bytes, count), RESULT_INIT);
  EXPECT_EQ(count, 0U);
  m_Reader.AdviseSequential();
}

TEST_F(FileReaderTest, ErrorOfTheSystemIsReadFail) {
  // The process's memory as a file: regular, and nothing can be read at its start.
  ASSERT_EQ(m_Reader.OpenRead("/proc/self/mem"), RESULT_OK);
  Bytes bytes(1);
  EXPECT_EQ(m_Reader.ReadAt(0, bytes), RESULT_READFAIL);
  const std::array<std::span<ui8_t>, 1> parts{bytes};
  EXPECT_EQ(m_Reader.ReadPartsAt(0, parts), RESULT_READFAIL);
}

TEST_F(FileReaderTest, PositionsBeyondFourGiB) {
  constexpr fsize_t Far = 5ULL << 30;
  ASSERT_EQ(truncate(m_Name.c_str(), static_cast<off_t>(Far)), 0);
  std::fstream(m_Name, std::ios::in | std::ios::out | std::ios::binary).seekp(static_cast<std::streamoff>(Far))
      << "far";
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  EXPECT_EQ(m_Reader.Size(), Far + 3);
  Bytes bytes(4);
  EXPECT_EQ(m_Reader.ReadAt(Far - 1, bytes), RESULT_OK);
  EXPECT_EQ(bytes, (Bytes{0, 'f', 'a', 'r'}));
}

TEST_F(FileReaderTest, MovesHandTheOpenFileOver) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  FileReader second(std::move(m_Reader));
  EXPECT_FALSE(m_Reader.IsOpen());  // NOLINT: the moved-from state is the subject
  EXPECT_EQ(second.Size(), 10U);
  FileReader third;
  ASSERT_EQ(third.OpenRead(m_Name), RESULT_OK);
  third = std::move(second);
  EXPECT_EQ(third.Filename(), m_Name);
  FileReader& self = third;
  third = std::move(self);
  EXPECT_TRUE(third.IsOpen());
}

TEST_F(FileReaderTest, DescriptorIsNotInheritedByOtherPrograms) {
  ASSERT_EQ(m_Reader.OpenRead(m_Name), RESULT_OK);
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code ignored;
    if (std::filesystem::read_symlink(entry.path(), ignored) != m_Name) continue;
    EXPECT_NE(fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0);
    return;
  }
  FAIL() << "the open file is not listed";
}
