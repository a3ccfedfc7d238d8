# The public names of tolven_xml, with their keyword arguments spelled out for type checkers.
import os
from typing import IO, Any, Iterable, Mapping, Optional, Tuple, Union

import pandas as pd

from ._core import Error as Error

__version__: str

PathOrBuffer = Union[str, os.PathLike[str], bytes, bytearray, memoryview, IO[bytes], IO[str]]
HINTS: dict[str, Any]
TABLE: dict[str, Any]
SETTINGS: dict[str, Any]
DTYPES: dict[str, str]

def detect(
    path_or_buffer: PathOrBuffer,
    *,
    table_node_name: Optional[str] = ...,
    row_node_name: Optional[str] = ...,
    variable_node_names: Union[str, Iterable[str], None] = ...,
    table_selector: Optional[str] = ...,
    row_selector: Optional[str] = ...,
    variable_selectors: Union[str, Iterable[str], None] = ...,
    attribute_suffix: str = ...,
    date_locale: str = ...,
    import_attributes: bool = ...,
    detect_namespaces: bool = ...,
    registered_namespaces: Union[Mapping[str, str], Iterable[Tuple[str, str]], None] = ...,
    decimal_separator: str = ...,
    thousands_separator: Optional[str] = ...,
    exponent_character: str = ...,
    trim_nonnumeric: bool = ...,
    table: Optional[int] = ...,
) -> dict[str, Any]: ...
def tables(
    path_or_buffer: PathOrBuffer,
    *,
    table_node_name: Optional[str] = ...,
    row_node_name: Optional[str] = ...,
    variable_node_names: Union[str, Iterable[str], None] = ...,
    table_selector: Optional[str] = ...,
    row_selector: Optional[str] = ...,
    variable_selectors: Union[str, Iterable[str], None] = ...,
    attribute_suffix: str = ...,
    date_locale: str = ...,
    import_attributes: bool = ...,
    detect_namespaces: bool = ...,
    registered_namespaces: Union[Mapping[str, str], Iterable[Tuple[str, str]], None] = ...,
    decimal_separator: str = ...,
    thousands_separator: Optional[str] = ...,
    exponent_character: str = ...,
    trim_nonnumeric: bool = ...,
) -> list[dict[str, Any]]: ...
def read_xml(
    path_or_buffer: PathOrBuffer,
    *,
    table_node_name: Optional[str] = ...,
    row_node_name: Optional[str] = ...,
    variable_node_names: Union[str, Iterable[str], None] = ...,
    table_selector: Optional[str] = ...,
    row_selector: Optional[str] = ...,
    variable_selectors: Union[str, Iterable[str], None] = ...,
    attribute_suffix: str = ...,
    date_locale: str = ...,
    import_attributes: bool = ...,
    detect_namespaces: bool = ...,
    registered_namespaces: Union[Mapping[str, str], Iterable[Tuple[str, str]], None] = ...,
    decimal_separator: str = ...,
    thousands_separator: Optional[str] = ...,
    exponent_character: str = ...,
    trim_nonnumeric: bool = ...,
    table: Optional[int] = ...,
    nrows: Optional[int] = ...,
    stream: Optional[bool] = ...,
    sample_bytes: int = ...,
) -> pd.DataFrame: ...
