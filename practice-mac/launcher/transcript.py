"""The record of every tool that ran, as the stand-ins write it."""

import json


def read(path):
    """The records in the order in which the tools started.

    Bytes that are no UTF-8 come as Python's surrogate escapes, as in os.fsdecode.
    """
    text = path.read_text(encoding="utf-8", errors="surrogateescape")
    records = [json.loads(line) for line in text.split("\n") if line]
    return sorted(records, key=lambda record: record["started"])


def write(records, target):
    target.write_text("".join(f"{json.dumps(record)}\n" for record in records))
