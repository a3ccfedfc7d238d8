"""Many XML files as one Dask DataFrame, a partition per file.

    >>> import tolven_xml.dask
    >>> ddf = tolven_xml.dask.read_xml("exports/*.xml", row_node_name="entry")
    >>> ddf.groupby("account").amount.sum().compute()
"""

from __future__ import annotations

import glob
import os
from typing import Any, Iterable, List, Union

import dask.dataframe as dd
import pandas as pd

from . import HINTS, SETTINGS, TABLE, _error, _options, read_xml as _read_xml

__all__ = ["read_xml"]


def _paths(paths: Union[str, "os.PathLike[str]", Iterable[Union[str, "os.PathLike[str]"]]]) -> List[str]:
    if isinstance(paths, (str, os.PathLike)):
        pattern = os.fspath(paths)
        found = sorted(glob.glob(pattern)) if glob.has_magic(pattern) else [pattern]
        if not found:
            raise _error("TOLVEN:io:xml:common:FileNotReadable", pattern, "no file matches")
        return found
    return [os.fspath(p) for p in paths]


def _difference(frame: pd.DataFrame, meta: pd.DataFrame) -> str:
    if list(frame.columns) != list(meta.columns):
        return f"its columns are {list(frame.columns)}, not {list(meta.columns)}"
    for name in meta.columns:
        if frame[name].dtype != meta[name].dtype:
            return f"column '{name}' is {frame[name].dtype}, not {meta[name].dtype}"
    return ""


class _ReadFile:
    """Reads one file into a partition; a picklable callable, so workers of a cluster can run it."""

    def __init__(self, options: dict, meta: pd.DataFrame, first: str):
        self.options, self.meta, self.first = options, meta, first

    def __call__(self, path: str) -> pd.DataFrame:
        frame = _read_xml(path, **self.options)
        difference = _difference(frame, self.meta)
        if difference:
            raise _error("TOLVEN:import:TableDiffers", path, self.first, difference)
        return frame


def read_xml(paths: Union[str, "os.PathLike[str]", Iterable[Union[str, "os.PathLike[str]"]]],
             **options: Any) -> dd.DataFrame:
    """Read the table of each file into one Dask DataFrame, a partition per file, in order.

    paths is a glob pattern ("exports/*.xml"), a path, or a list of paths. The options are those
    of tolven_xml.read_xml. The columns and dtypes come from the first file, which is read once
    for them; a file whose table has other columns or dtypes raises tolven_xml.Error
    ("TOLVEN:import:TableDiffers") naming it, when its partition is computed.
    """
    files = _paths(paths)
    if not files:
        raise ValueError("no files to read")
    options = _options(options, {**HINTS, **TABLE, **SETTINGS}, "read_xml")
    meta = _read_xml(files[0], **{**options, "nrows": 0})
    return dd.from_map(_ReadFile(options, meta, files[0]), files, meta=meta, label="read-xml",
                       enforce_metadata=False)
