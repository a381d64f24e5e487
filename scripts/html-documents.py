#!/usr/bin/env python3
"""html-documents.py OUTPUT: writes the documents for users as HTML, with their pictures, to the folder OUTPUT.

A link to a document that is not among them becomes plain text. Needs cmark-gfm.
"""

import html
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DOCUMENTS = ["README.md", "CHANGELOG.md", "docs/manual.md", "docs/promises.md", "docs/report.md", "docs/rules.md",
             "docs/windows.md", "examples/README.md"]
PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>{title}</title><style>
body {{ font: 16px/1.5 sans-serif; max-width: 60em; margin: 2em auto; padding: 0 1em; }}
pre {{ background: #f4f4f4; padding: .7em; overflow: auto; }}
table {{ border-collapse: collapse; }} td, th {{ border: 1px solid #ccc; padding: .3em .6em; vertical-align: top; }}
img {{ max-width: 100%; }}
</style></head><body>
{body}</body></html>
"""


def with_anchor(heading):
    level, content = heading.groups()
    text = html.unescape(re.sub(r"<[^>]*>", "", content)).strip().lower()
    slug = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
    return f'<h{level} id="{slug}">{content}</h{level}>'


def with_target(document, link):
    path, mark, anchor = link[1].partition("#")
    target = os.path.normpath(os.path.join(os.path.dirname(document), path))
    if re.match(r"\w+:", link[1]) or not path:
        return link[0]
    if target not in DOCUMENTS:
        return link[2]
    return f'<a href="{os.path.splitext(path)[0]}.html{mark}{anchor}">{link[2]}</a>'


def convert(document, output):
    body = subprocess.run(["cmark-gfm", "--unsafe", "-e", "table", os.path.join(ROOT, document)], check=True,
                          capture_output=True, text=True).stdout
    body = re.sub(r"<h(\d)>(.*?)</h\1>", with_anchor, body)
    body = re.sub(r'<a href="([^"]*)">(.*?)</a>', lambda link: with_target(document, link), body)
    title = re.search(r"<h1[^>]*>(.*?)</h1>", body)
    path = os.path.join(output, os.path.splitext(document)[0] + ".html")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(PAGE.format(title=re.sub(r"<[^>]*>", "", title[1]) if title else document, body=body))


for name in DOCUMENTS:
    convert(name, sys.argv[1])
shutil.copytree(os.path.join(ROOT, "docs/images"), os.path.join(sys.argv[1], "docs/images"), dirs_exist_ok=True)
