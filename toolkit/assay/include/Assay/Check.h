// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Contents.h>
#include <Assay/DepthSet.h>
#include <Assay/Export.h>
#include <Assay/Figures.h>
#include <Assay/Finding.h>
#include <Assay/KeyAnswer.h>
#include <Assay/Result.h>
#include <Assay/Types.h>

#include <Ferro/Timestamp.h>
#include <Sigil/KeyMessageStore.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Cairn {
class IAssetLookup;
}
namespace Sigil {
class KeyRing;
class PrivateKey;
}  // namespace Sigil

/// What is wrong with D-Cinema packages. This header alone is all that a host includes.
namespace Assay {

/// What a check is at.
enum class CheckPhase : ui8_t {
  Documents,  ///< packages are read; between packages
  Files,      ///< headers of track files are read; now and then between files
  Contents,   ///< files are read: frames, digests, decoding
};

/// How far a check has come.
struct CheckProgress {
  std::string Package;  ///< the folder that is looked at
  size_t PackagesDone = 0;
  size_t PackageCount = 0;
  CheckPhase Phase = CheckPhase::Documents;
  size_t FilesDone = 0;  ///< of the phases Files and Contents: to the end
  size_t FileCount = 0;
  // Of the phase Contents; of several files that are read at once, one. From the time that the first call of the phase and
  // a later one lie apart follow rate and time left.
  std::string File;      ///< path
  ui64_t BytesDone = 0;  ///< of all files; what was kept from an earlier check counts in neither
  ui64_t BytesTotal = 0;
};

/// Where a composition stands in a show.
struct CompositionStart {
  UUID Composition;
  double Seconds = 0;  ///< from the beginning of the show
};

/// What to check, and how.
struct CheckRequest {
  /// Packages, or folders with packages in them. All are looked at together: a version file finds its original.
  std::vector<std::string> Folders;
  /// Where else files of compositions may be; not owned, may be null.
  const Cairn::IAssetLookup* Store = nullptr;
  Assay::Profile Profile = Profile::Plays;
  DepthSet Depths = DepthSet::UpTo(Depth::Files);
  /// Called before each package, and at most ten times a second while files are read, then by any thread, but by one at a
  /// time. False ends the check, which keeps what was found. It must not throw.
  std::function<bool(const CheckProgress&)> OnProgress;
  /// The time by which dates lie in the future, in seconds since 1970-01-01T00:00:00Z; without value the system's.
  std::optional<i64_t> Now;
  /// Threads that read files and decode pictures; 0: as many as there are processors.
  ui32_t Threads = 0;
  /// A file of the library's own, made where it is missing: what was found in files that have not changed since (path, size,
  /// modification time) is taken from it, so that a check that was broken off goes on. Empty: nothing is kept.
  std::string KeptResults;

  /// Key messages for encrypted compositions; not owned, may be null: none were named or found.
  const Sigil::KeyMessageStore* Messages = nullptr;
  /// What could not be read of the messages that the user named. It is told where a composition is without one that serves.
  std::vector<Sigil::KeyMessageStore::Problem> MessageProblems;
  /// When the show begins, by which key messages are judged; without value now.
  std::optional<Ferro::Timestamp> At;
  /// Where compositions stand in it; one may stand there several times. Those that are not named begin with the show.
  std::vector<CompositionStart> Starts;
  ui32_t Tolerance = 0;  ///< seconds by which a key message may be valid too late, or not long enough
  std::optional<Sigil::Certificate> Recipient;  ///< whose key messages are meant; without value anybody's
  /// The recipient's: with it the message that serves is opened, to hold its inside against its outside; may be null.
  const Sigil::PrivateKey* PrivateKey = nullptr;
  std::vector<SHA1> Devices;            ///< thumbprints of devices that key messages should list
  Sigil::CertificateList TrustedRoots;  ///< of documents' signers; empty: any self-signed root is taken
  /// What opens encrypted frames and texts; not owned, may be null. Asked by several threads.
  const Sigil::KeyRing* Keys = nullptr;
};

/// A composition that was met.
struct CheckedComposition {
  UUID ID;
  std::string Title;
  std::string Package;                ///< folder
  std::string Document;               ///< from the package's folder on
  std::optional<FindingClass> Worst;  ///< of the findings that count by the profile; no value: none
  /// Which key message serves it: now, and at CheckRequest::At where that is given, the last of which counts. For each
  /// place in the show. Empty where nothing in it is encrypted.
  std::vector<KeyAnswer> Keys;

  [[nodiscard]] bool IsEncrypted() const { return !Keys.empty(); }
};

/// A package that was met.
struct CheckedPackage {
  std::string Folder;
  std::optional<FindingClass> Worst;  ///< of all its findings that count, those of its compositions too
};

/// What a check found out. A plain value.
struct CheckReport {
  std::vector<CheckedPackage> Packages;
  std::vector<CheckedComposition> Compositions;
  /// By package; within it the package's own first, then each composition's; then those of no package. What follows from
  /// another stands directly behind it.
  FindingList Findings;
  std::vector<FileFigures> Figures;  ///< of the files whose frames were read
  DepthSet LookedAt;                 ///< what was looked at to the end
  /// Files that were not looked at as far as Depths asked. Where this is empty, LookedAt has all of Depths.
  std::vector<LeftOut> LeftOuts;
  KeptState Kept = KeptState::None;
  bool IsCancelled = false;
};

/// Checks packages. A damaged or hostile package is a finding, never a failure. Reads files only, and opens no
/// connection; writes nothing but CheckRequest::KeptResults.
/// @return RESULT_OK, also when cancelled; RESULT_AY_NOTHING without folders; RESULT_AY_DEPTH without depths;
/// RESULT_NOT_FOUND for a folder that is not there, `report` then being empty. Any thread may call it.
[[nodiscard]] ASSAY_API Result_t Check(const CheckRequest& request, CheckReport& report);

}  // namespace Assay
