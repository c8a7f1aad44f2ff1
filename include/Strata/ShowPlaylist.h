// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Result.h>
#include <Strata/Types.h>

#include <Cairn/DCPFormat.h>
#include <Cairn/SignatureMode.h>
#include <Cairn/X509CertificateList.h>
#include <Ferro/Timestamp.h>
#include <QUIRE/Rational.h>

#include <list>
#include <memory>
#include <string>

namespace Ferro {
class XMLElement;
}

namespace Strata {

/// One named parameter of a show.
struct NameValueGroup {
  std::string Name;
  std::string Value;
};

/// A show: compositions, nested show playlists and markers in the order in which they play, and its XML document.
///
/// A plain model that owns its items; one thread at a time.
class STRATA_API ShowPlaylist {
 public:
  /// Namespace URI of the document.
  static constexpr const char* Namespace = "http://www.strata.example/ra/xsd/strata-spl-1";
  /// The scope that a marker label has when the document gives it none.
  static constexpr const char* StandardMarkersScope = "http://www.strata.example/ra/xsd/strata-spl-1#standard-markers";

  enum ShowItemType_t : ui32_t {
    SIT_CPL = 0,     ///< CompositionItem
    SIT_SHOW = 1,    ///< ShowPlaylistItem
    SIT_MARKER = 2,  ///< MarkerItem
    SIT_IMAGE = 3    ///< a still image; not supported, so never read and never written
  };

  /// One entry of the show's sequence. The order of the virtual operations is fixed.
  class STRATA_API ShowItem {
   public:
    virtual ~ShowItem();
    /// Adds the item's element below `parent`.
    virtual void EncodeXML(Ferro::XMLElement& parent) const = 0;

    ShowItemType_t m_Type;

   protected:
    explicit ShowItem(ShowItemType_t type) : m_Type(type) {}
    ShowItem(const ShowItem&) = default;
    ShowItem& operator=(const ShowItem&) = default;
  };

  /// A label between compositions, or at one edit unit of a composition.
  class STRATA_API MarkerItem : public ShowItem {
   public:
    MarkerItem() : ShowItem(SIT_MARKER) {}
    void EncodeXML(Ferro::XMLElement& parent) const override;

    std::string Label;
    std::string Scope;       ///< URI of the vocabulary that the label is from; empty: the standard markers'
    std::string Annotation;  ///< written, but not read back
    i32_t Offset = 0;        ///< edit units from the start of the composition; without meaning outside one
  };

  /// A composition that plays.
  class STRATA_API CompositionItem : public ShowItem {
   public:
    CompositionItem() : ShowItem(SIT_CPL) {}
    void EncodeXML(Ferro::XMLElement& parent) const override;

    UUID ID;
    std::string Annotation;
    QUIRE::Rational EditRate;  ///< edit units per second
    ui32_t Duration = 0;       ///< edit units
    std::list<MarkerItem> MarkerList;
  };

  /// A show playlist that plays in this place.
  class STRATA_API ShowPlaylistItem : public ShowItem {
   public:
    ShowPlaylistItem() : ShowItem(SIT_SHOW) {}
    void EncodeXML(Ferro::XMLElement& parent) const override;

    std::string URI;  ///< "urn:uuid:" and the show playlist's identifier
  };

  std::string NamespaceName;  ///< of the document element, as read
  UUID ID;
  std::string Label;  ///< short, for machines
  std::string ShowTitle;
  std::string Annotation;
  Ferro::Timestamp IssueDate;
  std::string Creator;
  std::string Issuer;
  ui32_t EstimatedDuration = 0;              ///< seconds; 0: not known
  std::list<NameValueGroup> ShowParameters;  ///< written, but not read back
  std::list<std::unique_ptr<ShowItem>> ShowSequence;
  Cairn::DCPFormat_t DCPFormat = Cairn::DFT_NONE;         ///< flavour of the document, as read
  Cairn::SignatureMode_t SignatureMode = Cairn::SM_NONE;  ///< of the document, as read
  Cairn::X509CertificateList SignatureChain;              ///< of the document, as read; nothing is verified

  /// Writes the document. A missing label is made from the title and a missing title from the label; without either
  /// both are "Untitled". The format is not looked at: there is one form.
  /// @return RESULT_OK; QUIRE::RESULT_FORMAT, logged, for an item of a type that cannot be written; RESULT_PARAM for a
  ///         text that XML cannot carry. On failure `out` is unchanged.
  [[nodiscard]] Result_t EncodeXML(std::string& out, Cairn::DCPFormat_t format) const;

  /// Reads a document into this object; items are added after those that are there. Elements that are not known are
  /// passed over. What was read before a failure stays.
  /// @return RESULT_OK; Cairn::RESULT_NOT_CPL for another document; Cairn::RESULT_CN_UUID_FORMAT for a malformed
  ///         identifier; Cairn::RESULT_XML_PARSE, Cairn::RESULT_XML_NAMESPACE and RESULT_TOOLARGE, logged, for a text
  ///         that is no such XML.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);

  /// How long the show's compositions take, in seconds, rounded up. Nested show playlists and markers count nothing.
  [[nodiscard]] ui32_t GetDurationSeconds() const;
  /// How long it takes to come to `position`, in seconds, rounded up; beyond the end, the whole duration.
  /// @param position  edit units over all compositions in order, each in its own rate
  [[nodiscard]] ui32_t GetPositionSeconds(const ui32_t& position) const;
};

}  // namespace Strata
