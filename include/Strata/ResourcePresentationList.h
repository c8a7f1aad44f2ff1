// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Result.h>
#include <Strata/Types.h>

#include <QUIRE/Rational.h>

#include <list>
#include <string>

namespace Strata {

/// Lists for an auxiliary device, a caption display for instance, which resources of which reels play at which point
/// of the show (ST 430-11:2010). A plain model; one thread at a time.
class STRATA_API ResourcePresentationList {
 public:
  /// Namespace URI of the document.
  static constexpr const char* Namespace = "http://www.smpte-ra.org/schemas/430-11/2010/RPL";

  /// Where a resource is fetched.
  struct ResourceFile {
    UUID ResourceID;  ///< may have no value
    std::string URL;
  };

  /// One resource of one reel.
  struct ReelResource {
    UUID ID;
    std::string ResourceType;      ///< for example "ClosedCaption"
    std::string Language;          ///< RFC 5646 language tag; empty when not known
    ui64_t EntryPoint = 0;         ///< first edit unit that plays
    ui64_t Duration = 0;           ///< edit units that play; 0: not stated
    ui64_t IntrinsicDuration = 0;  ///< edit units there are
    std::list<ResourceFile> ResourceFileList;
  };

  /// One reel.
  struct ReelResources {
    ui64_t TimelineOffset = 0;  ///< edit units from the start of the show
    UUID ReelID;                ///< of the reel in its composition; may have no value
    QUIRE::Rational EditRate;   ///< edit units per second
    std::list<ReelResource> ReelResourceList;
  };

  ui32_t PlayoutID = 0;                        ///< names one playout of the show
  std::list<ReelResources> ReelResourcesList;  ///< in timeline order

  /// Takes a random playout identifier; 0 where the system has no random numbers, and never otherwise.
  void GenRandomIDValue();

  /// Writes the document. Counts are written as their low 32 bits: that is how wide receivers take them.
  /// @return RESULT_OK; RESULT_PARAM, `out` being unchanged, for a text that XML cannot carry.
  [[nodiscard]] Result_t EncodeXML(std::string& out) const;

  /// Recognises a document, without taking anything from it.
  /// @return RESULT_OK; Cairn::RESULT_NOT_CPL for another document; Cairn::RESULT_XML_PARSE,
  ///         Cairn::RESULT_XML_NAMESPACE and RESULT_TOOLARGE, logged, for a text that is no such XML.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
};

}  // namespace Strata
