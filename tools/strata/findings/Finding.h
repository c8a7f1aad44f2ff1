// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "show/ShowOutline.h"

#include <Cairn/FileType.h>
#include <Cairn/Types.h>
#include <Ferro/Types.h>

#include <span>
#include <string>
#include <vector>

namespace Tool {

/// How much a finding matters for playing the show. What is up to a warning keeps nothing from playing.
enum class Severity { Note, Warning, Missing, Error };

/// What can be wrong or unusual, by document: asset map, packing list, file, composition, reel, picture, sound, text, keys,
/// show, store. Each has its row in FindingKinds.
enum class FindingID {
  AmMissing,
  AmSchema,
  AmSeveral,
  AmChunks,
  AmPath,
  AmPathCase,
  AmDuplicateID,
  PklMissing,
  PklSchema,
  PklDisagree,
  PklAssetUnmapped,
  PklAssetMissing,
  PklAssetSize,
  PklAssetHash,
  PklUnlisted,
  FileUnreadable,
  FileDamaged,
  FileIncomplete,
  FileID,
  CplSchema,
  CplID,
  CplHash,
  CplNoReel,
  CplAssetExternal,
  CplSoundMissing,
  ReelPictureMissing,
  ReelAssetKind,
  ReelEditRate,
  ReelRateFile,
  ReelDurations,
  ReelEntryBeyond,
  ReelIntrinsic,
  ReelHash,
  ReelKeyMissing,
  ReelKeyNeedless,
  ReelSoundSome,
  PictureRate,
  PictureChanges,
  SoundRate,
  SoundBits,
  SoundChannels,
  SoundChanges,
  TextSchema,
  TextFontMissing,
  TextImageMissing,
  SignMissing,
  MicInvalid,
  KdmNone,
  // Libsigil's, all of them and in its order.
  CertVersion,
  CertExtensions,
  CertCritical,
  CertKey,
  CertAlgorithm,
  CertThumbprint,
  CertNames,
  CertOrganization,
  CertRole,
  CertSerial,
  CertConstraints,
  CertKeyUsage,
  CertAuthority,
  CertDates,
  CertDatesNested,
  CertSignature,
  CertChain,
  CertExpiredToday,
  CertLateEnd,
  CertSignerCA,
  SignInvalid,
  SignForm,
  SignMethod,
  SignKeyInfo,
  SignSigner,
  KdmForm,
  KdmArchive,
  KdmSignature,
  KdmChain,
  KdmWindowSigner,
  KdmEarly,
  KdmLate,
  KdmComposition,
  KdmAuthenticator,
  KdmKeyMissing,
  KdmRecipient,
  KdmRecipientName,
  KdmDevice,
  KdmKeyType,
  KdmContent,
  ShowUnreadable,
  ShowLoop,
  ShowLength,
  ShowMissing,
  ShowCompositionMissing,
  ShowRateChanges,
  ShowRefused,
  ShowRemark,
  StoreFolderMissing,
  StoreUnverified,
};

/// What is the same for all findings of one kind.
struct FindingKind {
  FindingID ID;
  const char* Name;     ///< "reel-durations": for programs; it never changes
  Severity Level;       ///< unless the place makes it matter more or less
  const char* Message;  ///< one sentence; empty where each finding has its own
  const char* Advice;   ///< what to do about it; may be empty
};

/// Every kind, in the order of FindingID.
[[nodiscard]] std::span<const FindingKind> FindingKinds();
[[nodiscard]] const FindingKind& KindOf(FindingID id);

/// What a finding is about.
enum class Subject {
  Unsaid,
  Picture,
  Sound,
  OnScreenText,
  OffScreenText,
  AuxData,
  Composition,
  ShowPlaylist,
  PackingList,
  Package,
};

[[nodiscard]] Subject SubjectOf(AssetKind kind);
/// "picture", "closed caption"; empty where it is not said.
[[nodiscard]] const char* SubjectName(Subject subject);
/// "1 picture", "2 closed captions", "2 auxiliary data".
[[nodiscard]] std::string CountedSubject(size_t count, Subject subject);

// What to do about findings that do not leave it to their kind.
inline constexpr char CopyAgain[] = "Copy the package again from its source.";
inline constexpr char AskAgain[] = "The package was made wrong: ask for a corrected one.";
inline constexpr char NameStore[] = "Copy the package that holds it, or name its folder with --store.";
inline constexpr char AllowReading[] = "Allow this user to read it, or copy it again.";

/// One thing that is wrong or unusual, and where. Texts that do not apply are empty.
struct Finding {
  /// With what its kind says.
  explicit Finding(FindingID id)
      : ID(id), Level(KindOf(id).Level), Message(KindOf(id).Message), Advice(KindOf(id).Advice) {}

  FindingID ID;
  Severity Level;
  std::string Message;
  std::string Composition;              ///< its title, or its identifier
  Ferro::ui32_t CompositionNumber = 0;  ///< within the show, from 1; 0: not of one
  Ferro::ui32_t Reel = 0;               ///< within the composition, from 1; 0: not of one reel
  Subject What = Subject::Unsaid;
  Cairn::FileType_t FileKind = Cairn::FT_UNKNOWN;  ///< of the file, where that says more than `What`
  Cairn::UUID AssetID;                             ///< no value: not of one asset
  std::string File;
  std::string Expected;
  std::string Found;
  std::string Advice;  ///< what to do about it
};

/// What findings are about, for people: the kind of file where that is known, else the subject.
[[nodiscard]] std::string AssetTypeOf(const Finding& finding);

}  // namespace Tool
