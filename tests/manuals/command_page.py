#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""command_page.py PROGRAM PAGE: the page's source tells of every command and long option that the program's help tells of, and of
no other."""
import pathlib
import re
import subprocess
import sys


def help_of(program, verb):
    return subprocess.run([program, *verb.split(), '--help'], check=True, capture_output=True, text=True, timeout=30).stdout


def part(text, title):
    """The lines of one part of a help text: an unindented title, then indented lines."""
    match = re.search(rf'^{title}:\n((?:[ ]+.*\n)*)', text, re.M)
    return match[1].split('\n') if match else []


def subcommands(text):
    return [match[1] for line in part(text, 'Subcommands') if (match := re.match(r'  ([a-z][a-z0-9-]*)(\s|$)', line))]


def options(text):
    """Long options of all groups; a group's title is any unindented line with a colon at its end."""
    names = set()
    for line in text.split('\n'):
        if re.match(r'Examples:|Exit status:', line):
            break
        if match := re.match(r'  (-\S+)', line):
            names.update(re.findall(r'--[a-z][a-z0-9-]*', match[1]))
    return names - {'--help'}


def told_by_help(program, verb=''):
    """Verb to its options, for all verbs that have no verbs below them; '' stands for the program itself."""
    text = help_of(program, verb)
    below = subcommands(text)
    found = {verb: options(text)} if not below or not verb else {}
    for name in below:
        found.update(told_by_help(program, f'{verb} {name}'.strip()))
    return found


def told_by_page(program, page):
    name = pathlib.Path(program).name
    found = {'': set()}
    verb = None
    for line in page.split('\n'):
        if line.startswith('# '):
            verb = '' if line == '# OPTIONS' else None
        elif match := re.match(rf'\*{name} ([a-z][a-z0-9 -]*)\*', line):
            verb = match[1]
            if verb in found:
                sys.exit(f'"{verb}" stands twice in the page')
            found[verb] = set()
        if verb is not None:
            found[verb].update(re.findall(r'(?<![\w-])--[a-z][a-z0-9-]*', line))
    found[''] -= {'--help'}
    return found


def main(program, page):
    by_help = told_by_help(program)
    by_page = told_by_page(program, pathlib.Path(page).read_text(encoding='utf-8'))
    if len(by_help) < 10:
        sys.exit(f'the help of {program} tells of {len(by_help)} commands only')
    # Options that many commands share may stand at the top, once more.
    by_page[''] -= {'--state'} if pathlib.Path(program).name == 'vboard' else set()
    wrong = [f'{verb or "the program itself"}: the help has {sorted(by_help.get(verb, {"no such command"}))}, '
             f'the page {sorted(by_page.get(verb, {"no such command"}))}'
             for verb in sorted(by_help.keys() | by_page.keys()) if by_help.get(verb) != by_page.get(verb)]
    if wrong:
        sys.exit('\n'.join(wrong))
    print(f'{len(by_help)} commands, {sum(len(names) for names in by_help.values())} options')


if __name__ == '__main__':
    main(sys.argv[1], sys.argv[2])
