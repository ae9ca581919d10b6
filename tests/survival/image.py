"""Writes a disc image of many small files, which takes a fraction of the time that putting them on a disk would."""
import struct

SECTOR = 2048


def both(number, size):
    """A number in both byte orders, as the format has it."""
    code = {2: "H", 4: "I"}[size]
    return struct.pack("<" + code, number) + struct.pack(">" + code, number)


def record(name, sector, size, is_folder):
    padding = b"\0" if len(name) % 2 == 0 else b""
    length = 33 + len(name) + len(padding)
    stamp = bytes([99, 3, 14, 15, 9, 26, 0])
    return (bytes([length, 0]) + both(sector, 4) + both(size, 4) + stamp + bytes([2 if is_folder else 0, 0, 0])
            + both(1, 2) + bytes([len(name)]) + name + padding)


def whole_sectors(records):
    """The records one after the other, none of them across the end of a sector."""
    sectors = [b""]
    for each in records:
        if len(sectors[-1]) + len(each) > SECTOR:
            sectors[-1] = sectors[-1].ljust(SECTOR, b"\0")
            sectors.append(b"")
        sectors[-1] += each
    sectors[-1] = sectors[-1].ljust(SECTOR, b"\0")
    return b"".join(sectors)


class Image:
    """An image of a tree: folders by path, the disc's own ("") first, and in each the files with their bytes."""

    CONTENT = 18  # the one sector that all files have for content

    def __init__(self, label, folders):
        self._label = label
        self._folders = folders
        self._children = {path: [] for path in folders}
        for path in folders:
            if path:
                self._children[path.rpartition("/")[0]].append(path)
        self._place = {}
        sector = self.CONTENT + 1
        for path in folders:  # what lies where does not change the length of a listing
            size = len(self._listing(path, dict.fromkeys(folders, (0, 0))))
            self._place[path] = (sector, size)
            sector += size // SECTOR
        self._end = sector

    def _listing(self, path, place):
        parent = path.rpartition("/")[0]
        records = [record(b"\0", *place[path], True), record(b"\1", *place[parent], True)]
        records += [record(child.rpartition("/")[2].encode(), *place[child], True) for child in self._children[path]]
        records += [record(name.encode() + b";1", self.CONTENT, size, False) for name, size in self._folders[path]]
        return whole_sectors(records)

    def _descriptor(self):
        text = bytearray(b" " * SECTOR)
        text[0:8] = b"\1CD001\1\0"
        text[40:72] = self._label.upper().encode().ljust(32)
        for start, value in ((72, bytes(8)), (80, both(self._end, 4)), (88, bytes(32)), (120, both(1, 2)),
                             (124, both(1, 2)), (128, both(SECTOR, 2)), (132, bytes(24)),
                             (156, record(b"\0", *self._place[""], True)), (881, b"\1\0")):
            text[start:start + len(value)] = value
        return bytes(text)

    def write(self, path):
        with open(path, "wb") as file:
            file.write(bytes(16 * SECTOR))
            file.write(self._descriptor())
            file.write(b"\xffCD001\1".ljust(SECTOR, b"\0"))
            file.write(b"x" * SECTOR)
            for folder in self._folders:
                file.write(self._listing(folder, self._place))
