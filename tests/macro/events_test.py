#!/usr/bin/env python3
"""events_test.py MODULES_FOLDER: runs the companion's macros while Excel closes the add-in behind their back, in a
stand-in for Excel that knows the functions only while the add-in is announced to."""
import pathlib
import sys
import types

from basic import BasicError, make_class, run_module

FOLDER = pathlib.Path(sys.argv[1])
OLD, NEW = r"C:\Old\ZavrelFuncs8_x64.xll", r"C:\New\ZavrelFuncs8_x64.xll"
ERROR_NAME = object()


class AddIn:
    """A loaded copy of the add-in."""

    def __init__(self, file):
        self.file, self.is_open, self.announced = file, True, False

    def close(self):
        self.is_open = self.announced = False


class Buffer:
    """A text that a call fills through its address."""
    text = ""

    def __len__(self):
        return 1024

    def __str__(self):
        return self.text


class Excel:
    def __init__(self, language=9):
        self.copies, self.listed, self.events, self.calls, self.messages = [], {}, None, [], []
        self.Calculation, self.full_calculations = "automatic", 0
        self.LanguageSettings = types.SimpleNamespace(LanguageID=lambda _: language)
        self.names = {
            "Application": self, "IsError": lambda value: value is ERROR_NAME, "IsArray": lambda value: value is not None,
            "LBound": lambda _, dimension: 1, "UBound": lambda table, dimension: len(table.rows), "LCase": str.lower,
            "Left": lambda text, count: str(text)[:count], "Right": lambda text, count: text[-count:], "Len": len,
            "InStrRev": lambda text, part: text.rfind(part) + 1, "Array": lambda *values: values,
            "String": lambda count, text: Buffer(), "StrPtr": lambda text: text, "vbNullChar": "\0",
            "vbExclamation": 48, "vbObjectError": 0, "xlCalculationAutomatic": "automatic",
            "MsgBox": lambda text, *_: self.messages.append(text), "CreateObject": self.nothing,
            "GetModuleHandleW": lambda name: self.copies[0] if self.copies else 0,
            "GetModuleFileNameW": self.module_file, "InitializeXlaInformationVB": self.announce,
            "UninitializeXlaInformation": lambda _: [copy.close() for copy in self.copies[:1]],
            "ThisWorkbook": types.SimpleNamespace(IsAddin=True, FullName=r"C:\New\C.xlam", Path=r"C:\New"),
            "Err": types.SimpleNamespace(Raise=self.nothing, Description=""),
        }
        self.names["ZavrelText"] = lambda english, german: german if language == 7 else english
        run_module((FOLDER / "ZavrelCompanion.bas").read_text(), self.names)
        self.names["ZavrelApplicationEvents"] = self.make_events

    @staticmethod
    def nothing(*_):
        raise BasicError("not here")

    def make_events(self):
        self.events = make_class((FOLDER / "ZavrelApplicationEvents.cls").read_text(), self.names)()
        return self.events

    def module_file(self, copy, buffer, size):
        buffer.text = copy.file
        return len(copy.file)

    def announce(self, application, companion, application_id, *_):
        self.calls.append(application_id)
        self.copies[0].is_open = self.copies[0].announced = True

    # The object model, as far as the companion uses it.
    @property
    def RegisteredFunctions(self):
        files = [copy.file for copy in self.copies if copy.is_open]
        return type("Table", (), {"rows": files, "__call__": lambda self, row, _: files[row - 1]})() if files else None

    @property
    def AddIns(self):
        return [types.SimpleNamespace(Name=file.split("\\")[-1], Installed=on) for file, on in self.listed.items()]

    def RegisterXLL(self, file):
        if file != NEW:
            return False
        self.copies.append(AddIn(file))
        return True

    def Evaluate(self, formula):
        assert formula == "ZavIsBlank(0)"
        return False if any(copy.announced for copy in self.copies) else ERROR_NAME

    def CalculateFull(self):
        self.full_calculations += 1

    def fire(self, event="SheetSelectionChange"):
        handler = self.events["excelApplication_" + event]
        handler(*[None] * handler.__code__.co_argcount)


def test_cancelled_quit():
    for event in ("SheetSelectionChange", "SheetChange", "SheetActivate", "WorkbookOpen"):
        excel = Excel()
        excel.listed = {OLD: True}
        excel.copies = [AddIn(OLD)]
        excel.names["Auto_Open"]()
        assert excel.calls == [5] and not excel.messages, "opening announces"
        excel.fire(event)
        assert excel.calls == [5], "nothing to do while the functions are there"
        excel.copies[0].close()
        excel.fire(event)
        assert excel.calls == [5, 5] and excel.copies[0].announced, f"{event} brings the functions back"
        assert excel.full_calculations == 1, "and what was calculated without them is calculated again"
        excel.fire(event)
        assert excel.calls == [5, 5] and excel.full_calculations == 1
        excel.copies[0].close()
        excel.Calculation = "manual"
        excel.fire(event)
        assert len(excel.calls) == 3 and excel.full_calculations == 1, "who calculates by hand goes on doing so"
        excel.names["Auto_Close"]()
        assert not excel.copies[0].announced and excel.names["applicationEvents"] is None


def test_closing_workbooks_opens_nothing():
    events = make_class((FOLDER / "ZavrelApplicationEvents.cls").read_text(), Excel().names)()
    while_closing = {"WorkbookActivate", "WorkbookDeactivate", "WorkbookBeforeClose", "WorkbookBeforeSave",
                     "WindowActivate", "WindowDeactivate", "WindowResize", "SheetDeactivate", "SheetCalculate"}
    assert not {name.partition("_")[2] for name in events} & while_closing


def test_unticked_and_ticked_again():
    excel = Excel()
    excel.copies, excel.listed = [AddIn(OLD)], {OLD: True}
    excel.names["Auto_Open"]()
    excel.copies[0].close()
    excel.listed = {OLD: False}
    excel.fire()
    assert excel.calls == [5], "who unticks the add-in does without it"
    excel.listed, excel.copies[0].is_open = {OLD: True}, True
    excel.fire()
    assert excel.calls == [5, 5] and excel.copies[0].announced


def test_failure_ends_the_attempts():
    excel = Excel()
    excel.copies = [AddIn(OLD)]
    excel.names["Auto_Open"]()
    excel.copies[0].close()
    excel.names["InitializeXlaInformationVB"] = excel.nothing
    excel.fire()
    assert excel.names["applicationEvents"] is None and not excel.messages


def test_two_copies():
    for language, text in ((9, "Two copies of the add-in"), (7, "Das Add-in ist zweimal geladen")):
        excel = Excel(language)
        excel.copies = [AddIn(OLD), AddIn(NEW)]
        excel.names["Auto_Open"]()
        assert len(excel.messages) == 1, excel.messages
        message = excel.messages[0]
        assert message.startswith(text) and message.index(OLD) < message.index(NEW), message
        assert excel.copies[0].announced and not excel.copies[1].announced
    excel = Excel()
    excel.copies = [AddIn(OLD.upper())]
    excel.names["Auto_Open"]()
    excel.copies[0].close()
    excel.copies.append(AddIn(NEW))  # ticked in place of the old one, which stays in memory
    excel.fire()
    assert len(excel.messages) == 1 and NEW in excel.messages[0], excel.messages


def test_loads_the_add_in_itself():
    excel = Excel()
    excel.names["Auto_Open"]()
    assert [copy.file for copy in excel.copies] == [NEW] and excel.calls == [5] and not excel.messages


for name, test in [(name, value) for name, value in globals().items() if name.startswith("test_")]:
    test()
    print(name)
