#pragma once
// Silences the diagnostic log while the host probes the document with the builtin's pieces: the
// records of the real detection run are the only ones a user should read.

#include "xml/log/getLogger.hpp"

namespace tolven::tables {

class QuietLog {
public:
    QuietLog() : logger_(io::xml::common::log::getLogger()), mask_(logger_.mask()) { logger_.set_mask(0); }
    ~QuietLog() { logger_.set_mask(mask_); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    io::xml::common::log::Logger& logger_;
    unsigned mask_;
};

}  // namespace tolven::tables
