// SPDX-License-Identifier: BSD-3-Clause
// What is left behind when memory runs out in the middle of an operation.
#include <Ferro/FileReader.h>
#include <Ferro/FileWriter.h>
#include <Ferro/LogSink.h>
#include <Ferro/SHA1Digest.h>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>
#include <string>

namespace {

int s_AllocationsLeft = -1;  // until one fails; negative: none does
bool s_HasDigestContexts = true;

}  // namespace

// Both stand before the libraries' own.
void* operator new(std::size_t size) {
  if (s_AllocationsLeft == 0) throw std::bad_alloc();
  if (s_AllocationsLeft > 0) --s_AllocationsLeft;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

extern "C" __attribute__((visibility("default"))) EVP_MD_CTX* EVP_MD_CTX_new() {
  static const auto make = reinterpret_cast<EVP_MD_CTX* (*)()>(dlsym(RTLD_NEXT, "EVP_MD_CTX_new"));
  return s_HasDigestContexts ? make() : nullptr;
}

namespace {

using namespace Ferro;

size_t OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(files), end(files)));
}

/// Runs `work` with the first, the second, … allocation failing, until none does.
template <class Work>
void WithEachAllocationFailing(Work work) {
  for (int count = 0; count < 1000; ++count) {
    const size_t before = OpenFiles();
    bool failed = false;
    try {
      s_AllocationsLeft = count;
      work();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    s_AllocationsLeft = -1;
    EXPECT_EQ(OpenFiles(), before) << "allocation " << count;
    if (!failed) {
      EXPECT_GT(count, 0);
      return;
    }
  }
  FAIL() << "it never succeeds";
}

class ShortMemory : public testing::Test {
 protected:
  ShortMemory() : m_Folder(testing::TempDir() + "short-memory-" + std::to_string(getpid())) {
    std::filesystem::create_directories(m_Folder);
  }
  ~ShortMemory() override { std::filesystem::remove_all(m_Folder); }

  const std::filesystem::path m_Folder;
  const std::string m_Name = m_Folder / "a name that is too long to be kept within a string";
};

TEST_F(ShortMemory, MessageIsLostWithoutAnException) {
  MemoryLogSink sink;
  const std::string text(1000, 'x');
  s_AllocationsLeft = 0;
  EXPECT_NO_THROW(sink.Error("%s\n", text.c_str()));
  s_AllocationsLeft = -1;
  EXPECT_TRUE(sink.Entries().empty());
  sink.Error("%s\n", text.c_str());
  EXPECT_EQ(sink.Entries().size(), 1U);
}

TEST_F(ShortMemory, ReaderLeavesNoFileOpen) {
  FileWriter writer;
  ASSERT_EQ(writer.OpenWrite(m_Name), RESULT_OK);
  ASSERT_EQ(writer.Commit(), RESULT_OK);
  WithEachAllocationFailing([&] {
    FileReader reader;
    if (reader.OpenRead(m_Name).Failure()) throw std::bad_alloc();
  });
}

TEST_F(ShortMemory, WriterLeavesNoFileBehind) {
  WithEachAllocationFailing([&] {
    FileWriter writer;
    if (writer.OpenWrite(m_Name).Failure()) throw std::bad_alloc();
  });
  EXPECT_TRUE(std::filesystem::is_empty(m_Folder));
}

TEST_F(ShortMemory, DigestHasNoValue) {
  s_HasDigestContexts = false;
  SHA1 digest;
  SHA1Digest pieces;
  pieces.Update("abc");
  EXPECT_FALSE(pieces.Finish().HasValue());
  EXPECT_FALSE(DigestText("abc").HasValue());
  FileWriter writer;
  ASSERT_EQ(writer.OpenWrite(m_Name), RESULT_OK);
  ASSERT_EQ(writer.Commit(), RESULT_OK);
  EXPECT_EQ(DigestFile(m_Name, digest), RESULT_ALLOC);
  EXPECT_FALSE(digest.HasValue());
  s_HasDigestContexts = true;
  pieces.Update("abc");
  EXPECT_FALSE(pieces.Finish().HasValue());  // it was without memory when it began
  pieces.Update("abc");
  EXPECT_EQ(pieces.Finish(), DigestText("abc"));
}

}  // namespace
