"""What the tests of the command line share: a directory of their own, models to export, a way to run velm."""

import os
import pathlib
import sqlite3
import subprocess
import tempfile
import unittest

VELM = os.environ["VELM"]
FAILING_PLUG_IN = os.environ["FAILING_PLUG_IN"]

# Every table has rows; the reals lie on both sides of each change of form.
MODEL_SQL = """
UPDATE model SET nps_option = 1, nps_file = 'nps.dat', hydrodynamic_file = 'river.hyd';
INSERT INTO segment (name, type, flow_option) VALUES ('Upper reach', 1, 3), ('Lower reach', 1, 0), ('Bed', 3, 0);
INSERT INTO system (name, tag) VALUES ('Dissolved oxygen', 'DO'), ('Salinit' || char(233), 'SAL');
INSERT INTO initial_condition (system, segment, concentration)
    SELECT s.number, g.number, 0.09999999 * g.number FROM system s, segment g;
INSERT INTO flow_field DEFAULT VALUES;
INSERT INTO flow_field DEFAULT VALUES;
INSERT INTO flow_function (flow_field, number, description) VALUES (1, 1, 'River'), (1, 2, 'Brook');
INSERT INTO flow_path VALUES (1, 1, 1, 0, 1, 1), (1, 1, 2, 1, 2, 0.5);
INSERT INTO flow_value VALUES
    (1, 1, 1, 0, 0), (1, 1, 2, 1, -0.5), (1, 1, 3, 9.5, 0.09999994), (1, 1, 4, 10, 0.09999996),
    (1, 1, 5, 99.5, 0.9999994), (1, 1, 6, 100, 0.9999996), (1, 1, 7, 365, 999999.4), (1, 1, 8, 366, -999999.5),
    (1, 1, 9, 1e6, 1e-40), (1, 1, 10, 2e6, -3e38), (1, 1, 11, 3e6, 9.999997);
INSERT INTO exchange_field DEFAULT VALUES;
INSERT INTO exchange_field DEFAULT VALUES;
INSERT INTO exchange_function VALUES (1, 1, 'Tide');
INSERT INTO exchange_pair VALUES (1, 1, 1, 0, 1, 250, 1200000), (1, 1, 2, 1, 2, 0.01, 5);
INSERT INTO exchange_value VALUES (1, 1, 1, 0, 12), (1, 1, 2, 365, 8);
INSERT INTO boundary VALUES (1, 1, 1), (1, 2, 2);
INSERT INTO boundary_value VALUES (1, 1, 1, -2, 8.5), (1, 1, 2, 400, 0.05);
INSERT INTO load VALUES (2, 1, 2);
INSERT INTO load_value VALUES (2, 1, 1, 3, 12);
INSERT INTO time_function_type (isc) VALUES (5), (7), (9);
INSERT INTO time_function VALUES (1, 1, 1, 'Temperature'), (1, 2, 0, 'Kept'), (2, 1, 1, 'Without pairs');
INSERT INTO time_function_value VALUES (1, 1, 1, 0, 4), (1, 1, 2, 364, 5), (1, 2, 1, 0, 1);
INSERT INTO parameter_type (isc) VALUES (2);
INSERT INTO parameter VALUES (1, 1, 1, 'Shade', 1), (1, 2, 0, 'Kept', 1);
INSERT INTO parameter_value SELECT 1, p.number, g.number, 0.25 FROM parameter p, segment g;
INSERT INTO constant_type (isc) VALUES (11), (12);
INSERT INTO constant VALUES (1, 1, 1, 'Rate', 0.1), (2, 1, 0, 'Kept', 2);
"""


class ToolCase(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)

    def environment(self, **more):
        return {**os.environ, "TERM": "xterm", **more}

    def velm(self, *arguments, stdout=subprocess.PIPE, preexec_fn=None, **environment):
        """Runs velm in the test's directory: (exit code, standard output, standard error)."""
        done = subprocess.run([VELM, *arguments], cwd=self.directory, stdout=stdout, stderr=subprocess.PIPE,
                              env=self.environment(**environment), timeout=120, preexec_fn=preexec_fn)
        return done.returncode, (done.stdout or b"").decode(), done.stderr.decode()

    def start_waiting_export(self, *arguments, **environment):
        """An export of model.db to out.inp that has written what it is to write and waits; ended with the test."""
        process = subprocess.Popen([VELM, "export", "model.db", "out.inp", *arguments, "--plugin", FAILING_PLUG_IN],
                                   cwd=self.directory, env=self.environment(FAILURE="waits", **environment),
                                   stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.assertEqual(process.stderr.read(7), b"waiting")
        return process

    def write(self, name, text):
        (self.directory / name).write_text(text)

    def files(self):
        return sorted(path.name for path in self.directory.iterdir())

    def make_model(self, name="model.db", sql=MODEL_SQL):
        self.assertEqual(self.velm("new", name)[0], 0)
        with sqlite3.connect(self.directory / name) as database:
            database.executescript(sql)
        database.close()
