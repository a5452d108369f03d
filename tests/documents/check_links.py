"""Checks that the links in all Markdown files below a folder lead to existing files and headings. Web links are not
checked.

    check_links.py ROOT
"""

import os
import re
import sys
import urllib.parse

SKIPPED_FOLDERS = {"build"}
FENCE = re.compile(r"^ *(```|~~~).*?^ *\1 *$", re.MULTILINE | re.DOTALL)
INLINE_CODE = re.compile(r"`[^`\n]*`")
LINK = re.compile(r"\[(?:[^\]\[]|\[[^\]]*\]\([^)]*\))*\]\(\s*<?([^)\s>]+)>?(?:\s+\"[^\"]*\")?\s*\)")
IMAGE = re.compile(r"!\[[^\]]*\]\(([^)\s]+)\)")  # including those inside a link
HTML_LINK = re.compile(r"<(?:a|img)\b[^>]*\b(?:href|src)=\"([^\"]+)\"")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*$", re.MULTILINE)
HTML_ANCHOR = re.compile(r"<a\b[^>]*\b(?:id|name)=\"([^\"]+)\"")


def markdown_files(root):
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if not name.startswith(".") and name not in SKIPPED_FOLDERS]
        yield from (os.path.join(folder, name) for name in files if name.endswith(".md"))


def without_blocks(path):
    with open(path, encoding="utf-8") as file:
        return FENCE.sub("", file.read())


def anchors(path):
    """The anchors that GitHub generates: headings in lower case, without punctuation, with dashes for spaces."""
    text = without_blocks(path)
    found = set(HTML_ANCHOR.findall(text))
    for heading in HEADING.findall(text):
        words = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
        slug = "".join(c for c in words if c.isalnum() or c in " -_").replace(" ", "-")
        name, repeats = slug, 0
        while name in found:
            repeats += 1
            name = f"{slug}-{repeats}"
        found.add(name)
    return found


def broken(path, link):
    """Why a link in the file at `path` is broken, or None."""
    parts = urllib.parse.urlsplit(link)
    if parts.scheme or parts.netloc:
        return None
    target = path
    if parts.path:
        target = os.path.join(os.path.dirname(path), urllib.parse.unquote(parts.path))
    if not os.path.exists(target):
        return "no such file"
    if parts.fragment and target.endswith(".md") and urllib.parse.unquote(parts.fragment) not in anchors(target):
        return "no such heading"
    return None


def main():
    root = sys.argv[1]
    links = failures = 0
    for path in sorted(markdown_files(root)):
        text = INLINE_CODE.sub("", without_blocks(path))
        for link in sorted(set(LINK.findall(text) + IMAGE.findall(text) + HTML_LINK.findall(text))):
            links += 1
            reason = broken(path, link)
            if reason:
                failures += 1
                print(f"{os.path.relpath(path, root)}: {link}: {reason}")
    print(f"{links} links, {failures} broken")
    return 1 if failures or not links else 0


sys.exit(main())
