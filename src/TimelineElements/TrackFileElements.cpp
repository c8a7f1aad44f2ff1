// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/TrackFileElements.h"

namespace Strata {

template class TrackFileElement<JP2KReaderWrapper>;
template class TrackFileElement<JP2KSReaderWrapper>;
template class TrackFileElement<MPEGReaderWrapper>;
template class TrackFileElement<PCMReaderWrapper>;
template class TrackFileElement<DCDataReaderWrapper>;
template class TrackFileElement<AtmosReaderWrapper>;

}  // namespace Strata
