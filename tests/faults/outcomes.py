"""How a run may end after one of its calls failed.

Anything else is a fault of the program:

alloc  The usual output; or an end by SIGABRT before any of the table is printed, with an export
       that is empty, whole or not made. In two cases the run goes on without the memory: strings of
       one row read as empty (its variables, its description, its name if the code has none, or
       the sentence that replaces an explanation), and an export whose stream cannot be made counts
       as one that cannot be opened.
open   A log file that cannot be opened is missing, and an export that cannot be opened ends the
       action there. Nothing is reported.
read   An interrupted or partial read is continued. If a file cannot be read further, the line
       before the error is its last, and the next file follows.
write  An interrupted or partial write is continued, but what the C library's streams cannot write
       is lost. Nothing is reported; an export is then cut off.
close  The usual output.

events-query (QueryJudge) reports every failure: it ends with the usual output, or with a message and
the status 2 after a part of it. Only a message that cannot be written is lost. If the memory for an
expression with ^ or $ runs out, the C library's regcomp may free it twice, which ends the run.
"""

import errno
import re
import signal
from dataclasses import dataclass, field

SHORT = 0
ROW = re.compile(rb"(?s)(.{20,}?)\x1b\[1;34m(.{30,}?)\x1b\[0m(.*?)\n\n(?=\n?\Z|.{20,}?\x1b\[1;34m)")
PARSE_DIAGNOSTIC = re.compile(
    rb"(?s)Tarvik workaround: error occured in IStream in JsonCpp:.*?\n\n(?=Tarvik|Last |\Z)")
NO_TEXT = b"Tarvik workaround: in Json::Value::asCString(): requires stringValue\n"
NO_VARIABLES = (b"Tarvik workaround: in Json::Value::find(begin, end): "
                b"requires objectValue or nullValue\n")
NOT_EXPLAINED = b"Failed to retrieve description"
FREED_TWICE = b"free(): double free detected in tcache 2\n"


@dataclass
class Run:
    status: int
    stdout: bytes
    stderr: bytes
    files: dict = field(default_factory=dict)  # bytes by name
    calls: dict = field(default_factory=dict)  # number of calls by kind
    failed_path: str = ""  # the file that the failed call was about
    transferred: int = 0  # bytes of it that were transferred before


def lacks_one_piece(text, whole):
    """Whether `text` is `whole` without one contiguous piece."""
    if len(text) > len(whole):
        return False
    head = 0
    while head < len(text) and text[head] == whole[head]:
        head += 1
    return text[head:] == whole[len(whole) - (len(text) - head):]


def split_table(text):
    """The text before the rows, and each row as its time, name and detail."""
    start = text.find(b"=" * 80 + b"\n")
    if start < 0:
        return text, []
    start += 81
    return text[:start], ROW.findall(text, start)


def is_row_without_a_text(row, usual, details_without_variables):
    time, name, detail = row
    nameless = usual[1].startswith(b"UNRECOGNIZED_EVENT_CODE_") and name == b" " * 30
    bare = details_without_variables.get(name.rstrip(), b"Unknown")
    not_even_that = usual[2].replace(NOT_EXPLAINED, b"", 1)
    return (time == usual[0] and (name == usual[1] or nameless)
            and detail in (usual[2], b"", bare, not_even_that))


def without_diagnostics(text):
    """`text` without the diagnostics of variables, which depend on whether there are any."""
    return PARSE_DIAGNOSTIC.sub(b"", text).replace(NO_TEXT, b"").replace(NO_VARIABLES, b"")


def lacks_a_text(text, usual, details_without_variables):
    """Whether the table `text` is the `usual` one, except for the strings of one row."""
    front, rows = split_table(text)
    usual_front, usual_rows = split_table(usual)
    if not rows or len(rows) != len(usual_rows):
        return False
    if without_diagnostics(front) != without_diagnostics(usual_front):
        return False
    different = [(row, other) for row, other in zip(rows, usual_rows) if row != other]
    return len(different) <= 1 and all(
        is_row_without_a_text(row, other, details_without_variables) for row, other in different)


