#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes source files one place at a time (constants, comparisons, arithmetic, flags, texts, deleted
statements) and tells which changes the tests of the file's folder let through.

    scripts/mutants.sh [--limit N] [--seed N] [--lines A-B] [--tests PROGRAM[:FILTER],...] FILE...

A changed file is compiled alone. One of the extension's library takes its place in a library of its own,
with which the test program is run; one of another folder is linked before the archives of the test
program, so that the linker takes it in place of the unchanged one. A change counts as killed when a test fails, crashes or runs out
of time. Ends with 1 when a change survives, with 2 when something else is wrong. The same arguments
make the same changes."""

import argparse
import concurrent.futures
import json
import os
import pathlib
import random
import re
import shlex
import signal
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent

# The tests that hold a folder's behaviour: programs, each with a filter.
TESTS = {
    "src/gis": ["test_gis", "test_chain:ZoneTableFiles*"],
    "src/forms": ["test_forms"],
    "src/settings": ["test_settings"],
    "src/modelling": ["test_modelling", "test_chain:RefEt*:Precip*"],
    "src/check": ["test_check", "test_input_files"],
    "src/refet": ["test_refet", "test_chain:RefEt*"],
    "src/crop": ["test_crop", "test_editors:KcEditor*", "test_chain:Crop*:Kc*"],
    "src/precip": ["test_precip", "test_chain:Precip*"],
    "src/irrigation": ["test_irrigation", "test_editors", "test_chain:Irrigation*"],
    "src/shell": ["test_shell", "test_components"],
    "src/platform": ["test_platform", "test_numerics"],
    "src/hosts/components": ["test_components"],
    "src/hosts/cli": ["test_cli"],
}

# A piece of a line that is code, a text or a comment.
PIECES = re.compile(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'|//.*|/\*.*?\*/')

SWAPS = [
    (r"(?<=\s)<=(?=\s)", "<"), (r"(?<=\s)<(?=\s)", "<="),
    (r"(?<=\s)>=(?=\s)", ">"), (r"(?<=\s)>(?=\s)", ">="),
    (r"(?<=\s)==(?=\s)", "!="), (r"(?<=\s)!=(?=\s)", "=="),
    (r"(?<=\s)&&(?=\s)", "||"), (r"(?<=\s)\|\|(?=\s)", "&&"),
    (r"(?<=\s)\+(?=\s)", "-"), (r"(?<=\s)-(?=\s)", "+"),
    (r"(?<=\s)\*(?=\s)", "/"), (r"(?<=\s)/(?=\s)", "*"), (r"(?<=\s)%(?=\s)", "*"),
    (r"(?<=\s)\+=(?=\s)", "-="), (r"(?<=\s)-=(?=\s)", "+="),
    (r"(?<=\s)\*=(?=\s)", "/="), (r"(?<=\s)/=(?=\s)", "*="),
    (r"!(?=[A-Za-z_(])", ""),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"\bmin(?=\()", "max"), (r"\bmax(?=\()", "min"),
]
NUMBER = re.compile(r"(?<![\w.])(\d+(?:'\d{3})*(?:\.\d*)?|\.\d+)([eE][-+]?\d+)?([uUlLfF]*)(?![\w.])")
STATEMENT = re.compile(r"^\s*(?!return\b|using\b|throw\b|break\b|continue\b|case\b|default\b|delete\b"
                       r"|auto\b|const\b|constexpr\b|static\b|typedef\b|friend\b|template\b|struct\b"
                       r"|class\b|enum\b|namespace\b|goto\b|if\b|for\b|while\b|do\b|else\b)"
                       r"(?:\+\+|--)?[A-Za-z_][\w:.>\[\]()*-]*\s*(?:[-+*/|&]?=[^=]|\(|\+\+|--|;).*;\s*$")


class Mutant:
    def __init__(self, file, line, start, end, new):
        self.file, self.line, self.start, self.end, self.new = file, line, start, end, new

    def changed(self, lines):
        text = lines[self.line]
        return lines[:self.line] + [text[:self.start] + self.new + text[self.end:]] + \
            lines[self.line + 1:]

    def told(self, lines):
        old = lines[self.line][self.start:self.end].strip()
        return f"{self.file}:{self.line + 1}: {old} -> {self.new.strip() or '(deleted)'}"


def next_number(match):
    """The number with its last digit one higher: the smallest change that its writing shows."""
    digits, exponent, suffix = match.group(1), match.group(2) or "", match.group(3)
    plain = digits.replace("'", "")
    if "." not in plain:
        return str(int(plain) + 1) + exponent + suffix
    whole, decimals = plain.split(".")
    places = len(decimals)
    raised = str(int((whole or "0") + decimals) + 1).rjust(places + 1, "0")
    cut = len(raised) - places
    return raised[:cut] + "." + raised[cut:] + exponent + suffix


def mutants_of(file, lines):
    found = []
    in_comment = False
    previous = ""  # line of code
    for number, line in enumerate(lines):
        stripped = line.strip()
        if in_comment or stripped.startswith(("#", "//", "static_assert", "using ", "namespace")):
            in_comment = in_comment and "*/" not in line
            continue
        if "/*" in line and "*/" not in line:
            in_comment = True
            continue
        code = line
        for piece in PIECES.finditer(line):
            if piece.group().startswith('"'):
                found.append(Mutant(file, number, piece.start(), piece.end(),
                                    piece.group()[:-1] + '~"'))
            code = code[:piece.start()] + '"' * len(piece.group()) + code[piece.end():]
        for pattern, new in SWAPS:
            found += [Mutant(file, number, m.start(), m.end(), new) for m in
                      re.finditer(pattern, code)]
        found += [Mutant(file, number, m.start(), m.end(), next_number(m)) for m in
                  NUMBER.finditer(code)]
        if STATEMENT.match(code) and previous.endswith((";", "{", "}", ":")):
            found.append(Mutant(file, number, len(line) - len(line.lstrip()), len(line.rstrip("\n")),
                                ";"))
        previous = code.strip() or previous
    return sorted(found, key=lambda m: (m.line, m.start, m.end))


def fail(text):
    print(f"mutants: {text}", file=sys.stderr)
    sys.exit(2)


def link_command(build, made):
    """The words that link a file of the build, in that folder."""
    listed = subprocess.run(["ninja", "-C", build, "-t", "commands", made],
                            capture_output=True, text=True, check=True).stdout.splitlines()
    link = next(part for line in reversed(listed) for part in line.split(" && ")
                if f"-o {made}" in part)
    return shlex.split(link)


class SharedLibrary:
    """The extension's library, made with another object in place of its own."""

    def __init__(self, build, made):
        self.build = build
        name = f"lib/libvelmora_steps.so.{version(build)}"
        self.words = link_command(build, name)
        self.output = self.words.index(name)
        self.place = self.words.index(made) if made in self.words else None

    def link(self, mutated, folder):
        words = list(self.words)
        words[self.place] = mutated
        words[self.output] = os.path.join(folder, pathlib.Path(words[self.output]).name)
        return subprocess.run(words, cwd=self.build, capture_output=True, text=True)


