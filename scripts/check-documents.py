#!/usr/bin/env python3
"""check-documents.py PROGRAMS: checks the documents against the program.

Links and anchors of every document have to exist, every long option that README and manual name has to be in a help text,
and every command in their blocks of `sh` has to succeed. The commands of one document run one after the other, in a
home folder with an application in ~/src/orders. PROGRAMS is the folder of the built programs.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RUN = ["README.md", "docs/manual.md"]
# Commands that are not run, by their beginning.
NOT_RUN = {
    "sudo ": "changes the machine",
    "kvawizard": "waits for its user",
    "kvamigrate replace -i": "asks on a terminal",
    "kvamigrate wizard": "waits for its user",
    "./kvamigrate.sh wizard": "waits for its user",
}
# The status of a check that found something is no failure of the command.
WRAPPER = """#!/bin/sh
'{program}' "$@"
status=$?
[ $status = 4 ] && exit 0
exit $status
"""

problems = []


def problem(document, line, text):
    problems.append(f"{document}:{line}: {text}")


def blocks(text):
    """Yields the fenced blocks: the number of their first line, their language, their lines."""
    language, begun, lines = None, 0, []
    for number, line in enumerate(text.splitlines(), 1):
        fence = re.match(r"\s*```(\w*)", line)
        if fence and language is None:
            language, begun, lines = fence[1], number + 1, []
        elif fence:
            yield begun, language, lines
            language = None
        elif language is not None:
            lines.append(line)


def without_blocks(text):
    """The text with the same lines, those of blocks empty."""
    lines = text.splitlines()
    for begun, _, content in blocks(text):
        for i in range(begun - 2, begun + len(content)):
            lines[i] = ""
    return lines


def anchors(document):
    """The anchors that a document's headings get."""
    found = set()
    with open(os.path.join(ROOT, document), encoding="utf-8") as file:
        for line in without_blocks(file.read()):
            heading = re.match(r"#+\s+(.*)", line)
            if heading:
                slug = re.sub(r"[^\w\- ]", "", heading[1].strip().lower()).replace(" ", "-")
                found.add(slug)
    return found


def check_links(document, text):
    for number, line in enumerate(without_blocks(text), 1):
        line = re.sub(r"`[^`]*`", "", line)
        for target in re.findall(r"\]\(([^)\s]+)\)|(?:src|href)=\"([^\"]+)\"", line):
            target = target[0] or target[1]
            if re.match(r"\w+:", target):
                continue
            path, _, anchor = target.partition("#")
            linked = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
            if not os.path.exists(os.path.join(ROOT, linked)):
                problem(document, number, f"no such file: {target}")
            elif anchor and linked.endswith(".md") and anchor not in anchors(linked):
                problem(document, number, f"no such heading: {target}")


def known_options(programs):
    """The long options in the help texts of the programs, commands of commands included."""
    options = set()
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    waiting = [["kvamigrate"], ["kvawizard"]]
    while waiting:
        command = waiting.pop()
        result = subprocess.run([os.path.join(programs, command[0]), *command[1:], "--help"], capture_output=True,
                                text=True, env=environment)
        if result.returncode != 0:
            sys.exit(f"{' '.join(command)} --help: exit status {result.returncode}")
        options.update(re.findall(r"--[a-z][a-z-]+", result.stdout))
        commands = re.search(r"^Commands:\n((?:  .*\n)*)", result.stdout, re.M)
        if commands:
            names = re.findall(r"^  ([a-z][a-z -]*?)(?:  |$)", commands[1], re.M)
            waiting += [[*command, *name.split()] for name in names]
    return options


def check_options(document, text, options):
    for number, line in enumerate(text.splitlines(), 1):
        for code in re.findall(r"`([^`]+)`", line) + ([line] if re.match(r"\s*kvamigrate ", line) else []):
            if re.match(r"\s*(kvamigrate|kvawizard|--)", code):
                for option in re.findall(r"(?<![\w-])--[a-z][a-z-]+", code):
                    if option not in options:
                        problem(document, number, f"no help text has the option {option}")


def make_application(folder):
    """The example application under the names that the documents use, in git."""
    example = os.path.join(ROOT, "examples/bde")
    shutil.copytree(example, folder)
    shutil.copytree(example, os.path.join(folder, "src"))
    shutil.copy(os.path.join(example, "Main.dfm"), os.path.join(folder, "About.txt"))
    for extension in ("dpr", "dproj"):
        renamed = os.path.join(folder, f"Orders.{extension}")
        os.rename(os.path.join(folder, f"LendDesk.{extension}"), renamed)
        with open(renamed, "rb") as file:
            text = file.read()
        with open(renamed, "wb") as file:
            file.write(text.replace(b"LendDesk", b"Orders"))
    subprocess.run("git init -q && git add -A && git -c user.name=x -c user.email=x commit -qm begin", shell=True,
                   check=True, cwd=folder)


def make_world(scratch, programs):
    """Makes the folders in which the commands run; returns the environment."""
    home, tools = os.path.join(scratch, "home"), os.path.join(scratch, "bin")
    os.makedirs(home)
    os.makedirs(tools)
    make_application(os.path.join(home, "src/orders"))
    make_application(os.path.join(scratch, "checkout/Apps"))
    project = os.path.join(scratch, "project")
    os.makedirs(project)
    os.symlink(os.path.join(ROOT, "examples"), os.path.join(project, "examples"))
    for name in (os.path.join(tools, "kvamigrate"), os.path.join(project, "kvamigrate.sh")):
        with open(name, "w", encoding="utf-8") as file:
            file.write(WRAPPER.format(program=os.path.join(programs, "kvamigrate")))
        os.chmod(name, 0o755)
    return dict(os.environ, HOME=home, PATH=tools + ":" + os.environ["PATH"], p="Orders.dproj", TMPDIR=scratch,
                GIT_CONFIG_GLOBAL=os.devnull, GIT_PAGER="cat", LC_ALL="C.UTF-8")


def run_commands(document, text, programs):
    with tempfile.TemporaryDirectory() as scratch:
        environment = make_world(scratch, programs)
        for begun, language, lines in blocks(text):
            if language != "sh":
                continue
            is_of_project = any("./kvamigrate.sh" in line or "examples/" in line for line in lines)
            folder = os.path.join(scratch, "project" if is_of_project else "home/src/orders")
            script = "\n".join(line for line in lines if not line.startswith(tuple(NOT_RUN)))
            for name, real in (("/tmp/", scratch + "/"), ("/srv/checkout", scratch + "/checkout")):
                script = script.replace(name, real)
            result = subprocess.run(["bash", "-eu", "-o", "pipefail", "-c", script], cwd=folder, env=environment,
                                    stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace")
            # `git diff --no-index` and `grep` say with 1 that there are differences, or none.
            last = script.rstrip().rsplit("\n", 1)[-1].lstrip()
            if result.returncode != 0 and not (result.returncode == 1 and last.startswith(("git diff", "grep"))):
                problem(document, begun, f"exit status {result.returncode} of\n{script}\n{result.stderr}")


def main(programs):
    programs = os.path.abspath(programs)
    listing = subprocess.run(["git", "ls-files", "-z", "--", "*.md"], cwd=ROOT, capture_output=True, check=True, text=True)
    options = known_options(programs)
    for document in filter(None, listing.stdout.split("\0")):
        with open(os.path.join(ROOT, document), encoding="utf-8") as file:
            text = file.read()
        check_links(document, text)
        if document in RUN:
            check_options(document, text, options)
            run_commands(document, text, programs)
    print("\n".join(problems) or "documents: all links, options and commands hold")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
