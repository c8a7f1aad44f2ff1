// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "metadata/SetCodec.h"
#include "metadata/SetDefinition.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;

Bytes Counting(size_t length) {
  Bytes bytes(length);
  for (size_t i = 0; i < length; ++i) bytes[i] = static_cast<ui8_t>(i + 1);
  return bytes;
}

// Two items of so many bytes.
Bytes Batch(ui8_t size) {
  Bytes bytes = {0, 0, 0, 2, 0, 0, 0, size};
  const Bytes items = Counting(size_t{2} * size);
  bytes.insert(bytes.end(), items.begin(), items.end());
  return bytes;
}

// A value of the property's type, found by trying: batches, numbers and identifiers of every length, text.
Bytes ValueFor(const Property& property) {
  std::vector<Bytes> candidates = {{1}, {0, 'M', 0, 'X', 0, 'F'}, {'e', 'n', '-', 'U', 'S'}};
  for (const ui8_t size : std::array<ui8_t, 4>{2, 3, 4, 16}) candidates.push_back(Batch(size));
  for (const size_t length : {2U, 4U, 8U, 10U, 16U, 32U}) candidates.push_back(Counting(length));
  // A type without a length of its own takes anything: text is tried before numbers there, by the order above.
  for (const Bytes& candidate : candidates) {
    // A fresh object of any class that has the property.
    for (const SetDefinition* set : AllSetDefinitions()) {
      const auto has = [&](const Property& other) { return other.FieldOf == property.FieldOf; };
      if (std::none_of(set->Properties.begin(), set->Properties.end(), has)) continue;
      const auto object = set->Create();
      Bytes written;
      if (property.Read(*object, candidate) && property.Write(*object, written) && written == candidate)
        return candidate;
      break;
    }
  }
  return {};
}

class EverySet : public testing::TestWithParam<const SetDefinition*> {};

std::unique_ptr<InterchangeObject> FullSet(const SetDefinition& definition) {
  auto object = definition.Create();
  for (const Property& property : definition.Properties) {
    const Bytes value = ValueFor(property);
    EXPECT_FALSE(value.empty()) << DefaultSMPTEDict().Type(property.Entry).Name;
    EXPECT_TRUE(property.Read(*object, value));
  }
  return object;
}

std::unique_ptr<InterchangeObject> Reread(const Bytes& klv, const Primer& primer) {
  const auto packet = ParseKLV(klv, 0, klv.size());
  EXPECT_TRUE(packet.has_value());
  SetBudget budget(OP1aHeader::MaxSetMemory);
  std::unique_ptr<InterchangeObject> object;
  EXPECT_EQ(ReadSet(packet->Key, std::span(klv).subspan(packet->HeaderLength), 20, primer, budget, object),
            Ferro::RESULT_OK);
  return object;
}

TEST_P(EverySet, RoundTripsWithAllProperties) {
  const SetDefinition& definition = *GetParam();
  const auto object = FullSet(definition);
  Primer primer;
  Bytes written;
  ASSERT_EQ(WriteSet(*object, primer, written), Ferro::RESULT_OK);
  const auto read = Reread(written, primer);
  ASSERT_TRUE(read->Is(definition.Entry));
  for (const Property& property : definition.Properties) {
    Bytes value;
    EXPECT_TRUE(property.Write(*read, value)) << DefaultSMPTEDict().Type(property.Entry).Name;
    EXPECT_EQ(value, ValueFor(property)) << DefaultSMPTEDict().Type(property.Entry).Name;
  }
  Bytes again;
  ASSERT_EQ(WriteSet(*read, primer, again), Ferro::RESULT_OK);
  EXPECT_EQ(again, written);
}

TEST_P(EverySet, WithoutValuesHasOnlyItsRequiredProperties) {
  const SetDefinition& definition = *GetParam();
  const auto object = definition.Create();
  Primer primer;
  Bytes written;
  ASSERT_EQ(WriteSet(*object, primer, written), Ferro::RESULT_OK);
  const auto required = std::count_if(definition.Properties.begin(), definition.Properties.end(),
                                      [](const Property& property) { return !property.IsOptional(); });
  const auto read = Reread(written, primer);
  EXPECT_EQ(std::ssize(read->Items), required);
}

TEST_P(EverySet, ListsEachPropertyOnceInstanceUIDFirst) {
  const SetDefinition& definition = *GetParam();
  EXPECT_EQ(definition.Properties.front().Entry, MDD_InterchangeObject_InstanceUID);
  std::set<std::array<ui8_t, 16>> labels;
  for (const Property& property : definition.Properties)
    EXPECT_TRUE(labels.insert(DefaultSMPTEDict().Type(property.Entry).Label).second)
        << DefaultSMPTEDict().Type(property.Entry).Name;
  EXPECT_EQ(FindSetDefinition(DefaultSMPTEDict().ul(definition.Entry)), &definition);
}

TEST_P(EverySet, CutAtEveryByteIsReadUpToAWholeItemOrRefused) {
  const auto object = FullSet(*GetParam());
  Primer primer;
  Bytes written;
  ASSERT_EQ(WriteSet(*object, primer, written), Ferro::RESULT_OK);
  const auto packet = ParseKLV(written, 0, written.size());
  const std::span<const ui8_t> value = std::span<const ui8_t>(written).subspan(packet->HeaderLength);
  size_t accepted = 0;
  for (size_t length = 0; length < value.size(); ++length) {
    const testsupport::LogCapture log;
    SetBudget budget(OP1aHeader::MaxSetMemory);
    std::unique_ptr<InterchangeObject> cut;
    const Result_t result = ReadSet(packet->Key, value.first(length), 20, primer, budget, cut);
    if (result.Success()) ++accepted;
    EXPECT_TRUE(result == Ferro::RESULT_OK || result == RESULT_FORMAT);
    EXPECT_EQ(log.Lines().size(), result.Success() ? 0u : 1u);
  }
  EXPECT_EQ(accepted, GetParam()->Properties.size());
}

INSTANTIATE_TEST_SUITE_P(Sets, EverySet, testing::ValuesIn(AllSetDefinitions().begin(), AllSetDefinitions().end()),
                         [](const auto& set) { return DefaultSMPTEDict().Type(set.param->Entry).Name; });

}  // namespace
}  // namespace QUIRE::MXF
