// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>

#include <string>
#include <vector>

namespace testsupport {

using Bytes = std::vector<QUIRE::ui8_t>;

/// A JPEG 2000 codestream of a D-Cinema profile (Rsiz 3 up to 2048 x 1080, else 4), X'Y'Z' 12 bits, that any decoder opens.
/// Streams of different numbers differ in a comment. Encoding is done once for each size, so that many frames are cheap.
Bytes MakeCodestream(QUIRE::ui32_t width, QUIRE::ui32_t height, QUIRE::ui32_t number);

/// An MPEG-2 access unit of the given type, Main profile at High level: headers as a stream has them, but slices that say
/// nothing, which readers and writers of files do not look at. Intra pictures begin a group of pictures, with a sequence
/// header before it. Rates: 24, 25, 30, 50, 60, 24000/1001, 30000/1001, 60000/1001; asserts on others.
Bytes MakeAccessUnit(QUIRE::MPEG2::PictureType_t type, QUIRE::ui16_t temporal_reference, QUIRE::ui32_t width,
                     QUIRE::ui32_t height, const QUIRE::Rational& rate, QUIRE::ui32_t number);

/// Interleaved samples of one sine per channel, each of another pitch: `count` samples from sample `first` on, as the
/// descriptor's channel count and sample size say.
Bytes MakeSamples(const QUIRE::PCM::AudioDescriptor& sound, QUIRE::ui64_t first, QUIRE::ui32_t count);

/// One immersive audio frame: a preamble and a frame element around bytes that follow from the number (ST 2098-2).
Bytes MakeImmersiveFrame(QUIRE::ui32_t number);

/// Bytes that look like chance and follow from the number.
Bytes MakeNoise(size_t size, QUIRE::ui32_t number);
/// A PNG image of 1 x 1 pixels, followed by a chunk that other programs pass over so that it has `size` bytes; one of less
/// than 82 bytes is cut.
Bytes MakePNG(size_t size);
/// One whose header has that size, and whose pixels are too few for it.
Bytes MakePNGHeader(unsigned width, unsigned height);
/// Bytes that begin as an OpenType font does.
Bytes MakeFont(size_t size);

/// A SMPTE timed-text document (ST 428-7) with one line of text, that refers to the fonts and images given.
std::string MakeTextDocument(const std::string& id, const std::vector<std::string>& font_ids,
                             const std::vector<std::string>& image_ids, const QUIRE::Rational& rate);

/// A WAVE file's bytes: RIFF header, format and data chunk around the samples.
Bytes MakeWAV(const QUIRE::PCM::AudioDescriptor& sound, const Bytes& samples);

}  // namespace testsupport
