#include "detection/arguments/parse.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/options/make_detection_options.hpp"

namespace tolven::io::xml::detection::arguments {

ParsedArguments parse(const Arguments** prhs) {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::arguments::ParsedArguments "
        "tolven::io::xml::detection::arguments::parse(const Arguments**)",
        "arguments/parse");
    diagnostics::progress("Parsing builtin input arguments (detection hints)...");
    ParsedArguments parsed;
    parsed.document = common::vcos::get_doc_wrapper_ptr(prhs[0]);
    parsed.options = options::make_detection_options(prhs[1]);
    return parsed;
}

}  // namespace tolven::io::xml::detection::arguments
