"""Reading the description: files of JSON, and the faults that are found in them."""

import json


class SchemaError(Exception):
    """Something wrong in the description, with its place."""


def require(condition, place, what):
    if not condition:
        raise SchemaError(f"{place}: {what}")


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)
