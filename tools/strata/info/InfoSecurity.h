// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <Cairn/FileType.h>
#include <Sigil/KeyRing.h>

#include <string>

namespace Tool {

/// Adds who signed a composition, packing list or key message, with which chain, and whether it holds; of a key message what
/// it says.
void DescribeSignature(const std::string& path, Cairn::FileType_t type, InfoItem& item);
/// Describes a file of certificates, or says that it holds a private key. False where it is neither.
[[nodiscard]] bool DescribeCertificates(const std::string& path, InfoItem& item);
/// Adds how many frames of an encrypted track file were verified, where its key is there.
void DescribeIntegrity(const std::string& path, Cairn::FileType_t type, const Sigil::KeyRing& keys, InfoItem& item);

}  // namespace Tool
