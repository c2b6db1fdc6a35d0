"""Runs macro modules without a macro editor: translates what the companion's modules use of the language.

Anything else raises an error. Names are taken as they are written, though the language ignores their case.
"""
import re


class BasicError(Exception):
    """What Err.Raise raises."""


def _expression(text):
    """An expression of the language in Python."""
    parts = re.split(r'("(?:[^"]|"")*")', text)
    for index, part in enumerate(parts):
        if index % 2:
            parts[index] = repr(part[1:-1].replace('""', '"'))
            continue
        part = re.sub(r"&H([0-9A-F]+)", r"0x\1", part)
        part = re.sub(r"(\w)\$\(", r"\1(", part)
        part = re.sub(r"(?<![<>])=", "==", part).replace("<>", "!=").replace(" & ", " + ")
        for word, meaning in (("Is Nothing", "is None"), ("Nothing", "None"), ("Not", "not"), ("And", "&")):
            part = re.sub(rf"\b{word}\b", meaning, part)
        parts[index] = re.sub(r"\bNew (\w+)", r"\1()", part)
    return "".join(parts)


class _Translator:
    def __init__(self, source):
        self.lines, self.depth, self.resumes, self.name, self.labels = [], 0, False, None, []
        self.globals = re.findall(r"^Private (?:WithEvents )?(\w+) As", source, re.M)
        for line in source.replace("\r\n", "\n").replace(" _\n", " ").splitlines():
            line = re.sub(r"""^((?:[^"']|"[^"]*")*)'.*""", r"\1", line).strip()
            if line and not re.match(r"Attribute |Option |VERSION |BEGIN|END$|MultiUse|Private Declare", line):
                self.line(line)

    def emit(self, text):
        self.lines.append("    " * self.depth + text)

    def statement(self, text):
        if self.resumes:
            self.emit("try:")
            self.lines.append("    " * (self.depth + 1) + text)
            self.emit("except Exception: pass")
        else:
            self.emit(text)

    def line(self, line):
        if match := re.match(r"(?:Private|Public) (?:WithEvents )?(\w+) As", line):
            self.emit(f"{match[1]} = None")
        elif match := re.match(r"(?:Private )?Const (\w+) As \w+ = (.*)", line):
            self.emit(f"{match[1]} = {_expression(match[2])}")
        elif match := re.match(r"(?:Private|Public) (?:Sub|Function) (\w+)\((.*?)\)", line):
            self.name = match[1]
            names = re.findall(r"(\w+) As", match[2])
            self.emit(f"def {self.name}({', '.join(names)}):")
            self.depth += 1
            self.emit(f"global {', '.join(self.globals)}" if self.globals else "pass")
            self.emit("result_ = ''")
        elif line in ("End Sub", "End Function"):
            self.depth = 1
            self.emit("return result_")
            self.depth, self.resumes, self.labels = 0, False, []
        elif line.startswith("Dim "):
            for name, kind in re.findall(r"(\w+) As (\w+)", line):
                self.emit(f"{name} = {repr('') if kind == 'String' else 0}")
        elif match := re.match(r"On Error GoTo (\w+)$", line):
            self.emit("try:")
            self.depth += 1
            self.labels.append(match[1])
        elif line == "On Error Resume Next":
            self.resumes = True
        elif line.endswith(":") and line[:-1] in self.labels:
            self.depth -= 1
            self.emit("except Exception as error_:")
            self.depth += 1
            self.emit("Err.Description = str(error_)")
        elif match := re.match(r"If (.*) Then$", line):
            self.emit(f"if {_expression(match[1])}:")
            self.depth += 1
        elif match := re.match(r"If (.*?) Then (.*)", line):
            self.emit(f"if {_expression(match[1])}:")
            self.depth += 1
            self.line(match[2])
            self.depth -= 1
        elif match := re.match(r"For Each (\w+) In (.*)", line):
            self.emit(f"for {match[1]} in {_expression(match[2])}:")
            self.depth += 1
        elif match := re.match(r"For (\w+) = (.*) To (.*)", line):
            self.emit(f"for {match[1]} in range({_expression(match[2])}, {_expression(match[3])} + 1):")
            self.depth += 1
        elif re.match(r"End If$|Next\b", line):
            self.depth -= 1
        elif re.match(r"Exit (Sub|Function)$", line):
            self.emit("return result_")
        elif match := re.match(r"(?:Set )?(\w+) = (.*)", line):
            target = "result_" if match[1] == self.name else match[1]
            self.statement(f"{target} = {_expression(match[2])}")
        elif match := re.match(r"([\w.]+)(?: (.*))?$", line):
            self.statement(f"{match[1]}({_expression(match[2] or '')})")
        else:
            raise SyntaxError(f"not translated: {line}")


def run_module(source, names):
    """Adds the module's procedures and variables to `names`, a dictionary."""
    exec("\n".join(_Translator(source).lines), names)  # our own modules


def make_class(source, names):
    """What makes an object of the class: its procedures as a dictionary, with `names` in scope."""
    def make():
        members = dict(names)
        run_module(source, members)
        members["Class_Initialize"]()
        return members
    return make
