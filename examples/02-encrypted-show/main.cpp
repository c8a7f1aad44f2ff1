// SPDX-License-Identifier: BSD-3-Clause
// A host with keys: plays a folder of packages as fast as it can be read, and decrypts what is encrypted.
//
//   encrypted-show <folder> <key message, or a ZIP of them> <private key>
//
// The engine hands out frames as they are stored. What is encrypted is verified and decrypted here, after it was taken.
#include <Strata/Strata.h>

#include <Cairn/AssetStore.h>
#include <Ferro/FileText.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/FrameDecryption.h>
#include <Sigil/KeyMessageStore.h>
#include <Sigil/KeyRing.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

/// One track of the present reel: what asks it for frames, and what decrypts them.
struct Channel {
  explicit Channel(Strata::ITimelineTrack& track) : Requester(track) {}

  Strata::FrameRequester Requester;
  QUIRE::TrackEncryption Encryption;
  QUIRE::FrameContexts Contexts;
  bool HasKey = false;
};

struct Counts {
  unsigned InClear = 0, Decrypted = 0, Failed = 0;
};

class Host {
 public:
  Host(const Cairn::AssetStore& store, const Sigil::KeyRing& keys) : m_Store(store), m_Keys(keys) {}

  Counts Play(Strata::IPlaylist& playlist) {
    for (bool at_end = false; !at_end; at_end = playlist.MoveForward(1)) {
      const Ferro::ui32_t reel_position = playlist.TranslateReelPosition(playlist.GetPosition());
      if (reel_position == 0) m_Channels.clear();
      FindTracks(playlist);
      for (auto& [track, channel] : m_Channels) TakeFrame(*track, channel, reel_position);
    }
    m_Channels.clear();
    return m_Counts;
  }

 private:
  void FindTracks(Strata::IPlaylist& playlist) {
    const Ferro::ui32_t position = playlist.GetPosition();
    for (const auto type : {Strata::TRKT_IMAGE, Strata::TRKT_SOUND, Strata::TRKT_AUX_DATA})
      for (Ferro::ui32_t channel = 0; channel < playlist.GetChannelCountForType(type, position); ++channel) {
        Strata::ITimelineTrack* track = playlist.GetReaderForChannel(type, channel, position);
        if (track == nullptr || !IsReady(*track)) continue;
        const auto [found, is_new] = m_Channels.try_emplace(track, *track);
        if (is_new && track->KeyID().HasValue()) FindKey(*track, found->second);
      }
  }

  void FindKey(const Strata::ITimelineTrack& track, Channel& channel) const {
    Cairn::AssetInfo file;
    Ferro::Result_t result = m_Store.GetInfoForAssetID(track.AssetID(), file, true);
    if (result.Success()) result = QUIRE::ReadTrackEncryption(file.RealFilename, channel.Encryption);
    if (result.Success()) result = m_Keys.FillContexts(channel.Encryption, channel.Contexts);
    channel.HasKey = result.Success();
  }

  void TakeFrame(Strata::ITimelineTrack& track, Channel& channel, Ferro::ui32_t reel_position) {
    const auto position = Strata::PlayedFilePosition(track, reel_position);
    if (!position) return;
    const auto frame = channel.Requester.Take(*position, Strata::PlayedFilePosition(track, reel_position + 1));
    if (!frame.IsThere()) return void(++m_Counts.Failed);
    Show(channel, track.FrameBuffer(), *position, QUIRE::Eye::Left);
    if (track.HasStereoImage()) Show(channel, track.REyeFrameBuffer(), *position, QUIRE::Eye::Right);
  }

