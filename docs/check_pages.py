#!/usr/bin/env python3
"""Checks the pages against the repository and the manual; prints what is wrong.

usage: docs/check_pages.py TAGFILE, in the top folder; TAGFILE is Doxygen's list of what it documented.
"""

import glob
import os
import re
import sys
import xml.etree.ElementTree

FENCE = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)[^)]*\)")

problems = []


def text_of(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def prose_of(path):
    return re.sub(r"`[^`\n]*`", "", FENCE.sub("", text_of(path)))


def anchors_of(path):
    """The anchors that Markdown viewers give to headings."""
    headings = re.findall(r"^#+ +(.*)$", FENCE.sub("", text_of(path)), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def check_links(page):
    for link in LINK.findall(prose_of(page)):
        if re.match(r"[a-z]+:|@ref$", link):
            continue
        name, _, anchor = link.partition("#")
        target = os.path.normpath(os.path.join(os.path.dirname(page), name)) if name else page
        if not os.path.exists(target):
            problems.append(f"{page}: link to {link}, which does not exist")
        elif anchor and anchor not in anchors_of(target):
            problems.append(f"{page}: link to {link}, but {target} has no such heading")


def check_passages(page):
    """Code in a page stands so in an example, line for line but for the indentation; whole programs are run elsewhere."""
    def lines(text):
        return "\n".join(line.strip() for line in text.strip().splitlines()) + "\n"

    examples = [lines(text_of(path)) for path in glob.glob("examples/*.cpp")]
    for language, code in FENCE.findall(text_of(page)):
        if language == "cpp" and "int main()" not in code and not any("\n" + lines(code) in example for example in examples):
            problems.append(f"{page}: code that no example has: {code.strip().splitlines()[0].strip()} ...")


def check_operations(pages, tagfile):
    """A page names each operation of the class and of the namespaces of the layers on it."""
    named = set()
    for page in pages:
        named.update(re.findall(r"@ref ([\w:=]+)", text_of(page)))
    operations = set()
    for compound in xml.etree.ElementTree.parse(tagfile).findall("compound"):
        scope = compound.findtext("name")
        if scope == "CVorbel" or scope.startswith("vorbel::"):
            operations.update(f"{scope}::{member.findtext('name')}" for member in compound.findall("member")
                              if scope == "CVorbel" or member.get("kind") == "function")
    problems.extend(f"no page names {name}" for name in sorted(operations - named))


def check_examples(listing):
    """The scripts run the examples that the manual lists."""
    listed = set(re.findall(r"^\\example (\S+\.cpp)$", text_of(listing), re.MULTILINE))
    present = {os.path.basename(path) for path in glob.glob("examples/*.cpp")}
    problems.extend(f"{listing}: {name} is not in both this list and examples/" for name in sorted(listed ^ present))


pages = sorted(glob.glob("docs/*.md"))
for page in ["README.md", "CHANGELOG.md", "CONTRIBUTING.md", *pages]:
    check_links(page)
for page in pages:
    check_passages(page)
check_operations(pages, sys.argv[1])
check_examples("docs/examples.dox")
for problem in problems:
    print(problem, file=sys.stderr)
sys.exit(1 if problems else 0)
