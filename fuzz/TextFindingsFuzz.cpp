// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include "text/TextFindings.h"

#include <Ferro/Assert.h>

#include <algorithm>
#include <string>

namespace {

/// The same bytes for each font and picture.
class OneResource final : public Assay::ITextResources {
 public:
  explicit OneResource(std::vector<Assay::ui8_t> bytes) : m_Bytes(std::move(bytes)) {}

  [[nodiscard]] std::string Find(const Cairn::TextResource& resource) const override {
    return resource.Path + resource.ID.EncodeString() + '.';
  }
  [[nodiscard]] QUIRE::Result_t Read(const Cairn::TextResource& /*resource*/,
                                     std::vector<Assay::ui8_t>& bytes) override {
    bytes = m_Bytes;
    return Ferro::RESULT_OK;
  }
  [[nodiscard]] Assay::ui64_t SizeBound(const Cairn::TextResource& /*resource*/) const override {
    return m_Bytes.size();
  }

 private:
  std::vector<Assay::ui8_t> m_Bytes;
};

void CheckFindings(const Assay::FindingList& findings) {
  constexpr size_t Most = 100;  // one of each kind, and one of each font
  FERRO_ASSERT(findings.size() <= Most);
  for (const Assay::Finding& finding : findings) {
    FERRO_ASSERT(finding.Place.Document == "text");
    FERRO_ASSERT(!finding.Found.empty() && !finding.Cause);
    FERRO_ASSERT(Assay::RuleOf(finding.ID).Classes.Has(finding.Class));
  }
}

}  // namespace

// A document; behind a byte of 0, which no document has, what its fonts and pictures are.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static QuietLog silence;
  const unsigned char* const end = data + size;
  const unsigned char* const zero = std::find(data, end, 0);
  Cairn::TimedText document;
  if (document.DecodeXML(std::string(data, zero)).Failure() || document.LoadFontList.size() > 20) return 0;
  OneResource resources({std::min(zero + 1, end), end});
  Assay::TextFile file;
  file.File.Document = "text";
  file.EditRate = document.EditRate.Value;
  file.FileRate = file.EditRate;
  FindTextProblems(document, file);
  FindInText(document, resources, Assay::Depth::Frames, file);
  for (const Assay::FindingList* findings : {&file.Findings, &file.SubtitleFindings, &file.CaptionFindings})
    CheckFindings(*findings);
  return 0;
}
