#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""validate_records.py SCHEMA < RECORDS: holds each line of standard input to the JSON Schema and
prints how many there are; names what is wrong with one and fails."""

import json
import sys

import jsonschema


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    wrong = 0
    records = [json.loads(line) for line in sys.stdin.buffer]
    for number, record in enumerate(records, 1):
        for error in validator.iter_errors(record):
            wrong += 1
            print(f"{number}: {error.json_path}: {error.message[:200]}", file=sys.stderr)
    print(f"{len(records)} records")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
