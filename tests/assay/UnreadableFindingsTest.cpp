// SPDX-License-Identifier: BSD-3-Clause
// What stands in a package's folder and is no file that can be read.
#include "FindingCases.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using Assay::Finding;
using Assay::FindingID;
using testsupport::Names;
using testsupport::NamesOf;
using testsupport::SamplePackage;
using testsupport::TheOne;

constexpr const char* TrackFile = "file_13.mxf";

class UnreadableFindings : public ::testing::Test {
 protected:
  /// Writes a sound package, and a file beside it.
  void Write(const SamplePackage& package = SamplePackage()) {
    package.Write(Path(""));
    fs::rename(Path(TrackFile), m_Top.Path("outside.mxf"));
    fs::copy_file(m_Top.Path("outside.mxf"), Path(TrackFile));
  }
  [[nodiscard]] std::string Path(const std::string& name) const { return m_Top.Path("package/" + name); }
  /// Puts something else where that file was.
  template <class MakeT>
  Names FindWith(const std::string& name, MakeT&& make) {
    fs::remove_all(m_Top.Path("package"));
    fs::remove(m_Top.Path("outside.mxf"));
    Write();
    fs::remove(Path(name));
    make(Path(name));
    return Find();
  }
  Names Find() {
    Assay::CheckRequest request;
    request.Folders = {m_Top.Path("package")};
    request.Profile = Assay::Profile::All;
    request.Depths = Assay::DepthSet::UpTo(Assay::Depth::Documents);
    request.Now = 1'717'200'000;
    EXPECT_EQ(Check(request, m_Report), Ferro::RESULT_OK);
    return NamesOf(m_Report.Findings);
  }
  /// The one finding of that kind.
  [[nodiscard]] Finding Told() const { return TheOne(m_Report.Findings, FindingID::FileUnreadable); }

  testsupport::TemporaryFolder m_Top;
  Assay::CheckReport m_Report;
};

void MakePipe(const std::string& path) {
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
}

void MakeSocket(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const int socket_file = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(socket_file, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  close(socket_file);
}

TEST_F(UnreadableFindings, WhatIsNoFileIsToldWhereTheMapNamesIt) {
  const Names told = {"file-unreadable"};
  EXPECT_EQ(FindWith(TrackFile, [](const auto& path) { fs::create_symlink("nothing", path); }), told);
  EXPECT_EQ(Told().Found, "a link that leads nowhere");
  EXPECT_EQ(Told().Place.Document, TrackFile);
  EXPECT_EQ(Told().Place.Asset.EncodeString(), "0f0f0f0f-1111-4222-8333-000000000013");
  EXPECT_EQ(FindWith(TrackFile, [](const auto& path) { fs::create_symlink(path, path); }), told);
  EXPECT_EQ(Told().Found, "a link that leads nowhere");
  EXPECT_EQ(FindWith(TrackFile, [](const auto& path) { fs::create_symlink("../outside.mxf", path); }), told);
  EXPECT_EQ(Told().Found, "a link out of the package");
  EXPECT_EQ(FindWith(TrackFile, [](const auto& path) { fs::create_symlink("/dev/zero", path); }), told);
  EXPECT_EQ(Told().Found, "a link out of the package");
  EXPECT_EQ(FindWith(TrackFile, [](const auto& path) { fs::create_directory(path); }), told);
  EXPECT_EQ(Told().Found, "a folder");
  EXPECT_EQ(FindWith(TrackFile, MakePipe), told);
  EXPECT_EQ(Told().Found, "a pipe");
  EXPECT_EQ(FindWith(TrackFile, MakeSocket), told);
  EXPECT_EQ(Told().Found, "a socket");
}

TEST_F(UnreadableFindings, ADeviceIsNotOpened) {
  // The device of the number 1, 5 gives zeros without end.
  const auto make = [](const std::string& path) {
    if (mknod(path.c_str(), S_IFCHR | 0600, makedev(1, 5)) != 0) GTEST_SKIP() << "devices are made by root alone";
  };
  const Names names = FindWith(TrackFile, make);
  if (IsSkipped()) return;
  EXPECT_EQ(names, Names{"file-unreadable"});
  EXPECT_EQ(Told().Found, "a device");
}

TEST_F(UnreadableFindings, ALinkWithinThePackageIsFollowed) {
  Write();
  fs::create_directory(Path("real"));
  fs::rename(Path(TrackFile), Path("real/file"));
  fs::create_symlink("real/file", Path(TrackFile));
  EXPECT_EQ(Find(), Names{"package-foreign-file"});  // the file by its own name
}

TEST_F(UnreadableFindings, APackageMayLieBehindALink) {
  Write();
  fs::rename(m_Top.Path("package"), m_Top.Path("real"));
  fs::create_directory_symlink("real", m_Top.Path("package"));
  EXPECT_EQ(Find(), Names{});
}

TEST_F(UnreadableFindings, WhatThePackageDoesNotNeedIsAWarning) {
  const auto with = [&](const auto& make) { return FindWith("unneeded", make); };
  const Names told = {"file-unreadable warning"};
  EXPECT_EQ(with([](const auto& path) { fs::create_symlink("nothing", path); }), told);
  EXPECT_EQ(Told().Place.Asset.HasValue(), false);
  EXPECT_EQ(with([](const auto& path) { fs::create_symlink("../outside.mxf", path); }), told);
  EXPECT_EQ(with([](const auto& path) { fs::create_directory_symlink(".", path); }), told);
  EXPECT_EQ(Told().Found, "a link to a folder");
  EXPECT_EQ(with(MakePipe), told);
  EXPECT_EQ(with([](const auto& path) { fs::create_directory(path); }), Names{"package-empty-folder"});
  EXPECT_EQ(with([](const auto&) {}), Names{});
}

TEST_F(UnreadableFindings, FilesBehindALinkToAFolderAreNotReached) {
  Write(SamplePackage().Edit("ASSETMAP.xml", TrackFile, std::string("sub/") + TrackFile));
  fs::remove(Path(TrackFile));
  fs::create_directory(m_Top.Path("elsewhere"));
  fs::copy_file(m_Top.Path("outside.mxf"), m_Top.Path("elsewhere/") + TrackFile);
  fs::create_directory_symlink("../elsewhere", Path("sub"));
  EXPECT_EQ(Find(), Names{"file-unreadable"});
  EXPECT_EQ(Told().Place.Document, "sub");
}

TEST_F(UnreadableFindings, DocumentsThatAreNoFilesAreNeeded) {
  // What else is missing follows from it.
  const auto roots = [&](const Names& all) {
    Assay::FindingList list;
    for (const Finding& finding : m_Report.Findings)
      if (!finding.Cause) list.push_back(finding);
    EXPECT_FALSE(all.empty());
    return NamesOf(list);
  };
  EXPECT_EQ(roots(FindWith("ASSETMAP.xml", MakePipe)), Names{"file-unreadable"});
  EXPECT_EQ(roots(FindWith("VOLINDEX.xml", MakePipe)), Names{"file-unreadable"});
  EXPECT_EQ(roots(FindWith("PKL.xml", MakePipe)), Names{"file-unreadable"});
  EXPECT_EQ(FindWith("CPL.xml", MakePipe), Names{"file-unreadable"});
}

}  // namespace
