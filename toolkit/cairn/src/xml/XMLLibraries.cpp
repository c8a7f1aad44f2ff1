// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <Ferro/ILogSink.h>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xsec/enc/XSECCryptoException.hpp>
#include <xsec/framework/XSECException.hpp>
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

Result_t LogXMLException(Ferro::ILogSink& log) {
  try {
    throw;
  } catch (XSECCryptoException& exception) {  // its accessors are not const
    log.Error("Crypto error: %s\n", exception.getMsg());
  } catch (XSECException& exception) {
    log.Error("Signing error: %s\n", XMLChToUTF8(exception.getMsg()).c_str());
  } catch (const xercesc::DOMException& exception) {
    log.Error("XML DOMException code: %lu\n", static_cast<unsigned long>(exception.code));
  } catch (const xercesc::XMLException& exception) {
    log.Error("XML parse error: %s\n", XMLChToUTF8(exception.getMessage()).c_str());
  } catch (const xercesc::OutOfMemoryException&) {
    log.Error("Out of memory exception\n");
  } catch (const xercesc::SAXException&) {
    log.Error("XML SAXException\n");
  } catch (...) {
    log.Error("Unexpected XML library exception\n");
  }
  return RESULT_XML_PARSE;
}

}  // namespace Cairn
