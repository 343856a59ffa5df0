#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Changes the library in one place at a time and asks whether the tests notice.

    scripts/mutate.py                      the default files, all mutants
    scripts/mutate.py --sample 50 FILE...  at most 50 mutants of each file, drawn evenly

Works on a copy below build/mutation. A mutant whose object code is that of the original is left out as
equivalent. Each survivor is printed with its place: it names a missing row, or code that is not needed.
"""
import argparse
import json
import resource
import shlex
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from clang import cindex
from clang.cindex import CursorKind

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"

# What tests each file: fuzz targets over their corpus, and cases of test programs. The first that fails ends the
# trial.
TESTS = {
    "zolt/config/config_token.cpp": ["config_fuzz", "command_line_fuzz", "config_test config_token*:command*"],
    "zolt/generic/convert/str_to_x.cpp": ["integer_fuzz", "double_fuzz", "convert_test str_to*:is_space*"],
    "zolt/i18n/_private/xmc_file_loader.cpp": ["catalog_fuzz", "i18n_test xmc*:message_catalogs*"],
    "zolt/i18n/_private/format.cpp": ["message_fuzz", "i18n_test format*:message_item*"],
    "zolt/parser/xml_parser.cpp": ["xml_fuzz", "token_stream_fuzz", "services_test Xml*-*Unlimited*"],
    "zolt/config/config_file_reader.cpp": ["config_fuzz", "config_test ConfigFile*-*Linear*"],
}

SWAPS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "|=": "&=", "&=": "|=", "++": "--", "--": "++", "!": "",
}


def mutants(file, arguments):
    """(offset, length, replacement) of each change, in the order of the text."""
    unit = cindex.Index.create().parse(str(file), args=arguments)
    found = set()

    def operator_between(cursor, start, end):
        for token in cursor.get_tokens():
            if start <= token.extent.start.offset < end and token.spelling in SWAPS:
                found.add((token.extent.start.offset, len(token.spelling), SWAPS[token.spelling]))
                return

    def visit(cursor):
        for child in cursor.get_children():
            where = child.location.file
            if where is not None and where.name != str(file):
                continue
            parts = list(child.get_children())
            if child.kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(parts) == 2:
                operator_between(child, parts[0].extent.end.offset, parts[1].extent.start.offset)
            elif child.kind == CursorKind.UNARY_OPERATOR:
                operator_between(child, child.extent.start.offset, child.extent.end.offset)
            elif child.kind == CursorKind.INTEGER_LITERAL:
                tokens = [token.spelling for token in child.get_tokens()]
                if tokens:
                    replacement = {"0": "1", "1": "2"}.get(tokens[0], f"({tokens[0]} + 1)")
                    found.add((child.extent.start.offset, len(tokens[0]), replacement))
            elif child.kind == CursorKind.COMPOUND_STMT:
                for statement in parts:
                    if statement.kind in (CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR):
                        extent = statement.extent
                        found.add((extent.start.offset, extent.end.offset - extent.start.offset, ""))
            visit(child)

    visit(unit.cursor)
    return sorted(found)


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options).returncode


def processor_time():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


class Slot:
    """A copy of the sources with a build of its own."""

    def __init__(self, number, files):
        self.root = WORK / str(number)
        self.build = self.root / "build" / "dev"
        if self.root.exists():
            shutil.rmtree(self.root)
        top = {"build", ".git"}
        shutil.copytree(ROOT, self.root, ignore=lambda folder, names: top & set(names) if Path(folder) == ROOT else ())
        programs = sorted({test.split()[0] for name in files for test in TESTS[name]})
        subprocess.run(["cmake", "--preset", "dev", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DZOLT_TOOLS=OFF",
                        "-DZOLT_FUZZ_CORPUS=ON"], cwd=self.root, check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", str(self.build), "--target", "zolt", *programs], check=True,
                       stdout=subprocess.DEVNULL)
        commands = subprocess.run(["ninja", "-C", str(self.build), "-t", "commands", "zolt"], check=True,
                                  stdout=subprocess.PIPE, text=True).stdout.splitlines()
        self.link = next(each for each in commands if " -shared " in each)

    def test(self, line):
        program, *cases = line.split()
        if program.endswith("_fuzz"):
            return [str(self.build / "fuzz" / program), str(self.root / "fuzz/corpus" / program.removesuffix("_fuzz"))]
        return [str(self.build / "tests" / program), "--gtest_fail_fast", "--gtest_filter=" + "".join(cases)]

    def prepare(self, name):
        self.file = self.root / name
        self.text = self.file.read_bytes()
        entries = json.loads((self.build / "compile_commands.json").read_text())
        entry = next(each for each in entries if each["file"] == str(self.file))
        self.command = shlex.split(entry["command"])
        self.object = self.build / self.command[self.command.index("-o") + 1]
        self.original = self.object_code()
        self.tests = [self.test(line) for line in TESTS[name]]
        before = processor_time()
        for test in self.tests:
            if run(test, cwd=self.build):
                sys.exit(f"{shlex.join(test)} fails without a mutant")
        self.limit = 2 + round(5 * (processor_time() - before))

    def limited(self):
        """A mutant may run for ever or take all memory: both end it."""
        resource.setrlimit(resource.RLIMIT_CPU, (self.limit, self.limit))
        resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))

    def object_code(self):
        self.object.unlink(missing_ok=True)
        if run(self.command, cwd=self.build):
            return None
        return self.object.read_bytes()

    def trial(self, mutant):
        """"killed", "survived", "equivalent" or "invalid"."""
        offset, length, replacement = mutant
        try:
            self.file.write_bytes(self.text[:offset] + replacement.encode() + self.text[offset + length:])
            code = self.object_code()
            if code is None:
                return "invalid"
            if code == self.original:
                return "equivalent"
            if run(self.link, shell=True, cwd=self.build):
                return "invalid"
            for test in self.tests:
                if run(test, preexec_fn=self.limited, cwd=self.build):
                    return "killed"
            return "survived"
        finally:
            self.file.write_bytes(self.text)

    def restore(self):
        self.object_code()
        run(self.link, shell=True, cwd=self.build)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("files", nargs="*", default=list(TESTS))
    parser.add_argument("--sample", type=int, help="at most so many mutants of each file")
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()

    slots = [Slot(number, arguments.files) for number in range(arguments.jobs)]
    for name in arguments.files:
        for slot in slots:
            slot.prepare(name)
        options = [each for each in slots[0].command[1:] if each.startswith(("-I", "-D", "-std", "-f"))]
        every = mutants(slots[0].file, options)
        step = max(1, -(-len(every) // arguments.sample)) if arguments.sample else 1
        chosen = every[::step]
        text = slots[0].text

        def try_all(slot, part):
            for mutant in part:
                verdict = slot.trial(mutant)
                offset, length, replacement = mutant
                if verdict == "survived":
                    line = text[:offset].count(b"\n") + 1
                    print(f"{name}:{line}: {text[offset:offset + length].decode()!r} -> {replacement!r} survived",
                          flush=True)
                yield verdict

        parts = [chosen[number::len(slots)] for number in range(len(slots))]
        with ThreadPoolExecutor(len(slots)) as pool:
            verdicts = sum(pool.map(lambda slot, part: list(try_all(slot, part)), slots, parts), [])
        for slot in slots:
            slot.restore()
        count = {verdict: verdicts.count(verdict) for verdict in ("killed", "survived", "equivalent", "invalid")}
        tried = count["killed"] + count["survived"]
        print(f"{name}: {count['killed']} of {tried} killed ({100 * count['killed'] / max(tried, 1):.0f} %), "
              f"{count['equivalent']} equivalent, {count['invalid']} that do not compile, "
              f"{len(chosen)} of {len(every)} tried", flush=True)


if __name__ == "__main__":
    main()
