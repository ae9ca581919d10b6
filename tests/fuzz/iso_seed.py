"""Turns a disc image into a seed for fuzz_iso: the pieces of it that are not empty.

    iso_seed.py IMAGE SEED
"""

import struct
import sys

SECTOR = 2048


def pieces(image):
    for sector in range((len(image) + SECTOR - 1) // SECTOR):
        content = image[sector * SECTOR:(sector + 1) * SECTOR].rstrip(b"\0")
        if content:
            yield struct.pack("<HH", sector, len(content)) + content


if __name__ == "__main__":
    with open(sys.argv[1], "rb") as image, open(sys.argv[2], "wb") as seed:
        seed.write(b"\0" + b"".join(pieces(image.read())))
