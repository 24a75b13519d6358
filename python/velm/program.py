"""The velm executable: found, asked for its version once, run."""

import functools
import json
import os
import re
import shutil
import subprocess
from typing import Any, Tuple

from velm.errors import ModelError, ProgramError

VERSION = "1.1.0"
FINDINGS, MODEL_UNREADABLE = 1, 3  # exit codes


@functools.lru_cache(maxsize=None)
def _checked(path: str) -> str:
    try:
        said = subprocess.run([path, "--version"], capture_output=True, text=True, check=False).stdout
    except OSError as error:
        raise ProgramError(f"{path} cannot be run: {error.strerror}; set VELM to the path of velm") from error
    first, second = (int(number) for number in VERSION.split(".")[:2])
    found = re.match(r"velm (\d+)\.(\d+)", said)
    if not found or int(found[1]) != first or int(found[2]) < second:
        raise ProgramError(f"{path} says that it is {said.strip()!r}, but the package needs velm {first}.{second} or a "
                           f"later {first}; install both of one release, or set VELM to another velm")
    return path


def executable() -> str:
    """The path of velm: the environment's VELM, else on the PATH. Raises ProgramError when none is there that fits."""
    path = os.environ.get("VELM") or shutil.which("velm")
    if path is None:
        raise ProgramError("there is no velm on the PATH; install velm-export, or set VELM to the path of velm")
    return _checked(path)


def run(*arguments: str, findings: bool = False) -> Tuple[str, str]:
    """Runs velm: its standard output and its messages. With `findings`, exit code 1 is no failure."""
    done = subprocess.run([executable(), *arguments], capture_output=True, text=True, encoding="utf-8", check=False)
    if done.returncode == 0 or (findings and done.returncode == FINDINGS):
        return done.stdout, done.stderr
    said = done.stderr.strip() or f"velm {arguments[0]} ended with exit code {done.returncode}"
    raise (ModelError if done.returncode in (FINDINGS, MODEL_UNREADABLE) else ProgramError)(said)


def run_for_json(*arguments: str) -> Any:
    """What velm prints as JSON; exit code 1, for findings, is no failure."""
    return json.loads(run(*arguments, "--json", findings=True)[0])
