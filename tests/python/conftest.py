import json
import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"


def run_cli(*arguments: str) -> str:
    """Standard output of the built tolven-xml (its path comes from the test's environment)."""
    cli = os.environ.get("TOLVEN_XML_CLI")
    if not cli:
        pytest.skip("TOLVEN_XML_CLI is not set")
    return subprocess.run([cli, *arguments], check=True, capture_output=True, text=True).stdout


def cli_json_lines(*arguments: str) -> list:
    return [json.loads(line) for line in run_cli("read", *arguments, "--format", "jsonl").splitlines()]
