// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Strata.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

// Writes one seed per record of the protocol into the folder given.

namespace {

const char* s_Folder;

void Seed(const char* name, const Ferro::IArchive& record) {
  std::vector<Ferro::ui8_t> buffer(4096);
  Ferro::MemIOWriter writer(buffer);
  if (!record.Archive(&writer)) std::abort();
  std::ofstream file(std::string(s_Folder) + "/" + name, std::ios::binary);
  file.write(reinterpret_cast<const char*>(buffer.data()), writer.Length());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  s_Folder = argv[1];

  Strata::Command command;
  command.type = Strata::CMD_LOCATE;
  command.filename = "show.xml";
  Seed("command", command);

  Strata::PlaylistInfo playlist;
  playlist.Title = "Feature";
  playlist.Annotation = "2D";
  Seed("playlist", playlist);

  Cairn::AssetInfo asset;
  asset.RealFilename = "/a/b.xml";
  Cairn::AssetInfoList assets;
  assets.push_back(asset);
  Seed("asset", asset);
  Seed("assets", assets);

  Strata::CompositionInfo composition;
  composition.Title = "Feature";
  Seed("composition", composition);
  Seed("rpcinit", Strata::RPCInitInfo());

  Strata::TaskStatus task;
  task.Messages.push_back(Ferro::LogEntry(Ferro::LogLevel::Error, "gone"));
  Seed("task", task);

  Strata::DiskFreeInfo disk;
  disk.Path = "/store";
  Seed("disk", disk);

  Strata::PlaylistEvent event;
  event.Label = "FFOC";
  event.LabelScope = "scope";
  Seed("event", event);
  Seed("events", Strata::PlaylistEventList{event, event});

  Seed("position", Strata::TimelinePosition());
  Seed("device", Strata::DeviceStatus());
  Strata::TransportException exception;
  exception.Message = "gone";
  Seed("exception", exception);
  Seed("uuids", Ferro::UUIDList{Ferro::UUID(), Ferro::UUID()});
  return EXIT_SUCCESS;
}
