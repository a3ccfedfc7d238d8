#include "tolven/detect.hpp"

#include <memory>

#include "api/host_hints.hpp"
#include "api/public_detection.hpp"
#include "api/translate_errors.hpp"
#include "tables/choose_table.hpp"
#include "import/InputDocument.hpp"
#include "import/TableReader.hpp"

namespace tolven::api {

xml::Detection public_detection(const import::DetectionResult& result) {
    xml::Detection d;
    d.table_detected = result.table_detected;
    d.table_selector = result.table_selector;
    d.row_selector = result.row_selector;
    d.variables.reserve(result.variables.size());
    for (const auto& v : result.variables) d.variables.push_back({v.name, v.type, v.selector});
    d.namespaces = result.namespaces;
    return d;
}

}  // namespace tolven::api

namespace tolven::xml {

Detection detect(const Source& source, const Hints& hints) {
    return api::translating_errors([&] {
        const vxArrayPtr host_hints = api::make_hint_struct(hints);
        // Through TableReader, as the command line detects: a large input is detected on a sample
        // and a streaming pass over the rest, in flat memory.
        const auto input = source.in_memory ? std::make_unique<import::InputDocument>(source.bytes, source.name)
                                            : std::make_unique<import::InputDocument>(source.name);
        import::ReadSettings settings;
        settings.detect_only = true;
        settings.parallel = true;  // no caller's code runs in the pass: it may survey on a second thread
        settings.detect = [table = hints.table](const auto& document, const vxArray* h) {
            return tolven::tables::choose_table(document, h, table);
        };
        const import::TableReader reader(*input, host_hints.get(), settings);
        return api::public_detection(reader.result());
    });
}

}  // namespace tolven::xml
