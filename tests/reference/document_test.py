#!/usr/bin/env python3
"""Compares the document of the input file with what the reference exporter writes: columns, lengths, reals."""

import argparse
import re
import sqlite3
from collections import defaultdict
from pathlib import Path

import reference_exporter
from compare_with_plugin import check
from golden_files import reference_export
from random_models import real_of
from reference_records import free_real, free_record, parsed, real_field, record


class Written:
    """Layouts with values and lengths of texts that stand alone, each once, by the section's number."""

    def __init__(self):
        self.section, self.layouts, self.lengths = 0, defaultdict(dict), defaultdict(dict)

    def record(self, layout, *values):
        line = record(layout, *values)
        if values:
            self.layouts[self.section or 1][layout] = parsed(layout)
        else:
            self.lengths[self.section][len(line) - len(b"\r\n")] = True
        return line

    def free_record(self, *values):
        if isinstance(values[0], bytes) and values[0].startswith(b"=" * 24):
            self.section += 1
        elif len(values) == 1 and isinstance(values[0], bytes):
            self.lengths[self.section][len(values[0])] = True
        return free_record(*values)


def read_rows(document):
    """The rows of the document's tables, by the heading above them; a section's heading is its number."""
    rows, heading = defaultdict(list), None
    for line in document.read_text("utf-8").splitlines():
        if line.startswith("##"):
            heading = re.fullmatch(r"#+ (\d+(?=\.)|.*)(\. .*)?", line).group(1)
        elif line.startswith("| "):
            rows[heading].append([cell.strip() for cell in line.strip("|").split("|")])
    return rows


def layout_in(cell):
    return parsed("(" + cell.replace("`", "").replace("label", "'label'") + ")")


def check_section(rows, written, number):
    described = [cells[1] for cells in rows[str(number)] if cells[1].startswith("`")]
    described = [cell for i, cell in enumerate(described) if "label" in cell or cell not in described[:i]]
    layouts = list(written.layouts[number].values())
    check(f"layouts of section {number}", len(layouts), len(described))
    for cell, layout in zip(described, layouts):
        items = layout_in(cell)
        check(f"section {number}, {cell}: items", len(layout), len(items))
        for item, expected in zip(items, layout):
            if item != b"label":  # which is any text
                check(f"section {number}, {cell}", expected, item)
    lengths = [int(n) for cells in rows[str(number)] for n in re.findall(r"(\d+) characters", cells[1])]
    lengths = list(dict.fromkeys(lengths))
    check(f"lengths in section {number}", [n for n in written.lengths[number] if n in lengths], lengths)


def check_geometry(rows, layout):
    column, ranges = 1, []
    for _, width, *_ in layout:
        ranges.append(f"{column}-{column + width - 1}")
        column += width
    cells = ", ".join(cells[0] for cells in rows["2"] if cells[0][0].isdigit())
    check("columns of the geometry", ranges, cells.split(", "))


def check_reals(rows):
    examples = 0
    for first, second, *third in rows["Reals"] + rows["Free records"]:
        if match := re.fullmatch(r"`F(\d+)\.(\d+)`", first):
            width, places = map(int, match.groups())
            check(first, real_field(real_of(float(second)), width, places), third[0].strip("`").replace("·", " "))
        elif second.startswith("`"):
            check(first, free_real(real_of(float(first))), second.strip("`"))
        else:
            continue
        examples += 1
    check("there are examples", True, examples >= 17)


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    for name in ("document", "schema", "model"):
        arguments.add_argument(name, type=Path)
    options = arguments.parse_args()
    database = sqlite3.connect(":memory:")
    database.executescript(options.schema.read_text("utf-8") + options.model.read_text("utf-8"))
    written, rows = Written(), read_rows(options.document)
    reference_exporter.record, reference_exporter.free_record = written.record, written.free_record
    reference_export(database)

    for number in range(1, 12):
        check_section(rows, written, number)
    check_geometry(rows, written.layouts[2]["(4(I5),16(F15.5))"])
    check_reals(rows)
    shown = {int(width) for *_, cell in rows["Texts and NUL bytes"] for width in re.findall(r"`A(\d+)`", cell)}
    layouts = [layout for section in written.layouts.values() for layout in section.values()]
    check("widths of texts", {item[1] for layout in layouts for item in layout if item[0] == "A"}, shown)


if __name__ == "__main__":
    main()