  void Show(Channel& channel, const QUIRE::FrameBuffer& stored, Ferro::ui32_t position, QUIRE::Eye eye) {
    if (stored.SourceLength() == 0) return void(++m_Counts.InClear);  // show `stored` here
    m_Clear.resize(stored.SourceLength());  // a real host has a buffer for the largest frame, and allocates nothing
    const auto number = channel.Encryption.SequenceNumber(position, eye);
    QUIRE::FrameContexts* contexts = channel.HasKey ? &channel.Contexts : nullptr;
    const Ferro::Result_t result = VerifyAndDecrypt(channel.Encryption, stored, number, contexts, m_Clear);
    if (result.Success()) return void(++m_Counts.Decrypted);  // show m_Clear here
    if (m_Counts.Failed++ == 0) std::printf("edit unit %u of the file: %s\n", position, result.Label());
  }

  const Cairn::AssetStore& m_Store;
  const Sigil::KeyRing& m_Keys;
  std::map<Strata::ITimelineTrack*, Channel> m_Channels;
  std::vector<Ferro::ui8_t> m_Clear;
  Counts m_Counts;
};

/// Adds the keys of the message that serves a composition best from now to the show's end; says what is wrong with it.
void AddKeys(const Sigil::KeyMessageStore& messages, const Cairn::AssetStore& store, const Ferro::UUID& composition,
             unsigned seconds, const Sigil::PrivateKey& key, Sigil::KeyRing& keys) {
  Cairn::AssetInfo file;
  std::string text;
  Sigil::SignatureReport signature;  // the message may say who has to have signed the composition
  Sigil::MessageContext context;
  context.From = Ferro::Timestamp();
  context.Until = Ferro::Timestamp(context.From->UnixMilliseconds() + seconds * Ferro::i64_t{1000});
  context.Composition.emplace().ID = composition;
  if (store.GetInfoForAssetID(composition, file, true).Success() &&
      Ferro::ReadFileIntoString(file.RealFilename, text).Success() &&
      VerifySignature(text, {}, signature, Ferro::DefaultLogSink()).Success() &&
      signature.State == Sigil::SignatureState::Valid)
    context.Composition->SignerThumbprint = signature.Chain.Chain.front().Thumbprint();

  Sigil::KeyMessageStore::Choice choice;
  Ferro::Result_t result = messages.FindBest(context, choice);
  if (result.Success()) result = keys.AddMessage(choice.Best->Message, key, Ferro::DefaultLogSink());
  const std::string words =
      result.Success() ? "keys until " + choice.Best->Message.NotAfter.EncodeString() : result.Label();
  std::printf("composition %s: %s\n", composition.EncodeString().c_str(), words.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return std::fprintf(stderr, "usage: %s <folder> <key message> <private key>\n", argv[0]), 2;
  Cairn::AssetStore store;
  Sigil::KeyMessageStore messages;
  std::optional<Sigil::PrivateKey> private_key;
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  Ferro::Result_t result = store.Open();
  if (result.Success()) result = store.AddFolder(argv[1]);
  if (result.Success()) result = messages.AddFile(argv[2]);
  if (result.Success()) result = Sigil::PrivateKey::FromFile(argv[3], {}, private_key, Ferro::DefaultLogSink());
  if (result.Success()) result = Strata::NewPlaylist(playlist);
  Ferro::UUIDList ids;
  for (const Cairn::AssetRecord& asset : store.Assets())
    if (asset.Info.FileType == Cairn::FT_CPL) ids.push_back(asset.Info.ID);
  if (result.Success()) result = playlist->InitWithUUIDList(ids, store, {});
  if (result.Failure()) return std::fprintf(stderr, "%s: %s\n", argv[0], result.Label()), 1;

  Sigil::KeyRing keys;
  Ferro::UUIDList encrypted;
  playlist->GetCiphertextCPLIDList(encrypted);
  for (const Ferro::UUID& id : encrypted)
    AddKeys(messages, store, id, playlist->GetDurationSeconds(), *private_key, keys);
  const Counts counts = Host(store, keys).Play(*playlist);
  std::printf("%u frames in clear, %u decrypted, %u failed\n", counts.InClear, counts.Decrypted, counts.Failed);
  return counts.Failed == 0 ? 0 : 1;
}
