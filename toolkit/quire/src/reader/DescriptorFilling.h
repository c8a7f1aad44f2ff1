// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "h__Reader.h"

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/VideoDescriptor.h>

namespace QUIRE {

// What the header of an open file says; each stands beside the reader of its kind.
/// @return RESULT_OK; RESULT_FORMAT for a file of another kind.
[[nodiscard]] Result_t FillFrom(h__Reader& reader, JP2K::PictureDescriptor& descriptor);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, MPEG2::VideoDescriptor& descriptor);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, PCM::AudioDescriptor& descriptor);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, PCM::MCALabelList& labels);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, TimedText::TimedTextDescriptor& descriptor);
/// Looks the resources of timed text up in the file.
/// @param missing  receives the first that is not there.
/// @return RESULT_OK, or what looking that one up returns.
[[nodiscard]] Result_t FindResources(h__Reader& reader, Ferro::UUID& missing);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, DCData::DCDataDescriptor& descriptor);
[[nodiscard]] Result_t FillFrom(h__Reader& reader, ATMOS::AtmosDescriptor& descriptor);

}  // namespace QUIRE
