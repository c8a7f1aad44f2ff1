// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/InitObjectWithFile.h>

#include "../support/LogCapture.h"
#include "../support/TemporaryFolder.h"

#include <Cairn/AssetMap.h>

#include <gtest/gtest.h>

namespace {

constexpr size_t Limit = 8'388'608;

std::string Document(size_t size) {
  const std::string start = "<VolumeIndex xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\"><Index>4</Index>";
  const std::string end = "</VolumeIndex>";
  return start + std::string(size - start.size() - end.size(), ' ') + end;
}

TEST(InitObjectWithFile, AFileOfEightMebibytesIsDecoded) {
  const testsupport::TemporaryFolder folder;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Cairn::InitObjectWithFile(volume, folder.Write("a.xml", Document(Limit))), Ferro::RESULT_OK);
  EXPECT_EQ(volume.Index, 4u);
}

TEST(InitObjectWithFile, AByteMoreFailsWithTheReadersResult) {
  const testsupport::TemporaryFolder folder;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Cairn::InitObjectWithFile(volume, folder.Write("a.xml", Document(Limit + 1))), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(volume.Index, 1u);
}

TEST(InitObjectWithFile, AMissingFileFailsWithTheReadersResult) {
  const testsupport::LogCapture log;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Cairn::InitObjectWithFile(volume, "/nonexistent/a.xml"), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(log.Errors(),
            std::vector<std::string>{std::string("/nonexistent/a.xml: ") + Ferro::RESULT_NOT_FOUND.Label() + "\n"});
}

TEST(InitObjectWithFile, TheDecodersResultIsReturned) {
  const testsupport::LogCapture log;
  const testsupport::TemporaryFolder folder;
  Cairn::AssetMap map;
  EXPECT_EQ(Cairn::InitObjectWithFile(map, folder.Write("a.xml", Document(200))), Cairn::RESULT_NOT_ASSETMAP);
}

TEST(InitObjectWithFile, WhatTheDecoderSaysIsFollowedByTheFilesName) {
  const testsupport::LogCapture log;
  const testsupport::TemporaryFolder folder;
  const std::string file = folder.Write("a.xml", "<VolumeIndex xmlns=\"http://www.smpte-ra.org/x\">\n</Volume>");
  Cairn::VolumeIndex volume;
  EXPECT_EQ(Cairn::InitObjectWithFile(volume, file), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(log.Errors().back(), file + ": " + Cairn::RESULT_XML_PARSE.Label() + "\n");
  EXPECT_EQ(log.Errors().front().substr(0, 8), "line 2: ");
}

}  // namespace
