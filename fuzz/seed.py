#!/usr/bin/env python3
"""Fills a fuzz target's corpus folder: seed.py TARGET DIR."""
import hashlib
import io
import pathlib
import re
import struct
import subprocess
import sys
import warnings
import zipfile
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
CORPUS = ROOT.parent / 'shared' / 'corpus'
ZELKC = ROOT / 'build' / 'release' / 'bin' / 'zelkc'
LIMIT = 40_000


def hexes(text):
    data = b''
    for word in re.sub(r'#.*', '', text).split():
        digits, _, times = word.partition('*')
        data += bytes.fromhex(digits) * int(times or 1)
    return data


def cases():
    """(code, version, records before, body, xml) of every case."""
    for path in sorted((ROOT / 'tests' / 'cases').rglob('*.case')):
        content = path.read_text(encoding='latin-1')
        if '{' not in content:  # else it stands for many cases of single flags
            yield from cases_in(content)


def cases_in(content):
    values, sections, head, name = {}, {}, None, None
    text = lambda key: '\n'.join(sections.get(key, []))
    number = lambda key, default: int(values.get(key, str(default)).split()[0])
    case = lambda: (number('tag', 0), number('version', 8), hexes(text('before')), hexes(text('body')), text('xml'))
    for line in content.splitlines():
        if not line or line.startswith('  '):
            if name:
                sections[name].append(line[2:])
        elif not line.startswith('#'):
            name, _, value = line.partition(' ')
            if name in sections and name in ('body', 'xml') or name == 'body' and 'xml' in sections:
                yield case()
                values, sections = dict(head[0]), dict(head[1])
            if name in ('body', 'xml') and head is None:
                head = dict(values), dict(sections)
            values[name], sections[name] = value, []
    yield case()


def movie(version, records):
    body = bytes([0x10, 0x00]) + b'\x00\x0c\x01\x00' + records + b'\0\0'
    return b'FWS' + bytes([version]) + struct.pack('<I', len(body) + 8) + body


def record(code, body):
    return struct.pack('<HI', code << 6 | 63, len(body)) + body


def movies():
    for code, version, before, body, _ in cases():
        if body:
            yield movie(version, before + record(code, body))
    for path in sorted(CORPUS.rglob('*.swf')):
        data = path.read_bytes()
        if data[:1] == b'C':
            try:
                data = b'F' + data[1:8] + zlib.decompress(data[8:])
            except zlib.error:
                continue
        yield data


def texts():
    for _, version, _, _, xml in cases():
        if xml.strip():
            yield f'<Movie SwfVersion="{version}">{xml}</Movie>'.encode('latin-1')
    for path in sorted(CORPUS.rglob('*.swf')):
        if path.stat().st_size < 4000 and ZELKC.exists():
            yield subprocess.run([ZELKC, 'convert', '--quiet', '--from', 'swf', '--to', 'xml', path, '-'],
                                 capture_output=True, check=False).stdout


def archive(entries, method=zipfile.ZIP_DEFLATED, comment=b''):
    file = io.BytesIO()
    with zipfile.ZipFile(file, 'w', method) as made, warnings.catch_warnings():
        warnings.simplefilter('ignore')  # names may be there twice
        made.comment = comment
        for name, text in entries:
            info = zipfile.ZipInfo(name)  # of a fixed time: the same seeds every time
            info.compress_type = method
            made.writestr(info, text)
    return file.getvalue()


def archives():
    odd = ['../evil', '/etc/passwd', 'C:\\CON', 'a' * 300, 'folder/', 'д.xml', '']
    samples = [path.read_bytes()[:2000] for path in sorted((ROOT / 'samples').glob('*.xml'))]
    for text in samples + ['<Movie/>'.encode('utf-16'), b'x', b' ' * 100_000]:
        yield archive([('data.xml', text)])
        yield archive([('data.xml', text[:1000])], zipfile.ZIP_STORED, b'a comment')
        yield archive([('empty', b''), ('data.xml', text), ('data.xml', b'another')])
        wrong = bytearray(archive([('data.xml', text[:1000])], zipfile.ZIP_STORED))
        wrong[wrong.index(b'data.xml') + 8] ^= 1  # no longer what the checksum is of
        yield bytes(wrong)
    for name in odd:
        yield archive([(name, b'<Movie/>')])
    yield archive([])
    yield archive([(name, b'') for name in odd])
    for text in texts():
        yield archive([('data.xml', text)])


def carets():
    """Texts, each behind a byte that says where the caret is."""
    for i, text in enumerate(texts()):
        yield bytes([i * 37 % 256]) + text


def main():
    target, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    seeds = {'fuzz_xml_to_swf': texts, 'fuzz_project_file': archives, 'fuzz_completion': carets}.get(target, movies)
    for seed in seeds():
        if 0 < len(seed) < LIMIT:
            (folder / hashlib.sha1(seed).hexdigest()).write_bytes(seed)


main()
