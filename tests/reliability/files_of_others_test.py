"""Files that velm did not make, or that somebody else uses, are never removed, given away, read by mistake or played
back into a new database."""

import contextlib
import os
import pathlib
import resource
import shutil
import socket
import sqlite3
import subprocess
import unittest

from tool_case import FAILING_PLUG_IN, ToolCase, VELM

NOBODY = 65534
is_root = os.geteuid() == 0
UNNAMED = [{}] + ([{"LD_PRELOAD": os.environ["FAULTY_SYSTEM"], "NO_UNNAMED": "1"}] if "FAULTY_SYSTEM" in os.environ else [])


def access_list(*entries):
    """An access list as the system keeps it; an entry is (kind, permissions, number)."""
    return b"\2\0\0\0" + b"".join(kind.to_bytes(2, "little") + bits.to_bytes(2, "little") + number.to_bytes(4, "little")
                                  for kind, bits, number in entries)


NO_NUMBER = 0xFFFFFFFF
# the owner reads and writes, another user too, the group nothing; the mask makes the mode 0660
WIDE_MASK = access_list((1, 6, NO_NUMBER), (2, 6, 1), (4, 0, NO_NUMBER), (16, 6, NO_NUMBER), (32, 0, NO_NUMBER))
# a user may do nothing, others read, the group too, for its entry has more than the mask
SHUT_OUT = access_list((1, 6, NO_NUMBER), (2, 0, 1), (4, 6, NO_NUMBER), (16, 4, NO_NUMBER), (32, 4, NO_NUMBER))


