// Ranking on realistic documents: the table a person wants comes first, and what is listed for a
// candidate is what its hint makes the builtin find.
#include <gtest/gtest.h>

#include <algorithm>

#include "detection/support/detect_helpers.hpp"
#include "support/files.hpp"
#include "tables/TableList.hpp"
#include "xml/vcos/load_document.hpp"

namespace {

using tolven::tables::TableList;

struct Wanted {
    const char* file;
    const char* where;        // the first candidate's row selector (its table selector when it has none); "" for prose
    const char* first_column;  // its first column's name, when it says something
};

// tests/data/tables: one document of each kind a user brings, and the table a person wants in it.
const Wanted kCorpus[] = {
    {"android-strings.xml", "/resources/string", "string"},
    {"api-response-deep.xml",
     "/soap:Envelope/soap:Body/ns:GetOrdersResponse/ns:GetOrdersResult/ns:Data/ns:DataSet/ns:Rows/ns:Table/ns:Records/ns:Record",
     "OrderNo"},
    {"app-config.xml", "/configuration/appSettings/add", "@key"},
    {"app-log-export.xml", "/log/entry", "@time"},
    {"appsettings-sections.xml", "/settings/section/add", "@key"},
    {"atom-blog.xml", "/ns:feed/ns:entry", nullptr},
    {"atom-releases.xml", "/ns:feed/ns:entry", "id"},
    {"atom-xhtml-content.xml", "/ns:feed/ns:entry", "title"},
    {"bank-account-statement.xml", "/AccountStatement/Entries/Entry", "BookingDate"},
    {"bank-categorised.xml", "/budget/transactions/transaction", "date"},
    {"bank-ofx-xml.xml", "/OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN", "TRNTYPE"},
    {"bank-statement.xml", "/statement/transactions/tx", "@id"},
    {"book-catalog-authors.xml", "/catalogue/books/book", "@isbn"},
    {"bookshop-catalog.xml", "/bookshop/catalog/book", nullptr},
    {"camt053-statement.xml", "/ns:Document/ns:BkToCstmrStmt/ns:Stmt/ns:Ntry", nullptr},
    {"card-statement-attributes.xml", "/CardStatement/Transactions/Transaction", "@posted"},
    {"catalog-products-by-category.xml", "/catalog/category/product", "@sku"},
    {"cd-catalog-with-genres.xml", "/catalog/cds/cd", "@id"},
    {"csv-export.xml", "/export/row[position()>1]", "order_id"},
    {"database-dump.xml", "/mysqldump/database/table_data/row", "id"},
    {"datalogger-attribute-records.xml", "/ns:LoggerExport/ns:Data/ns:r", "@t"},
    {"datalogger-calibration.xml", "/dataset/data/r", "@t"},
    {"datalogger-channel-list.xml", "/DataFile/Records/rec", "ts"},
    {"datalogger-channels.xml", "/logfile/records/record", "time"},
    {"datalogger-positional-values.xml", "/Log/Rows/Row", "Column1"},
    {"datalogger-samples.xml", "/ns:acquisition/ns:sample", "@t"},
    {"docbook-manual-table.xml", "/article/informaltable/tgroup/tbody/row", "Quantity"},
    {"election-results.xml", "/ElectionResults/Constituencies/Constituency/Candidate", "@party"},
    {"event-log-export.xml", "/Events/ns:Event", "Level"},
    {"exchange-rates.xml", "/gesmes:Envelope/ns:Cube/ns:Cube/ns:Cube", "@currency"},
    {"gpx-hike.xml", "/ns:gpx/ns:trk/ns:trkseg/ns:trkpt", "@lat"},
    {"gpx-two-segments.xml", "/ns:gpx/ns:trk/ns:trkseg/ns:trkpt", "@lat"},
    {"gpx-waypoints-and-track.xml", "/ns:gpx/ns:trk/ns:trkseg/ns:trkpt", "@lat"},
    {"health-export.xml", "/HealthData/Record", nullptr},
    {"html-article-with-table.xml", "/html/body/article/table/tbody/tr", "Month"},
    {"html-departures.xml", "/html/body/div/div/div[2]/table/tr[position()>1]", "Time"},
    {"html-inline-cells.xml", "/html/body/table/tbody/tr", "Sample"},
    {"html-league-table.xml", "/html/body/div/table/tr[position()>1]", "Rank"},
    {"html-monthly-stats.xml", "/html/body/table/tr[position()>1]", "Month"},
    {"inventory-stock-bins.xml", "/inventory/location/stock", "@sku"},
    {"inventory-warehouses.xml", "/inventory/warehouse/item", "@sku"},
    {"junit-many-small-suites.xml", "/testsuites/testsuite/testcase", "@name"},
    {"junit-nested-suites.xml", "/testsuites/testsuite/testsuite/testcase", "@name"},
    {"junit-single-suite.xml", "/testsuite/testcase", nullptr},
    {"junit-system-out.xml", "/testsuites/testsuite/testcase", "@classname"},
    {"junit-two-suites.xml", "/testsuites/testsuite/testcase", nullptr},
    {"junit-with-properties.xml", "/testsuites/testsuite/testcase", "@name"},
    {"kml-heritage-walk.xml", "/ns:kml/ns:Document/ns:Folder/ns:Placemark", "name"},
    {"kml-neighbourhood-places.xml", "/ns:kml/ns:Document/ns:Placemark", "name"},
    {"library-dublin-core.xml", "/records/record", "dc:identifier"},
    {"library-loans.xml", "/library/loans/loan", "member"},
    {"lint-report.xml", "/checkstyle/file/error", "@line"},
    {"loadtest-results.xml", "/testResults/httpSample", "@t"},
    {"maven-pom.xml", "/ns:project/ns:dependencies/ns:dependency", "groupId"},
    {"merchant-feed.xml", "/rss/channel/item", "g:id"},
    {"music-score.xml", "/score-partwise/part/measure/note", "duration"},
    {"nunit-results.xml",
     "/test-results/test-suite/results/test-suite/results/test-suite/results/test-suite/results/test-case", "@name"},
    {"ods-staff.xml",
     "/office:document-content/office:body/office:spreadsheet/table:table/table:table-row[position()>1]", "Employee"},
    {"ofx-statement.xml", "/OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN", "TRNTYPE"},
    {"opml-flat-reading-list.xml", "/opml/body/outline", "@type"},
    {"opml-subscriptions.xml", "/opml/body/outline/outline", nullptr},
    {"password-export.xml", "/KeePassFile/Root/Group/Entry", "Title"},
    {"payroll-run.xml", "/PayrollRun/Employees/Employee", "@id"},
    {"plist-app-info.xml", "/plist/dict", "key"},
    {"plist-backup-devices.xml", "/plist/dict/array[2]/dict", "DeviceName"},
    {"plist-documents-by-id.xml", "/plist/dict/dict[2]/dict", "Name"},
    {"plist-installed-apps.xml", "/plist/array/dict", "Name"},
    {"plist-library-with-playlists.xml", "/plist/dict/dict/dict", "Track ID"},
    {"plist-music-library.xml", "/plist/dict/dict/dict", "Track ID"},
    {"plist-order.xml", "/plist/dict/array/dict", "Title"},
    {"podcast-itunes.xml", "/rss/channel/item", "title"},
    {"podcast-namespace-tags.xml", "/rss/channel/item", "title"},
    {"podcast-rss.xml", "/rss/channel/item", "title"},
    {"product-features.xml", "/catalog/product", "@id"},
    {"product-feed-variants.xml", "/feed/products/product", "@id"},
    {"project-package-references.xml", "/Project/ItemGroup[1]/PackageReference", "@Include"},
    {"prose-article.xml", "", nullptr},
    {"prose-blog-post.xml", "", nullptr},
    {"prose-book-chapter.xml", "", nullptr},
    {"prose-docbook-list.xml", "", nullptr},
    {"prose-essay.xml", "", nullptr},
    {"prose-html-article.xml", "", nullptr},
    {"prose-letter.xml", "", nullptr},
    {"quakeml-events.xml", "/q:quakeml/ns:eventParameters/ns:event", nullptr},
    {"rss-many-categories.xml", "/rss/channel/item", "title"},
    {"rss-news.xml", "/rss/channel/item", "title"},
    {"rss-three-items.xml", "/rss/channel/item", "title"},
    {"rss1-rdf-journal.xml", "/rdf:RDF/ns:item", "@rdf:about"},
    {"search-results.xml", "/response/result/doc", "id"},
    {"sensor-dump-grouped.xml", "/dump/sensors/sensor/value", "value"},
    {"sensor-flat-readings.xml", "/station/measurements/m", "@s"},
    {"sensor-readings-metadata.xml", "/SensorExport/Readings/Reading", "Timestamp"},
    {"server-users.xml", "/ns:tomcat-users/ns:user", "@username"},
    {"sitemap-alternates.xml", "/ns:urlset/ns:url", "loc"},
    {"sitemap.xml", "/ns:urlset/ns:url", "loc"},
    {"small-contacts.xml", "/addressbook/contact", "name"},
    {"small-orders-after-settings.xml", "/export/orders/order", "@id"},
    {"spreadsheetml-contacts.xml", "/ns:Workbook/ns:Worksheet/ns:Table/ns:Row[position()>1]", "Name"},
    {"spreadsheetml-sales.xml", "/ns:Workbook/ns:Worksheet/ns:Table/ns:Row[position()>1]", "Date"},
    {"spreadsheetml-small-order.xml", "/ns:Workbook/ns:Worksheet/ns:Table/ns:Row[position()>1]", "Item"},
    {"spreadsheetml-sparse-stock.xml", "/ns:Workbook/ns:Worksheet/ns:Table/ns:Row[position()>1]", "SKU"},
    {"spreadsheetml-staff-list.xml", "/ss:Workbook/ss:Worksheet/ss:Table/ss:Row[position()>1]", "Employee"},
    {"spreadsheetml-summary-and-data.xml", "/ns:Workbook/ns:Worksheet[2]/ns:Table/ns:Row[position()>1]", "Date"},
    {"spreadsheetml-three-sheets.xml", "/ns:Workbook/ns:Worksheet[3]/ns:Table/ns:Row[position()>1]", "Invoice"},
    {"spreadsheetml-two-sheets.xml", "/ns:Workbook/ns:Worksheet[2]/ns:Table/ns:Row[position()>1]", "Order"},
    {"survey-responses.xml", "/survey/responses/response", "Column1"},
    {"svg-bar-chart.xml", "/ns:svg/ns:g[2]/ns:rect", "@class"},
    {"svg-energy-chart.xml", "/ns:svg/ns:g[3]/ns:circle", "@cx"},
    {"svg-labelled-points.xml", "/ns:svg/ns:g[2]/ns:g", "@class"},
    {"svg-line-chart.xml", "/ns:svg/ns:g[3]/ns:circle", "@cx"},
    {"svg-scatter-grid.xml", "/ns:svg/ns:circle", "@cx"},
    {"svg-scatter-legend.xml", "/ns:svg/ns:circle", "@cx"},
    {"svg-scatter.xml", "/ns:svg/ns:g/ns:circle", "@cx"},
    {"testng-results.xml", "/testng-results/suite/test/class/test-method", "@is-config"},
    {"timetable-line.xml", "/timetable/services/service/journey/call", "@stop"},
    {"trx-test-run.xml", "/ns:TestRun/ns:Results/ns:UnitTestResult", "@executionId"},
    {"ubl-invoice.xml", "/ns:Invoice/cac:InvoiceLine", "cbc:ID"},
    {"weather-forecast.xml", "/weatherdata/forecast/tabular/time", "@from"},
    {"weather-observations.xml", "/weatherdata/observations/obs", "@time"},
    {"xbrl-facts.xml", "/xbrli:xbrl", "@id"},
    {"xhtml-cities.xml", "/ns:html/ns:body/ns:div/ns:div[2]/ns:div/ns:table/ns:tbody/ns:tr", "City"},
    {"xhtml-menu-and-table.xml", "/ns:html/ns:body/ns:div[2]/ns:div/ns:table/ns:tr[position()>1]", "City"},
    {"xhtml-two-tables.xml", "/ns:html/ns:body/ns:div/ns:div/ns:table[2]/ns:tbody/ns:tr", "Day"},
    {"xhtml-weather-archive.xml", "/ns:html/ns:body/ns:div[2]/ns:div[2]/ns:div/ns:table/ns:tbody/ns:tr", "Station"},
    {"xliff-translations.xml", "/ns:xliff/ns:file/ns:body/ns:trans-unit", "@id"},
    {"xunit-assemblies.xml", "/assemblies/assembly/collection/test", "@name"},
};

TEST(TableList, PutsTheTableAPersonWantsFirstOnRealisticDocuments) {
    const vxArrayPtr hints = tolven::testing::make_hint_struct({});
    for (const Wanted& w : kCorpus) {
        SCOPED_TRACE(w.file);
        const auto document =
            tolven::io::xml::common::vcos::load_document(std::string(TOLVEN_SOURCE_DIR "/tests/data/tables/") + w.file);
        const TableList list(document, hints.get());
        ASSERT_FALSE(list.candidates().empty());
        const auto& first = list.candidates().front();
        if (*w.where == '\0') {
            // Running text: listed, but every candidate is marked as probably not a table.
            for (const auto& c : list.candidates()) EXPECT_TRUE(c.score.weak()) << c.row_selector;
            continue;
        }
        EXPECT_EQ(first.row_selector.empty() ? first.table_selector : first.row_selector, w.where);
        EXPECT_FALSE(first.score.weak());
        const auto listed = list.result(0);
        EXPECT_TRUE(listed.table_detected);
        if (w.first_column != nullptr) {
            EXPECT_EQ(listed.variables.at(0).name, w.first_column);
        }

        // The builtin's own pick is marked once, and listed as the builtin gives it.
        const auto pick = list.builtin_index();
        ASSERT_TRUE(pick.has_value());
        EXPECT_EQ(list.result(*pick).row_selector, list.builtin_result().row_selector);
        EXPECT_EQ(std::count_if(list.candidates().begin(), list.candidates().end(), [](const auto& c) { return c.builtin; }), 1);
    }
}

}  // namespace

