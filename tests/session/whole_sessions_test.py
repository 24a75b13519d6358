"""Whole exports recorded, replayed and turned into models: every way must lead to the same file."""

import contextlib
import json
import pathlib
import signal
import subprocess
import sys
import time
import unittest

from session_case import GOLDEN_MODELS, HOST_LIBRARY, MODEL_HOST, PLUG_IN, SessionCase
from tool_case import FAILING_PLUG_IN, VELM

BESIDE = pathlib.Path(__file__).resolve().parent
RANDOM_HOSTS = 10


class Models(SessionCase):
    def check_every_way(self, model, expected):
        """Export, replay, model of the session, recorder in the host library's place."""
        self.run_velm("export", model, "out.inp", "--allow-overflow", "--record", f"{model}.jsonl")
        self.assertEqual(expected, self.read("out.inp"))

        self.run_velm("replay", f"{model}.jsonl", "replayed.inp")
        self.assertEqual(expected, self.read("replayed.inp"))

        self.run_velm("session-to-model", f"{model}.jsonl", f"{model}.taken")
        self.run_velm("export", f"{model}.taken", "taken.inp", "--allow-overflow")
        self.assertEqual(expected, self.read("taken.inp"))

        self.run_velm("export", model, "recorded.inp", "--allow-overflow", LD_LIBRARY_PATH=str(self.place),
                      VELM_SESSION=str(self.directory / f"{model}.library.jsonl"))
        self.assertEqual(expected, self.read("recorded.inp"))
        file_name = 1  # the line that has the output's temporary name
        ours, theirs = self.lines(f"{model}.jsonl"), self.lines(f"{model}.library.jsonl")
        self.assertIn("GFILENAME", ours.pop(file_name))
        self.assertIn("GFILENAME", theirs.pop(file_name))
        self.assertEqual(ours, theirs)

    def test_every_way_leads_to_the_same_file(self):
        self.place = self.install_recorder()
        for sql in GOLDEN_MODELS:
            with self.subTest(sql.stem):
                self.make_golden_model(sql, sql.stem)
                self.check_every_way(sql.stem, sql.with_suffix(".inp").read_bytes())


class RandomHosts(SessionCase):
    @unittest.skipIf(b"__asan_init" in PLUG_IN.read_bytes(), "Python itself would have to be built with the sanitizers")
    def test_recorded_hosts_replay(self):
        """Exports of one process in one session, by hosts that answer anything: infinities, texts of NULs and what was
        left in a field, counts below 0, answers that change, indices that are written into."""
        place = self.install_recorder()
        (place / PLUG_IN.name).write_bytes(PLUG_IN.read_bytes())
        done = subprocess.run([sys.executable, "-B", BESIDE / "record_random_hosts.py", place, self.directory,
                               str(RANDOM_HOSTS)], capture_output=True, text=True, timeout=300,
                              env=self.environment(VELM_SESSION=str(self.directory / "random.jsonl")))
        self.assertEqual((0, ""), (done.returncode, done.stderr), done.stdout)
        for number in range(1, RANDOM_HOSTS + 1):
            with self.subTest(host=number):
                expected = self.read(f"expected-{number}.inp")
                error = self.run_velm("replay", "random.jsonl", "out.inp", "--export", str(number))
                self.assertEqual(expected, self.read("out.inp"))
                self.assertEqual(number < RANDOM_HOSTS, f"--export {number + 1} replays the next" in error)
                code, _, error = self.velm("session-to-model", "random.jsonl", f"{number}.db", "--export", str(number))
                if number % 2:
                    self.assertEqual((0, f"velm: {number}.db: the model of random.jsonl\n"), (code, error))
                    self.run_velm("export", f"{number}.db", "out.inp", "--allow-overflow")
                    self.assertEqual(expected, self.read("out.inp"))
                else:
                    self.assertIn(code, (1, 4), error)
                    self.assertNotIn(f"{number}.db", self.files())


