import io
import math
from concurrent.futures import ThreadPoolExecutor

import pandas as pd
import pytest

import tolven_xml
from conftest import EXAMPLES, cli_json_lines

TYPED = b"""<t>
  <r id="0x1F"><when>2024-01-05 10:20:30</when><zoned>2024-01-05T10:20:30+02:00</zoned><d>01:30</d><x>1.5</x><s>a</s></r>
  <r id="0xFFFFFFFFFFFFFFFF"><when>2024-01-06</when><zoned>2024-01-06T00:00:00Z</zoned><d>-00:00:30.25</d><x>NaN</x></r>
  <r id="0x0"><when></when><zoned>2024-01-07T00:00:00Z</zoned><d>100:00:00</d><x>2e3</x><s>c</s></r>
  <r><when>2024-01-08</when><zoned>2024-01-08T00:00:00Z</zoned><d>00:01</d><x>7</x><s>d</s></r>
</t>"""


def test_detected_types_become_dtypes():
    df = tolven_xml.read_xml(TYPED)
    assert df.dtypes.astype(str).to_dict() == {
        "id": "UInt64", "when": "datetime64[ns]", "zoned": "datetime64[ns]",
        "d": "timedelta64[ns]", "x": "float64", "s": "object"}
    assert df["id"].tolist()[:3] == [31, 2**64 - 1, 0] and df["id"].isna().tolist() == [False] * 3 + [True]
    assert df["when"].tolist()[:3] == [pd.Timestamp("2024-01-05 10:20:30"), pd.Timestamp("2024-01-06"), pd.NaT]
    assert df["zoned"][0] == pd.Timestamp("2024-01-05 08:20:30")  # a zone is taken to UTC
    assert df["d"].tolist()[:3] == [pd.Timedelta(minutes=90), pd.Timedelta(seconds=-30.25), pd.Timedelta(hours=100)]
    assert math.isnan(df["x"][1]) and df["x"][2] == 2000.0
    assert df["s"].tolist() == ["a", None, "c", "d"]
    # A value that does not convert is kept as it stands, as read writes it: the column becomes text.
    kept = tolven_xml.read_xml(TYPED.replace(b"<when></when>", b"<when>never</when>"))
    assert kept["when"].dtype == object and kept["when"][2] == "never"


@pytest.mark.parametrize("name", ["catalog.xml", "feed.xml", "atom-feed.xml", "key-value.xml"])
def test_rows_and_values_are_those_of_the_command_line(name):
    df = tolven_xml.read_xml(EXAMPLES / name)
    rows = cli_json_lines(str(EXAMPLES / name))
    assert list(df.columns) == list(rows[0])
    for column in df.columns:
        kind = str(df[column].dtype)
        values = [None if pd.isna(v) else v for v in df[column]]
        expected = [row[column] for row in rows]
        if kind.startswith("datetime"):
            expected = [None if v is None else pd.Timestamp(v) for v in expected]
            expected = [v.tz_convert(None) if v is not None and v.tzinfo else v for v in expected]  # UTC
        elif kind.startswith("timedelta"):
            expected = [None if v is None else pd.Timedelta(v) for v in expected]
        assert values == expected, column


def test_hints_and_settings_are_keywords():
    xml = b"<t><r><a>1.234,5</a><b>x</b></r><r><a>2,25</a><b>y</b></r><r><a>3</a><b>z</b></r></t>"
    df = tolven_xml.read_xml(xml, row_node_name="r", decimal_separator=",", thousands_separator=".")
    assert df["a"].tolist() == [1234.5, 2.25, 3.0]
    assert tolven_xml.read_xml(xml, variable_selectors=["//b", "//a"]).columns.tolist() == ["b", "a"]
    assert len(tolven_xml.read_xml(xml, nrows=2, stream=True)) == 2
    ns = b'<p:t xmlns:p="urn:p"><p:r><p:v>1</p:v></p:r><p:r><p:v>2</p:v></p:r></p:t>'
    df = tolven_xml.read_xml(ns, detect_namespaces=False, registered_namespaces={"q": "urn:p"}, row_selector="//q:r")
    assert df["p:v"].tolist() == [1.0, 2.0]
    with pytest.raises(TypeError, match="row_nodename"):
        tolven_xml.read_xml(xml, row_nodename="r")


def test_paths_bytes_and_file_objects_read_alike(tmp_path):
    path = EXAMPLES / "catalog.xml"
    expected = tolven_xml.read_xml(str(path))
    with open(path, "rb") as binary, open(path, encoding="utf-8") as text:
        sources = [path, path.read_bytes(), bytearray(path.read_bytes()), io.BytesIO(path.read_bytes()), binary, text]
        for source in sources:
            pd.testing.assert_frame_equal(tolven_xml.read_xml(source), expected)


def test_threads_read_in_parallel_as_one_after_another():
    names = ["catalog.xml", "feed.xml", "atom-feed.xml", "key-value.xml"] * 4
    sequential = [tolven_xml.read_xml(EXAMPLES / n) for n in names]
    with ThreadPoolExecutor(4) as pool:
        parallel = list(pool.map(lambda n: tolven_xml.read_xml(EXAMPLES / n, stream=True), names))
    for a, b in zip(sequential, parallel):
        pd.testing.assert_frame_equal(a, b)
