// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/FrameBuffer.h>

#include <gtest/gtest.h>

namespace {

using QUIRE::FrameBuffer;

TEST(FrameBuffer, StartsWithoutMemoryAndWithoutFrame) {
  const FrameBuffer frame;
  EXPECT_EQ(frame.Capacity(), 0u);
  EXPECT_EQ(frame.Data(), nullptr);
  EXPECT_EQ(frame.Size(), 0u);
  EXPECT_EQ(frame.FrameNumber(), 0xffffffffu);
}

TEST(FrameBuffer, CapacityAllocatesExactlyWhatIsAskedFor) {
  FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), Ferro::RESULT_OK);
  EXPECT_EQ(frame.Capacity(), 1000u);
  frame.Data()[999] = 1;
}

TEST(FrameBuffer, AskingForThePresentCapacityKeepsTheFrame) {
  FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(10), Ferro::RESULT_OK);
  frame.Data()[0] = 42;
  frame.Size(1);
  frame.FrameNumber(7);
  const auto* data = frame.RoData();
  ASSERT_EQ(frame.Capacity(10), Ferro::RESULT_OK);
  EXPECT_EQ(frame.RoData(), data);
  EXPECT_EQ(frame.Size(), 1u);
  EXPECT_EQ(frame.FrameNumber(), 7u);
}

TEST(FrameBuffer, AnotherCapacityDropsTheFrame) {
  FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(10), Ferro::RESULT_OK);
  frame.Size(10);
  frame.FrameNumber(7);
  frame.SourceLength(5);
  frame.PlaintextOffset(3);
  ASSERT_EQ(frame.Capacity(20), Ferro::RESULT_OK);
  EXPECT_EQ(frame.Size(), 0u);
  EXPECT_EQ(frame.FrameNumber(), QUIRE::NoFrame);
  EXPECT_EQ(frame.SourceLength(), 0u);
  EXPECT_EQ(frame.PlaintextOffset(), 0u);
}

TEST(FrameBuffer, CapacityZeroFreesTheMemory) {
  FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(10), Ferro::RESULT_OK);
  ASSERT_EQ(frame.Capacity(0), Ferro::RESULT_OK);
  EXPECT_EQ(frame.Data(), nullptr);
}

TEST(FrameBufferDeathTest, SizeBeyondTheCapacityIsAProgrammingError) {
  FrameBuffer frame;
  EXPECT_DEATH(frame.Size(1), "Assertion 'bytes <= m_Capacity' failed");
}

TEST(FrameBuffer, TextBuffersCarryIdentifierAndMimeType) {
  QUIRE::TimedText::FrameBuffer frame;
  const auto id = Ferro::UUID::Random();
  frame.AssetID(id);
  frame.MIMEType("image/png");
  EXPECT_EQ(frame.AssetID(), id);
  EXPECT_EQ(frame.MIMEType(), "image/png");
}

}  // namespace
