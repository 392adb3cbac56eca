#!/usr/bin/env python3
"""Reads an export back as a spreadsheet would and prints it as JSON.

read_export.py FILE csv|tab   -> {"rows": [[...], ...]}   (strict RFC 4180 reader, BOM required)
read_export.py FILE xlsx      -> {"parts": [...], "cells": {"A1": [type, value, style]}, "frozen": bool,
                                  "widths": [...], "boldStyles": [...]}
"""
import csv
import io
import json
import sys
import xml.etree.ElementTree as ET
import zipfile

NS = {"m": "http://schemas.openxmlformats.org/spreadsheetml/2006/main"}


def read_text(path, delimiter):
    raw = open(path, "rb").read()
    if not raw.startswith(b"\xef\xbb\xbf"):
        raise SystemExit("no byte order mark")
    text = raw[3:].decode("utf-8")
    reader = csv.reader(io.StringIO(text, newline=""), delimiter=delimiter, strict=True)
    return {"rows": list(reader)}


def read_workbook(path):
    book = zipfile.ZipFile(path)
    sheet = ET.fromstring(book.read("xl/worksheets/sheet1.xml"))
    styles = ET.fromstring(book.read("xl/styles.xml"))
    fonts = styles.findall("m:fonts/m:font", NS)
    bold = []
    for i, xf in enumerate(styles.findall("m:cellXfs/m:xf", NS)):
        font = fonts[int(xf.get("fontId", "0"))]
        if font.find("m:b", NS) is not None:
            bold.append(i)
    cells = {}
    for c in sheet.iter("{%s}c" % NS["m"]):
        kind = c.get("t", "n")
        if kind == "inlineStr":
            value = "".join(t.text or "" for t in c.iter("{%s}t" % NS["m"]))
        else:
            v = c.find("m:v", NS)
            value = v.text if v is not None else ""
        cells[c.get("r")] = [kind, value, int(c.get("s", "0"))]
    pane = sheet.find("m:sheetViews/m:sheetView/m:pane", NS)
    return {
        "parts": book.namelist(),
        "cells": cells,
        "frozen": pane is not None and pane.get("state") == "frozen" and pane.get("ySplit") == "1",
        "widths": [float(col.get("width")) for col in sheet.findall("m:cols/m:col", NS)],
        "boldStyles": bold,
    }


if __name__ == "__main__":
    path, kind = sys.argv[1], sys.argv[2]
    result = read_workbook(path) if kind == "xlsx" else read_text(path, "\t" if kind == "tab" else ",")
    print(json.dumps(result, ensure_ascii=True))