class FilesOfOthers(ToolCase):
    def setUp(self):
        super().setUp()
        self.make_model()
        self.assertEqual(self.velm("export", "model.db", "model.inp")[0], 0)
        self.inp = (self.directory / "model.inp").read_bytes()

    def in_folder(self):
        return {path.name: path.read_bytes() for path in self.directory.iterdir() if path.is_file()}

    def test_a_file_is_no_rubbish_whatever_its_name(self):
        for name in ["velm-abcdef", "velm-123456", ".out.inp.velm-abcdef", ".new.db.velm-abcdef", ".velm-0123456789ABCDEF"]:
            self.write(name, "mine")
        shutil.copy(self.directory / "model.db", self.directory / "velm-my.db")
        shutil.copy(self.directory / "model.inp", self.directory / "velm-m.inp")
        here = {"TMPDIR": str(self.directory)}
        before = self.in_folder()
        for way in UNNAMED:
            for arguments in [["diff", "velm-my.db", "velm-m.inp"], ["check", "velm-my.db"], ["export", "model.db", "out.inp"],
                              ["import", "model.inp", "new.db"], ["new", "empty.db"]]:
                with self.subTest(arguments, **way):
                    self.assertEqual(self.velm(*arguments, **here, **way)[0], 0)
                    for name in ["out.inp", "new.db", "empty.db"]:
                        (self.directory / name).unlink(missing_ok=True)
                    self.assertEqual(self.in_folder(), before)
                    self.assertEqual([path for path in self.directory.iterdir() if path.is_dir()], [])

    CREATING = [["new"], ["example"], ["import", "model.inp"], ["import", "model.inp", "--force"],
                ["session-to-model", "session.jsonl"]]

    def test_no_journal_is_played_into_a_new_database(self):
        self.assertEqual(self.velm("export", "model.db", "other.inp", "--record", "session.jsonl")[0], 0)
        (self.directory / "folder").mkdir()
        for arguments in self.CREATING:
            for ending in ["-journal", "-wal"]:
                for name, place in [("fresh.db", "fresh.db"), ("link.db", "folder/place.db")]:
                    if name == "link.db" and "--force" not in arguments:
                        continue # a link takes the name
                    with self.subTest(arguments, ending=ending, name=name), contextlib.ExitStack() as removed:
                        if name == "link.db":
                            os.symlink(place, self.directory / name)
                            removed.callback(os.unlink, self.directory / name)
                        self.write(place + ending, "somebody else's")
                        removed.callback(os.unlink, self.directory / (place + ending))
                        code, _, message = self.velm(*arguments, name)
                        self.assertEqual(code, 2, message)
                        self.assertIn(f"there is a file {self.directory.resolve() / place}{ending} ", message)
                        self.assertFalse((self.directory / place).exists())

    def test_a_journal_that_comes_while_an_import_runs(self):
        with contextlib.closing(sqlite3.connect(self.directory / "model.db")) as database, database:
            database.executemany("INSERT INTO flow_value VALUES (1, 2, ?, ?, 1)", ((pair, pair) for pair in range(1, 200_000)))
        self.assertEqual(self.velm("export", "model.db", "long.inp", "--allow-overflow")[0], 0)
        before = (self.directory / "model.db").read_bytes()
        process = subprocess.Popen([VELM, "import", "long.inp", "model.db", "--force"], cwd=self.directory,
                                   stderr=subprocess.PIPE, text=True)

        def writes(): # into a file without a name
            for file in pathlib.Path(f"/proc/{process.pid}/fd").iterdir():
                with contextlib.suppress(FileNotFoundError): # closed meanwhile
                    if "deleted" in os.readlink(file):
                        return True
            return False

        while not writes():
            self.assertIsNone(process.poll())
        self.write("model.db-journal", "of a writer that was killed")
        message = process.communicate(timeout=120)[1]
        self.assertEqual(process.returncode, 2, message)
        self.assertIn("model.db-journal that would be played back", message)
        self.assertEqual((self.directory / "model.db").read_bytes(), before)

    def test_a_database_in_use_is_not_replaced(self):
        for begin in ["BEGIN EXCLUSIVE", "BEGIN; SELECT * FROM model"]:
            with self.subTest(begin), contextlib.closing(sqlite3.connect(self.directory / "model.db")) as database:
                before = os.stat(self.directory / "model.db").st_ino
                for statement in begin.split(";"):
                    database.execute(statement).fetchone()
                code, _, message = self.velm("import", "model.inp", "model.db", "--force")
                self.assertEqual((code, os.stat(self.directory / "model.db").st_ino), (2, before), message)
                self.assertIn("velm: model.db is in use: database is locked; close the program", message)

    def test_a_log_that_is_not_the_databases_own(self):
        shutil.copy(self.directory / "model.db", self.directory / "logged.db")
        with contextlib.closing(sqlite3.connect(self.directory / "logged.db")) as database:
            database.execute("PRAGMA journal_mode = WAL")
            database.execute("UPDATE system SET name = 'from the log'")
            database.commit()
            shutil.copy(self.directory / "logged.db-wal", self.directory / "model.db-wal")
        os.symlink("model.db", self.directory / "link.db")
        before = self.files()
        for name in ["model.db", "link.db"]:
            code, _, message = self.velm("export", name, "out.inp")
            self.assertEqual((code, self.files()), (3, before), message)
            self.assertIn(f"{self.directory.resolve()}/model.db-wal, that is not its own", message)

    # access list and attributes; the mode that the new file has when they cannot be kept
    def test_a_replaced_file_keeps_its_access(self):
        out = self.directory / "out.inp"
        not_kept = {"LD_PRELOAD": os.environ.get("FAULTY_SYSTEM", ""), "FAULT_CALL": "fsetxattr", "FAULT_NUMBER": "1",
                    "FAULT_ERROR": "95", "FAULT_AGAIN": "1"}
        for entries, fault, mode in [(WIDE_MASK, {}, 0o660), (WIDE_MASK, not_kept, 0o600), (SHUT_OUT, not_kept, 0o640)]:
            if fault.get("LD_PRELOAD") == "":
                continue
            self.write("out.inp", "old")
            out.chmod(0o604)
            try:
                os.setxattr(out, "user.note", b"mine")
                os.setxattr(out, "system.posix_acl_access", entries)
            except OSError as error:
                self.skipTest(f"no access lists here: {error}")
            self.assertEqual(self.velm("export", "model.db", "out.inp", **fault)[0], 0)
            self.assertEqual(out.read_bytes(), self.inp)
            self.assertEqual(out.stat().st_mode & 0o7777, mode)
            if not fault:
                self.assertEqual(os.getxattr(out, "user.note"), b"mine")
                self.assertEqual(os.getxattr(out, "system.posix_acl_access"), entries)
            out.unlink()

    def test_what_is_no_file_is_refused_at_once(self):
        os.mkfifo(self.directory / "pipe")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(str(self.directory / "socket"))
        for name in ["pipe", "socket", "/dev/zero", ".", "n" * 300, "missing/file"]:
            for arguments in [["import", name, "new.db"], ["replay", name, "out.inp"], ["session-to-model", name, "new.db"],
                              ["info", name], ["export", name, "out.inp"], ["check", name], ["diff", name, "model.db"],
                              ["diff", "model.inp", name], ["export", "model.db", "out.inp", "--sql", name],
                              ["record", name, "s.jsonl"], ["report", "model.db", "page.html", "--against", name]]:
                with self.subTest(arguments):
                    before = self.files()
                    code, _, message = self.velm(*arguments)
                    self.assertIn(code, (2, 3), message)
                    self.assertIn(name, message)
                    self.assertNotIn("filesystem error", message)
                    self.assertEqual(self.files(), before)

    @unittest.skipUnless("FAULTY_SYSTEM" in os.environ, "takes calls of the system that can be made to fail")
    def test_a_folder_put_in_the_place_of_ours(self):
        self.write("out.inp", "old")
        for put in ["with a file", "a link", *(["another user's"] if is_root else [])]:
            for way in [{}, {"NO_UNNAMED": "1"}]:
                with self.subTest(put, **way):
                    (self.directory / "folder").mkdir()
                    if put == "with a file":
                        self.write("folder/content", "mine")
                    elif put == "a link":
                        os.symlink("folder", self.directory / "link")
                    else:
                        os.chown(self.directory / "folder", NOBODY, NOBODY)
                    code, _, message = self.velm("export", "model.db", "out.inp", LD_PRELOAD=os.environ["FAULTY_SYSTEM"],
                                                 EXCHANGED="link" if put == "a link" else "folder", **way)
                    self.assertIn(code, (2, 4), message)
                    self.assertEqual((self.directory / "out.inp").read_text(), "old")
                    self.assertEqual([file.read_text() for file in self.directory.glob("*/content")],
                                     ["mine"] if put == "with a file" else [])
                    for rest in [*self.directory.glob(".velm-*"), *self.directory.glob("folder"), *self.directory.glob("link")]:
                        rest.unlink() if rest.is_symlink() else shutil.rmtree(rest)

    def test_a_page_is_not_read_from_a_pipe(self):
        os.mkfifo(self.directory / "model.html")
        self.assertIn("velm: model.html is a device, a pipe", self.velm("report", "model.db")[2])

    def test_no_file_takes_the_place_of_a_closed_stream(self):
        written = set()
        for closed in [(), (2,), (1, 2), (0, 1, 2)]: # a plug-in talks on standard error while the output is open
            code = self.velm("export", "model.db", "out.inp", "--quiet", "--plugin", FAILING_PLUG_IN, FAILURE="talks",
                             preexec_fn=lambda: [os.close(stream) for stream in closed])[0]
            self.assertEqual(code, 0)
            written.add((self.directory / "out.inp").read_bytes())
        self.assertEqual(len(written), 1)

    def test_places_where_no_file_can_be_made(self):
        for name, reason in [("n" * 300, "n cannot be made: File name too long; give another name"),
                             ("n" * 250, None), ("missing/name", "the folder missing does not exist; make it, or name another"),
                             ("model.inp/name", "the folder model.inp does not exist; make it, or name another")]:
            for arguments in [["export", "model.db", name], ["export", "model.db", "out.inp", "--panel", name],
                              ["export", "model.db", "out.inp", "--record", name], ["import", "model.inp", name],
                              ["new", name], ["example", name]]:
                if reason is None and arguments[0] not in ("import", "new", "example"):
                    continue # but a database needs room for its journal's name
                with self.subTest(arguments):
                    before = self.files()
                    code, _, message = self.velm(*arguments)
                    self.assertEqual((code, self.files()), (2, before), message)
                    self.assertTrue(reason is None or message.startswith("velm: ") and message.endswith(reason + "\n"), message)
        self.assertEqual(self.velm("export", "model.db", "model.inp", "--record", "session.jsonl")[0], 0)
        before = self.files()
        recording = ["export", "model.db", "out.inp", "--record", "s.jsonl"]
        for size, arguments, reason in [(0, recording, "velm: cannot write s.jsonl: "),
                                        (5000, recording, "velm: the export failed, out.inp is not written: "),
                                        (5000, ["replay", "session.jsonl", "out.inp"], "velm: the replay failed, the plug-in said: ")]:
            with self.subTest(arguments, size=size):
                code, _, message = self.velm(*arguments, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size,) * 2))
                self.assertEqual((code, self.files()), (4, before), message)
                self.assertIn(reason, message)
                self.assertIn("File too large", message)
        for name in ["out.inp", "model.inp", "session"]:
            arguments = ["record", os.environ["HOST_LIBRARY"]] if name == "session" else ["export", "model.db"]
            code, _, message = self.velm(*arguments, name, preexec_fn=lambda: os.umask(0o777))
            self.assertEqual(code, 2)
            self.assertIn(f"velm: {name} cannot be made: the umask takes from you", message)
        self.assertEqual((self.directory / "model.inp").read_bytes(), self.inp)

    def test_a_model_makes_no_room_for_another_kind_of_file(self):
        shutil.copy(self.directory / "model.db", self.directory / "other.db")
        before = self.files()
        for arguments in [["export", "model.db", "other.db"], ["export", "model.db", "out.inp", "--panel", "model.inp"],
                          ["report", "model.db", "model.inp"], ["report", "model.inp", "other.db"]]:
            with self.subTest(arguments):
                code, _, message = self.velm(*arguments)
                self.assertEqual((code, self.files()), (2, before), message)
                self.assertIn("is not replaced by another kind of file", message)

    def test_two_names_that_will_be_one_file(self):
        (self.directory / "folder").mkdir()
        os.symlink("folder", self.directory / "same")
        os.symlink("folder/out.inp", self.directory / "link")
        os.symlink("link", self.directory / "chain")
        before = self.files()
        for one, other in [("folder/out.inp", "same/out.inp"), ("folder/out.inp", "link"), ("chain", "same/../same/out.inp")]:
            for arguments in [[one, "--panel", other], [one, "--record", other], ["out.inp", "--panel", one, "--record", other]]:
                with self.subTest(arguments):
                    code, _, message = self.velm("export", "model.db", *arguments)
                    self.assertEqual((code, self.files(), os.listdir(self.directory / "folder")), (2, before, []), message)


