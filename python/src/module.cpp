// tolven_xml._core: the public C++ interface for Python. Detection and import run with the GIL
// released into C++ buffers (ColumnBuilder); Python objects are made once they are done.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <tolven/xml.hpp>

#include <memory>

#include "ColumnBuilder.hpp"

namespace py = pybind11;
namespace tx = tolven::xml;
using tolven::python::ColumnBuilder;
using tolven::python::ColumnData;

namespace {

// tolven_xml.Error, made once when the module loads.
PyObject* error_type = nullptr;

// The document: a path, or the bytes of an object kept alive for the length of the call.
struct Document {
    tx::Source source;
    py::object keep;
};

Document document(const py::object& path_or_bytes, const std::string& name) {
    if (py::isinstance<py::bytes>(path_or_bytes)) {
        char* data = nullptr;
        Py_ssize_t size = 0;
        if (PyBytes_AsStringAndSize(path_or_bytes.ptr(), &data, &size) != 0) throw py::error_already_set();
        return {tx::Source::memory(std::string_view(data, static_cast<std::size_t>(size)), name), path_or_bytes};
    }
    return {tx::Source::file(path_or_bytes.cast<std::string>()), {}};
}

template <class T>
T get(const py::dict& options, const char* key, T fallback) {
    return options.contains(key) && !options[key].is_none() ? options[key].cast<T>() : fallback;
}

// The options dictionary the Python layer checked and filled, as the public structures.
tx::Hints hints_from(const py::dict& o) {
    tx::Hints h;
    h.table_node_name = get<std::string>(o, "table_node_name", "");
    h.row_node_name = get<std::string>(o, "row_node_name", "");
    h.variable_node_names = get<std::vector<std::string>>(o, "variable_node_names", {});
    h.table_selector = get<std::string>(o, "table_selector", "");
    h.row_selector = get<std::string>(o, "row_selector", "");
    h.variable_selectors = get<std::vector<std::string>>(o, "variable_selectors", {});
    h.table = get<std::size_t>(o, "table", 0);
    h.attribute_suffix = get<std::string>(o, "attribute_suffix", h.attribute_suffix);
    h.date_locale = get<std::string>(o, "date_locale", h.date_locale);
    h.import_attributes = get<bool>(o, "import_attributes", h.import_attributes);
    h.detect_namespaces = get<bool>(o, "detect_namespaces", h.detect_namespaces);
    h.registered_namespaces =
        get<std::vector<std::pair<std::string, std::string>>>(o, "registered_namespaces", {});
    h.decimal_separator = get<std::string>(o, "decimal_separator", h.decimal_separator);
    h.thousands_separator = get<std::string>(o, "thousands_separator", "");
    h.exponent_character = get<std::string>(o, "exponent_character", h.exponent_character);
    h.trim_nonnumeric = get<bool>(o, "trim_nonnumeric", h.trim_nonnumeric);
    return h;
}

tx::ReadSettings settings_from(const py::dict& o) {
    tx::ReadSettings s;
    if (o.contains("stream") && !o["stream"].is_none())
        s.mode = o["stream"].cast<bool>() ? tx::ReadSettings::Mode::Stream : tx::ReadSettings::Mode::Tree;
    s.sample_bytes = get<std::uint64_t>(o, "sample_bytes", s.sample_bytes);
    if (o.contains("nrows") && !o["nrows"].is_none()) s.head = o["nrows"].cast<std::uint64_t>();
    // The column builder touches no Python object, so it may take the rows on the import's own thread.
    s.parallel = true;
    return s;
}

// The fields of `tolven-xml detect --format json`.
py::dict detection_dict(const tx::Detection& d) {
    py::dict out;
    out["TableDetected"] = d.table_detected;
    out["TableSelector"] = d.table_selector;
    out["RowSelector"] = d.row_selector;
    py::list names, types, selectors, namespaces;
    for (const auto& v : d.variables) {
        names.append(v.name);
        types.append(v.type);
        selectors.append(v.selector);
    }
    for (const auto& [prefix, uri] : d.namespaces) namespaces.append(py::cast(std::vector<std::string>{prefix, uri}));
    out["VariableNames"] = names;
    out["VariableTypes"] = types;
    out["VariableSelectors"] = selectors;
    out["RegisteredNamespaces"] = namespaces;
    return out;
}

// The fields of `tolven-xml tables --format json`, one dict per candidate.
py::list tables_list(const std::vector<tx::TableCandidate>& candidates) {
    py::list out;
    for (const auto& c : candidates) {
        py::dict t;
        t["Rank"] = c.rank;
        t["TableSelector"] = c.table_selector;
        t["RowSelector"] = c.row_selector;
        t["Rows"] = c.rows;
        t["Columns"] = c.columns;
        t["VariableNames"] = py::cast(c.variable_names);
        t["Hint"] = py::cast(c.hint);
        t["Builtin"] = c.builtin;
        t["Weak"] = c.weak;
        py::list namespaces;
        for (const auto& [prefix, uri] : c.namespaces) namespaces.append(py::cast(std::vector<std::string>{prefix, uri}));
        t["RegisteredNamespaces"] = namespaces;
        out.append(t);
    }
    return out;
}

// A NumPy array that owns the vector's memory, without a copy.
template <class T>
py::array owning_array(std::vector<T>&& values) {
    auto* owned = new std::vector<T>(std::move(values));
    py::capsule free_when_done(owned, [](void* p) { delete static_cast<std::vector<T>*>(p); });
    return py::array_t<T>({owned->size()}, {sizeof(T)}, owned->data(), free_when_done);
}

py::list texts(const ColumnData& c) {
    py::list out(c.missing.size());
    std::size_t start = 0;
    for (std::size_t i = 0; i < c.missing.size(); ++i) {
        const std::size_t end = c.ends[i];
        if (c.missing[i]) {
            out[i] = py::none();
        } else {
            PyObject* text = PyUnicode_DecodeUTF8(c.text.data() + start, static_cast<Py_ssize_t>(end - start), "replace");
            if (text == nullptr) throw py::error_already_set();
            out[i] = py::reinterpret_steal<py::object>(text);
        }
        start = end;
    }
    return out;
}

// (name, type, kind, values, missing): kind says how the Python layer makes the column.
py::tuple column_tuple(ColumnData& c) {
    py::object none = py::none();
    switch (c.value_type) {
        case tx::ValueType::Double: return py::make_tuple(c.name, c.type, "double", owning_array(std::move(c.doubles)), none);
        case tx::ValueType::UInt64:
            return py::make_tuple(c.name, c.type, "uint64", owning_array(std::move(c.uints)), owning_array(std::move(c.missing)));
        case tx::ValueType::Datetime:
        case tx::ValueType::Duration:
            if (!c.as_text) {
                return py::make_tuple(c.name, c.type, c.value_type == tx::ValueType::Datetime ? "datetime" : "duration",
                                      owning_array(std::move(c.nanos)), none);
            }
            return py::make_tuple(c.name, c.type, "text", texts(c), none);
        case tx::ValueType::Text: return py::make_tuple(c.name, c.type, "text", texts(c), none);
    }
    return py::make_tuple(c.name, c.type, "text", texts(c), none);
}

py::dict detect_table(const py::object& path_or_bytes, const std::string& name, const py::dict& options) {
    const Document doc = document(path_or_bytes, name);
    const tx::Hints hints = hints_from(options);
    tx::Detection detection;
    {
        py::gil_scoped_release release;
        detection = tx::detect(doc.source, hints);
    }
    return detection_dict(detection);
}

py::list list_tables(const py::object& path_or_bytes, const std::string& name, const py::dict& options) {
    const Document doc = document(path_or_bytes, name);
    const tx::Hints hints = hints_from(options);
    std::vector<tx::TableCandidate> candidates;
    {
        py::gil_scoped_release release;
        candidates = tx::tables(doc.source, hints);
    }
    return tables_list(candidates);
}

py::tuple read_columns(const py::object& path_or_bytes, const std::string& name, const py::dict& options) {
    const Document doc = document(path_or_bytes, name);
    const tx::Hints hints = hints_from(options);
    const tx::ReadSettings settings = settings_from(options);
    ColumnBuilder builder;
    tx::ReadSummary summary;
    {
        py::gil_scoped_release release;
        summary = tx::read(doc.source, builder, hints, settings);
    }
    py::list columns;
    for (auto& c : builder.columns()) columns.append(column_tuple(c));
    py::dict info;
    info["rows"] = summary.rows;
    info["streamed"] = summary.streamed;
    info["detection"] = detection_dict(summary.detection);
    py::list missing, unconvertible;
    for (const auto& counts : summary.counts) {
        missing.append(counts.missing);
        unconvertible.append(counts.unconvertible);
    }
    info["missing"] = missing;
    info["unconvertible"] = unconvertible;
    return py::make_tuple(columns, info);
}

const char* value_kind(const std::string& type) {
    switch (tx::value_type(type)) {
        case tx::ValueType::Double: return "double";
        case tx::ValueType::UInt64: return "uint64";
        case tx::ValueType::Datetime: return "datetime";
        case tx::ValueType::Duration: return "duration";
        case tx::ValueType::Text: return "text";
    }
    return "text";
}

}  // namespace

