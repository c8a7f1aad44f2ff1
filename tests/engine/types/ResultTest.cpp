// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Result.h>

#include <gtest/gtest.h>

namespace Strata {
namespace {

struct Row {
  Result_t Constant;
  int Value;
  const char* Symbol;
  const char* Label;
};

const Row Table[] = {
    {RESULT_SX_DEVICE, -1000, "SX_DEVICE", "Media block failure."},
    {RESULT_SX_ID_EXISTS, -1001, "SX_ID_EXISTS", "Asset ID value already exists in asset store."},
    {RESULT_SX_NO_DISK, -1002, "SX_NO_DISK", "Asset store has insufficient disk space."},
    {RESULT_SX_EMPTY_PL, -1003, "SX_EMPTY_PL", "Playlist is empty."},
    {RESULT_SX_PLUG_XPORT, -1004, "SX_PLUG_XPORT", "Transport device plugin error."},
    {RESULT_SX_ATTR_NAME, -1005, "SX_ATTR_NAME", "Unknown attribute name."},
    {RESULT_SX_ATTR_RANGE, -1006, "SX_ATTR_RANGE", "Attribute value out of range."},
    {RESULT_SX_ATTR_TYPE, -1007, "SX_ATTR_TYPE", "Attribute value type not expected."},
    {RESULT_SX_NO_KDM, -1008, "SX_NO_KDM", "No KDM available."},
    {RESULT_SX_NO_VALID_KDM, -1009, "SX_NO_VALID_KDM", "No valid KDM available."},
    {RESULT_SX_IDX_FILE, -1010, "SX_IDX_FILE", "KDM index file error."},
    {RESULT_SX_DUP_KEY, -1011, "SX_DUP_KEY", "KDM key value already exists."},
    {RESULT_SX_NO_KEY, -1012, "SX_NO_KEY", "KDM key not found."},
    {RESULT_SX_REGFAIL, -1013, "SX_REGFAIL", "Asset registration failed."},
    {RESULT_SX_DUP_KDM, -1014, "SX_DUP_KDM", "KDM already exists."},
    {RESULT_ASM_PROTO, -1015, "ASM_PROTO", "ASM protocol error."},
    {RESULT_ASM_CONNECT, -1016, "ASM_CONNECT", "ASM client not connected."},
    {RESULT_ASM_BAD_REQ, -1017, "ASM_BAD_REQ", "ASM bad request."},
    {RESULT_ASM_FAIL, -1018, "ASM_FAIL", "ASM responder declined request."},
    {RESULT_ASM_INVALID, -1019, "ASM_INVALID", "ASM invalid parameter."},
    {RESULT_ASM_BUSY, -1020, "ASM_BUSY", "ASM busy."},
    {RESULT_ASM_KEYLOADOVER, -1021, "ASM_KEYLOADOVER", "ASM Key load overflow."},
    {RESULT_SX_NO_LINK, -1022, "SX_NO_LINK", "Link encryption required, no ASM peer found."},
    {RESULT_SX_TASK_DEP, -1023, "SX_TASK_DEP", "Asset delete failed because of task dependency."},
    {RESULT_SX_PLAYLIST_REC, -1024, "SX_PLAYLIST_REC", "Show Playlist includes self, infinite loop refused."},
    {RESULT_SX_PLAYLIST_PTYPE, -1025, "SX_PLAYLIST_PTYPE", "Composition playlist ID used in show playlist context."},
    {RESULT_SX_PLAYLIST_CTYPE, -1026, "SX_PLAYLIST_CTYPE", "Show playlist ID used in composition playlist context."},
    {RESULT_SX_PLUGIN_TYPE, -1027, "SX_PLUGIN_TYPE", "Plugin format mismatch."},
    {RESULT_SX_CSP_BAD_RSP, -1028, "SX_CSP_BAD_RSP", "BadResponse returned from ACS device."},
    {RESULT_SX_CSP_SESSION, -1029, "SX_CSP_SESSION", "CSP session failed."},
    {RESULT_SX_DEVICE_BUSY, -1030, "SX_DEVICE_BUSY", "Media block is busy."},
    {RESULT_SX_EVENT_OVERFLOW, -1031, "SX_EVENT_OVERFLOW", "The security log query yielded too many results."},
    {RESULT_SX_INGEST_OBJ, -1032, "SX_INGEST_OBJ", "Ingest objects no longer available."},
    {RESULT_SX_DIGEST_FAIL, -1033, "SX_DIGEST_FAIL", "Message digest mismatch."},
    {RESULT_SX_AUTO_DELETE, -1034, "SX_AUTO_DELETE", "Deleted broken asset record from database."},
    {RESULT_SX_NO_PICTURE, -1035, "SX_NO_PICTURE", "The playlist includes a reel with empty picture."},
};

TEST(Result, EveryCodeHasItsValueSymbolAndMessage) {
  ASSERT_EQ(std::size(Table), 36u);
  for (const Row& row : Table) {
    EXPECT_EQ(row.Constant.Value(), row.Value);
    EXPECT_STREQ(row.Constant.Symbol(), row.Symbol);
    EXPECT_STREQ(row.Constant.Label(), row.Label);
    EXPECT_TRUE(row.Constant.Failure());
  }
}

TEST(Result, EveryCodeIsFoundByItsValue) {
  for (const Row& row : Table) {
    const Result_t found = Result_t::Find(row.Value);
    EXPECT_EQ(found.Value(), row.Value);
    EXPECT_STREQ(found.Symbol(), row.Symbol);
    EXPECT_STREQ(found.Label(), row.Label);
  }
}

TEST(Result, RegistryKeepsTheOrderOfTheCodesWithoutAGap) {
  for (const Ferro::ResultTable* table = Ferro::ResultTable::First(); table != nullptr; table = table->Next()) {
    if (table->Results().front().Value() != -1000) continue;
    ASSERT_EQ(table->Results().size(), 36u);
    int value = -1000;
    for (const Result_t& result : table->Results()) EXPECT_EQ(result.Value(), value--);
    return;
  }
  FAIL() << "no table begins with -1000";
}

TEST(Result, CodesBesideTheRangeAreUnknown) {
  EXPECT_EQ(Result_t::Find(-999), Ferro::RESULT_UNKNOWN);
  EXPECT_EQ(Result_t::Find(-1036), Ferro::RESULT_UNKNOWN);
}

}  // namespace
}  // namespace Strata
