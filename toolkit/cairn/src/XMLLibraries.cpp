// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLLibraries.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xsec/utils/XSECPlatformUtils.hpp>

#include <mutex>

namespace Cairn {

void init_xml_libs() {
  static std::once_flag s_Once;
  std::call_once(s_Once, [] {
    xercesc::XMLPlatformUtils::Initialize();
    XSECPlatformUtils::Initialise();
  });
}

}  // namespace Cairn
