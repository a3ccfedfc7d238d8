#!/usr/bin/env bash
# Installs the Python package as a user would, offline: a clean copy of the checkout (the files git
# tracks or would track), a fresh venv over Debian's Python, `pip install --no-build-isolation .`
# with no package index reachable, then one read into a typed DataFrame.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/src"
cd "$root"
git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
  if [ -e "$file" ]; then cp --parents -- "$file" "$work/src"; fi  # a tracked file may be deleted
done
/usr/bin/python3 -m venv --system-site-packages "$work/venv"
(cd "$work/src" && PIP_NO_INDEX=1 "$work/venv/bin/pip" install --quiet --no-build-isolation .)
cd "$work"
"$work/venv/bin/python" - "$root/examples/catalog.xml" <<'PY'
import sys
import tolven_xml
frame = tolven_xml.read_xml(sys.argv[1])
types = frame.dtypes.astype(str).to_dict()
assert types["price"] == "float64" and types["publish_date"] == "datetime64[ns]", types
print(f"check_python_install: {len(frame)} rows, {tolven_xml.__file__}")
PY
