// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Result.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace Ferro;

namespace {

struct Row {
  Result_t Result;
  i32_t Value;
  const char* Symbol;
  const char* Label;
};

const Row s_Rows[] = {
    {RESULT_FALSE, 1, "FALSE", "Successful, but the answer is no."},
    {RESULT_OK, 0, "OK", "Success."},
    {RESULT_FAIL, -1, "FAIL", "An undefined error was detected."},
    {RESULT_PTR, -2, "PTR", "An unexpected null pointer was given."},
    {RESULT_NULL_STR, -3, "NULL_STR", "An unexpected empty string was given."},
    {RESULT_ALLOC, -4, "ALLOC", "Error allocating memory."},
    {RESULT_PARAM, -5, "PARAM", "Invalid parameter."},
    {RESULT_NOTIMPL, -6, "NOTIMPL", "Unimplemented feature."},
    {RESULT_SMALLBUF, -7, "SMALLBUF", "The given buffer is too small."},
    {RESULT_INIT, -8, "INIT", "The object is not yet initialized."},
    {RESULT_NOT_FOUND, -9, "NOT_FOUND", "The requested item was not found."},
    {RESULT_NO_PERM, -10, "NO_PERM", "Insufficient privilege to perform the operation."},
    {RESULT_STATE, -11, "STATE", "Object state error."},
    {RESULT_CONFIG, -12, "CONFIG", "Invalid configuration option detected."},
    {RESULT_FILEOPEN, -13, "FILEOPEN", "File open failure."},
    {RESULT_BADSEEK, -14, "BADSEEK", "An invalid file location was requested."},
    {RESULT_READFAIL, -15, "READFAIL", "File read error."},
    {RESULT_WRITEFAIL, -16, "WRITEFAIL", "File write error."},
    {RESULT_ENDOFFILE, -17, "ENDOFFILE", "Attempt to read past end of file."},
    {RESULT_FILEEXISTS, -18, "FILEEXISTS", "Filename already exists."},
    {RESULT_NOTAFILE, -19, "NOTAFILE", "Filename is not a regular file."},
    {RESULT_TOOLARGE, -20, "TOOLARGE", "The data is larger than the limit set for it."},
    {RESULT_CANCELLED, -21, "CANCELLED", "The operation was cancelled."},
    {RESULT_UNKNOWN, -99, "UNKNOWN", "Unknown result code."},
};

constexpr Result_t s_OwnResults[] = {{-4001, "OWN_FIRST", "First of its own."},
                                     {-4002, "OWN_LAST", "Last of its own."}};
const ResultTable s_OwnTable{s_OwnResults};

static_assert(RESULT_FALSE.Success() && RESULT_OK.Success() && RESULT_FAIL.Failure());

}  // namespace

TEST(Result, CodesSymbolsAndLabels) {
  for (const Row& row : s_Rows) {
    EXPECT_EQ(row.Result.Value(), row.Value) << row.Symbol;
    EXPECT_STREQ(row.Result.Symbol(), row.Symbol);
    EXPECT_STREQ(row.Result.Label(), row.Label);
  }
}

TEST(Result, EachIsFoundByItsCode) {
  for (const Row& row : s_Rows) {
    EXPECT_EQ(Result_t::Find(row.Value).Value(), row.Value);
    EXPECT_STREQ(Result_t::Find(row.Value).Symbol(), row.Symbol);
    EXPECT_STREQ(Result_t::Find(row.Value).Label(), row.Label);
  }
}

TEST(Result, CodeOfNoModuleIsUnknown) {
  EXPECT_EQ(Result_t::Find(-98), RESULT_UNKNOWN);
  EXPECT_EQ(Result_t::Find(2), RESULT_UNKNOWN);
  EXPECT_STREQ(Result_t::Find(-2147483647 - 1).Symbol(), "UNKNOWN");
}

TEST(Result, TablesOfOtherModulesAreFoundToo) {
  EXPECT_STREQ(Result_t::Find(-4001).Symbol(), "OWN_FIRST");
  EXPECT_STREQ(Result_t::Find(-4002).Label(), "Last of its own.");
  bool listed = false;
  for (const ResultTable* table = ResultTable::First(); table != nullptr; table = table->Next())
    listed = listed || table == &s_OwnTable;
  EXPECT_TRUE(listed);
}

TEST(Result, NegativeCodesFailAndAllOthersSucceed) {
  for (const Row& row : s_Rows) {
    EXPECT_EQ(row.Result.Failure(), row.Value < 0) << row.Symbol;
    EXPECT_EQ(row.Result.Success(), row.Value >= 0) << row.Symbol;
  }
}

TEST(Result, ComparisonIsByCodeAlone) {
  EXPECT_EQ(RESULT_FAIL, Result_t(-1, "OTHER", "Other text."));
  EXPECT_NE(RESULT_FAIL, Result_t(-2, "FAIL", "An undefined error was detected."));
  EXPECT_NE(RESULT_OK, RESULT_FALSE);
}

TEST(Result, StreamGetsSymbolAndCode) {
  std::ostringstream stream;
  stream << RESULT_NOT_FOUND;
  EXPECT_EQ(stream.str(), "NOT_FOUND (-9)");
}

TEST(Result, NoCodeIsListedTwice) {
  for (const ResultTable* table = ResultTable::First(); table != nullptr; table = table->Next())
    for (const Result_t& result : table->Results())
      EXPECT_STREQ(Result_t::Find(result.Value()).Symbol(), result.Symbol());
}
