// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <Ferro/ILogSink.h>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xsec/enc/XSECCryptoException.hpp>
#include <xsec/framework/XSECException.hpp>
#include <xsec/utils/XSECPlatformUtils.hpp>

#include <mutex>
#include <stdexcept>

namespace Cairn {

namespace {

// Xerces-C would end the process where it cannot go on, as without memory for what it shares.
class ThrowingPanicHandler : public xercesc::PanicHandler {
 public:
  void panic(PanicReasons reason) override { throw std::runtime_error(getPanicReasonString(reason)); }
};

ThrowingPanicHandler s_PanicHandler;

}  // namespace

void init_xml_libs() {
  static std::once_flag s_Once;
  static bool s_HasBegun = false;
  std::call_once(s_Once, [] {
    // Both count initialisations and take one that failed for done; undoing it crashes. So there is one try.
    if (s_HasBegun) throw std::runtime_error("the XML libraries could not be initialised");
    s_HasBegun = true;
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &s_PanicHandler);
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
