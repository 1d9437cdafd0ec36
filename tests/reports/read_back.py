#!/usr/bin/python3
"""Reads a spreadsheet export back the way other programs will, and prints what it finds one fact per
line, for the export tests to compare:
    SHEET <index> <name as hex> <rows> <columns>
    CELL <sheet> <row> <column> text|number|date <value: UTF-8 as hex, or a number>
    BOLD <sheet> <row> <column> 0|1          (.xls and .xlsx, first two rows)
    WIDTH <sheet> <column> <characters>      (.xls and .xlsx)
    BOM 0|1                                  (.csv)
Empty cells are left out. Usage: read_back.py book FILE | read_back.py stream FILE NAME COPY (the stream's bytes into COPY)"""
import csv
import sys

import xlrd


def hexed(text):
    return text.encode("utf-8").hex() or "-"


OUT = []


def out(*fields):
    OUT.append(" ".join(str(f) for f in fields))


def cell_line(sheet, row, col, ctype, value):
    if ctype == xlrd.XL_CELL_TEXT:
        if value != "":
            out("CELL", sheet, row, col, "text", hexed(value))
    elif ctype == xlrd.XL_CELL_NUMBER:
        out("CELL", sheet, row, col, "number", repr(float(value)))
    elif ctype == xlrd.XL_CELL_DATE:
        out("CELL", sheet, row, col, "date", repr(float(value)))
    elif ctype not in (xlrd.XL_CELL_EMPTY, xlrd.XL_CELL_BLANK):
        out("CELL", sheet, row, col, "other", repr(value))


def read_excel(name):
    xls = not name.lower().endswith(".xlsx")
    book = xlrd.open_workbook(name, formatting_info=xls)
    for s, sheet in enumerate(book.sheets()):
        out("SHEET", s, hexed(sheet.name), sheet.nrows, sheet.ncols)
        for r in range(sheet.nrows):
            for c, (ctype, value) in enumerate(zip(sheet.row_types(r), sheet.row_values(r))):
                cell_line(s, r, c, ctype, value)
        if xls:
            for r in range(min(sheet.nrows, 2)):
                for c in range(sheet.ncols):
                    font = book.font_list[book.xf_list[sheet.cell_xf_index(r, c)].font_index]
                    out("BOLD", s, r, c, int(bool(font.bold)))
            for c, info in sorted(sheet.colinfo_map.items()):
                out("WIDTH", s, c, info.width / 256.0)
    if not xls:
        import openpyxl
        from openpyxl.utils import get_column_letter
        wb = openpyxl.load_workbook(name, read_only=False)
        for s, ws in enumerate(wb.worksheets):
            for r in range(1, min(ws.max_row, 2) + 1):
                for c in range(1, ws.max_column + 1):
                    out("BOLD", s, r - 1, c - 1, int(bool(ws.cell(row=r, column=c).font.b)))
            for c in range(1, ws.max_column + 1):
                width = ws.column_dimensions[get_column_letter(c)].width
                if width:
                    out("WIDTH", s, c - 1, width)


def read_csv(name):
    with open(name, "rb") as f:
        out("BOM", int(f.read(3) == b"\xef\xbb\xbf"))
    with open(name, newline="", encoding="utf-8-sig") as f:
        rows = list(csv.reader(f, strict=True))
    out("SHEET", 0, hexed("csv"), len(rows), max((len(r) for r in rows), default=0))
    for r, row in enumerate(rows):
        for c, value in enumerate(row):
            if value != "":
                out("CELL", 0, r, c, "text", hexed(value))
    with open(name, "rb") as f:
        data = f.read()
    # Every record ends in CR LF: no bare line feed outside quoted fields shows up as an extra row above.
    out("ENDS_CRLF", int(data.endswith(b"\r\n")))


def read_stream(name, stream, copy):
    from xlrd import compdoc
    with open(name, "rb") as f:
        doc = compdoc.CompDoc(f.read(), logfile=sys.stderr)
    data = doc.get_named_stream(stream)
    with open(copy, "wb") as f:
        f.write(data)
    out("STREAM", len(data))


if __name__ == "__main__":
    if sys.argv[1] == "stream":
        read_stream(sys.argv[2], sys.argv[3], sys.argv[4])
    elif sys.argv[2].lower().endswith(".csv"):
        read_csv(sys.argv[2])
    else:
        read_excel(sys.argv[2])
    sys.stdout.write("\n".join(OUT) + "\n")
