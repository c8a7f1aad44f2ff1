// SPDX-License-Identifier: BSD-3-Clause
#include "MessageSamples.h"
#include "TemporaryFolder.h"

#include <Sigil/KeyMessageStore.h>

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace SigilTest;
using Store = Sigil::KeyMessageStore;

struct ZipEntry {
  std::string Name;
  std::string Content;
  std::string Link = {};  // given: a symbolic link to it
};

std::string Zip(const std::vector<ZipEntry>& entries) {
  std::string bytes(size_t{2} * 1024 * 1024, '\0');
  size_t used = 0;
  archive* writer = archive_write_new();
  archive_write_set_format_zip(writer);
  EXPECT_EQ(archive_write_open_memory(writer, bytes.data(), bytes.size(), &used), ARCHIVE_OK);
  for (const ZipEntry& item : entries) {
    archive_entry* entry = archive_entry_new();
    archive_entry_set_pathname(entry, item.Name.c_str());
    archive_entry_set_size(entry, static_cast<la_int64_t>(item.Content.size()));
    archive_entry_set_filetype(entry, item.Link.empty() ? AE_IFREG : AE_IFLNK);
    archive_entry_set_perm(entry, 0644);
    if (!item.Link.empty()) archive_entry_set_symlink(entry, item.Link.c_str());
    EXPECT_EQ(archive_write_header(writer, entry), ARCHIVE_OK) << archive_error_string(writer);
    EXPECT_EQ(archive_write_data(writer, item.Content.data(), item.Content.size()),
              static_cast<la_ssize_t>(item.Content.size()));
    archive_entry_free(entry);
  }
  EXPECT_EQ(archive_write_close(writer), ARCHIVE_OK);
  archive_write_free(writer);
  bytes.resize(used);
  return bytes;
}

std::string ProblemsOf(const Store& store) {
  std::string lines;
  for (const Store::Problem& problem : store.Problems())
    lines += std::filesystem::path(problem.Source).filename().string() + " | " + Lines({problem.What});
  return lines;
}

std::string SourcesOf(const Store& store) {
  std::string lines;
  for (const Store::Entry& entry : store.Entries())
    lines += std::filesystem::path(entry.Source).filename().string() + '\n';
  return lines;
}

/// A message of its own identifier and window.
std::string Message(unsigned char id, const std::string& begin = Begin, const std::string& end = End) {
  Sigil::MessageRequest request = SoundRequest();
  request.MessageID = ID(id);
  request.NotBefore = Time(begin);
  request.NotAfter = Time(end);
  return Made(request);
}

TEST(KeyMessageStore, FoldersAndTheArchivesInThemAreReadWhole) {
  const testsupport::TemporaryFolder folder;
  std::filesystem::create_directories(folder.Folder() / "c/d");
  folder.Write("a.kdm.XML", Message(1));
  folder.Write(
      "b.zip",
      Zip({{"x/one.xml", Message(2)}, {"x/cpl.xml", SignedComposition()}, {"note.txt", "DCinemaSecurityMessage"}}));
  folder.Write("c/d/e.xml", Message(3));
  folder.Write("c/cpl.xml", SignedComposition());
  folder.Write("c/large.xml", "DCinemaSecurityMessage" + std::string(Sigil::KeyMessage::MaxSize, ' '));
  folder.Write("c/note.txt", Message(4));
  folder.Write("f.xml", Replaced(SoundMessage(), "<KeyIdList>", "<KeyIdList><X/>"));
  std::filesystem::create_directory_symlink(folder.Folder(), folder.Folder() / "c/loop");
  Store store;
  EXPECT_EQ(store.AddFolder(folder.Folder().string()), Ferro::RESULT_OK);
  EXPECT_EQ(SourcesOf(store), "a.kdm.XML\none.xml\ne.xml\n");
  EXPECT_EQ(store.Entries()[1].Source, folder.Path("b.zip") + ": x/one.xml");
  EXPECT_EQ(store.Entries()[2].Message.ID, ID(3));
  EXPECT_EQ(ProblemsOf(store), "f.xml | E kdm-form: Key message refused: its key list has an element \"X\"\n");
  EXPECT_EQ(store.AddFolder(folder.Path("none")), Ferro::RESULT_NOT_FOUND);
}

TEST(KeyMessageStore, TheSameMessageIsKeptOnce) {
  const testsupport::TemporaryFolder folder;
  Store store;
  EXPECT_EQ(store.AddMessage("first", SoundMessage()), Ferro::RESULT_OK);
  EXPECT_EQ(store.AddMessage("second", SoundMessage()), Sigil::RESULT_SG_DUPLICATE);
  EXPECT_EQ(store.AddFile(folder.Write("a.xml", SoundMessage())), Ferro::RESULT_OK);
  EXPECT_EQ(store.AddFile(folder.Write("a.zip", Zip({{"a.xml", SoundMessage()}}))), Ferro::RESULT_OK);
  EXPECT_EQ(SourcesOf(store), "first\n");
  // Another of the same identifier does not take its place.
  EXPECT_EQ(store.AddMessage("third", SoundMessage() + ' '), Ferro::RESULT_OK);
  EXPECT_EQ(SourcesOf(store), "first\nthird\n");
  EXPECT_EQ(ProblemsOf(store), "");
}

