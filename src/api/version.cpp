#include "tolven/version.hpp"

namespace tolven::xml {

const char* version() noexcept { return TOLVEN_XML_VERSION_STRING; }

}  // namespace tolven::xml
