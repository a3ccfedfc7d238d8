"""Find the table inside an XML document and read it into pandas.

    >>> import tolven_xml
    >>> df = tolven_xml.read_xml("catalog.xml")            # columns typed as detected
    >>> tolven_xml.detect("catalog.xml")["RowSelector"]
    '/catalog/book'
    >>> [t["RowSelector"] for t in tolven_xml.tables("sensor-log.xml")][:2]   # every candidate
    ['/logfile/records/record', '/logfile/channels/channel']
    >>> df = tolven_xml.read_xml("sensor-log.xml", table=1)                 # the likeliest one

Hints and settings are keyword arguments, the command line's options in Python spelling
(``row_node_name=``, ``variable_selectors=[...]``, ``decimal_separator=``, ...). Failures raise
:class:`Error`, which carries ``.identifier``, ``.arguments`` and ``.message``.
"""

from __future__ import annotations

import os
from typing import IO, Any, Mapping, Tuple, Union

import numpy as np
import pandas as pd

from ._core import Error
from ._core import __version__
from . import _core

__all__ = ["Error", "detect", "read_xml", "tables", "__version__"]

PathOrBuffer = Union[str, "os.PathLike[str]", bytes, bytearray, memoryview, IO[bytes], IO[str]]

# The keyword arguments of detect and read_xml, with their defaults: the fifteen hints and
# import settings first, then the settings of an import.
HINTS = {
    "table_node_name": None,
    "row_node_name": None,
    "variable_node_names": None,
    "table_selector": None,
    "row_selector": None,
    "variable_selectors": None,
    "attribute_suffix": "Attribute",
    "date_locale": "en_US",
    "import_attributes": True,
    "detect_namespaces": True,
    "registered_namespaces": None,
    "decimal_separator": ".",
    "thousands_separator": None,
    "exponent_character": "eEdD",
    "trim_nonnumeric": False,
}
# table=N: candidate N of tables() (1 is the likeliest) instead of the table detection finds.
TABLE = {"table": None}
SETTINGS = {"nrows": None, "stream": None, "sample_bytes": 2 << 20}

# How each kind of column becomes a pandas dtype; _core.value_kind gives the kind of a type name.
DTYPES = {
    "double": "float64",
    "uint64": "UInt64",
    "datetime": "datetime64[ns]",
    "duration": "timedelta64[ns]",
    "text": "object",
}


def _options(given: Mapping[str, Any], allowed: Mapping[str, Any], caller: str) -> dict:
    unknown = sorted(set(given) - set(allowed))
    if unknown:
        raise TypeError(f"{caller}() got unexpected keyword arguments {unknown}; "
                        f"it takes {', '.join(allowed)}")
    options = {k: v for k, v in given.items() if v is not None}
    for key in ("variable_node_names", "variable_selectors"):
        if isinstance(options.get(key), str):
            options[key] = [options[key]]
    table = options.get("table")
    if table is not None and (isinstance(table, bool) or not isinstance(table, int) or table < 1):
        raise ValueError(f"table must be a whole number from 1 (the likeliest candidate), not {table!r}")
    namespaces = options.get("registered_namespaces")
    if isinstance(namespaces, Mapping):
        options["registered_namespaces"] = list(namespaces.items())
    return options


def _document(path_or_buffer: PathOrBuffer) -> Tuple[Union[str, bytes], str]:
    """(path or bytes, name for messages)."""
    if isinstance(path_or_buffer, (str, os.PathLike)):
        path = os.fspath(path_or_buffer)
        return path, path
    if isinstance(path_or_buffer, (bytes, bytearray, memoryview)):
        return bytes(path_or_buffer), "<bytes>"
    if hasattr(path_or_buffer, "read"):
        content = path_or_buffer.read()
        if isinstance(content, str):
            content = content.encode("utf-8")
        return bytes(content), str(getattr(path_or_buffer, "name", "<buffer>"))
    raise TypeError(f"expected a path, bytes or a file object, not {type(path_or_buffer).__name__}")


def detect(path_or_buffer: PathOrBuffer, **hints: Any) -> dict:
    """Where the table of the document is and how to import it.

    Returns the fields of ``tolven-xml detect --format json``: ``TableDetected``,
    ``TableSelector``, ``RowSelector``, ``VariableNames``, ``VariableTypes``,
    ``VariableSelectors`` and ``RegisteredNamespaces`` (a list of (prefix, URI)). Finding no
    table is not an error: ``TableDetected`` is then False. ``table=N`` gives candidate N of
    :func:`tables` instead, like ``--table N``. Raises :class:`Error`.
    """
    source, name = _document(path_or_buffer)
    return _core.detect(source, name, _options(hints, {**HINTS, **TABLE}, "detect"))


def tables(path_or_buffer: PathOrBuffer, **hints: Any) -> list:
    """Every table the document may hold, the likeliest first, for when detect finds another.

    Returns one dict per candidate with the keys of ``tolven-xml tables --format json``:
    ``Rank`` (what ``table=`` takes), ``TableSelector``, ``RowSelector``, ``Rows``, ``Columns``,
    ``VariableNames``, ``Hint`` (the command-line options that select it), ``Builtin`` (the
    table detect finds), ``Weak`` (probably not a table) and ``RegisteredNamespaces``. The
    import settings among the keyword arguments apply; detection hints are ignored. Raises
    :class:`Error`.
    """
    source, name = _document(path_or_buffer)
    return _core.tables(source, name, _options(hints, HINTS, "tables"))


def _error(identifier: str, *arguments: str) -> Error:
    """An Error raised from Python, with its message from the catalog."""
    error = Error(_core.format_message(identifier, list(arguments)))
    error.identifier, error.arguments = identifier, list(arguments)
    error.message = str(error)
    return error


def _column(kind: str, values: Any, missing: Any) -> Any:
    if kind == "uint64":
        return pd.arrays.IntegerArray(values, missing.astype(bool))
    if kind in ("datetime", "duration"):
        return values.view(DTYPES[kind])  # pandas' NaT is the smallest int64, as _core leaves it
    if kind == "text":
        array = np.empty(len(values), dtype=object)
        array[:] = values
        return array
    return values


def read_xml(path_or_buffer: PathOrBuffer, **options: Any) -> pd.DataFrame:
    """Read the table of an XML document into a DataFrame, with the detected types as dtypes.

    The rows and values are those of ``tolven-xml read``: double columns become float64
    (missing as NaN), uint64 UInt64, datetime datetime64[ns] (times with a zone in UTC),
    duration timedelta64[ns], everything else object (str, missing as None). A datetime or
    duration column with a value outside what 64-bit nanoseconds hold keeps its ISO text.

    path_or_buffer is a path, bytes, or a file object opened in binary (or text) mode. The
    keyword arguments are the hints and import settings (see ``HINTS``), and ``nrows`` (read
    only the first rows), ``stream`` (True: detect on a sample and stream; False: load the whole
    tree; None: by size), ``sample_bytes``, and ``table`` (candidate N of :func:`tables`
    instead of the table detection finds). The file is parsed with the GIL released, so
    threads read files in parallel. Raises :class:`Error`.
    """
    source, name = _document(path_or_buffer)
    allowed = {**HINTS, **TABLE, **SETTINGS}
    columns, _ = _core.read(source, name, _options(options, allowed, "read_xml"))
    data = {name: _column(kind, values, missing) for name, _type, kind, values, missing in columns}
    return pd.DataFrame(data, columns=[c[0] for c in columns])

