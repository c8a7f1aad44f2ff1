// SPDX-License-Identifier: BSD-3-Clause
#include "KeptResultsForm.h"

#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

namespace Assay::KeptForm {
namespace {

constexpr std::array<ui8_t, 8> Magic = {'A', 'S', 'S', 'A', 'Y', 'K', 'P', 'T'};
/// To be raised with each change of this form, and of what examiners find in the same frames.
constexpr ui32_t Version = 2;
constexpr size_t DigestSize = SHA1::Size;
constexpr Depth KeptDepths[] = {Depth::Frames, Depth::Hash, Depth::Decode};

SHA1 DigestOf(std::span<const ui8_t> bytes) {
  Ferro::SHA1Digest digest;
  digest.Update(bytes);
  return digest.Finish();
}

SHA1 DigestOfRules() {
  Ferro::SHA1Digest digest;
  for (const FindingRule& rule : FindingRules()) {
    digest.Update(std::string_view(rule.Name));
    for (const FindingClass value : rule.Classes.All()) digest.Update(std::string_view(FindingClassName(value)));
  }
  return digest.Finish();
}

}  // namespace

void Writer::Number(ui64_t value, int size) {
  while (size-- > 0) m_Bytes.push_back(static_cast<ui8_t>(value >> (8 * size)));
}

void Writer::Write(double value) {
  Write(std::bit_cast<ui64_t>(value));
}

void Writer::Write(const std::string& text) {
  Write(static_cast<ui32_t>(text.size()));
  m_Bytes.insert(m_Bytes.end(), text.begin(), text.end());
}

void Writer::Write(const QUIRE::Rational& rate) {
  Write(static_cast<ui32_t>(rate.Numerator));
  Write(static_cast<ui32_t>(rate.Denominator));
}

void Writer::WriteHead() {
  m_Bytes.assign(Magic.begin(), Magic.end());
  Write(Version);
  const SHA1 rules = DigestOfRules();
  m_Bytes.insert(m_Bytes.end(), rules.Bytes().begin(), rules.Bytes().end());
}

void Writer::Write(const Finding& finding) {
  Write(std::string(RuleOf(finding.ID).Name));
  Write(static_cast<ui8_t>(finding.Class));
  Write(ui8_t{finding.Place.EditUnit.has_value()});
  Write(finding.Place.EditUnit.value_or(0));
  Write(finding.Place.EditRate);
  Write(finding.Place.Channel);
  Write(finding.Expected);
  Write(finding.Found);
  Write(ui8_t{finding.Cause.has_value()});
  Write(static_cast<ui32_t>(finding.Cause.value_or(0)));
}

void Writer::Write(const FileFigures& figures) {
  Write(figures.EditRate);
  Write(figures.Duration);
  Write(ui8_t{figures.Picture.has_value()});
  if (figures.Picture) {
    const PictureFigures& picture = *figures.Picture;
    for (const double rate : {picture.MeanRate, picture.PeakRate, picture.LimitRate}) Write(rate);
    Write(picture.PeakEditUnit);
    Write(picture.UnitsOfSpan);
    Write(static_cast<ui32_t>(picture.Spans.size()));
    for (const float span : picture.Spans) Write(std::bit_cast<ui32_t>(span));
  }
  Write(static_cast<ui32_t>(figures.Channels.size()));
  for (const ChannelFigures& channel : figures.Channels) {
    Write(channel.Label);
    Write(channel.Peak);
  }
}

void Writer::Write(const KeptFile& file) {
  Write(file.State.Size);
  Write(static_cast<ui64_t>(file.State.Modified));
  for (const Depth depth : KeptDepths) Write(ui8_t{file.LookedAt.Has(depth)});
  Write(ui8_t{file.Digest.HasValue()});
  m_Bytes.insert(m_Bytes.end(), file.Digest.Bytes().begin(), file.Digest.Bytes().end());
  Write(static_cast<ui32_t>(file.Findings.size()));
  for (const Finding& finding : file.Findings) Write(finding);
  Write(ui8_t{file.Figures.has_value()});
  if (file.Figures) Write(*file.Figures);
}

std::vector<ui8_t> Writer::Finish() {
  const SHA1 digest = DigestOf(m_Bytes);
  m_Bytes.insert(m_Bytes.end(), digest.Bytes().begin(), digest.Bytes().end());
  return std::move(m_Bytes);
}

Reader::Reader(std::span<const ui8_t> bytes)
    : m_Bytes(bytes), m_Input(bytes.first(bytes.size() < DigestSize ? 0 : bytes.size() - DigestSize)) {}

KeptState Reader::ReadHead() {
  std::array<ui8_t, Magic.size()> magic{};
  std::array<ui8_t, DigestSize> rules{};
  ui32_t version = 0;
  if (!m_Input.ReadRaw(magic.data(), magic.size()) || magic != Magic) return KeptState::Damaged;
  const auto covered = m_Bytes.first(m_Bytes.size() - DigestSize);
  const SHA1 digest = DigestOf(covered);
  if (!std::ranges::equal(digest.Bytes(), m_Bytes.last(DigestSize))) return KeptState::Damaged;
  if (!m_Input.ReadUi32BE(&version) || !m_Input.ReadRaw(rules.data(), rules.size())) return KeptState::Damaged;
  const bool is_ours = version == Version && std::ranges::equal(DigestOfRules().Bytes(), rules);
  return is_ours ? KeptState::Used : KeptState::Older;
}

// No item of a list takes less than four bytes, so that no count leads to more memory than there are bytes.
bool Reader::ReadCount(ui32_t& count) {
  return m_Input.ReadUi32BE(&count) && count <= m_Input.Remainder() / 4;
}

bool Reader::Read(std::string& text) {
  text.clear();
  return m_Input.ReadString(&text);
}

bool Reader::ReadFlag(bool& flag) {
  ui8_t value = 0;
  if (!m_Input.ReadUi8(&value) || value > 1) return false;
  flag = value == 1;
  return true;
}

bool Reader::Read(double& value) {
  ui64_t bits = 0;
  if (!m_Input.ReadUi64BE(&bits)) return false;
  value = std::bit_cast<double>(bits);
  return value == value;
}

bool Reader::Read(QUIRE::Rational& rate) {
  ui32_t numerator = 0;
  ui32_t denominator = 0;
  if (!m_Input.ReadUi32BE(&numerator) || !m_Input.ReadUi32BE(&denominator)) return false;
  rate = {static_cast<Ferro::i32_t>(numerator), static_cast<Ferro::i32_t>(denominator)};
  return true;
}

// A cause stands before what follows from it.
bool Reader::Read(Finding& finding, size_t number) {
  ui8_t value = 0;
  bool has_unit = false;
  bool has_cause = false;
  ui64_t unit = 0;
  ui32_t cause = 0;
  const bool is_read = m_Input.ReadUi8(&value) && ReadFlag(has_unit) && m_Input.ReadUi64BE(&unit) &&
                       Read(finding.Place.EditRate) && m_Input.ReadUi32BE(&finding.Place.Channel) &&
                       Read(finding.Expected) && Read(finding.Found) && ReadFlag(has_cause) &&
                       m_Input.ReadUi32BE(&cause);
  if (!is_read || value > static_cast<ui8_t>(FindingClass::Note) || (has_cause && cause >= number)) return false;
  finding.Class = static_cast<FindingClass>(value);
  if (has_unit) finding.Place.EditUnit = unit;
  if (has_cause) finding.Cause = cause;
  return RuleOf(finding.ID).Classes.Has(finding.Class);
}

bool Reader::ReadFindings(FindingList& findings) {
  ui32_t count = 0;
  if (!ReadCount(count)) return false;
  for (ui32_t i = 0; i < count; ++i) {
    std::string name;
    if (!Read(name)) return false;
    const FindingRule* rule = FindRule(name);
    if (rule == nullptr || !Read(findings.emplace_back(rule->ID), i)) return false;
  }
  return true;
}

bool Reader::Read(PictureFigures& picture) {
  ui32_t count = 0;
  const bool is_read = Read(picture.MeanRate) && Read(picture.PeakRate) && Read(picture.LimitRate) &&
                       m_Input.ReadUi64BE(&picture.PeakEditUnit) && m_Input.ReadUi64BE(&picture.UnitsOfSpan) &&
                       ReadCount(count);
  if (!is_read || count > PictureFigures::MaxSpans || picture.UnitsOfSpan == 0) return false;
  for (ui32_t i = 0; i < count; ++i) {
    ui32_t bits = 0;
    if (!m_Input.ReadUi32BE(&bits)) return false;
    picture.Spans.push_back(std::bit_cast<float>(bits));
  }
  return std::ranges::all_of(picture.Spans, [](float span) { return span >= 0; });
}

bool Reader::Read(FileFigures& figures) {
  bool has_picture = false;
  if (!Read(figures.EditRate) || !m_Input.ReadUi64BE(&figures.Duration) || !ReadFlag(has_picture)) return false;
  if (has_picture && !Read(figures.Picture.emplace())) return false;
  ui32_t count = 0;
  if (!ReadCount(count)) return false;
  for (ui32_t i = 0; i < count; ++i) {
    ChannelFigures& channel = figures.Channels.emplace_back();
    if (!Read(channel.Label) || !Read(channel.Peak)) return false;
  }
  return true;
}

bool Reader::Read(KeptFile& file) {
  ui64_t modified = 0;
  if (!m_Input.ReadUi64BE(&file.State.Size) || !m_Input.ReadUi64BE(&modified)) return false;
  file.State.Modified = static_cast<i64_t>(modified);
  for (const Depth depth : KeptDepths) {
    bool has = false;
    if (!ReadFlag(has)) return false;
    if (has) file.LookedAt.Add(depth);
  }
  bool has_digest = false;
  bool has_figures = false;
  std::array<ui8_t, DigestSize> digest{};
  if (!ReadFlag(has_digest) || !m_Input.ReadRaw(digest.data(), digest.size())) return false;
  if (has_digest) file.Digest = SHA1(digest);
  if (has_digest != file.LookedAt.Has(Depth::Hash)) return false;
  if (!ReadFindings(file.Findings) || !ReadFlag(has_figures)) return false;
  return !has_figures || Read(file.Figures.emplace());
}

}  // namespace Assay::KeptForm
