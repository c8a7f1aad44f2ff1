// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MXF/OP1aHeader.h>

#include <map>
#include <set>

// Finding the file package and its descriptor. References are followed one step at a time and never in circles.

namespace QUIRE::MXF {
namespace {

// Of the descriptors of a multiple descriptor, the one linked to a track whose number says that it carries essence.
FileDescriptor* LinkedDescriptor(const OP1aHeader& header, const SourcePackage& package,
                                 const MultipleDescriptor& all) {
  std::set<ui32_t> essence_tracks;
  for (const UUID& reference : package.Tracks) {
    const auto* track = header.Resolve<GenericTrack>(reference);
    if (track != nullptr && track->TrackNumber != 0) essence_tracks.insert(track->TrackID);
  }
  FileDescriptor* first = nullptr;
  for (const UUID& reference : all.FileDescriptors) {
    auto* descriptor = header.Resolve<FileDescriptor>(reference);
    if (descriptor == nullptr || descriptor == &all) continue;
    if (first == nullptr) first = descriptor;
    if (descriptor->LinkedTrackID && essence_tracks.contains(*descriptor->LinkedTrackID)) return descriptor;
  }
  return first;
}

template <class T>
T* Only(std::span<const std::unique_ptr<InterchangeObject>> objects) {
  T* only = nullptr;
  for (const auto& object : objects) {
    auto* candidate = dynamic_cast<T*>(object.get());
    if (candidate == nullptr) continue;
    if (only != nullptr) return nullptr;
    only = candidate;
  }
  return only;
}

}  // namespace

SourcePackage* OP1aHeader::FilePackage() const {
  // Only the material number identifies: the leading bytes differ between writers.
  std::map<UUID, SourcePackage*> packages;
  for (const auto& object : m_Objects)
    if (auto* package = dynamic_cast<SourcePackage*>(object.get()))
      packages.emplace(MaterialNumber(package->PackageUID), package);
  for (const auto& object : m_Objects) {
    const auto* data = dynamic_cast<const EssenceContainerData*>(object.get());
    if (data == nullptr) continue;
    const auto found = packages.find(MaterialNumber(data->LinkedPackageUID));
    if (found != packages.end()) return found->second;
  }
  return Only<SourcePackage>(m_Objects);
}

FileDescriptor* OP1aHeader::EssenceDescriptor() const {
  if (const SourcePackage* package = FilePackage()) {
    auto* descriptor = Resolve<FileDescriptor>(package->Descriptor);
    if (const auto* all = dynamic_cast<MultipleDescriptor*>(descriptor)) return LinkedDescriptor(*this, *package, *all);
    if (descriptor != nullptr) return descriptor;
  }
  return Only<FileDescriptor>(m_Objects);
}

}  // namespace QUIRE::MXF
