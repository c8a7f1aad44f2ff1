// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/Result.h>

namespace Sigil {
namespace {

constexpr Result_t s_Results[] = {
    RESULT_SG_CERTIFICATE, RESULT_SG_PRIVATE_KEY, RESULT_SG_SIGNER,     RESULT_SG_SIGN,
    RESULT_SG_PASSPHRASE,  RESULT_SG_DOCUMENT,    RESULT_SG_MESSAGE,    RESULT_SG_UNVERIFIED,
    RESULT_SG_CONTENT,     RESULT_SG_ARCHIVE,     RESULT_SG_NO_MESSAGE, RESULT_SG_NO_VALID_MESSAGE,
    RESULT_SG_NO_KEY,      RESULT_SG_DUPLICATE,   RESULT_SG_KEY_FILE,   RESULT_SG_KEY_CONFLICT,
};

const Ferro::ResultTable s_Table{s_Results};

}  // namespace
}  // namespace Sigil
