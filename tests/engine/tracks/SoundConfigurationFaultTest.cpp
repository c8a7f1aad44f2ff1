// SPDX-License-Identifier: BSD-3-Clause
// A program of its own, because it takes the place of a function of the header metadata.
#include <Strata/SoundConfiguration.h>

#include "../../support/AssertionText.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <gtest/gtest.h>

#include <memory>

/// Finds every object, and has none: what no header does.
QUIRE::Result_t QUIRE::MXF::OP1aHeader::GetMDObjectByID(const UUID&, InterchangeObject** object) const {
  if (object != nullptr) *object = nullptr;
  return Ferro::RESULT_OK;
}

TEST(SoundConfigurationFault, SubDescriptorThatIsFoundAndIsNothingAsserts) {
  QUIRE::MXF::OP1aHeader header;
  auto& wave = header.Add(std::make_unique<QUIRE::MXF::WaveAudioDescriptor>());
  wave.SubDescriptors.push_back(Ferro::UUID::Random());
  EXPECT_DEATH(static_cast<void>(Strata::mca_sound_label_from_mxf(header, QUIRE::DefaultSMPTEDict(), true)),
               testsupport::Asserts("i_sub_desc!=0"));
}