def version(build):
    for line in (build / "CMakeCache.txt").read_text().splitlines():
        if line.startswith("CMAKE_PROJECT_VERSION:"):
            return line.split("=", 1)[1]
    fail(f"{build} names no version")


class TestProgram:
    """A test program that can be linked with another object in place of the archive's."""

    def __init__(self, build, wanted):
        self.build = build
        self.name, _, self.filter = wanted.partition(":")
        self.words = link_command(build, f"bin/{self.name}")
        self.output = self.words.index(f"bin/{self.name}")
        self.first_archive = next(i for i, word in enumerate(self.words) if word.endswith(".a"))

    def link(self, mutated, program):
        words = list(self.words)
        words[self.output] = program
        words.insert(self.first_archive, mutated)
        return subprocess.run(words, cwd=self.build, capture_output=True, text=True)

    def passes(self, program, folder, seconds):
        words = [program, "--gtest_brief=1", "--gtest_fail_fast"]
        if self.filter:
            words.append(f"--gtest_filter={self.filter}")
        run = subprocess.Popen(words, cwd=folder, env={**os.environ, "TMPDIR": folder, "LD_LIBRARY_PATH": folder},
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               stdin=subprocess.DEVNULL, start_new_session=True)
        try:
            return run.wait(timeout=seconds) == 0
        except subprocess.TimeoutExpired:
            os.killpg(run.pid, signal.SIGKILL)
            run.wait()
            return False


