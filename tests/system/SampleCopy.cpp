// SPDX-License-Identifier: BSD-3-Clause
#include "SampleCopy.h"

#include "StrataProgram.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// Holds a lock between processes while it lives.
class FileLock {
 public:
  explicit FileLock(const std::string& filename) : m_File(open(filename.c_str(), O_CREAT | O_RDWR, 0600)) {
    EXPECT_EQ(flock(m_File, LOCK_EX), 0) << filename;
  }
  ~FileLock() { close(m_File); }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  int m_File;
};

/// When the program or one of the libraries that it shares with the tests was built last.
long long BuildTime() {
  fs::file_time_type newest = fs::last_write_time(STRATA_PROGRAM);
  const auto visit = [](dl_phdr_info* info, size_t, void* data) {
    std::error_code error;
    const auto time = fs::last_write_time(info->dlpi_name, error);
    auto& latest = *static_cast<fs::file_time_type*>(data);
    if (!error) latest = std::max(latest, time);
    return 0;
  };
  dl_iterate_phdr(visit, &newest);
  return static_cast<long long>(newest.time_since_epoch().count());
}

}  // namespace

void CopySampleShow(const std::string& folder, bool is_signed) {
  fs::create_directories(SAMPLE_FOLDER);
  const FileLock lock(SAMPLE_FOLDER "/lock");
  const std::string build = "built-" + std::to_string(BuildTime());
  const std::string sample = SAMPLE_FOLDER "/" + build + (is_signed ? "-signed" : "");
  if (!fs::exists(sample)) {
    for (const auto& entry : fs::directory_iterator(SAMPLE_FOLDER))
      if (entry.is_directory() && !entry.path().filename().string().starts_with(build)) fs::remove_all(entry.path());
    std::vector<std::string> arguments = {"make-sample", sample, "--length", "1", "--size", "96x64"};
    if (!is_signed) arguments.push_back("--unsigned");
    StrataProgram maker(arguments);
    ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  }
  fs::copy(sample, folder, fs::copy_options::recursive);
}
