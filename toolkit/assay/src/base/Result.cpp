// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/Result.h>

namespace Assay {
namespace {

constexpr Result_t s_Results[] = {RESULT_AY_NOTHING, RESULT_AY_DEPTH};

const Ferro::ResultTable s_Table{s_Results};

}  // namespace
}  // namespace Assay
