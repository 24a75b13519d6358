"""Mistakes that modellers make, each as one line of SQL on the bundled model, and what velm check says of them."""

import json
import re
import sqlite3
import unittest

from tool_case import ToolCase

# The change; then of each finding its code, what it names, and its line and column in the exported input file.
MISTAKES = [
    ("UPDATE model SET restart = 1", []),
    ("UPDATE flow_path SET fraction = 0.1 WHERE flow_field = 1 AND flow_function = 1 AND number = 10", [
        ("V502", "segment 9, 2023-01-11, day 10.6489, flow function 1 of flow field 1", 70, 21),
        ("V501", "segment 10, 2023-01-03, day 2.1951, flow function 1 of flow field 1", 71, 21)]),
    ("UPDATE load_value SET time = time - 20 WHERE system = 1 AND load = 1 AND number <= 40", [
        ("V503", "load 1 of system 1, 2023-01-20, day 19, 2023-02-10, day 40", 15302, 1)]),
    ("UPDATE boundary_value SET time = time / 2 WHERE system = 2 AND boundary = 3", [
        ("V504", "boundary 3 of system 2, 2023-07-02, day 182.5", 5839, 3)]),
    ("UPDATE exchange_value SET time = time + 2 WHERE exchange_field = 1 AND exchange_function = 2", [
        ("V504", "exchange function 2 of exchange field 1, 2023-01-03, day 2", 2792, 3)]),
    ("UPDATE exchange_value SET time = time - 1 WHERE exchange_field = 1 AND exchange_function = 2", []),
    ("UPDATE time_function_value SET time = time + 36526 WHERE time_function_type = 2", [
        ("V505", "time function 1 of time function type 2, day 36526, day 36891", 19330, 1)]),
    ("UPDATE time_function SET used = 0; UPDATE time_function_value SET time = time + 36526, value = -999", []),
    ("UPDATE boundary SET segment = 1 WHERE system = 3 AND number = 2", [
        ("V506", "segment 3, flow path 1 of flow function 2 of flow field 1, system 3", 18, 11)]),
    ("UPDATE flow_value SET value = -60 WHERE flow_field = 1 AND flow_function = 1 AND number = 100; "
     "UPDATE boundary SET segment = 15 WHERE system = 7 AND segment = 12", [
         ("V506", "segment 12, flow path 13 of flow function 1 of flow field 1, system 7", 22, 11)]),
    ("INSERT INTO boundary (system, number, segment) SELECT 6, max(number) + 1, 5 FROM boundary WHERE system = 6", [
        ("V507", "boundary 12 of system 6, segment 5", 12248, 1)]),
    ("UPDATE model SET time_optimization = 0, maximum_time_step = 0.2, minimum_time_step = 0.04", [
        ("V508", "segment 3, 0.03469 days, 2023-12-18, day 351", 14, 1),
        ("V508", "segment 1, 0.1172 days, 2023-12-18, day 351", 14, 10)]),
    ("UPDATE segment SET volume = volume / 4 WHERE number = 20; "
     "UPDATE segment SET volume = volume / 3 WHERE number = 21", [
         ("V509", "segment 20, 3375 m3, 13500 m3", 81, 21)]),
    ("DELETE FROM boundary_value; DELETE FROM boundary; DELETE FROM load_value; DELETE FROM load; "
     "DELETE FROM initial_condition; DELETE FROM system", [("V510", "no system", 6, 1)]),
    ("UPDATE exchange_pair SET length = 0 WHERE exchange_field = 1 AND exchange_function = 1 AND number = 2; "
     "UPDATE model SET print_interval = 0; UPDATE system SET load_scale_factor = 0 WHERE number IN (2, 4)", [
         ("V511", "print interval", 15, 1),
         ("V511", "length, exchange pair 2 of exchange function 1 of exchange field 1", 2410, 18),
         ("V511", "load scale factor of system 2", 15998, 1)]),
    ("UPDATE boundary_value SET value = -0.5 WHERE system = 1 AND boundary = 2 AND number > 363", [
        ("V512", "pair 364 of boundary 2 of system 1, -0.5, 2 more", 3966, 11)]),
    ("UPDATE flow_value SET value = -999 WHERE flow_field = 2 AND flow_function = 1 AND number IN (40, 41)", [
        ("V513", "pair 40 of flow function 1 of flow field 2, -999, 1 more", 1707, 11)]),
    ("UPDATE constant SET value = -99999.99 WHERE constant_type = 2; "
     "UPDATE initial_condition SET concentration = -99999.99 WHERE system = 2 AND segment = 4; "
     "UPDATE parameter_value SET value = -9999.9 WHERE parameter_type = 1 AND segment IN (3, 7)", [
         ("V513", "segment 3 of parameter 1 of parameter type 1, -9999.9, 1 more", 20452, 45),
         ("V513", "constant 1 of constant type 2, -99999.99", 20599, 37),
         ("V513", "segment 4 of system 2, -100000", 20662, 5)]),
    ("UPDATE model SET start_date_2 = 13, start_date_3 = 31, start_time_1 = 24", [
        ("V514", "2023 13 31", 3, 1), ("V514", "24 0 0", 3, 16)]),
    ("UPDATE segment SET name = 'Moor Brook ' WHERE number = 5; UPDATE system SET tag = 'NO3' WHERE number = 1", [
        ("V515", "system 2, system 1, 'NO3'", 17, 1), ("V515", "segment 5, segment 3, 'Moor Brook'", 34, 11)]),
    ("UPDATE exchange_pair SET first_segment = 26, second_segment = 30 "
     "WHERE first_segment = 27 AND second_segment = 31; "
     "UPDATE segment SET type = 2 WHERE number = 31", [("V516", "segment 31", 60, 11)]),
    ("UPDATE segment SET flow_option = 3 WHERE number = 1; UPDATE boundary SET segment = 5; "
     "UPDATE flow_path SET fraction = 0", []),
]


class Mistakes(ToolCase):
    def test_mistakes(self):
        self.assertEqual(self.velm("example", "estuary.db", "--quiet")[0], 0)
        estuary = (self.directory / "estuary.db").read_bytes()
        for change, expected in MISTAKES:
            with self.subTest(change):
                (self.directory / "a.db").write_bytes(estuary)
                with sqlite3.connect(self.directory / "a.db") as database:
                    database.executescript(change)
                database.close()
                self.assertEqual(self.velm("export", "a.db", "a.inp", "--quiet")[0], 0)
                text = self.velm("check", "a.db", "a.inp", "--json", "--quiet")[1]
                of_database, of_file = ([finding for finding in file["findings"] if finding["code"].startswith("V5")]
                                        for file in json.loads(text)["files"])
                self.assertEqual([(f["code"], f["line"], f["column"]) for f in of_file],
                                 [(code, *place) for code, _, *place in expected])
                for finding, (_, names, *_) in zip(of_file, expected):
                    for name in names.split(", "):
                        self.assertRegex(finding["message"] + ",", re.escape(name) + "[] ,:)]")
                said = [sorted((f["code"], f["message"], f["remedy"]) for f in file) for file in (of_database, of_file)]
                self.assertEqual(*said)


if __name__ == "__main__":
    unittest.main()