TEST(KeyMessageStore, FilesThatCannotBeReadAreProblems) {
  const testsupport::TemporaryFolder folder;
  Store store;
  EXPECT_EQ(store.AddFile(folder.Path("none.xml")), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(store.AddFile(folder.Write("a.xml", "<a/>")), Sigil::RESULT_SG_DOCUMENT);
  EXPECT_EQ(ProblemsOf(store),
            "none.xml | E kdm-form: The requested item was not found.\n"
            "a.xml | E kdm-form: The document is not of a kind that is signed.\n");
}

TEST(KeyMessageStore, AnArchiveThatIsRefusedGivesNothing) {
  const std::string sound = SoundMessage();
  std::string damaged = Zip({{"a.xml", sound}});
  damaged[200] = static_cast<char>(damaged[200] ^ 0x55);
  std::vector<ZipEntry> many;
  for (int i = 0; i <= 10'000; ++i) many.push_back({std::to_string(i), ""});
  const std::vector<ZipEntry> bomb(65, {"a.xml", std::string(Sigil::KeyMessage::MaxSize, ' ')});
  const std::vector<std::pair<std::string, std::string>> cases = {
      {Zip({{"a.xml", sound}, {"../b.xml", sound}}), "its entry \"../b.xml\" leaves the folder"},
      {Zip({{"a.xml", sound}, {"/b.xml", sound}}), "its entry \"/b.xml\" leaves the folder"},
      {Zip({{"a.xml", sound}, {"x/../../b.xml", sound}}), "its entry \"x/../../b.xml\" leaves the folder"},
      {Zip({{"a.xml", sound}, {"..\\b.xml", sound}}), "its entry \"../b.xml\" leaves the folder"},
      {Zip({{"a.xml", sound}, {"C:\\b.xml", sound}}), "its entry \"C:/b.xml\" leaves the folder"},
      {Zip({{"a.xml", sound}, {"b.xml", "", "/etc/passwd"}}), "its entry \"b.xml\" is a link"},
      {Zip({{"a.xml", sound}, {"b.ZIP", "x"}}), "it has another archive in it, \"b.ZIP\""},
      {Zip({{"a.xml", sound}, {"b.xml", Zip({{"c", "d"}})}}), "it has another archive in it, \"b.xml\""},
      {Zip(many), "it has more than 10000 entries"},
      {Zip(bomb), "it has more than 64 MiB in it"},
      {damaged, "its entry \"a.xml\" is damaged"},
      {std::string("PK\x03\x04") + "hello", "it is damaged"},
  };
  const testsupport::TemporaryFolder folder;
  for (const auto& [bytes, reason] : cases) {
    Store store;
    EXPECT_EQ(store.AddFile(folder.Write("a.zip", bytes)), Sigil::RESULT_SG_ARCHIVE) << reason;
    EXPECT_EQ(ProblemsOf(store), "a.zip | E kdm-archive: The archive is refused: " + reason + ".\n");
    EXPECT_TRUE(store.Entries().empty());
  }
}

TEST(KeyMessageStore, AnArchiveJustWithinTheLimitsIsRead) {
  std::vector<ZipEntry> entries = {{"a.xml", SoundMessage()}, {"x/../b.xml", Message(2)}};
  while (entries.size() < 10'000) entries.push_back({std::to_string(entries.size()), ""});
  const testsupport::TemporaryFolder folder;
  Store store;
  EXPECT_EQ(store.AddFile(folder.Write("a.zip", Zip(entries))), Ferro::RESULT_OK);
  std::vector<ZipEntry> large(63, {"a.xml", std::string(Sigil::KeyMessage::MaxSize, ' ')});
  large.push_back({"c.xml", Message(3)});
  EXPECT_EQ(store.AddFile(folder.Write("b.zip", Zip(large))), Ferro::RESULT_OK);
  EXPECT_EQ(ProblemsOf(store), "");
  EXPECT_EQ(store.Entries().size(), 3U);
}

TEST(KeyMessageStore, EveryCutOfAnArchiveIsRefusedOrGivesTheMessage) {
  const std::string bytes = Zip({{"a.xml", SoundMessage()}});
  const testsupport::TemporaryFolder folder;
  for (size_t size = 4; size < bytes.size(); size += 41) {
    Store store;
    static_cast<void>(store.AddFile(folder.Write("a.zip", bytes.substr(0, size))));
    EXPECT_EQ(store.Entries().size() + store.Problems().size(), 1U) << size;
  }
}

Sigil::MessageContext Tonight() {
  Sigil::MessageContext context;
  context.From = Time("2026-03-03T20:00:00+01:00");
  context.Until = Time("2026-03-03T22:00:00+01:00");
  context.Composition = {ID(1), Signer().Chain[0].Thumbprint(), {ID(4), ID(5)}};
  context.Recipient = Device()[0];
  return context;
}

struct Outcome {
  std::string Symbol;
  std::string Source;
  std::string Findings;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome Choose(const std::vector<std::pair<std::string, std::string>>& messages, const Sigil::MessageContext& context) {
  Store store;
  for (const auto& [source, xml] : messages) EXPECT_EQ(store.AddMessage(source, xml), Ferro::RESULT_OK);
  Store::Choice choice;
  const Sigil::Result_t result = store.FindBest(context, choice);
  return {result.Symbol(), choice.Best == nullptr ? "" : choice.Best->Source, Lines(choice.Findings)};
}

TEST(KeyMessageStore, TheMessageThatIsValidLongestServesBest) {
  const std::string early = Message(1, "2026-03-04T00:00:00Z", "2026-04-01T00:00:00Z");
  const std::string over = Message(2, "2026-02-01T00:00:00Z", "2026-03-03T20:59:59Z");
  const std::string sound = Message(3);
  const std::string longer = Message(4, Begin, "2026-03-20T00:00:00Z");
  const auto choose = [](const std::vector<std::pair<std::string, std::string>>& messages) {
    return Choose(messages, Tonight()).Source;
  };
  EXPECT_EQ(choose({{"over", over}, {"early", early}, {"sound", sound}, {"longer", longer}}), "longer");
  EXPECT_EQ(choose({{"longer", longer}, {"sound", sound}}), "longer");
  EXPECT_EQ(Choose({{"over", over}, {"early", early}}, Tonight()),
            (Outcome{"SG_NO_VALID_MESSAGE", "early",
                     "E kdm-early: The key message is not valid before 2026-03-04T00:00:00+00:00.\n"}));
  EXPECT_EQ(Choose({{"over", over}}, Tonight()),
            (Outcome{"SG_NO_VALID_MESSAGE", "over",
                     "E kdm-late: The key message is not valid after 2026-03-03T20:59:59+00:00.\n"}));
}

TEST(KeyMessageStore, MessagesForOthersDoNotServe) {
  auto recipes = testsupport::DeviceRecipes();
  recipes[2].SerialNumber = "78";
  Sigil::MessageRequest request = SoundRequest();
  request.Recipient = Certificates(recipes)[0];
  const std::string other = Made(request);
  EXPECT_EQ(Choose({{"other", other}}, Tonight()).Symbol, "SG_NO_VALID_MESSAGE");
  EXPECT_EQ(Choose({{"other", other}, {"sound", SoundMessage()}}, Tonight()), (Outcome{"OK", "sound", ""}));
  Sigil::MessageContext context = Tonight();
  context.Composition->ID = ID(2);
  EXPECT_EQ(Choose({{"sound", SoundMessage()}}, context), (Outcome{"SG_NO_MESSAGE", "", ""}));
  EXPECT_EQ(Choose({}, Tonight()), (Outcome{"SG_NO_MESSAGE", "", ""}));
}

TEST(KeyMessageStore, AKeyThatIsMissingIsToldApart) {
  Sigil::MessageContext context = Tonight();
  context.Composition->KeyIDs.push_back(ID(6));
  EXPECT_EQ(Choose({{"sound", SoundMessage()}}, context),
            (Outcome{"SG_NO_KEY", "sound",
                     "E kdm-key-missing: The key message has no key 00000000-0000-4000-8000-000000000006.\n"}));
  context.From = Time("2026-01-01T00:00:00Z");
  EXPECT_EQ(Choose({{"sound", SoundMessage()}}, context).Symbol, "SG_NO_VALID_MESSAGE");
}

TEST(KeyMessageStore, OfTwoThatServeTheOneWithFewerWarningsThenTheLaterOne) {
  Sigil::MessageContext context = Tonight();
  context.Devices = {Device()[0].Thumbprint()};
  Sigil::MessageRequest request = SoundRequest();
  request.Devices = {Device()[1].Thumbprint()};
  request.NotAfter = Time("2026-03-20T00:00:00Z");
  EXPECT_EQ(Choose({{"warned", Made(request)}, {"sound", SoundMessage()}}, context), (Outcome{"OK", "sound", ""}));
  request = SoundRequest();
  request.IssueDate = Time("2026-03-01T13:00:00Z");
  EXPECT_EQ(Choose({{"sound", SoundMessage()}, {"later", Made(request)}}, context).Source, "later");
}

}  // namespace
