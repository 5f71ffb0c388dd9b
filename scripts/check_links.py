#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Every relative link in a Markdown page, and in the guide's HTML where it is built, leads somewhere."""

import pathlib
import re
import sys

MARKDOWN_LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")
HTML_LINK = re.compile(r'(?:href|src)="([^"#]*)')


def complaints(root):
    folders = ("*", "docs/**/*", "bench/*", "fuzz/*", "packaging/*", "scripts/**/*", "src/**/*")
    pages = [page for folder in folders for page in root.glob(folder + ".md")]
    for page in sorted([*pages, *root.glob("build/docs/guide/html/*.html")]):
        pattern = MARKDOWN_LINK if page.suffix == ".md" else HTML_LINK
        text = page.read_text(encoding="utf-8")
        for link in pattern.findall(re.sub(r"(?s)```.*?```", "", text)):
            if link and ":" not in link and not (page.parent / link).is_file():
                if not (page.suffix == ".md" and (page.parent / link).is_dir()):
                    yield f"{page.relative_to(root)}: {link} leads nowhere"


def main():
    found = list(complaints(pathlib.Path(__file__).resolve().parent.parent))
    print("\n".join(found) if found else "links: all lead somewhere")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
