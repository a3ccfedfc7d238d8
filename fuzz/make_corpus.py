#!/usr/bin/env python3
"""Writes the fuzz targets' starting inputs into fuzz/corpus/: the bundled examples, small documents
of the shapes the tests use (namespaces, attributes, key/value tables, CDATA, entities, encodings,
broken documents), one document compressed in each format read transparently, and for the hints
target each hints file joined to a document by "\\n~~\\n".

usage: fuzz/make_corpus.py   (rewrites fuzz/corpus/read and fuzz/corpus/hints)
"""

import bz2
import gzip
import json
import lzma
import os
import shutil
import subprocess

FUZZ = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.join(os.path.dirname(FUZZ), "examples")

DOCUMENTS = {
    "rows": "<t><r><a>1</a><b>x</b></r><r><a>2</a><b>y</b></r><r><a>3</a><b>z</b></r></t>",
    "attributes": '<t><r id="1" v="2.5"/><r id="2" v="3"/><r id="3" v="-1e3"/></t>',
    "mixed": '<t><r id="a"><v>1</v></r><r id="b"><v>2</v><v>3</v></r><r><w>x</w></r></t>',
    "key-value": "<t><k>a</k><v>1</v><k>b</k><v>2</v><k>c</k><v>3</v></t>",
    "namespaces": '<p:t xmlns:p="urn:p" xmlns="urn:d"><p:r><a>1</a><p:b>x</p:b></p:r>'
                  '<p:r><a>2</a><p:b>y</p:b></p:r></p:t>',
    "two-prefixes": '<t xmlns:a="urn:u" xmlns:b="urn:u"><a:r><b:v>1</b:v></a:r><b:r><a:v>2</a:v></b:r></t>',
    "rebound-prefix": '<t><r xmlns:p="urn:1"><p:v>1</p:v></r><r xmlns:p="urn:2"><p:v>2</p:v></r></t>',
    "cdata-comments": "<t><!-- c --><r><a><![CDATA[1 < 2]]></a><?pi x?></r><r><a>3</a></r></t>",
    "entities": '<!DOCTYPE t [<!ENTITY e "ent">]><t><r><a>&e;</a><b>&#x41;&lt;</b></r><r><a>x</a><b>y</b></r></t>',
    "dates": "<t><r><d>2024-01-05T10:20:30Z</d><n>1,5</n><p>12 %</p></r>"
             "<r><d>2024-01-06</d><n>2</n><p>$3</p></r></t>",
    "durations": "<t><r><d>01:30:00</d></r><r><d>02:10:00.5</d></r><r><d>P1D</d></r></t>",
    "nested": "<a><b><c><r><x>1</x></r><r><x>2</x></r></c></b><b><c><r><x>3</x></r></c></b></a>",
    "latin1": '<?xml version="1.0" encoding="ISO-8859-1"?><t><r><a>caf\xe9</a></r><r><a>na\xefve</a></r></t>',
    "utf16": "\ufeff<t><r><a>1</a></r><r><a>2</a></r></t>",
    "whitespace": "<t>\n  <r>\n    <a> 1 </a>\n  </r>\n  <r>\n    <a>\t2\n</a>\n  </r>\n</t>\n",
    "broken-end": "<t><r><a>1</a></r><r><a>2</a></x></t>",
    "after-root": "<t><r><a>1</a></r><r><a>2</a></r></t><!-- tail -->",
    "empty-values": "<t><r><a/><b></b></r><r><a>1</a><b> </b></r></t>",
    "colon-names": '<t xmlns:q="urn:q"><r q:id="1"><q:v>a</q:v></r><r q:id="2"><q:v>b</q:v></r></t>',
}

HINTS = {
    "row-selector": {"RowSelector": "/t/r"},
    "table-node-name": {"TableNodeName": "t"},
    "row-node-name": {"RowNodeName": "r"},
    "variable-selectors": {"VariableSelectors": ["/t/r/a", "/t/r/@id"]},
    "variable-node-names": {"VariableNodeNames": ["a", "b"]},
    "registered": {"RegisteredNamespaces": [["p", "urn:p"], ["q", "urn:q"]], "RowSelector": "/p:t/p:r"},
    "no-attributes": {"ImportAttributes": False, "DetectNamespaces": False},
    "separators": {"DecimalSeparator": ",", "ThousandsSeparator": ".", "TrimNonnumeric": True,
                   "ExponentCharacter": ""},
}

DEFAULT_HINTS = {"TableNodeName": "", "RowNodeName": "", "VariableNodeNames": [], "TableSelector": "",
                 "RowSelector": "", "VariableSelectors": [], "AttributeSuffix": "Attribute",
                 "DateLocale": "en_US", "ImportAttributes": True, "DetectNamespaces": True,
                 "RegisteredNamespaces": [], "DecimalSeparator": ".", "ThousandsSeparator": "",
                 "ExponentCharacter": "eEdD", "TrimNonnumeric": False}


# Compressors by file suffix; Zstandard through its command-line tool, which the set-up installs.
COMPRESSORS = {
    "gz": lambda data: gzip.compress(data, mtime=0),
    "bz2": bz2.compress,
    "xz": lzma.compress,
    "zst": lambda data: subprocess.run(["zstd", "-qc"], input=data, capture_output=True, check=True).stdout,
}


def encode(name, text):
    if name == "utf16":
        return text.encode("utf-16-le")
    if name == "latin1":
        return text.encode("latin-1")
    return text.encode("utf-8")


def write(folder, name, data):
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "wb") as f:
        f.write(data)


def main():
    read_dir, hints_dir = os.path.join(FUZZ, "corpus", "read"), os.path.join(FUZZ, "corpus", "hints")
    for folder in (read_dir, hints_dir):
        shutil.rmtree(folder, ignore_errors=True)
    documents = {name: encode(name, text) for name, text in DOCUMENTS.items()}
    for example in sorted(os.listdir(EXAMPLES)):
        if not example.endswith(".xml"):
            continue  # the C++ example's folder
        with open(os.path.join(EXAMPLES, example), "rb") as f:
            documents["example-" + os.path.splitext(example)[0]] = f.read()
    for name, data in documents.items():
        write(read_dir, name + ".xml", data)
    for suffix, compress in COMPRESSORS.items():
        write(read_dir, "rows.xml." + suffix, compress(documents["rows"]))
    for hint_name, fields in HINTS.items():
        hints = json.dumps(dict(DEFAULT_HINTS, **fields)).encode()
        for document in ("rows", "attributes", "namespaces", "example-catalog"):
            write(hints_dir, f"{hint_name}-{document}", hints + b"\n~~\n" + documents[document])


if __name__ == "__main__":
    main()
