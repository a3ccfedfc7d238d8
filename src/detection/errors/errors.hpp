#pragma once
// Record types of the "TOLVEN:io:xml:detection" identifiers, raised with vxErrMsgId.

#include "host/except/Exception.hpp"
#include "host/except/MsgID.hpp"

namespace TOLVEN::io::xml::detection {
#define TOLVEN_MESSAGE(COMPONENT, NAME, ARGC, TEXT) TOLVEN_DETECTION_RECORD_##COMPONENT(NAME, ARGC)
#define TOLVEN_DETECTION_RECORD_DETECTION(NAME, ARGC) TOLVEN_DECLARE_MSGID(TOLVEN_COMPONENT_DETECTION, NAME, ARGC)
#define TOLVEN_DETECTION_RECORD_COMMON(NAME, ARGC)
#define TOLVEN_DETECTION_RECORD_STRING(NAME, ARGC)
#define TOLVEN_DETECTION_RECORD_CLI(NAME, ARGC)
#include "host/messages.def"
#undef TOLVEN_MESSAGE
#undef TOLVEN_DETECTION_RECORD_DETECTION
#undef TOLVEN_DETECTION_RECORD_COMMON
#undef TOLVEN_DETECTION_RECORD_STRING
#undef TOLVEN_DETECTION_RECORD_CLI
}  // namespace TOLVEN::io::xml::detection