@unittest.skipUnless(is_root, "takes the superuser, who exports where another user may write")
class TwoUsers(ToolCase):
    """Root exports into a folder of nobody's, who meanwhile puts links in the place of whatever velm makes there."""

    ATTACK = """
import os, sys
os.setgroups([]); os.setgid({user}); os.setuid({user})
os.chdir(sys.argv[1])
print('ready', flush=True)
while os.getppid() == {parent}:
    for name in os.listdir('.'):
        if name not in ('out.inp', 'new.db') and not name.startswith('away'):
            try:
                os.rename(name, 'away%d' % os.getpid())
            except OSError:
                pass
            for target, link in (('../victim', name), ('../folder', name)):
                try:
                    os.symlink(target, link)
                    break
                except OSError:
                    pass
            try:
                os.unlink('away%d' % os.getpid())
            except OSError:
                pass
"""

    def test_nothing_of_roots_is_overwritten_or_given_away(self):
        self.make_model()
        self.assertEqual(self.velm("export", "model.db", "model.inp")[0], 0)
        self.directory.chmod(0o755)
        theirs = self.directory / "theirs"
        theirs.mkdir()
        os.chown(theirs, NOBODY, NOBODY)
        self.write("victim", "root's own")
        (self.directory / "victim").chmod(0o600)
        (self.directory / "folder").mkdir(0o700)
        self.write("folder/content", "root's own")
        attack = subprocess.Popen(["python3", "-c", self.ATTACK.format(user=NOBODY, parent=os.getpid()), str(theirs)],
                                  stdout=subprocess.PIPE)
        self.addCleanup(attack.wait)
        self.addCleanup(attack.kill)
        self.addCleanup(attack.stdout.close)
        self.assertEqual(attack.stdout.readline(), b"ready\n")
        for way in UNNAMED:
            for attempt in range(15):
                (theirs / "out.inp").write_text("nobody's")
                os.chown(theirs / "out.inp", NOBODY, NOBODY)
                (theirs / "out.inp").chmod(0o666)
                self.velm("export", "model.db", "theirs/out.inp", "--quiet", **way)
                self.velm("import", "model.inp", "theirs/new.db", "--force", "--quiet", **way)
                for name in ["victim", "folder/content"]:
                    status = (self.directory / name).stat()
                    self.assertEqual((status.st_uid, (self.directory / name).read_text()), (0, "root's own"), attempt)
                self.assertEqual((self.directory / "victim").stat().st_mode & 0o7777, 0o600)

    def test_links_of_others_lead_to_their_own_folders_only(self):
        self.make_model()
        for folder, owner in [("theirs", NOBODY), ("theirs/own", NOBODY), ("mine", 0)]:
            (self.directory / folder).mkdir()
            os.chown(self.directory / folder, owner, owner)
        for owner, target, code in [(NOBODY, "mine/new", 2), (NOBODY, "mine/old", 2), (NOBODY, "theirs/own/new", 0),
                                    (0, "mine/old", 0)]:
            with self.subTest(target, owner=owner):
                self.write("mine/old", "root's own")
                link = self.directory / "theirs/link"
                os.symlink(self.directory / target, link)
                os.chown(link, owner, owner, follow_symlinks=False)
                before = self.files()
                done = self.velm("export", "model.db", "theirs/link", "--quiet")
                self.assertEqual(done[0], code, done)
                self.assertEqual((self.directory / target).is_file(), code == 0 or target == "mine/old")
                self.assertEqual((self.directory / "mine/old").stat().st_size > 100, (owner, code) == (0, 0))
                self.assertEqual(self.files(), before)
                link.unlink()

    def test_rights_never_pass_to_another_owner(self):
        self.make_model()
        self.directory.chmod(0o777)
        for part in [VELM, VELM.replace("/velm", "/libvelm_export.so"), os.environ["HOST_LIBRARY"]]:
            shutil.copy(part, self.directory) # nobody may not see where this was built
        for owner, group, mode, kept in [(0, 0, 0o6777, 0o777), (0, 0, 0o4672, 0o622), (NOBODY, NOBODY, 0o6750, 0o6750),
                                         (NOBODY, 0, 0o2754, 0o744), (NOBODY, 0, 0o604, 0o600)]: # under an odd umask
            with self.subTest(mode=oct(mode), owner=owner):
                out = self.directory / "out.inp"
                self.write("out.inp", "old")
                os.chown(out, owner, group)
                out.chmod(mode)
                done = subprocess.run([self.directory / "velm", "export", "model.db", "out.inp"], cwd=self.directory, umask=0o177,
                                      user=NOBODY, group=NOBODY, extra_groups=[], capture_output=True, text=True, timeout=120)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual((out.stat().st_uid, oct(out.stat().st_mode & 0o7777)), (NOBODY, oct(kept)))
                out.unlink()


if __name__ == "__main__":
    unittest.main()
