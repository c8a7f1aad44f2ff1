// SPDX-License-Identifier: BSD-3-Clause
#include "Finding.h"

#include "show/InfoKinds.h"

#include <array>

namespace Tool {

namespace {

constexpr char BewareOfPackage[] = "Other equipment may refuse the package: copy it again from its source.";
constexpr char AskSigner[] = "The certificates were made wrong: ask who signed for corrected ones.";
constexpr char AskForMessage[] = "Ask for a key message that fits.";
constexpr char SendMessageAgain[] = "Ask for the key message again, as a file that nothing re-saves.";
constexpr char MakeShowAgain[] = "Make the show playlist again.";

using enum FindingID;
using enum Severity;

constexpr std::array Kinds = {
    FindingKind{AmMissing, "am-missing", Warning,
                "The asset map is missing or damaged; the files were found without it.", BewareOfPackage},
    FindingKind{AmSchema, "am-schema", Warning, "The asset map could not be understood.", BewareOfPackage},
    FindingKind{AmSeveral, "am-several", Warning, "The package has several asset maps.", BewareOfPackage},
    FindingKind{AmChunks, "am-chunks", Error, "The asset is split into several files, which is not supported.",
                AskAgain},
    FindingKind{AmPath, "am-path", Error, "The asset map's path leaves the package.", AskAgain},
    FindingKind{AmPathCase, "am-path-case", Warning,
                "The file's name differs from the asset map's path in upper and lower case.", ""},
    FindingKind{AmDuplicateID, "am-duplicate-id", Warning, "The asset map names an asset at several places.",
                BewareOfPackage},
    FindingKind{PklMissing, "pkl-missing", Error,
                "The packing list of this package is missing or damaged, so its files cannot be verified.", CopyAgain},
    FindingKind{PklSchema, "pkl-schema", Warning, "The packing list could not be understood.", BewareOfPackage},
    FindingKind{PklDisagree, "pkl-disagree", Warning, "Two packing lists disagree about an asset.", BewareOfPackage},
    FindingKind{PklAssetUnmapped, "pkl-asset-unmapped", Warning,
                "The packing list names it, but the asset map does not.", ""},
    FindingKind{PklAssetMissing, "pkl-asset-missing", Missing, "The file is missing.", CopyAgain},
    FindingKind{PklAssetSize, "pkl-asset-size", Error, "The file does not have the size that the package lists.",
                CopyAgain},
    FindingKind{PklAssetHash, "pkl-asset-hash", Error,
                "The file was altered: its digest is not the one that the packing list gives.", CopyAgain},
    FindingKind{PklUnlisted, "pkl-unlisted", Warning, "It lies in the package, but no packing list names it.", ""},
    FindingKind{FileUnreadable, "file-unreadable", Error, "The file cannot be read.", AllowReading},
    FindingKind{FileDamaged, "file-damaged", Error, "The file is damaged.", CopyAgain},
    FindingKind{FileIncomplete, "file-incomplete", Warning,
                "The track file was cut short; what is played of it is there.", CopyAgain},
    FindingKind{FindingID::FileID, "file-id", Warning, "The file says that it is another asset.", ""},
    FindingKind{CplSchema, "cpl-schema", Error, "The composition cannot be read.", CopyAgain},
    FindingKind{CplID, "cpl-id", Error, "The composition says that it is another asset.", AskAgain},
    FindingKind{CplHash, "cpl-hash", Error,
                "The composition was altered: its digest is not the one that the packing list gives.", CopyAgain},
    FindingKind{CplNoReel, "cpl-no-reel", Error, "The composition has no reels.", CopyAgain},
    FindingKind{CplAssetExternal, "cpl-asset-external", Missing, "No store has this asset.", NameStore},
    FindingKind{CplSoundMissing, "cpl-sound-missing", Warning,
                "The composition has no sound: some equipment stops there.", ""},
    FindingKind{ReelPictureMissing, "reel-picture-missing", Error, "The reel has no picture.", AskAgain},
    FindingKind{ReelAssetKind, "reel-asset-kind", Error, "The file holds another kind of essence.", AskAgain},
    FindingKind{ReelEditRate, "reel-edit-rate", Error,
                "The edit rate is not the composition's: they must not be mixed.", AskAgain},
    FindingKind{ReelRateFile, "reel-rate-file", Error, "The file runs at another edit rate than the composition says.",
                AskAgain},
    FindingKind{ReelDurations, "reel-durations", Warning, "The asset is not as long as the picture of its reel.", ""},
    FindingKind{ReelEntryBeyond, "reel-entry-beyond", Error, "The composition plays beyond the end of the file.",
                AskAgain},
    FindingKind{ReelIntrinsic, "reel-intrinsic", Warning, "The composition says that the file has another length.", ""},
    FindingKind{ReelHash, "reel-hash", Error, "The composition states another digest than the packing list.", AskAgain},
    FindingKind{ReelKeyMissing, "reel-key-missing", Error,
                "The file is encrypted, but the composition names no key: no key delivery fits.", AskAgain},
    FindingKind{ReelKeyNeedless, "reel-key-needless", Warning,
                "The composition names a key, but the file is not encrypted.", ""},
    FindingKind{ReelSoundSome, "reel-sound-some", Warning, "Some reels have no sound and will play silence.", ""},
    FindingKind{PictureRate, "picture-rate", Warning, "The edit rate is unusual: not all equipment plays it.", ""},
    FindingKind{PictureChanges, "picture-changes", Warning,
                "The format changes from the reel before: some equipment cannot handle that.", ""},
    FindingKind{SoundRate, "sound-rate", Error, "Cinemas cannot play sound with this sampling rate.", AskAgain},
    FindingKind{SoundBits, "sound-bits", Error, "Cinemas cannot play sound with samples of this size.", AskAgain},
    FindingKind{SoundChannels, "sound-channels", Error, "The sound has no channels.", AskAgain},
    FindingKind{SoundChanges, "sound-changes", Warning,
                "The format changes from the reel before: some equipment cannot handle that.", ""},
    FindingKind{TextSchema, "text-schema", Error, "The text cannot be read.", CopyAgain},
    FindingKind{TextFontMissing, "text-font-missing", Warning, "A font of the text is missing: text may look wrong.",
                ""},
    FindingKind{TextImageMissing, "text-image-missing", Warning,
                "An image of the text is missing: it will not be shown.", ""},
    FindingKind{SignMissing, "sign-missing", Error, "The composition is encrypted, and the document is not signed.",
                AskAgain},
    FindingKind{MicInvalid, "mic-invalid", Error, "Encrypted frames of the file were altered.", CopyAgain},
    FindingKind{KdmNone, "kdm-none", Note, "The composition is encrypted: it plays only with its keys.",
                "Ask for a key message, or name the one that is there with --kdm."},
    FindingKind{CertVersion, "cert-version", Error, "", AskSigner},
    FindingKind{CertExtensions, "cert-extensions", Warning, "", AskSigner},
    FindingKind{CertCritical, "cert-critical", Error, "", AskSigner},
    FindingKind{CertKey, "cert-key", Error, "", AskSigner},
    FindingKind{CertAlgorithm, "cert-algorithm", Warning, "", AskSigner},
    FindingKind{CertThumbprint, "cert-thumbprint", Error, "", AskSigner},
    FindingKind{CertNames, "cert-names", Warning, "", AskSigner},
    FindingKind{CertOrganization, "cert-organization", Warning, "", AskSigner},
    FindingKind{CertRole, "cert-role", Warning, "", AskSigner},
    FindingKind{CertSerial, "cert-serial", Warning, "", AskSigner},
    FindingKind{CertConstraints, "cert-constraints", Warning, "", AskSigner},
    FindingKind{CertKeyUsage, "cert-key-usage", Warning, "", AskSigner},
    FindingKind{CertAuthority, "cert-authority", Warning, "", AskSigner},
    FindingKind{CertDates, "cert-dates", Error, "", AskSigner},
    FindingKind{CertDatesNested, "cert-dates-nested", Warning, "", AskSigner},
    FindingKind{CertSignature, "cert-signature", Error, "", AskSigner},
    FindingKind{CertChain, "cert-chain", Error, "", AskSigner},
    FindingKind{CertExpiredToday, "cert-expired-today", Note, "", ""},
    FindingKind{CertLateEnd, "cert-late-end", Note, "", ""},
    FindingKind{CertSignerCA, "cert-signer-ca", Error, "", AskSigner},
    FindingKind{SignInvalid, "sign-invalid", Error, "", CopyAgain},
    FindingKind{SignForm, "sign-form", Error, "", AskAgain},
    FindingKind{SignMethod, "sign-method", Error, "", AskAgain},
    FindingKind{SignKeyInfo, "sign-keyinfo", Warning, "", ""},
    FindingKind{SignSigner, "sign-signer", Warning, "", ""},
    FindingKind{KdmForm, "kdm-form", Error, "", SendMessageAgain},
    FindingKind{KdmArchive, "kdm-archive", Error, "", SendMessageAgain},
    FindingKind{KdmSignature, "kdm-signature", Error, "", SendMessageAgain},
    FindingKind{KdmChain, "kdm-chain", Error, "", AskForMessage},
    FindingKind{KdmWindowSigner, "kdm-window-signer", Warning, "", ""},
    FindingKind{KdmEarly, "kdm-early", Error, "", AskForMessage},
    FindingKind{KdmLate, "kdm-late", Error, "", AskForMessage},
    FindingKind{KdmComposition, "kdm-composition", Error, "", AskForMessage},
    FindingKind{KdmAuthenticator, "kdm-authenticator", Error, "", AskForMessage},
    FindingKind{KdmKeyMissing, "kdm-key-missing", Error, "", AskForMessage},
    FindingKind{KdmRecipient, "kdm-recipient", Error, "", AskForMessage},
    FindingKind{KdmRecipientName, "kdm-recipient-name", Warning, "", ""},
    FindingKind{KdmDevice, "kdm-device", Warning, "", ""},
    FindingKind{KdmKeyType, "kdm-key-type", Note, "", ""},
    FindingKind{KdmContent, "kdm-content", Error,
                "The private key does not open the key message: it is for another key, or its content is not sound.",
                AskForMessage},
    FindingKind{ShowUnreadable, "show-unreadable", Error, "The show playlist cannot be read.", MakeShowAgain},
    FindingKind{ShowLoop, "show-loop", Error, "The show playlist contains itself.", MakeShowAgain},
    FindingKind{ShowLength, "show-length", Error, "The show is longer than can be counted.", MakeShowAgain},
    FindingKind{ShowMissing, "show-missing", Missing, "No store has a show playlist that the show contains.",
                "Copy the show playlist beside the show, or name its folder with --store."},
    FindingKind{ShowCompositionMissing, "show-composition-missing", Missing, "No store has this composition.",
                NameStore},
    FindingKind{ShowRateChanges, "show-rate-changes", Warning,
                "The edit rate changes from the composition before: some projectors blank the screen.", ""},
    FindingKind{ShowRefused, "show-refused", Error, "The engine refuses the show.", ""},
    FindingKind{ShowRemark, "show-remark", Warning, "", ""},
    FindingKind{StoreFolderMissing, "store-folder-missing", Missing, "The folder is not there, nor what was in it.",
                "Connect its disk, or forget the folder with `strata store forget`."},
    FindingKind{StoreUnverified, "store-unverified", Error, "Not all files could be verified.", "Check it again."},
};

constexpr bool IsInOrder() {
  for (size_t index = 0; index < Kinds.size(); ++index)
    if (static_cast<size_t>(Kinds[index].ID) != index) return false;
  return Kinds.size() == static_cast<size_t>(StoreUnverified) + 1;
}
static_assert(IsInOrder());

}  // namespace

std::span<const FindingKind> FindingKinds() {
  return Kinds;
}

const FindingKind& KindOf(FindingID id) {
  return Kinds[static_cast<size_t>(id)];
}

Subject SubjectOf(AssetKind kind) {
  switch (kind) {
    case AssetKind::Picture:
      return Subject::Picture;
    case AssetKind::Sound:
      return Subject::Sound;
    case AssetKind::OnScreenText:
      return Subject::OnScreenText;
    case AssetKind::OffScreenText:
      return Subject::OffScreenText;
    case AssetKind::AuxData:
      return Subject::AuxData;
  }
  return Subject::Unsaid;
}

const char* SubjectName(Subject subject) {
  switch (subject) {
    case Subject::Unsaid:
      return "";
    case Subject::Picture:
      return "picture";
    case Subject::Sound:
      return "sound";
    case Subject::OnScreenText:
      return "subtitle";
    case Subject::OffScreenText:
      return "closed caption";
    case Subject::AuxData:
      return "auxiliary data";
    case Subject::Composition:
      return "composition";
    case Subject::ShowPlaylist:
      return "show playlist";
    case Subject::PackingList:
      return "packing list";
    case Subject::Package:
      return "package";
  }
  return "";
}

std::string CountedSubject(size_t count, Subject subject) {
  const bool has_plural = subject != Subject::AuxData;
  return std::to_string(count) + ' ' + SubjectName(subject) + (count != 1 && has_plural ? "s" : "");
}

std::string AssetTypeOf(const Finding& finding) {
  return finding.FileKind != Cairn::FT_UNKNOWN ? FileKindName(finding.FileKind) : SubjectName(finding.What);
}

}  // namespace Tool
