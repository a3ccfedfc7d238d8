#pragma once
// Errors in the user's words: the options named as typed (--row-node-name, not RowNodeName), close
// names that exist, the prefix a selector needs for the default namespace, the --variable-selectors
// entry that selects nothing. Only the message changes: identifiers and arguments stay the builtin's.

#include <memory>
#include <string>

#include "cli/HintOptions.hpp"
#include "host/except/Exception.hpp"
#include "host/vxArray.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::cli {

// The message of error for someone who typed options. document is the document detection ran on
// (null when none was loaded) and hints the hint structure it ran with (may be null).
std::string user_message(const foundation::core::except::IMsgIDException& error, const HintOptions& options,
                         const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document, const vxArray* hints);

}  // namespace tolven::cli
