#pragma once
// The whole public interface of tolven-xml: find the table in an XML document, say how to import
// it, and import it. Plain standard types and UTF-8 text throughout.
//
//   tolven::xml::Detection d = tolven::xml::detect(tolven::xml::Source::file("catalog.xml"));
//   tolven::xml::read(tolven::xml::Source::file("catalog.xml"), my_sink);
//   for (const auto& t : tolven::xml::tables(tolven::xml::Source::file("report.xml"))) ...

#include "tolven/detect.hpp"
#include "tolven/error.hpp"
#include "tolven/options.hpp"
#include "tolven/read.hpp"
#include "tolven/tables.hpp"
#include "tolven/version.hpp"
