"""Writes a dictionary as TOML, as far as scenarios need it."""

import json


def text_of(content):
    return "".join(f"{_key(key)} = {_value(value)}\n" for key, value in content.items())


def _key(key):
    return json.dumps(key, ensure_ascii=False)


def _value(value):
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, dict):
        inside = ", ".join(f"{_key(key)} = {_value(item)}" for key, item in value.items())
        return f"{{ {inside} }}"
    if isinstance(value, list):
        return f"[{', '.join(map(_value, value))}]"
    return _key(value) if isinstance(value, str) else repr(value)
