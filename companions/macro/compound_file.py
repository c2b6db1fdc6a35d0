"""Writes OLE compound files (version 3, sectors of 512 bytes) with the features that a macro project needs."""
import struct

SECTOR, MINI_SECTOR, MINI_LIMIT = 512, 64, 4096
END, FREE, FAT_SECTOR, NONE = 0xFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFD, 0xFFFFFFFF
STORAGE, STREAM, ROOT = 1, 2, 5


class Storage(dict):
    """Streams (bytes) and storages by their names."""


def _pad(data, size):
    return data + bytes(-len(data) % size)


def _chain(table, count):
    """Allocates `count` entries at the end of an allocation table; returns the number of the first."""
    first = len(table)
    table.extend(list(range(first + 1, first + count)) + [END] if count else [])
    return first if count else END


class _Writer:
    def __init__(self, root):
        self.fat, self.sectors = [], b""
        self.mini_fat, self.mini_stream = [], b""
        self.entries = [None]
        child = self._add_children(root)
        mini_start = self._store(self.mini_stream)
        self.entries[0] = self._entry("Root Entry", ROOT, NONE, NONE, child, mini_start, len(self.mini_stream))

    def _store(self, data):
        first = _chain(self.fat, -(-len(data) // SECTOR))
        self.sectors += _pad(data, SECTOR)
        return first

    def _store_stream(self, data):
        if len(data) >= MINI_LIMIT:
            return self._store(data)
        first = _chain(self.mini_fat, -(-len(data) // MINI_SECTOR))
        self.mini_stream += _pad(data, MINI_SECTOR)
        return first

    @staticmethod
    def _entry(name, kind, left, right, child, start, size):
        text = name.encode("utf-16-le") + b"\0\0"
        return struct.pack("<64sHBB3I16sI8s8sIQ", text, len(text), kind, 1, left, right, child,
                           bytes(16), 0, bytes(8), bytes(8), start, size)

    def _add_children(self, storage):
        """Enters a storage's members; returns the number of the entry at the root of their tree."""
        # The format's order: shorter names first, then by upper case.
        return self._add_tree(sorted(storage.items(), key=lambda item: (len(item[0]), item[0].upper())))

    def _add_tree(self, members):
        if not members:
            return NONE
        middle = len(members) // 2
        number = len(self.entries)
        self.entries.append(None)
        left = self._add_tree(members[:middle])
        right = self._add_tree(members[middle + 1:])
        name, content = members[middle]
        if isinstance(content, Storage):
            entry = self._entry(name, STORAGE, left, right, self._add_children(content), 0, 0)
        else:
            entry = self._entry(name, STREAM, left, right, NONE, self._store_stream(content), len(content))
        self.entries[number] = entry
        return number

    def bytes(self):
        directory = b"".join(self.entries)
        empty = struct.pack("<64sHBB3I16sI8s8sIQ", b"", 0, 0, 0, NONE, NONE, NONE, bytes(16), 0, bytes(8),
                            bytes(8), 0, 0)
        while len(directory) % SECTOR:
            directory += empty
        directory_start = self._store(directory)
        mini_table = struct.pack(f"<{len(self.mini_fat)}I", *self.mini_fat)
        mini_table += b"\xff" * (-len(mini_table) % SECTOR)
        mini_fat_start = self._store(mini_table)
        # The table also describes its own sectors.
        fat_count = 1
        while fat_count * (SECTOR // 4) < len(self.fat) + fat_count:
            fat_count += 1
        assert fat_count <= 109, "larger than any macro project"
        fat_start = len(self.fat)
        table = self.fat + [FAT_SECTOR] * fat_count
        table += [FREE] * (fat_count * (SECTOR // 4) - len(table))
        header = struct.pack("<8s16sHHHHH6sIIIIIIIIII", bytes.fromhex("d0cf11e0a1b11ae1"), bytes(16), 0x3E, 3,
                             0xFFFE, 9, 6, bytes(6), 0, fat_count, directory_start, 0, MINI_LIMIT,
                             mini_fat_start, len(mini_table) // SECTOR, END, 0, fat_start)
        places = list(range(fat_start + 1, fat_start + fat_count)) + [FREE] * (109 - fat_count)
        header += struct.pack("<108I", *places)
        return header + self.sectors + struct.pack(f"<{len(table)}I", *table)


def compound_file(root):
    return _Writer(root).bytes()
