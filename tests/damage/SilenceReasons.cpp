// SPDX-License-Identifier: BSD-3-Clause
#include "SilenceReasons.h"

#include <algorithm>
#include <initializer_list>

namespace testsupport {
namespace {

/// True where the package differs in nothing else than these.
bool HasOnly(const DamageCase& damage, std::initializer_list<Difference> differences) {
  return std::ranges::all_of(
      damage.Differences, [&](Difference each) { return std::ranges::find(differences, each) != differences.end(); });
}

/// Contents that nothing protects: integrity codes would tell of what is encrypted.
bool IsPlain(const DamageCase& damage, FileKind kind) {
  return damage.Mode == DamageMode::Recomputed && damage.Done.Kind == kind && !damage.Package.ends_with("Encrypted");
}

constexpr SilenceReason Reasons[] = {
    {"another picture",
     "A codestream in clear has no check value. Where its headers hold and the decoder takes it, what it shows is a "
     "picture, whichever it is; digests and integrity codes are what tells.",
     [](const DamageCase& damage) {
       return IsPlain(damage, FileKind::Picture) && HasOnly(damage, {Difference::Picture, Difference::PictureBytes});
     }},
    {"another sound", "Every sample is one that sound can have. Digests and integrity codes are what tells.",
     [](const DamageCase& damage) { return IsPlain(damage, FileKind::Sound) && HasOnly(damage, {Difference::Sound}); }},
    {"another immersive sound",
     "What is within a frame of immersive sound is for its renderer alone. Digests and integrity codes are what tells.",
     [](const DamageCase& damage) {
       return IsPlain(damage, FileKind::Immersive) && HasOnly(damage, {Difference::Data});
     }},
    {"another text",
     "Which words a text has, where they stand and in which looks is for people to judge: its form holds.",
     [](const DamageCase& damage) {
       return damage.Mode == DamageMode::Recomputed &&
              (damage.Done.Kind == FileKind::Text || damage.Done.Kind == FileKind::InteropText) &&
              HasOnly(damage, {Difference::Text, Difference::TextBytes});
     }},
    {"another shape of letters",
     "A font opens and has all the glyphs that its text needs. How they look is for people to judge.",
     [](const DamageCase& damage) {
       return damage.Mode == DamageMode::Recomputed && HasOnly(damage, {Difference::Resource}) &&
              (damage.Done.Kind == FileKind::Text || damage.Done.Kind == FileKind::Font);
     }},
    {"another picture of a text", "A sound picture in the place of another is one that the text may have.",
     [](const DamageCase& damage) {
       return damage.Mode == DamageMode::Recomputed && damage.Done.Kind == FileKind::Image &&
              HasOnly(damage, {Difference::Resource}) && damage.Done.Text.ends_with(" put in its place");
     }},
    {"another symbol of a label",
     "A label of sound is told by its identifier. The symbol beside it is for people, and shown as it stands.",
     [](const DamageCase& damage) {
       return damage.Mode == DamageMode::Recomputed && damage.Done.Kind == FileKind::Sound &&
              HasOnly(damage, {Difference::Timeline});
     }},
    {"another identifier of a reel", "Nothing refers to a reel by its identifier: it is passed on as it stands.",
     [](const DamageCase& damage) {
       return damage.Mode == DamageMode::Recomputed && damage.Done.Kind == FileKind::Composition &&
              HasOnly(damage, {Difference::Timeline}) && damage.Done.Text.find(" Reel/Id ") != std::string::npos;
     }},
};

}  // namespace

std::span<const SilenceReason> SilenceReasons() {
  return Reasons;
}

const SilenceReason* ReasonOf(const DamageCase& damage) {
  const auto found = std::ranges::find_if(Reasons, [&](const SilenceReason& each) { return each.Holds(damage); });
  return found == std::end(Reasons) ? nullptr : &*found;
}

}  // namespace testsupport
