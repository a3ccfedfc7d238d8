import pandas as pd
import pytest
from distributed import Client, LocalCluster

import tolven_xml
import tolven_xml.dask


def statement(path, month, rows, extra=""):
    entries = "".join(
        f"<entry><date>2024-{month:02d}-{day + 1:02d}</date><amount>{day * 1.5 - 3}</amount>"
        f"<memo>m{month}-{day}</memo>{extra}</entry>" for day in range(rows))
    path.write_text(f"<statement><account>A{month}</account><entries>{entries}</entries></statement>")
    return path


@pytest.fixture(scope="module")
def client():
    with LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster:
        with Client(cluster) as client:
            yield client


def test_six_files_are_one_frame_a_partition_each_on_a_cluster(tmp_path, client):
    files = [statement(tmp_path / f"2024-{m:02d}.xml", m, 3 + m) for m in range(1, 7)]
    frame = tolven_xml.dask.read_xml(str(tmp_path / "*.xml"))
    assert frame.npartitions == 6
    expected = pd.concat([tolven_xml.read_xml(f) for f in files])
    assert frame.dtypes.to_dict() == expected.dtypes.to_dict()
    pd.testing.assert_frame_equal(frame.compute(), expected)
    assert frame.amount.sum().compute() == pytest.approx(expected.amount.sum())
    assert tolven_xml.dask.read_xml(files[:2], nrows=1).compute().memo.tolist() == ["m1-0", "m2-0"]


def test_a_file_whose_table_differs_is_named(tmp_path, client):
    good = [statement(tmp_path / f"{m}.xml", m, 4) for m in (1, 2)]
    odd = statement(tmp_path / "3.xml", 3, 4, extra="<note>late</note>")
    with pytest.raises(tolven_xml.Error) as raised:
        tolven_xml.dask.read_xml(good + [odd]).compute()
    assert raised.value.identifier == "TOLVEN:import:TableDiffers"
    assert raised.value.arguments[:2] == [str(odd), str(good[0])]
    assert "note" in raised.value.message