class Recording(SessionCase):
    def setUp(self):
        super().setUp()
        self.make_model()

    def test_a_killed_process_leaves_every_exchange(self):
        running = subprocess.Popen([VELM, "export", "model.db", "out.inp", "--plugin", FAILING_PLUG_IN, "--record",
                                    "session.jsonl"], cwd=self.directory, env=self.environment(FAILURE="waits"))
        self.addCleanup(running.wait)
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:  # it asks the file name, writes the file, then waits
            with contextlib.suppress(FileNotFoundError):
                if b"GFILENAME" in self.read("session.jsonl"):
                    break
            time.sleep(0.01)
        running.send_signal(signal.SIGKILL)
        running.wait()
        lines = self.read("session.jsonl").decode()
        self.assertTrue(lines.endswith("}\n"), lines)
        self.assertEqual(["velm_session", "exchange"], [next(iter(json.loads(line))) for line in lines.splitlines()])
        error = self.run_velm("replay", "session.jsonl", "out.inp", code=2)
        self.assertIn("velm: session.jsonl, line 3, column 1: the recording breaks off; the plug-in asked ", error)

    def test_killed_at_work_it_loses_at_most_the_exchange_under_way(self):
        self.assertEqual(0, self.velm("example", "estuary.db")[0])
        for reached in (1, 1000, 3000):
            with contextlib.suppress(FileNotFoundError):
                (self.directory / "session.jsonl").unlink()
            running = subprocess.Popen([VELM, "export", "estuary.db", "out.inp", "--quiet", "--record", "session.jsonl"],
                                       cwd=self.directory, env=self.environment())
            session = b""
            while running.poll() is None and f'"exchange":{reached},'.encode() not in session:
                with contextlib.suppress(FileNotFoundError):
                    session = self.read("session.jsonl")
            running.kill()
            running.wait()
            whole = self.read("session.jsonl").rpartition(b"\n")[0]
            numbers = [json.loads(line)["exchange"] for line in whole.splitlines()[1:] if not line.startswith(b'{"end"')]
            self.assertEqual(list(range(1, len(numbers) + 1)), numbers)
            self.assertGreaterEqual(len(numbers), reached - 1)

    def test_a_failed_export_keeps_its_session(self):
        self.run_velm("export", "model.db", "out.inp", "--plugin", FAILING_PLUG_IN, "--record", "session.jsonl", code=4,
                      FAILURE="no completion")
        self.assertEqual('{"end":2}', self.lines("session.jsonl")[-1])
        self.assertIn("not to its completion", self.run_velm("session-to-model", "session.jsonl", "taken.db", code=1))

    def test_each_process_has_a_session_of_its_own(self):
        environment = {"LD_LIBRARY_PATH": str(self.install_recorder())}
        for _ in range(3):
            self.run_velm("export", "model.db", "out.inp", **environment)
        sessions = sorted(path.name for path in (self.directory / "recorder").glob("*.jsonl"))
        self.assertEqual(["session-2.jsonl", "session-3.jsonl", "session.jsonl"], sessions)

    def test_the_recorder_says_what_it_lacks(self):
        place = self.install_recorder()
        error = self.run_velm("export", "model.db", "out.inp", LD_LIBRARY_PATH=str(place),
                              VELM_SESSION=str(self.directory / "missing" / "session.jsonl"))
        self.assertIn("prevelmwdll recorder: cannot create ", error)
        self.assertIn("nothing is recorded, name another file in VELM_SESSION", error)
        next(place.glob("*_host*")).unlink()
        error = self.run_velm("export", "model.db", "out.inp", code=4, LD_LIBRARY_PATH=str(place))
        self.assertIn("; requests stay unanswered and nothing is recorded", error)

    def test_an_existing_file_is_no_place_for_a_session(self):
        self.write("session.jsonl", "kept")
        for name, said in (("session.jsonl", "session.jsonl exists and is left as it is; give a name that is not taken"),
                           ("out.inp", "OUTPUT and SESSION are the same file, out.inp; one would replace the other"),
                           ("-", "SESSION cannot be '-'")):
            self.assertIn(said, self.run_velm("export", "model.db", "out.inp", "--record", name, code=2))
        self.assertEqual(b"kept", self.read("session.jsonl"))
        self.assertEqual(["model.db", "session.jsonl"], self.files())


