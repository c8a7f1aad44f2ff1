// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

namespace Cairn {

using Ferro::Result_t;

// The DCP library's own results, -200 to -299. The general ones are Ferro's.
inline constexpr Result_t RESULT_CN_NOT_IN_STORE{-200, "CN_NOT_IN_STORE", "Asset is not in the asset store."};
inline constexpr Result_t RESULT_CN_UUID_FORMAT{-201, "CN_UUID_FORMAT", "Malformed UUID value in XML document."};
inline constexpr Result_t RESULT_NOT_CPL{-202, "NOT_CPL", "The document is not a playlist of the expected type."};
inline constexpr Result_t RESULT_XML_PARSE{-203, "XML_PARSE", "The XML document could not be parsed."};
inline constexpr Result_t RESULT_XML_NAMESPACE{-204, "XML_NAMESPACE", "The XML document is of an unknown namespace."};
inline constexpr Result_t RESULT_NOT_PKL{-205, "NOT_PKL", "The document is not a packing list."};
inline constexpr Result_t RESULT_NOT_ASSETMAP{-206, "NOT_ASSETMAP", "The document is not an asset map."};
inline constexpr Result_t RESULT_NOT_SUBTITLE{-207, "NOT_SUBTITLE", "The document is not a subtitle document."};
inline constexpr Result_t RESULT_CN_VALUE{-208, "CN_VALUE", "Malformed or missing value in XML document."};
inline constexpr Result_t RESULT_CN_PATH{-209, "CN_PATH", "The path leaves its package."};
inline constexpr Result_t RESULT_CN_STORE{-210, "CN_STORE", "The asset store's index failed."};

}  // namespace Cairn
