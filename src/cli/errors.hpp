#pragma once
// Record types of the "TOLVEN:cli" identifiers.

#include "host/except/Exception.hpp"
#include "host/except/MsgID.hpp"

namespace TOLVEN::cli {
#define TOLVEN_MESSAGE(COMPONENT, NAME, ARGC, TEXT) TOLVEN_CLI_RECORD_##COMPONENT(NAME, ARGC)
#define TOLVEN_CLI_RECORD_CLI(NAME, ARGC) TOLVEN_DECLARE_MSGID(TOLVEN_COMPONENT_CLI, NAME, ARGC)
#define TOLVEN_CLI_RECORD_DETECTION(NAME, ARGC)
#define TOLVEN_CLI_RECORD_COMMON(NAME, ARGC)
#define TOLVEN_CLI_RECORD_STRING(NAME, ARGC)
#include "host/messages.def"
#undef TOLVEN_MESSAGE
#undef TOLVEN_CLI_RECORD_CLI
#undef TOLVEN_CLI_RECORD_DETECTION
#undef TOLVEN_CLI_RECORD_COMMON
#undef TOLVEN_CLI_RECORD_STRING
}  // namespace TOLVEN::cli