class AnotherHost(SessionCase):
    def setUp(self):
        super().setUp()
        self.make_model()

    def record(self, *more, code=0, model="model.db"):
        return self.run_velm("record", MODEL_HOST, "session.jsonl", *more, code=code, HOST_MODEL=model,
                             HOST_OUTPUT="host.inp")

    def test_its_model_is_taken_out(self):
        self.run_velm("export", "model.db", "out.inp", "--record", "own.jsonl")
        self.assertRegex(self.record(), r"^velm: session.jsonl: \d+ requests\n$")
        self.assertEqual(self.read("out.inp"), self.read("host.inp"))
        self.assertEqual(self.lines("own.jsonl")[2:], self.lines("session.jsonl")[2:])
        self.run_velm("session-to-model", "session.jsonl", "taken.db")
        self.run_velm("export", "taken.db", "taken.inp")
        self.assertEqual(self.read("out.inp"), self.read("taken.inp"))

    def test_what_cannot_be_recorded(self):
        self.assertIn("model.db cannot be used as host library: ", self.run_velm("record", "model.db", "s.jsonl", code=2))
        self.assertEqual(["model.db"], self.files())
        self.assertIn(" is no host of its own", self.run_velm("record", HOST_LIBRARY, "own.jsonl", code=4))
        self.record("--quiet")
        self.assertIn("session.jsonl exists and is left as it is", self.record(code=2))
        (self.directory / "session.jsonl").unlink()
        (self.directory / "host.inp").unlink()
        (self.directory / "host.inp").mkdir()
        self.assertIn("the plug-in did not announce completion; what it asked is in session.jsonl", self.record(code=4))


class Replaying(SessionCase):
    def setUp(self):
        super().setUp()
        self.make_model()
        self.run_velm("export", "model.db", "out.inp", "--record", "session.jsonl")
        self.write("out.inp", "kept")

    def test_a_departure_ends_the_replay(self):
        number = self.change("session.jsonl", "GVOLUME", '"in":[2]', '"in":[3]', which=1)
        self.assertEqual(f"velm: changed.jsonl, exchange {number} (line {number + 1}): expected GVOLUME(segment 3), the "
                         "plug-in asked GVOLUME(segment 2); out.inp is as it was\n",
                         self.run_velm("replay", "changed.jsonl", "out.inp", code=1))
        self.assertEqual(b"kept", self.read("out.inp"))
        self.assertEqual(["changed.jsonl", "model.db", "out.inp", "session.jsonl"], self.files())

    def test_an_answer_of_endless_items_ends_the_replay(self):
        """The plug-in would go on asking for two thousand million segments."""
        self.change("session.jsonl", "GNUMSEG", '"out":[3]', '"out":[2147483647]')
        self.assertIn("expected GBOTSEG(segment 1), the plug-in asked GSEGNAME(segment 4)",
                      self.run_velm("replay", "changed.jsonl", "out.inp", code=1))

    def test_what_cannot_be_replayed(self):
        whole = self.read("session.jsonl")
        self.write("empty.jsonl", "")
        (self.directory / "cut.jsonl").write_bytes(whole[:5000])
        line, column = whole[:5000].count(b"\n") + 1, 5000 - whole[:5000].rfind(b"\n")
        self.change("session.jsonl", "GNUMSEG", '"out":[3]', '"out":["3"]')
        for session, more, said in (
                ("cut.jsonl", [], f"velm: cut.jsonl, line {line}, column {column}: the recording breaks off; the plug-in "
                                  "asked "),
                ("changed.jsonl", [], '"out": expected an integer of 32 bits, found "3"; out.inp is as it was'),
                ("changed.jsonl", ["--export", "2"], '"out": expected an integer of 32 bits, found "3"'),
                ("empty.jsonl", [], "line 1, column 1: this is no session: it has no complete first line"),
                ("model.db", [], "line 1, column 1: this is no session"),
                ("none.jsonl", [], "none.jsonl does not exist"),
                ("session.jsonl", ["--export", "2"], "session.jsonl has no export 2, only 1"),
                ("session.jsonl", ["--export", "0"], "--export"),
                ("out.inp", [], "OUTPUT and SESSION are the same file")):
            with self.subTest(session + " ".join(more)):
                self.assertIn(said, self.run_velm("replay", session, "out.inp", *more, code=2))
                self.assertEqual(b"kept", self.read("out.inp"))


