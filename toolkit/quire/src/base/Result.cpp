// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Result.h>

namespace QUIRE {
namespace {

constexpr Result_t s_Results[] = {
    RESULT_FORMAT,    RESULT_RANGE,   RESULT_CRYPT_CTX,     RESULT_CRYPT_INIT, RESULT_CHECKFAIL, RESULT_HMACFAIL,
    RESULT_HMAC_CTX,  RESULT_RAW_ESS, RESULT_RAW_FORMAT,    RESULT_SPHASE,     RESULT_LARGE_PTO, RESULT_DECRYPT_CTX,
    RESULT_ALGORITHM, RESULT_CUT,     RESULT_NOT_ENCRYPTED, RESULT_SEQUENCE,
};

const Ferro::ResultTable s_Table{s_Results};

}  // namespace
}  // namespace QUIRE