class Judge:
    """Tells whether a run of `case` with a failing call ended as allowed.

    `run_with(files)` is a run without a failure on other input files."""

    def __init__(self, usual, inputs, export, log_names, run_with, details_without_variables):
        self.usual = usual
        self.inputs = inputs
        self.export = export  # its name; None if none is made
        self.log_names = log_names  # in the order in which they are read
        self.run_with = run_with
        self.details_without_variables = details_without_variables

    def same(self, run, other):
        return (run.status, run.stdout, run.stderr, run.files) == \
            (other.status, other.stdout, other.stderr, other.files)

    def allows(self, run, kind, error, persistent):
        if self.same(run, self.usual):
            return True
        return getattr(self, f"allows_{kind}")(run, error, persistent)

    def without_export(self, run):
        """The action ended where it could not open the export."""
        return (self.export is not None and run.status == 0 and run.files == self.inputs
                and run.stderr == b"" and run.stdout.count(b"\n") == 1
                and self.usual.stdout.startswith(run.stdout))

    def allows_alloc(self, run, _error, _persistent):
        if run.status == -signal.SIGABRT:
            usual_front = split_table(self.usual.stdout)[0].split(b"Last ")[0]
            kept = {name: text for name, text in run.files.items() if name != self.export}
            return (usual_front.startswith(run.stdout)
                    and self.usual.stderr.startswith(run.stderr)
                    and kept == {n: t for n, t in self.inputs.items() if n != self.export}
                    and run.files.get(self.export) in (None, b"", self.inputs.get(self.export),
                                                       self.usual.files.get(self.export)))
        if self.without_export(run):
            return True
        if (run.status, run.stderr) != (self.usual.status, self.usual.stderr):
            return False
        if self.export is None:
            return run.files == self.usual.files and lacks_a_text(
                run.stdout, self.usual.stdout, self.details_without_variables)
        return (without_diagnostics(run.stdout) == without_diagnostics(self.usual.stdout)
                and run.files.keys() == self.usual.files.keys()
                and lacks_a_text(run.files[self.export], self.usual.files[self.export],
                                 self.details_without_variables))

    def changed_inputs(self, name, text, persistent):
        """The inputs with one log file replaced; without the later ones if each later call fails."""
        files = dict(self.inputs)
        later = self.log_names[self.log_names.index(name) + 1:] if persistent else []
        for gone in later:
            files.pop(gone, None)
        files.pop(name, None)
        if text is not None:
            files[name] = text
        return files

    def same_output(self, run, other):
        return (run.status, run.stdout, run.stderr, run.files.get(self.export)) == \
            (other.status, other.stdout, other.stderr, other.files.get(self.export))

    def allows_open(self, run, _error, persistent):
        if run.failed_path == self.export:
            return self.without_export(run)
        if run.failed_path not in self.log_names:
            return False
        files = self.changed_inputs(run.failed_path, None, persistent)
        return self.same_output(run, self.run_with(files))

    def allows_read(self, run, error, persistent):
        if error in (SHORT, errno.EINTR) or run.failed_path not in self.log_names:
            return False
        whole = self.inputs[run.failed_path][:run.transferred]
        text = whole[:whole.rfind(b"\n") + 1]
        files = self.changed_inputs(run.failed_path, text, persistent)
        return self.same_output(run, self.run_with(files))

    def allows_write(self, run, error, persistent):
        if error == SHORT or run.status != self.usual.status:
            return False
        about_export = self.export is not None and run.failed_path == self.export
        same_streams = (run.stdout, run.stderr) == (self.usual.stdout, self.usual.stderr)
        return (self.same_but_cut_off(run.files, about_export or persistent)
                and (same_streams if about_export and not persistent else
                     lacks_one_piece(run.stdout, self.usual.stdout)
                     and lacks_one_piece(run.stderr, self.usual.stderr)))

    def same_but_cut_off(self, files, export_may_be_cut):
        if export_may_be_cut and self.export is not None:
            cut = files.get(self.export)
            if cut is None or not self.usual.files[self.export].startswith(cut):
                return False
            files = {**files, self.export: self.usual.files[self.export]}
        return files == self.usual.files

    def allows_close(self, _run, _error, _persistent):
        return False


class QueryJudge:
    """The same for a run of events-query."""

    def __init__(self, usual):
        self.usual = usual

    def same(self, run):
        return (run.status, run.stdout, run.stderr, run.files) == \
            (self.usual.status, self.usual.stdout, self.usual.stderr, self.usual.files)

    def allows(self, run, kind, error, persistent):
        usual = self.usual
        if self.same(run):
            return True
        if kind == "close" or error in (SHORT, errno.EINTR) or run.files != usual.files:
            return False
        if kind == "write" and (run.status, run.stdout) == (usual.status, usual.stdout):
            return lacks_one_piece(run.stderr, usual.stderr)
        if kind == "alloc" and (run.status, run.stdout, run.stderr) == (-signal.SIGABRT, b"", FREED_TWICE):
            return True
        lines = run.stderr.splitlines(keepends=True)
        known = usual.stderr.splitlines(keepends=True)
        new = [line for line in lines if line not in known]
        reported = bool(new) or (kind == "write" and persistent)
        # Standard input is copied into memory, so that writing that copy is part of reading. Opening a
        # folder takes memory.
        is_input = (kind in ("open", "read") or b"events-query: -: " in run.stderr
                    or b": Cannot allocate memory\n" in run.stderr)
        return (run.status == 2 and reported
                and all(line.startswith(b"events-query: ") for line in new)
                and (is_input or usual.stdout.startswith(run.stdout)))