class SessionToModel(SessionCase):
    def setUp(self):
        super().setUp()
        self.make_model()
        self.run_velm("export", "model.db", "out.inp", "--record", "session.jsonl")

    def test_answers_that_no_model_gives(self):
        """The key of an exchange, which of them, what is changed, what is said."""
        for key, which, old, new, said in (
                ("GNUMSEG", 0, "[3]", "[4]", "GNUMSEG: the number of segments was answered with 4, a model of the "
                                             "session's other answers has 3"),
                ("GNUMSYS", 0, "[2]", "[-1]", "the number of systems was answered with -1, "),
                ("GBQ", 0, "[1,1,1]", "[1,1,9]", "GBQ(flow field 1, flow function 1, flow path 9): flow path 9 is asked "
                                                 "for where 2 would be the next"),
                ("GBQ", 0, "[1,1,1]", "[1,1,-9]", "flow path -9 is asked for where 2 would be the next"),
                ("GTFISUSED", 0, "[1]", "[0]", "the used flag was answered with 0, a model of the session's other "
                                               "answers has 1"),
                ("GTFISUSED", 0, "[5,1]", "[6,1]", "no type of that ISC number has been named"),
                ("GFLOWFUNCDESC", -1, "Brook", "Crook", 'was answered with "Crook '),
                ("GNBFP", 0, "[2]", "[1]", "the number of time pairs was answered with 1, "),
                ("GALLBOUNDFUNC", 0, '"8.5",', "", "table boundary_value, system 1, boundary 1"),
                ("GIBC", 0, "[1]}", "[9]}", "table boundary, system 1, boundary 1"),
                ("GVOLUME", 0, '"0"', '"inf"', "table segment, segment 1, column volume: 'inf' is not finite"),
                ("GTFISC", 3, "[5]", "[7]", "")):
            with self.subTest(key + new):
                self.change("session.jsonl", key, old, new, which)
                code, _, error = self.velm("session-to-model", "changed.jsonl", "taken.db")
                self.assertIn(said, error)
                self.assertIn(code, (1, 4))
                self.assertNotIn("taken.db", self.files())

    def test_answers_that_make_no_difference(self):
        """Flags above 1, zeros with a sign, NULs in a text that blanks follow."""
        lines = self.read("session.jsonl")
        for old, new in ((b'"GPARAMISUSED","form":3,"lengths":[13],"in":[2,1],"out":[1]',
                          b'"GPARAMISUSED","form":3,"lengths":[13],"in":[2,1],"out":[7]'),
                         (b'"0"', b'"-0"'),
                         (b'"text":"River' + 5 * b" ", b'"text":"River' + 5 * b"\\u0000")):
            self.assertIn(old, lines)
            lines = lines.replace(old, new)
        (self.directory / "changed.jsonl").write_bytes(lines)
        self.run_velm("replay", "changed.jsonl", "replayed.inp")
        self.run_velm("session-to-model", "changed.jsonl", "taken.db")
        self.run_velm("export", "taken.db", "taken.inp")
        self.assertEqual(self.read("replayed.inp"), self.read("taken.inp"))
        self.assertIn(b"River\0\0\0\0\0", self.read("taken.inp"))

    def test_an_export_that_is_not_whole(self):
        (self.directory / "cut.jsonl").write_bytes(self.read("session.jsonl")[:-200])
        self.assertIn("cut.jsonl holds export 1 not to its completion, so that parts of its model are missing",
                      self.run_velm("session-to-model", "cut.jsonl", "taken.db", code=1))
        self.assertIn("has no export 2, only 1",
                      self.run_velm("session-to-model", "session.jsonl", "taken.db", "--export", "2", code=2))
        self.write("taken.db", "kept")
        self.assertIn("taken.db exists", self.run_velm("session-to-model", "session.jsonl", "taken.db", code=2))
        self.assertEqual(b"kept", self.read("taken.db"))


if __name__ == "__main__":
    unittest.main()
