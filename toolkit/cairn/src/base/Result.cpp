// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/Result.h>

namespace Cairn {
namespace {

constexpr Result_t s_Results[] = {
    RESULT_CN_NOT_IN_STORE, RESULT_CN_UUID_FORMAT, RESULT_NOT_CPL,      RESULT_XML_PARSE,
    RESULT_XML_NAMESPACE,   RESULT_NOT_PKL,        RESULT_NOT_ASSETMAP, RESULT_NOT_SUBTITLE,
    RESULT_CN_VALUE,        RESULT_CN_PATH,        RESULT_CN_STORE,
};

const Ferro::ResultTable s_Table{s_Results};

}  // namespace
}  // namespace Cairn
