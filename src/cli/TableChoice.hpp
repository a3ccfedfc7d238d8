#pragma once
// The host's work around the builtin for detect and read: --table N picks a candidate of
// `tolven-xml tables`; without it the builtin runs as it is, followed by one note when another
// table looks more like the one wanted, and, at -v, why the search went where it went. Errors are
// put into the user's words.

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "cli/HintOptions.hpp"
#include "host/except/Exception.hpp"
#include "import/DetectionResult.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::cli {

class TableChoice {
public:
    // options: as typed; the note goes to note, explanations (-v) to err.
    TableChoice(const HintOptions& options, int verbosity, std::ostream& err,
                std::function<void(std::string_view)> note)
        : options_(options), verbosity_(verbosity), err_(err), note_(std::move(note)) {}

    // The table of document for hints: candidate --table N, or what the builtin finds. Raises the
    // builtin's errors, and "TOLVEN:import:NoSuchTable" when N is beyond the candidates.
    import::DetectionResult detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                   const vxArray* hints);

    // The message of error in the user's words, using the document detection last ran on.
    std::string message(const foundation::core::except::IMsgIDException& error) const;
    // Detection is over: the document it ran on (a sample's tree, perhaps large) is let go before
    // the import, whose errors need it no more.
    void release() { document_.reset(); }

private:
    void advise(const import::DetectionResult& builtin, const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                const vxArray* hints) const;

    const HintOptions& options_;
    int verbosity_;
    std::ostream& err_;
    std::function<void(std::string_view)> note_;
    std::shared_ptr<io::xml::common::vcos::DocWrapper> document_;
    vxArrayPtr hints_;
};

}  // namespace tolven::cli
