import json

import pytest

import tolven_xml
from conftest import EXAMPLES, run_cli


@pytest.mark.parametrize("name", ["catalog.xml", "atom-feed.xml", "key-value.xml"])
def test_detect_gives_the_json_of_the_command_line(name):
    assert tolven_xml.detect(EXAMPLES / name) == json.loads(run_cli("detect", str(EXAMPLES / name), "--format", "json"))


def test_no_table_is_not_an_error():
    assert tolven_xml.detect(b"<a/>")["TableDetected"] is False


@pytest.mark.parametrize("call, identifier, arguments", [
    (lambda: tolven_xml.read_xml(b"<a/>"), "TOLVEN:import:NoTableDetected", ["<bytes>"]),
    (lambda: tolven_xml.read_xml("/no/such.xml"), "TOLVEN:io:xml:common:FileNotReadable",
     ["/no/such.xml", "No such file or directory"]),
    (lambda: tolven_xml.detect(b"<t><r/><r/></t>", row_node_name="r", table_node_name="t"),
     "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint", []),
    (lambda: tolven_xml.read_xml(b"<t><r/><r/></t>", row_selector="count(//r)"),
     "TOLVEN:io:xml:detection:RowSelectorNotNodeSet", ["number", "count(//r)"]),
])
def test_errors_carry_identifier_arguments_and_message(call, identifier, arguments):
    with pytest.raises(tolven_xml.Error) as raised:
        call()
    error = raised.value
    assert isinstance(error, ValueError)
    assert (error.identifier, error.arguments) == (identifier, arguments)
    assert str(error) == error.message and error.message


def test_tables_lists_the_candidates_of_the_command_line_and_table_picks_one():
    log = EXAMPLES / "sensor-log.xml"
    listed = tolven_xml.tables(log)
    assert listed == json.loads(run_cli("tables", str(log), "--format", "json"))["Tables"]
    for candidate in listed:
        detected = tolven_xml.detect(log, table=candidate["Rank"])
        assert (detected["RowSelector"], detected["VariableNames"]) == (candidate["RowSelector"], candidate["VariableNames"])
        frame = tolven_xml.read_xml(log, table=candidate["Rank"])
        assert (len(frame), list(frame.columns)) == (candidate["Rows"], [n.lstrip("@") for n in candidate["VariableNames"]])
    with pytest.raises(tolven_xml.Error) as raised:
        tolven_xml.read_xml(log, table=len(listed) + 1)
    assert raised.value.identifier == "TOLVEN:import:NoSuchTable"
