// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/LevelChart.h"
#include "drawing/RateChart.h"
#include "drawing/TimelineModel.h"

#include <Assay/Figures.h>

#include <map>
#include <string>
#include <vector>

namespace Tool {

// Figures of track files, put together to what plays.

/// Figures by asset; where two files have the same one, the first.
using FiguresByAsset = std::map<Cairn::UUID, const Assay::FileFigures*>;
[[nodiscard]] FiguresByAsset ByAsset(const std::vector<Assay::FileFigures>& figures);

/// The bit rate of a show's pictures, as long as they play.
[[nodiscard]] RateCurve RateCurveOf(const TimelineModel& show, const FiguresByAsset& figures);
/// The same of a whole file that has a picture.
[[nodiscard]] RateCurve RateCurveOf(const Assay::FileFigures& file);

/// The highest level of each channel over all sound files of one of the show's compositions; `composition` is its index.
[[nodiscard]] std::vector<ChannelLevel> LevelsOf(const TimelineModel& show, size_t composition,
                                                 const FiguresByAsset& figures);
/// The same of one file.
[[nodiscard]] std::vector<ChannelLevel> LevelsOf(const Assay::FileFigures& file);

}  // namespace Tool
