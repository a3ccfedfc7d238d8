# The compiled module; tolven_xml re-exports what users need.
from typing import Any, List, Tuple, Union

import numpy as np

__version__: str

class Error(ValueError):
    """A failure with a message identifier."""

    identifier: str
    arguments: List[str]
    message: str

def detect(path_or_bytes: Union[str, bytes], name: str, options: dict[str, Any]) -> dict[str, Any]: ...
def tables(path_or_bytes: Union[str, bytes], name: str, options: dict[str, Any]) -> List[dict[str, Any]]: ...
def read(
    path_or_bytes: Union[str, bytes], name: str, options: dict[str, Any]
) -> Tuple[List[Tuple[str, str, str, Union[np.ndarray, List[Union[str, None]]], Union[np.ndarray, None]]], dict[str, Any]]: ...
def value_kind(type: str) -> str: ...
def format_message(identifier: str, arguments: List[str]) -> str: ...
