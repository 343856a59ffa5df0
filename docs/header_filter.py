#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Tells Doxygen what the headers' plain comments mean: header_filter.py HEADER prints the text for Doxygen.

The headers are written for people. What they leave out, as a reader sees it, is added here, line for line, so that
the places in Doxygen's warnings stay right:

  - The prose at the top documents the file or, where it begins with "NAME: " or "NAME, ", the class of that name.
  - A comment stands for all declarations up to the next blank line or comment: they become a member group, whose
    members Doxygen gives the same text (DISTRIBUTE_GROUP_DOC).
  - An operator that forwards to a named operation says so, and what every value class has says what it always does:
    copies, moves, assign, swap, and making or becoming nil.
  - What is private is left out, and so are the inline bodies below a ruled line.
  - What is "Kept:" is a remark.
  - A backslash, an angle bracket and the like are themselves; what is indented by four, or a
    paragraph by two, is an example or a table.
"""
import re
import sys

FORWARDING = re.compile(r"operator\S+\(.*\) (?:const )?(?:noexcept )?\{ return (!?)(?:[\w:]+\.)?(\w+)\(.*\); \}$")
PROTOCOL = {"assign", "equal", "less", "plus_assign", "minus_assign", "plus", "minus", "at", "invoke"}
EVERYWHERE = {
    r"(?:constexpr )?(\w+)\(\)(?: noexcept)?(?: = default)?;": "Empty.",
    r"(?:virtual )?~(\w+)\(\)": "The destructor.",
    r"(\w+)\(\1 const&(?: \w+)?\)": "A copy.",
    r"(\w+)\(\1&& \w+\)": "Takes over what the other one holds.",
    r"\w+\(types::nil_t const&\)": "Empty.",
    r"(\w+)& assign\(\1 const& other\)": "Becomes a copy of the other one.",
    r"(\w+)& assign\(\1&& other\)": "Takes over what the other one holds.",
    r"\w+& assign\(types::nil_t const&\)": "Becomes empty.",
    r"void swap\((\w+)& other\)": "Exchanges the contents.",
    r"using (\w+)::\1;": "Its constructors.",
    r"(\w+)& operator=\(\1 const&(?: \w+)?\)": "Becomes a copy of the other one.",
    r"(\w+)& operator=\(\1&& other\)": "Takes over what the other one holds.",
}
TYPE = re.compile(r"(?:template <.*> )?(?:friend )?(class|struct|enum|union|namespace)\b")


def escaped(text):
    """Text in which Doxygen finds neither commands, except @throws and @return, nor tags."""
    text = re.sub(r"<(zolt/[\w/]+\.hpp)>", r"\1", text).replace("\\", "\\\\")
    return re.sub(r"([<>#&%])", r"\\\1", text).replace("--", "\\--")


def paragraphs(lines):
    """(first, last + 1) of each run of lines that are not empty."""
    ends = [-1] + [i for i, line in enumerate(lines) if not line] + [len(lines)]
    return ((before + 1, after) for before, after in zip(ends, ends[1:]) if after > before + 1)


def documentation(lines):
    """The texts of comment lines as Doxygen shall read them."""
    result = [("@remark " if i and line.startswith("Kept: ") else "") + escaped(line) for i, line in enumerate(lines)]
    is_code = [line.startswith("    ") for line in lines]
    for i in range(1, len(lines) - 1):
        is_code[i] = is_code[i] or (not lines[i] and is_code[i - 1] and lines[i + 1].startswith("    "))
    for first, last in paragraphs(lines):
        if all(line.startswith("  ") and not line.lstrip().startswith("- ") for line in lines[first:last]):
            is_code[first:last] = [True] * (last - first)
    for i, line in enumerate(lines):
        if not is_code[i]:
            continue
        result[i] = line
        if i == 0 or not is_code[i - 1]:
            block = lines[i:is_code.index(False, i) if False in is_code[i:] else None]
            kind = ".cpp" if any(re.search(r"[;{}]( *//.*)?$", part) for part in block) else ".unparsed"
            place = i - 1 if i and not lines[i - 1] else i
            result[place] = f"@code{{{kind}}}{result[place]}"
        if i + 1 == len(lines) or not is_code[i + 1]:
            result[i] += " @endcode"
    return result


def without_literals(line):
    """The line without its strings, characters, attributes and comment, in which braces would be miscounted."""
    line = re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'', '""', line)
    return re.sub(r"//.*|__attribute__\(\((?:[^()]|\([^()]*\))*\)\)", "", line)


class Header:
    def __init__(self, lines):
        self.lines = lines
        self.output = list(lines)

    def convert(self):
        self.body(self.prose())
        self.hide_bodies()
        return self.output

    def hide_bodies(self):
        """From "// ---", "// Inline" to the end of the namespace."""
        for at in range(len(self.lines) - 1):
            if self.lines[at].startswith("// ---") and self.lines[at + 1].startswith("// Inline"):
                end = max(i for i, line in enumerate(self.lines) if line.startswith("} // namespace"))
                self.output[at] = "/** @cond */"
                self.output[end] = "/** @endcond */ " + self.output[end]

    def prose(self):
        """Documents the file or class by the comment at the top; returns the number of the line behind it."""
        end = next(i for i, line in enumerate(self.lines) if not line.startswith("//"))
        texts = [line[3:] for line in self.lines[3:end]]
        subject = re.match(r"(\w+)(?:<\w+>)?[:,] ", texts[0])
        code = "\n".join(self.lines)
        namespace = re.search(r"^namespace (ZOLT_2_18::[\w:]+)", code, re.M)
        is_class = subject and re.search(rf"^(class|struct)\b[^;\n]* {subject[1]}\b[^;\n]*$", code, re.M)
        if is_class:
            texts[0] = texts[0][subject.end():][0].upper() + texts[0][subject.end() + 1:]
            self.output[0:3] = ["/** @file", f"Declares {subject[1]}. */",
                                f"/// @class {namespace[1]}::{subject[1]}"]
        else:
            self.output[0:3] = ["/// @file", "///", "///"]
        self.output[3:end] = [f"/// {text}" for text in documentation(texts)]
        return end

    @staticmethod
    def what_is_known(line, has_comment):
        """A comment on a declaration that needs none in the header."""
        forwarding = FORWARDING.search(line)
        if forwarding and forwarding[2] in PROTOCOL:
            return f"/** {'The negation of' if forwarding[1] else 'Forwards to'} {forwarding[2]}(). */ "
        texts = (text for pattern, text in EVERYWHERE.items() if re.match(pattern, line))
        return f"/** {text} */ " if not has_comment and (text := next(texts, None)) else ""

    def body(self, at):
        depth = 0            # of braces and parentheses
        statement = ""       # what has been read of the current one
        base = 0             # its depth
        comment = None       # first line of the comment over the current paragraph
        statements = 0       # that ended in the paragraph
        hidden = 0           # depth of the class whose private part is read, or 0
        last = at            # line in which the last one ended

        def end_paragraph():
            nonlocal comment, statements
            if comment is not None and statements > 1:
                self.output[comment] = "/**@{*/ " + self.output[comment]
                if "//" in self.lines[last]:
                    self.output[last + 1] = "/**@}*/ " + self.output[last + 1]
                else:
                    self.output[last] += " /**@}*/"
            comment, statements = None, 0

        while at < len(self.lines):
            line = self.lines[at].strip()
            if not statement and line.startswith("///"):
                end_paragraph()
                comment = at
                end = next(i for i in range(at, len(self.lines)) if not self.lines[i].strip().startswith("///"))
                texts = [self.lines[i].strip()[4:] for i in range(at, end)]
                self.output[at:end] = [f"/// {text}" for text in documentation(texts)]
                at = end
                continue
            if not statement and (not line or line.startswith(("//", "#", "}")) or re.match(r"\w+:$", line)):
                end_paragraph()
                if hidden and depth == hidden and not line.startswith(("#", "//")) and line:
                    self.output[at] = "/** @endcond */ " + self.output[at]
                    hidden = 0
                if line == "private:" and not hidden:
                    self.output[at] += " /** @cond */"
                    hidden = depth
                if line.endswith(":"):
                    line = ""
            if line.startswith(("#", "//")):
                while self.lines[at].endswith("\\"):
                    at += 1
                at += 1
                continue
            if not statement:
                self.output[at] = self.what_is_known(line, comment is not None and not statements) + self.output[at]
            for character in without_literals(line):
                if not statement:
                    base = depth
                statement = (statement + character).lstrip()
                if character in "{(":
                    depth += 1
                elif character in "})":
                    depth -= 1
                if character == "{" and depth == base + 1 and TYPE.match(statement[:-1]):
                    comment, statements, statement = None, 0, ""
                elif depth < base or statement == ";":
                    statement = ""
                elif depth == base and (character == ";" or character == "}"):
                    statement, statements, last = "", statements + 1, at
            if statement:
                statement += " "
            code, mark, text = self.output[at].partition("///< ")
            if mark:
                self.output[at] = code + mark + (escaped(text) if re.search(r"\w", text) else f"`{text}`")
            at += 1


with open(sys.argv[1], encoding="utf-8") as header:
    print("\n".join(Header(header.read().splitlines()).convert()))
