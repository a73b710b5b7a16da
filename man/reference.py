#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Puts what the headers say into the manual pages' sources.

    reference.py SOURCES INCLUDE VERSION OUT

For each SOURCES/PAGE.scd.in there is OUT/PAGE.scd afterwards. Two kinds of lines are replaced: "@about HEADER@" by the comment at
the header's beginning, "@reference HEADER@" by everything that it declares, in its order. So a function is described in one place
only, and the page cannot contradict the header. "@version@" becomes the version. OUT/aliases tells for each function that stands
in a page's reference which page that is.
"""
import pathlib
import re
import sys

PIECE = re.compile(r'/\*(?!\*<)(?P<comment>.*?)\*/|(?P<directive>^#[^\n]*(?:\\\n[^\n]*)*)|(?P<code>[^;{#/]+(?:/\*\*<.*?\*/[^;{/]*)*[;{])', re.S | re.M)
SECTION = re.compile(r'\s*-{3,}\s*(.*?)\s*-{3,}\s*$', re.S)
# What a header needs as a file, and tells a reader nothing.
IGNORED = re.compile(r'MOXBOOT_(BEGIN|END|STATIC_ASSERT)|^#(include|ifndef|ifdef|else|endif|pragma)')


def text_of(comment):
    """The comment's words without its stars."""
    lines = [re.sub(r'^\s*\* ?', '', line) for line in comment.lstrip('*').split('\n')]
    return '\n'.join(lines).strip()


def escaped(text):
    return re.sub(r'([\\*_#~|\[\]`])', r'\\\1', text)


def emphasised(text):
    """Running text: arguments underlined, functions and constants bold, the rest as it stands."""
    parts = re.split(r'(@p [A-Za-z_]\w*|\b[A-Za-z_]\w*(?=\(\))|\b[A-Za-z]+_\w+\b|(?<![\w"])_[A-Z]\w*\b)', text)
    shown = []
    for part in parts:
        if part.startswith('@p '):
            shown.append('_' + escaped(part[3:]) + '_')
        elif re.fullmatch(r'\w*_\w*', part) or (re.fullmatch(r'[A-Za-z_]\w*', part) and text[text.find(part) + len(part):].startswith('()')):
            shown.append('*' + escaped(part) + '*')
        else:
            shown.append(escaped(part))
    return ''.join(shown)


def paragraphs(text):
    """Paragraphs and list items of a comment, each in one line."""
    found = ['']
    for line in text.split('\n'):
        line = line.strip()
        if not line:
            found.append('')
        elif line.startswith('- '):
            found.append(line)
        else:
            found[-1] = (found[-1] + ' ' + line).strip()
    return [paragraph for paragraph in found if paragraph]


def described(text, indent='\t'):
    """Lines that describe one declaration: text, arguments, result."""
    fields = re.split(r'@(?=(?:param|return)\b)', text)
    lines = []
    for paragraph in paragraphs(fields[0]):
        if paragraph.startswith('- '):
            lines.append(indent + '- ' + emphasised(paragraph[2:]))
        else:
            lines += [indent + emphasised(paragraph), '']
    for field in fields[1:]:
        kind, _, rest = field.partition(' ')
        rest = ' '.join(rest.split())
        if kind == 'param':
            names, _, rest = rest.replace(', ', ',', 1).partition(' ') if re.match(r'\w+, \w+ ', rest) else rest.partition(' ')
            names = ', '.join('_' + escaped(name) + '_' for name in names.split(','))
            lines += [indent + names + ': ' + emphasised(rest), '']
        else:
            lines += [indent + 'Result: ' + emphasised(rest), '']
    return lines


def collapsed(code):
    return ' '.join(code.split())


def prototype(code):
    code = re.sub(r'\s*(MOXBOOT_PRINTF\([^)]*\)|__attribute__\(\(.*\)\))', '', collapsed(code))
    return code.replace('MOXBOOT_API ', '')


def literal(code):
    return ['\t```'] + ['\t' + line for line in code.split('\n')] + ['\t```', '']


