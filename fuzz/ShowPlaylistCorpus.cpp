// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include <cstdlib>
#include <fstream>
#include <string>

// Writes show playlists with nothing, with each kind of item, and with what is only read, into the folder given.

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const std::string folder = argv[1];

  Strata::ShowPlaylist playlist;
  playlist.IssueDate = Ferro::Timestamp(1772366400000);
  std::string document;
  if (playlist.EncodeXML(document, Cairn::DFT_NONE).Failure()) return EXIT_FAILURE;
  std::ofstream(folder + "/empty", std::ios::binary) << document;

  playlist.Annotation = "a < b & c";
  playlist.EstimatedDuration = 90;
  playlist.ShowParameters = {{"lights", "down"}};
  Strata::ShowPlaylist::MarkerItem marker;
  marker.Label = "cue";
  marker.Scope = "urn:x-cues";
  marker.Annotation = "dim";
  marker.Offset = 17;
  playlist.ShowSequence.push_back(std::make_unique<Strata::ShowPlaylist::MarkerItem>(marker));
  auto composition = std::make_unique<Strata::ShowPlaylist::CompositionItem>();
  composition->EditRate = QUIRE::Rational(24, 1);
  composition->Duration = 240;
  composition->MarkerList.push_back(marker);
  playlist.ShowSequence.push_back(std::move(composition));
  auto show = std::make_unique<Strata::ShowPlaylist::ShowPlaylistItem>();
  show->URI = "urn:uuid:00112233-4455-6677-8899-aabbccddeeff";
  playlist.ShowSequence.push_back(std::move(show));
  if (playlist.EncodeXML(document, Cairn::DFT_NONE).Failure()) return EXIT_FAILURE;
  std::ofstream(folder + "/full", std::ios::binary) << document;

  std::ofstream(folder + "/read-only", std::ios::binary)
      << "<s:ShowPlaylist xmlns:s=\"" << Strata::ShowPlaylist::Namespace
      << "\"><s:EstimatedDuration>-1</s:EstimatedDuration><s:ShowSequence><s:StaticImage/><s:ShowPlaylist>x"
         "</s:ShowPlaylist><s:CompositionPlaylist><s:EditRate>x</s:EditRate><s:Duration>-5</s:Duration><s:Marker>"
         "<s:Annotation>a</s:Annotation><s:Offset>-1</s:Offset></s:Marker></s:CompositionPlaylist></s:ShowSequence>"
         "<Signature/></s:ShowPlaylist>";
  return EXIT_SUCCESS;
}
