// SPDX-License-Identifier: BSD-3-Clause
#include "BrokenShow.h"

#include "SampleCopy.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// Whether a line begins with the time code of a composition.
bool IsOutline(const std::string& line) {
  return line.size() > 11 && line[2] == ':' && line[5] == ':' && line[8] == ':';
}

}  // namespace

BrokenShow::BrokenShow() {
  CopySampleShow(Path());
}

std::string BrokenShow::Path(const std::string& name) const {
  return m_Folder.Path("show") + (name.empty() ? "" : '/' + name);
}

void BrokenShow::Remove(const std::string& name) const {
  EXPECT_TRUE(fs::remove(Path(name))) << name;
}

void BrokenShow::Write(const std::string& name, const std::string& bytes) const {
  std::ofstream(Path(name), std::ios::binary) << bytes;
}

std::string BrokenShow::Read(const std::string& name) const {
  std::ostringstream text;
  text << std::ifstream(Path(name), std::ios::binary).rdbuf();
  EXPECT_FALSE(text.str().empty()) << name;
  return text.str();
}

void BrokenShow::Cut(const std::string& name, size_t size) const {
  EXPECT_GT(fs::file_size(Path(name)), size);
  fs::resize_file(Path(name), size);
}

void BrokenShow::Replace(const std::string& name, const std::string& from, const std::string& to,
                         const std::string& after) const {
  std::string text = Read(name);
  const size_t at = text.find(from, text.find(after));
  ASSERT_NE(at, std::string::npos) << name << ": " << from;
  Write(name, text.replace(at, from.size(), to));
}

void BrokenShow::ListSize(const std::string& name) const {
  const std::string list = fs::path(name).replace_filename("PKL.xml");
  std::string text = Read(list);
  const size_t entry = text.find("<OriginalFileName>" + fs::path(name).filename().string());
  const size_t begin = text.rfind("<Size>", entry);
  ASSERT_NE(begin, std::string::npos) << name;
  const size_t end = text.find("</Size>", begin);
  Write(list, text.replace(begin + 6, end - begin - 6, std::to_string(fs::file_size(Path(name)))));
}

void BrokenShow::Unlist(const std::string& name) const {
  for (const char* document : {"PKL.xml", "ASSETMAP.xml"}) {
    const std::string list = fs::path(name).replace_filename(document);
    std::string text = Read(list);
    const size_t entry = text.find('>' + fs::path(name).filename().string() + '<');
    const size_t begin = text.rfind("<Asset>", entry);
    ASSERT_NE(begin, std::string::npos) << name;
    Write(list, text.erase(begin, text.find("</Asset>", begin) + 8 - begin));
  }
}

std::string BrokenShow::Check(std::vector<std::string> arguments) const {
  if (arguments.empty() || arguments.front().starts_with("--")) arguments.insert(arguments.begin(), Path());
  arguments.insert(arguments.begin(), "check");
  StrataProgram check(arguments);
  std::string answer = std::to_string(check.Wait()) + '\n';
  std::istringstream output(check.Output() + check.Errors());
  for (std::string line; std::getline(output, line);) {
    const bool is_key = line.starts_with("note: SampleEncrypted: ") || line.starts_with("    Get a key message");
    if (!IsOutline(line) && !is_key && !line.starts_with("    asset ")) answer += line + '\n';
  }
  ReplaceAll(answer, Path(), "SHOW");
  return answer;
}
