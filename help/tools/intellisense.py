"""Help while typing: the files that the Excel-DNA community's IntelliSense server reads in the add-ins' folder."""

import xml.etree.ElementTree as tree

from . import compiled_help, pages, registration

_NAMESPACE = "http://schemas.excel-dna.net/intellisense/1.0"


def _arguments(page, language):
    """One entry for each name; the server shows "..." for further arguments of the same kind."""
    names = iter(page.argument_names(language))
    for shared, text in page.arguments(language):
        for _ in shared.split(", "):
            yield next(names), text.replace("`", "")


def file_name(add_in):
    return f"{add_in}_x64.xll.intellisense.xml"


def make(add_in, language):
    known = set(registration.functions_of(add_in))
    root = tree.Element("IntelliSense", xmlns=_NAMESPACE)
    info = tree.SubElement(root, "FunctionInfo")
    for name, page in pages.pages_in(language).items():
        function = page.function
        if function not in known:
            continue
        attributes = {"Name": name, "Description": page.summary(language).replace("`", "")}
        if function.topic is not None:
            attributes["HelpTopic"] = f"{compiled_help.file_name(language)}!{function.topic}"
        element = tree.SubElement(info, "Function", attributes)
        for argument, text in _arguments(page, language):
            tree.SubElement(element, "Argument", Name=argument, Description=text)
    tree.indent(root)
    return '<?xml version="1.0" encoding="utf-8"?>\n' + tree.tostring(root, encoding="unicode") + "\n"
