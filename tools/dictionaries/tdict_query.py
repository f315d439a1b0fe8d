#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the entries of a .tdict file for the given words: tdict_query.py FILE WORD…"""
import struct
import sys


def load(path):
    with open(path, "rb") as f:
        data = f.read()
    count, index_offset, blob_offset, blob_length, meta_offset, meta_length = struct.unpack_from("<IIIIII", data, 8)
    table = {}
    for i in range(count):
        koff, klen, voff, vlen = struct.unpack_from("<IIII", data, index_offset + 16 * i)
        key = data[blob_offset + koff:blob_offset + koff + klen].decode()
        table[key] = data[blob_offset + voff:blob_offset + voff + vlen].decode()
    return table


if __name__ == "__main__":
    entries = load(sys.argv[1])
    for word in sys.argv[2:]:
        print(word, "=>", entries.get(word, entries.get(word.lower(), "(none)")).replace("\n", " || "))
