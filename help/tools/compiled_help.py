"""The compiled help file, whose topics have the ids of the registration.

chmcmd (Free Pascal) writes its working folder into the paths of the topics, unless that is the root folder. It
therefore runs in its own mount namespace, whose root is the help folder.
"""

import html
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile

from . import html_pages, pages, registration

def file_name(language):
    return "ZavrelFuncs8_x64.chm" if language == "en" else f"ZavrelFuncs8_x64.{language}.chm"


def topic_ids():
    """The page for each topic id."""
    return {function.topic: function.name for function in registration.functions() if function.topic is not None}


def _node(title, page=None):
    local = f'<param name="Local" value="{page}">' if page else ""
    return f'<li><object type="text/sitemap"><param name="Name" value="{html.escape(title)}">{local}</object></li>'


def _site_map(lines):
    return "<html><body>\n<ul>\n" + "\n".join(lines) + "\n</ul>\n</body></html>\n"


def _contents(renderer):
    lines = [_node(renderer.words["title"], "index.html")]
    lines += [_node(topic.title, f"{topic.name}.html") for topic in renderer.topics.values()]
    for title, names in pages.contents():
        lines += [_node(renderer.language.group(title)), "<ul>", *(_node(name, f"{name}.html") for name in names), "</ul>"]
    return _site_map(lines)


def _project(files, windows_language):
    ids = topic_ids()
    listing = "\n".join(sorted(name for name in files if name.endswith((".html", ".css"))))
    return (f"[OPTIONS]\nCompatibility=1.1 or later\nCompiled file=help.chm\nContents file=help.hhc\n"
            f"Index file=help.hhk\nDefault topic=index.html\nTitle=Zavrel Functions\n"
            f"Language={windows_language}\nFull-text search=Yes\nBinary Index=No\n\n[FILES]\n{listing}\n\n[ALIAS]\n"
            + "".join(f"{name}={name}.html\n" for name in ids.values())
            + "\n[MAP]\n" + "".join(f"#define {name} {topic}\n" for topic, name in ids.items()))


_SYSTEM_FOLDERS = ("usr", "lib", "lib64", "etc", "proc", "dev")  # chmcmd needs these below its root


def _compile(folder):
    program = shutil.which("chmcmd")
    if program is None:
        raise SystemExit("chmcmd is needed (package fp-utils)")
    mounts = []
    for name in _SYSTEM_FOLDERS:
        if pathlib.Path("/", name).is_dir():
            (folder / name).mkdir()
            mounts.append(f"mount --rbind /{name} {name}")
    run = subprocess.run(["unshare", "--map-root-user", "--mount", "sh", "-c",
                          " && ".join([*mounts, f"exec chroot . {program} help.hhp"])],
                         cwd=folder, capture_output=True, text=True,
                         env=os.environ | {"PATH": os.environ["PATH"] + ":/usr/sbin"})  # for chroot
    if run.returncode != 0 or not (folder / "help.chm").exists():
        raise SystemExit(f"chmcmd made no file:\n{run.stdout}{run.stderr}")


def _without_times(content):
    """The file with its creation times, in its header and in #SYSTEM, set to 0, so that the same pages give the
    same bytes."""
    made = bytearray(content)
    made[16:20] = bytes(4)
    entry = struct.pack("<IHH", 3, 10, 4)  # the version of #SYSTEM, and its first entry
    if made.count(entry) != 1:
        raise SystemExit("the compiled help's #SYSTEM cannot be found")
    at = made.index(entry) + len(entry)
    made[at:at + 4] = bytes(4)
    return bytes(made)


def mapped_pages(file):
    """The page for each topic id in a compiled help file, whose #IVB lists pairs of an id and a position in
    #STRINGS."""
    def part(name):
        return subprocess.run(["7z", "x", "-so", str(file), name], check=True, capture_output=True).stdout

    table, strings = part("#IVB"), part("#STRINGS")
    found = {}
    for at in range(4, len(table), 8):
        topic, position = struct.unpack_from("<II", table, at)
        found[topic] = strings[position:strings.index(b"\0", position)].decode()
    return found


def _check(file):
    expected = {topic: f"{name}.html" for topic, name in topic_ids().items()}
    found = {topic: page.removeprefix("/") for topic, page in mapped_pages(file).items()}
    if found != expected:
        wrong = {topic: (found.get(topic), expected.get(topic)) for topic in {*found, *expected}
                 if found.get(topic) != expected.get(topic)}
        raise SystemExit(f"{file}: topics that do not lead to their page (found, expected): {wrong}")
    listed = {line.split()[-1] for line in subprocess.run(["7z", "l", "-ba", str(file)], check=True, capture_output=True,
                                                          text=True).stdout.splitlines()}
    if missing := set(expected.values()) - listed:
        raise SystemExit(f"{file}: pages that are not in it: {missing}")


def build(language, folder):
    """Writes the file to `folder` and checks that every topic id leads to its page."""
    renderer = html_pages.Renderer(language)
    files = renderer.files()
    with tempfile.TemporaryDirectory() as name:
        scratch = pathlib.Path(name)
        html_pages.write(files, scratch)
        entries = sorted([*renderer.functions, *renderer.topics], key=str.lower)
        titles = {entry: renderer.topics[entry].title if entry in renderer.topics else entry for entry in entries}
        index = _site_map([_node(titles[entry], f"{entry}.html") for entry in entries])
        project = _project(files, renderer.language.windows_language)
        for file, text in (("help.hhc", _contents(renderer)), ("help.hhk", index), ("help.hhp", project)):
            (scratch / file).write_bytes(text.encode(renderer.language.code_page, "xmlcharrefreplace"))
        _compile(scratch)
        made = scratch / "help.chm"
        made.write_bytes(_without_times(made.read_bytes()))
        _check(made)
        folder.mkdir(parents=True, exist_ok=True)
        shutil.copy(made, folder / file_name(language))
