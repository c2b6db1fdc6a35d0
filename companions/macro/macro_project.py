"""Writes macro projects: the content of vbaProject.bin, in the published format of Office macro files.

The compiled caches, which cannot be computed from the sources, are omitted. The version number in _VBA_PROJECT
says so, and a host compiles the sources when it opens the file.
"""
import math
import struct

from compound_file import Storage, compound_file

CODE_PAGE = 1252
CHUNK = 4096


def _copy_token_bits(position):
    """The number of offset bits in a copy token at this position of the chunk."""
    return max(math.ceil(math.log2(position)), 4)


def _longest_match(chunk, position):
    """Offset and length of the longest earlier occurrence of the next bytes; the length may be 0."""
    limit = min(len(chunk) - position, (0xFFFF >> _copy_token_bits(position)) + 3) if position else 0
    best_offset = best_length = 0
    for start in range(position - 1, -1, -1):
        length = 0
        while length < limit and chunk[start + length] == chunk[position + length]:
            length += 1
        if length > best_length:
            best_offset, best_length = position - start, length
            if length == limit:
                break
    return best_offset, best_length


def _compress_chunk(chunk):
    result, position = b"", 0
    while position < len(chunk):
        flags, tokens = 0, b""
        for bit in range(8):
            if position == len(chunk):
                break
            offset, length = _longest_match(chunk, position)
            if length >= 3:
                shift = 16 - _copy_token_bits(position)
                tokens += struct.pack("<H", (offset - 1) << shift | (length - 3))
                flags |= 1 << bit
                position += length
            else:
                tokens += chunk[position:position + 1]
                position += 1
        result += bytes([flags]) + tokens
    assert len(result) < CHUNK, "sources compress"
    return struct.pack("<H", len(result) - 1 | 0xB000) + result


def compress(data):
    return b"\x01" + b"".join(_compress_chunk(data[i:i + CHUNK]) for i in range(0, len(data), CHUNK))


def _record(number, data):
    return struct.pack("<HI", number, len(data)) + data


def _both(number, wide_number, text):
    """A text in both forms: in the code page and as wide text."""
    return _record(number, text.encode("cp1252")) + _record(wide_number, text.encode("utf-16-le"))


REFERENCES = {
    "stdole": r"*\G{00020430-0000-0000-C000-000000000046}#2.0#0#C:\Windows\System32\stdole2.tlb#OLE Automation",
    "Office": r"*\G{2DF8D04C-5BFA-101B-BDE5-00AA0044DE52}#2.0#0##Microsoft Office Object Library",
}


def _directory(name, modules):
    long, short = lambda number: struct.pack("<I", number), lambda number: struct.pack("<H", number)
    data = _record(0x01, long(3))  # 64-bit Windows
    data += _record(0x02, long(0x409)) + _record(0x14, long(0x409)) + _record(0x03, short(CODE_PAGE))
    data += _record(0x04, name.encode("cp1252")) + _both(0x05, 0x40, "") + _both(0x06, 0x3D, "")
    data += _record(0x07, long(0)) + _record(0x08, long(0))
    data += struct.pack("<HIIH", 0x09, 4, 1, 0) + _both(0x0C, 0x3C, "")
    for library, identity in REFERENCES.items():
        text = identity.encode("cp1252")
        data += _both(0x16, 0x3E, library)
        data += _record(0x0D, struct.pack("<I", len(text)) + text + struct.pack("<IH", 0, 0))
    data += _record(0x0F, short(len(modules))) + _record(0x13, short(0xFFFF))
    for module, (kind, _) in modules.items():
        data += _both(0x19, 0x47, module) + _both(0x1A, 0x32, module) + _both(0x1C, 0x48, "")
        data += _record(0x31, long(0)) + _record(0x1E, long(0)) + _record(0x2C, short(0xFFFF))
        data += _record(0x21 if kind == "Module" else 0x22, b"") + _record(0x2B, b"")
    return data + _record(0x10, b"")


def _encrypted(identity, data, seed=0x02):
    """The encoding of the protection state in PROJECT."""
    key = sum(identity.encode("ascii")) & 0xFF
    result = [seed, seed ^ 2, seed ^ key]
    clear, before, last = key, result[1], result[2]
    for byte in bytes([0] * ((seed & 6) // 2)) + struct.pack("<I", len(data)) + data:
        code = byte ^ ((before + clear) & 0xFF)
        result.append(code)
        clear, before, last = byte, last, code
    return bytes(result).hex().upper()


def _project(name, identity, modules):
    lines = [f'ID="{identity}"']
    lines += [f"Document={m}/&H00000000" if kind == "Document" else f"{kind}={m}"
              for m, (kind, _) in modules.items()]
    lines += [f'Name="{name}"', 'HelpContextID="0"', 'VersionCompatible32="393222000"',
              f'CMG="{_encrypted(identity, bytes(4))}"', f'DPB="{_encrypted(identity, bytes(1))}"',
              f'GC="{_encrypted(identity, bytes([0xFF]))}"', "", "[Host Extender Info]",
              "&H00000001={3832D640-CF90-11CF-8E43-00A0C911005A};VBE;&H00000000", "", "[Workspace]"]
    lines += [f"{m}=0, 0, 0, 0, C" for m in modules]
    return "".join(line + "\r\n" for line in lines).encode("cp1252")


def macro_project(name, identity, modules):
    """The bytes of a project. `modules`: name -> ("Document", "Class" or "Module", source as bytes)."""
    macros = Storage({m: compress(source) for m, (_, source) in modules.items()})
    macros["dir"] = compress(_directory(name, modules))
    macros["_VBA_PROJECT"] = bytes.fromhex("cc61ffff000000")
    names = b"".join(m.encode("cp1252") + b"\0" + m.encode("utf-16-le") + b"\0\0" for m in modules) + b"\0\0"
    return compound_file(Storage({"VBA": macros, "PROJECT": _project(name, identity, modules),
                                  "PROJECTwm": names}))