class Laboratory:
    def __init__(self, build, file, programs, seconds):
        self.file, self.programs, self.seconds = file, programs, seconds
        entries = json.loads((build / "compile_commands.json").read_text())
        entry = next((e for e in entries if pathlib.Path(e["file"]) == ROOT / file), None)
        if entry is None:
            fail(f"{file} is compiled by no target of {build}")
        words = shlex.split(entry["command"])
        self.compiler = [w for w in words if pathlib.Path(w).name != "ccache"
                         and not re.match(r"-O\d|-Werror|-g\d?$", w)]
        self.folder = entry["directory"]
        at = self.compiler.index("-o")
        library = SharedLibrary(build, self.compiler[at + 1])
        self.library = library if library.place is not None else None
        del self.compiler[at:at + 2]
        self.compiler = [w for w in self.compiler if w not in ("-c", entry["file"])]

    def outcome(self, lines):
        """"killed", "survived", or "not compiled"."""
        with tempfile.TemporaryDirectory(prefix="velmora-mutant-") as place:
            source = os.path.join(place, pathlib.Path(self.file).name)
            pathlib.Path(source).write_text("".join(lines))
            made = source + ".o"
            compiled = subprocess.run(
                self.compiler + ["-O1", "-w", "-iquote", str((ROOT / self.file).parent), "-o", made,
                                 "-c", source], cwd=self.folder, capture_output=True, text=True)
            if compiled.returncode != 0:
                return "not compiled"
            if self.library:
                linked = self.library.link(made, place)
                if linked.returncode != 0:
                    fail(f"the library cannot be linked with {self.file}:\n{linked.stderr}")
            for test in self.programs:
                program = str(test.build / "bin" / test.name)
                if self.library:
                    if not test.passes(program, place, self.seconds):
                        return "killed"
                    continue
                program = os.path.join(place, test.name)
                linked = test.link(made, program)
                if linked.returncode != 0:
                    fail(f"{test.name} cannot be linked with {self.file}:\n{linked.stderr}")
                if not test.passes(program, place, self.seconds):
                    return "killed"
        return "survived"


def tests_for(file):
    folders = [f for f in TESTS if file.startswith(f + "/")]
    if not folders:
        fail(f"no tests are known for {file}: name them with --tests")
    return TESTS[max(folders, key=len)]


def main():
    parser = argparse.ArgumentParser(prog="mutants.sh", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="+", metavar="FILE", help="sources (.cpp) below src/")
    parser.add_argument("--limit", type=int, help="no more changes than this of a file, drawn")
    parser.add_argument("--seed", type=int, default=1, help="of the draw (default: 1)")
    parser.add_argument("--lines", help="change these lines alone: 10-25")
    parser.add_argument("--tests", help="test programs with filters: test_refet,test_chain:RefEt*")
    parser.add_argument("--timeout", type=float, default=120, help="seconds of a test program")
    parser.add_argument("--preset", default="release", help="build to take (default: release)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="at once")
    parser.add_argument("--list", action="store_true", help="show the changes, try none")
    asked = parser.parse_args()
    build = ROOT / "build" / asked.preset

    chosen = []
    for given in asked.files:
        path = pathlib.Path(given).resolve()
        if not path.is_file() or path.suffix != ".cpp" or ROOT not in path.parents:
            fail(f"{given} is no source (.cpp) of the project")
        file = str(path.relative_to(ROOT))
        lines = path.read_text().splitlines(keepends=True)
        mutants = mutants_of(file, lines)
        if asked.lines:
            first, _, last = asked.lines.partition("-")
            mutants = [m for m in mutants if int(first) <= m.line + 1 <= int(last or first)]
        if asked.limit is not None and len(mutants) > asked.limit:
            drawn = random.Random(f"{asked.seed} {file}").sample(range(len(mutants)), asked.limit)
            mutants = [mutants[i] for i in sorted(drawn)]
        tests = asked.tests.split(",") if asked.tests else tests_for(file)
        chosen.append((file, lines, mutants, tests))
    if asked.list:
        for _, lines, mutants, _ in chosen:
            for mutant in mutants:
                print(mutant.told(lines))
        return 0

    programs = sorted({test.partition(":")[0] for _, _, _, tests in chosen for test in tests})
    subprocess.run([str(ROOT / "scripts/build.sh"), asked.preset, *programs], check=True)
    totals = {"killed": 0, "survived": 0, "not compiled": 0}
    with concurrent.futures.ThreadPoolExecutor(asked.jobs) as pool:
        for file, lines, mutants, tests in chosen:
            laboratory = Laboratory(build, file, [TestProgram(build, t) for t in tests],
                                    asked.timeout)
            if laboratory.outcome(lines) != "survived":
                fail(f"the tests of {file} fail without any change: {', '.join(tests)}")
            outcomes = pool.map(lambda m: laboratory.outcome(m.changed(lines)), mutants)
            for mutant, outcome in zip(mutants, outcomes):
                totals[outcome] += 1
                if outcome == "survived":
                    print(f"survived: {mutant.told(lines)}\n    {lines[mutant.line].strip()}",
                          flush=True)
    print(f"{totals['killed']} killed, {totals['survived']} survived, "
          f"{totals['not compiled']} not compiled")
    return 1 if totals["survived"] else 0


if __name__ == "__main__":
    sys.exit(main())
