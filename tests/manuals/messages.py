#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The message texts of the library's sources.

    messages.py SRC              prints "FILE<tab>KIND<tab>TEXT" for each text
    messages.py SRC PAGE         holds the tables of a page against them: every text that tells of a failure stands there, and
                                 nothing that no source says

A message is a string literal with a blank and a word in it: paths, names and formats of values have none, or stand in a call that
formats. The format of a REPORT_INFO whose words tell of nothing wrong is progress; any other message counts as a failure. Line
ends and blanks around a text are left out.
"""
import pathlib
import re
import sys

TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|(?P<text>"(?:[^"\\\n]|\\.)*")|(?P<sign>\'(?:[^\'\\\n]|\\.)*\'|[^\s\w])|(?P<word>\w+)', re.S)
# A macro that puts a name into a text.
TEXT_MACRO = re.compile(r'^#define (\w+)\((\w+)\) ((?:"(?:[^"\\]|\\.)*" *|\w+ *)+)$', re.M)
NO_MESSAGE = ('static_assert', 'sprintf_s', 'snprintf_s', 'snprintf_truncated_s', 'strftime', 'sscanf_s')
WRONG = re.compile(r'unsuccess|not success|nok\b|unable|not exist|not normal|not ok|is null|too large|not support|can not', re.I)


def macros(paths):
    return {match[1]: (match[2], match[3]) for path in paths for match in TEXT_MACRO.finditer(path.read_text(encoding='utf-8'))}


def expanded(source, known):
    for name, (parameter, text) in known.items():
        source = re.sub(rf'\b{name}\(("[^"]*")\)', lambda use: re.sub(rf'\b{parameter}\b', use[1], text), source)
    return source


def tokens(source):
    """(kind, value); literals that follow each other are one."""
    found = []
    for match in TOKEN.finditer(re.sub(r'^\s*#.*$', '', source, flags=re.M)):
        kind = match.lastgroup
        if kind == 'text' and found and found[-1][0] == 'text':
            found[-1] = ('text', found[-1][1] + match[0][1:-1])
        elif kind == 'text':
            found.append(('text', match[0][1:-1]))
        elif kind:
            found.append((kind, match[0]))
    return found


def call_around(stream, index):
    """The name in front of the innermost parenthesis that is open at a token, and whether the token is its first argument."""
    depth = 0
    for at in range(index - 1, -1, -1):
        if stream[at][1] in ('}', ')', ']'):
            depth += 1
        elif stream[at][1] in ('{', '(', '[') and depth > 0:
            depth -= 1
        elif stream[at] == ('sign', '('):
            return (stream[at - 1][1] if at else ''), at == index - 1
        elif stream[at][1] in ('{', ';') and depth == 0:
            break
    return '', False


def bare(text):
    return re.sub(r'^(?:\\[rn]|\s)+|(?:\\[rn]|\s)+$', '', text)


def messages(root):
    """(file, kind, text) of each message, in the order of the files and of their lines."""
    paths = sorted(pathlib.Path(root).rglob('*.[ch]pp'))
    known = macros(paths)
    for path in paths:
        stream = tokens(expanded(path.read_text(encoding='utf-8'), known))
        for index, (kind, text) in enumerate(stream):
            if kind != 'text' or ' ' not in text or not re.search(r'[a-z]{3}', re.sub(r'\\.|%\w+', '', text)):
                continue
            call, first = call_around(stream, index)
            if call in NO_MESSAGE or (call in ('REPORT_INFO', 'REPORT_FAILURE') and not first):
                continue
            progress = call == 'REPORT_INFO' and not WRONG.search(text)
            yield path.relative_to(root).as_posix(), 'progress' if progress else 'failure', bare(text)


def told_by_page(page):
    """The texts in the first cells of a page's tables."""
    found = []
    for line in pathlib.Path(page).read_text(encoding='utf-8').split('\n'):
        if line.startswith('|') and not line.startswith('|---'):
            # A text with a backtick in it would stand between two; there is none.
            found += [bare(text) for text in re.findall(r'`([^`]+)`', line.split(' | ')[0])]
    return found


def main(root, page=None):
    found = list(messages(root))
    if page is None:
        for row in found:
            print('\t'.join(row))
        return
    failures = {text for _, kind, text in found if kind == 'failure'}
    told = told_by_page(page)
    wrong = [f'{page} does not explain: {text}' for text in sorted(failures - set(told))]
    wrong += [f'no source says what {page} explains: {text}' for text in sorted(set(told) - {text for _, _, text in found})]
    wrong += [f'{page} explains twice: {text}' for text in sorted({text for text in told if told.count(text) > 1})]
    if len(failures) < 200:
        wrong.append(f'only {len(failures)} failure texts were found in {root}')
    if wrong:
        sys.exit('\n'.join(wrong))
    print(f'{len(failures)} failure texts, {len(told)} explained')


if __name__ == '__main__':
    main(*sys.argv[1:])