PYBIND11_MODULE(_core, m) {
    m.doc() = "The compiled part of tolven_xml; use the names tolven_xml exports.";
    error_type = PyErr_NewExceptionWithDoc(
        "tolven_xml._core.Error",
        "A failure with a message identifier: .identifier, .arguments (a list of str) and .message.",
        PyExc_ValueError, nullptr);
    if (error_type == nullptr) throw py::error_already_set();
    m.add_object("Error", py::handle(error_type));
    py::register_exception_translator([](std::exception_ptr failure) {
        try {
            if (failure) std::rethrow_exception(failure);
        } catch (const tx::Error& e) {
            py::object error = py::reinterpret_borrow<py::object>(error_type)(e.message());
            error.attr("identifier") = e.identifier();
            error.attr("arguments") = py::cast(e.arguments());
            error.attr("message") = e.message();
            PyErr_SetObject(error_type, error.ptr());
        }
    });

    m.def("detect", &detect_table, py::arg("path_or_bytes"), py::arg("name"), py::arg("options"),
          "The detection result as a dict with the keys of `tolven-xml detect --format json`.");
    m.def("tables", &list_tables, py::arg("path_or_bytes"), py::arg("name"), py::arg("options"),
          "The candidate tables as dicts with the keys of `tolven-xml tables --format json`, best first.");
    m.def("read", &read_columns, py::arg("path_or_bytes"), py::arg("name"), py::arg("options"),
          "(columns, info): per column (name, type, kind, values, missing), and the import's counts.");
    m.def("value_kind", &value_kind, py::arg("type"),
          "How a column of a detected type is represented: double, uint64, datetime, duration or text.");
    m.def("format_message", &tx::format_message, py::arg("identifier"), py::arg("arguments"),
          "The catalog message of an identifier with its arguments filled in.");
    m.attr("__version__") = tx::version();
}