class Header:
    def __init__(self, path):
        self.path = pathlib.Path(path)
        self.source = self.path.read_text(encoding='utf-8')
        self.about = ''
        self.lines = []
        self.names = []
        self.heads = []  # lines of the prototypes that share a description
        self.read()

    def read(self):
        comment = None
        position = 0
        while match := PIECE.search(self.source, position):
            gap = self.source[position:match.start()] + re.match(r'\s*', match[0])[0]
            grouped = '\n\n' not in gap
            position = match.end()
            if match['comment'] is not None:
                comment = self.take_comment(text_of(match['comment']))
                continue
            code = match[0]
            if match['code'] and code.endswith('{'):
                # A record: up to its closing brace and name.
                position = self.source.index('}', position)
                position = self.source.index(';', position) + 1
                code = self.source[match.start():position]
            code = code.strip()
            if IGNORED.search(code) or re.fullmatch(r'#define MOXBOOT_\w+_H', code):
                comment = None if not IGNORED.search(code) else comment
                continue
            if not code:
                continue
            self.declare(code, comment, grouped and comment is None)
            comment = None

    def take_comment(self, text):
        self.heads = []
        if text.startswith('SPDX'):
            return None
        if text.startswith('@file'):
            self.about = re.sub(r'^@file\s+\S+\s*', '', text)
            return None
        if title := re.fullmatch(r'-{3,}\s*(.*?)\s*-{3,}(.*)', text, re.S):
            self.lines += ['## ' + escaped(collapsed(title[1]).rstrip('.').replace('`', '')), '']
            rest = title[2].strip()
        else:
            rest = None
        if rest is None and self.source_has_plain(text):
            rest = text
        if rest is not None:
            for paragraph in paragraphs(rest):
                self.lines += [emphasised(paragraph), '']
            return None
        return text

    def source_has_plain(self, text):
        """Whether the text stands in a comment that belongs to no declaration."""
        first = text.split('\n')[0]
        return re.search(r'/\*\s*(?:\n \* ?)?' + re.escape(first), self.source) is not None

    def declare(self, code, comment, same_group):
        if re.fullmatch(r'struct \w+;', code):
            return
        tail = None
        record = code.startswith('typedef struct')
        if code.startswith('#define'):
            tail = re.search(r'/\*\*<\s*(.*?)\s*\*/', code, re.S)
            shown = re.sub(r'\s*/\*\*<.*', '', collapsed(code.replace('\\\n', ' ')))
        elif record:
            shown = re.search(r'(\w+);$', code)[1]
        else:
            shown = prototype(code)
            if name := re.match(r'MOXBOOT_API [^(]*?(\w+)\(', collapsed(code)):
                self.names.append(name[1])
        shown = '*' + escaped(shown) + '*'
        if same_group and self.heads and not tail and not record:
            # Nothing new is said of it: it stands with the one before.
            self.lines[self.heads[-1]] += '++'
            self.lines.insert(self.heads[-1] + 1, shown)
            self.heads.append(self.heads[-1] + 1)
            return
        self.heads = [] if tail or record else [len(self.lines)]
        self.lines += [shown, ''] + described(tail[1] if tail else comment or '')
        if record:
            self.lines += literal(code)


def page(source, include, version, names):
    for line in source.split('\n'):
        if match := re.fullmatch(r'@(about|reference) (\S+)@', line):
            header = Header(pathlib.Path(include) / 'moxboot' / match[2])
            if match[1] == 'about':
                for paragraph in paragraphs(header.about):
                    yield emphasised(paragraph)
                    yield ''
            else:
                names += header.names
                yield from header.lines
        else:
            yield line.replace('@version@', version)


def main(sources, include, version, out):
    aliases = []
    for source in sorted(pathlib.Path(sources).glob('*.scd.in')):
        name = source.name.removesuffix('.scd.in')
        names = []
        text = '\n'.join(page(source.read_text(encoding='utf-8'), include, version, names))
        text = re.sub(r'\n{3,}', '\n\n', text).strip('\n') + '\n'
        (pathlib.Path(out) / f'{name}.scd').write_text(text, encoding='utf-8')
        aliases += [f'{function} {name}\n' for function in names]
    (pathlib.Path(out) / 'aliases').write_text(''.join(aliases), encoding='utf-8')


if __name__ == '__main__':
    main(*sys.argv[1:])
