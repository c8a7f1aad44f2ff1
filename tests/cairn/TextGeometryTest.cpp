// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/TextGeometry.h>

#include <gtest/gtest.h>

namespace {

using namespace Cairn;  // the functions under test are free

constexpr double Width = 1998;
constexpr double Height = 1080;
constexpr double Near = 0.006;  // pixels: values are written with two digits

TextPlace Vertical(TextValign_t align, double position) {
  TextPlace place;
  place.Valign.Value = align;
  place.Vposition.Value = position;
  return place;
}

TextPlace Horizontal(TextHalign_t align, double position) {
  TextPlace place;
  place.Halign.Value = align;
  place.Hposition.Value = position;
  return place;
}

TEST(TextGeometry, SizeIsPointsOfAPictureElevenInchesHigh) {
  EXPECT_NEAR(EmHeight(42, Height), 57.27, Near);
  EXPECT_NEAR(EmHeight(42, 858), 45.50, Near);
  EXPECT_NEAR(EmHeight(42, 2160), 114.55, Near);
  EXPECT_NEAR(EmHeight(39, Height), 53.18, Near);
}

TEST(TextGeometry, BottomCountsUpwardsToTheBaseline) {
  EXPECT_NEAR(AnchorY(Vertical(TextValign_t::Bottom, 8), Height), 993.6, Near);
  EXPECT_NEAR(AnchorY(Vertical(TextValign_t::Bottom, 14), Height), 928.8, Near);
  EXPECT_NEAR(AnchorY(Vertical(TextValign_t::Bottom, -2), Height), 1101.6, Near);
}

TEST(TextGeometry, TopIsTheBaselineOrTheBox) {
  const double ascent = 0.905 * EmHeight(42, Height);
  const TextPlace place = Vertical(TextValign_t::Top, 8);
  EXPECT_NEAR(AnchorY(place, Height), 86.4, Near);
  EXPECT_NEAR(AnchorY(place, Height) - ascent, 34.57, Near);
  EXPECT_NEAR(BoxBaselineY(place, Height, ascent, 12), 138.23, Near);
}

TEST(TextGeometry, BoxesStandOnTheirLowerEdgeAndAroundTheMiddle) {
  EXPECT_NEAR(BoxBaselineY(Vertical(TextValign_t::Bottom, 8), Height, 50, 12), 981.6, Near);
  EXPECT_NEAR(BoxBaselineY(Vertical(TextValign_t::Center, 0), Height, 50, 12), 559, Near);
}

TEST(TextGeometry, CenterIsAnOffsetDownwardsAndToTheRight) {
  EXPECT_NEAR(AnchorY(TextPlace(), Height), 540, Near);
  EXPECT_NEAR(AnchorY(Vertical(TextValign_t::Center, 10), Height), 648, Near);
  EXPECT_NEAR(AnchorX(Horizontal(TextHalign_t::Center, -5), Width), 899.1, Near);
}

TEST(TextGeometry, LeftAndRightCountInwards) {
  EXPECT_NEAR(AnchorX(Horizontal(TextHalign_t::Left, 12.5), Width), 249.75, Near);
  EXPECT_NEAR(AnchorX(Horizontal(TextHalign_t::Right, 10), Width), 1798.2, Near);
}

TEST(TextGeometry, ColorsHaveTheirOpacityInFront) {
  EXPECT_NEAR(ColorOpacity(0x80FFFF00), 0.502, 0.0005);
  EXPECT_EQ(ColorOpacity(0xFF000000), 1);
  EXPECT_EQ(ColorOpacity(0x00FFFFFF), 0);
}

TEST(TextGeometry, EffectsAreMeasuredInEm) {
  TextFont font;
  EXPECT_NEAR(EffectWidth(font, Height), 0.573, 0.0005);
  EXPECT_NEAR(EffectWidth(font, 2160), 1.15, Near);
  font.EffectSize.Value = 0.05;
  EXPECT_NEAR(EffectWidth(font, Height), 2.86, Near);
  EXPECT_NEAR(EffectWidth(font, 2160), 5.73, Near);
}

TEST(TextGeometry, AspectScalesCharactersAndSpacingStandsBetweenThem) {
  TextFont font;
  EXPECT_NEAR(TextWidth(font, 0.556, 1, Height), 31.84, Near);
  font.AspectAdjust.Value = 0.8;
  EXPECT_NEAR(TextWidth(font, 0.556, 1, Height), 25.47, Near);
  font.Spacing.Value = 0.1;
  EXPECT_NEAR(TextWidth(font, 0.556, 1, Height), 25.47, Near);
  EXPECT_NEAR(TextWidth(font, 0, 20, Height), 108.8, 0.05);
  EXPECT_EQ(TextWidth(font, 0, 0, Height), 0);
}

TEST(TextGeometry, ScriptsAreSmallerAndBesideTheLine) {
  TextFont font;
  EXPECT_EQ(BaselineRise(font, Height), 0);
  font.Script.Value = TextScript_t::Super;
  EXPECT_NEAR(CharacterHeight(font, Height), 34.36, Near);
  EXPECT_NEAR(BaselineRise(font, Height), 28.64, Near);
  font.Script.Value = TextScript_t::Sub;
  EXPECT_NEAR(BaselineRise(font, Height), -28.64, Near);
  EXPECT_NEAR(TextRuby().Size * EmHeight(42, Height), 28.64, Near);
}

TEST(TextGeometry, NegativeDepthComesForward) {
  TextPlace place;
  place.Zposition.Value = -1;
  EXPECT_NEAR(LeftEyeShift(place, Width), 9.99, 0.0001);
  EXPECT_NEAR(2 * LeftEyeShift(place, 3996), 39.96, 0.0001);
  place.Zposition.Value = 0;
  EXPECT_EQ(LeftEyeShift(place, Width), 0);
}

TEST(TextGeometry, ImagesKeepTheirPixels) {
  const ImageBox box = PlaceImage(Vertical(TextValign_t::Bottom, 8), 640, 120, 3996, 2160);
  EXPECT_NEAR(box.X, 1678, Near);
  EXPECT_NEAR(box.Y + box.Height, 1987.2, Near);
  EXPECT_EQ(box.Width, 640);
  // The picture at half its size takes the image along.
  EXPECT_NEAR(box.X / 2, 839, Near);
  EXPECT_NEAR((box.Y + box.Height) / 2, 993.6, Near);
}

TEST(TextGeometry, ImagesAreHeldByTheEdgeThatIsNamed) {
  TextPlace place = Horizontal(TextHalign_t::Right, 10);
  place.Valign.Value = TextValign_t::Top;
  const ImageBox right_top = PlaceImage(place, 100, 50, 1000, 500);
  EXPECT_NEAR(right_top.X, 800, Near);
  EXPECT_NEAR(right_top.Y, 0, Near);
  const ImageBox left_middle = PlaceImage(Horizontal(TextHalign_t::Left, 10), 100, 50, 1000, 500);
  EXPECT_NEAR(left_middle.X, 100, Near);
  EXPECT_NEAR(left_middle.Y, 225, Near);
}

}  // namespace