namespace {

// Small documents of each kind of candidate, and what the first one must be.
TEST(TableList, ReadsCellsKeyedRowsAndRowsUnderSeveralParents) {
    struct Case {
        const char* xml;
        const char* where;
        std::vector<std::string> names;  // what --table 1 yields
    };
    const Case cases[] = {
        // A header in thead names the cells of tbody's rows.
        {"<table><thead><tr><th>a</th><th>b</th></tr></thead><tbody><tr><td>1</td><td>x</td></tr>"
         "<tr><td>2</td><td>y</td></tr><tr><td>3</td><td>z</td></tr></tbody></table>",
         "/table/tbody/tr", {"a", "b"}},
        // Words above values with digits and marks head the rows; the header row is left out.
        {"<s><r><c>name</c><c>mail</c></r><r><c>Ann</c><c>ann@x.org</c></r><r><c>Bo</c><c>bo@x.org</c></r>"
         "<r><c>Cy</c><c>cy@x.org</c></r></s>",
         "/s/r[position()>1]", {"name", "mail"}},
        // Without a header the columns are numbered; the value is the cell's only child's text.
        {"<s><r><c><v>x</v></c><c><v>1</v></c></r><r><c><v>y</v></c><c><v>2</v></c></r>"
         "<r><c><v>z</v></c><c><v>3</v></c></r></s>",
         "/s/r", {"Column1", "Column2"}},
        // Keys name the columns; a nested dictionary is no value.
        {"<a><d><k>n</k><s>x</s><k>v</k><i>1</i><k>m</k><d><k>q</k><s>w</s></d></d>"
         "<d><k>n</k><s>y</s><k>v</k><i>2</i><k>m</k><d><k>q</k><s>w</s></d></d>"
         "<d><k>v</k><i>3</i><k>n</k><s>z</s><k>m</k><d><k>q</k><s>w</s></d></d></a>",
         "/a/d", {"n", "v"}},
        // The cases of two suites taken together.
        {"<r><s n='1'><c t='0.5'/><c t='7'/></s><s n='2'><c t='3.1'/><c t='2'/><c t='9'/></s></r>", "/r/s/c", {"@t"}},
        // A list the rows look values up in (styles by id) describes them: the rows come first.
        {"<d><styles><s id='a' f='x' g='1' h='9'/><s id='b' f='y' g='2' h='7'/><s id='c' f='z' g='3' h='8'/></styles>"
         "<rows><r st='a' v='1.5'/><r st='b' v='2.25'/><r st='a' v='3.75'/><r st='b' v='0.5'/><r st='a' v='2'/>"
         "<r st='b' v='1'/></rows></d>",
         "/d/rows/r", {"@st", "@v"}},
    };
    const vxArrayPtr hints = tolven::testing::make_hint_struct({});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.xml);
        const TableList list(tolven::testing::parse_xml(c.xml), hints.get());
        ASSERT_FALSE(list.candidates().empty());
        EXPECT_EQ(list.candidates().front().row_selector, c.where);
        std::vector<std::string> names;
        for (const auto& v : list.result(0).variables) names.push_back(v.name);
        EXPECT_EQ(names, c.names);
    }
    // Nothing repeats, or no prefix can be written: no candidate, and no error.
    tolven::testing::HintFields no_prefixes;
    no_prefixes.DetectNamespaces = false;
    EXPECT_TRUE(TableList(tolven::testing::parse_xml("<a><b/><c/></a>"), hints.get()).candidates().empty());
    EXPECT_TRUE(TableList(tolven::testing::parse_xml("<a xmlns='urn:a'><b/><b/><b/></a>"),
                          tolven::testing::make_hint_struct(no_prefixes).get())
                    .candidates()
                    .empty());
}

}  // namespace
