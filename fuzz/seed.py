#!/usr/bin/env python3
"""Fills a fuzz target's corpus folder: seed.py TARGET DIR."""
import hashlib
import io
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import warnings
import zipfile
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
CORPUS = ROOT.parent / 'shared' / 'corpus'
BIN = ROOT / 'build' / 'release' / 'bin'
LIMIT = 40_000


def cases(kind):
    """What `kind` (xml or swf) all cases of the tests are, as movies."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([BIN / 'zelk_tests', '--gtest_also_run_disabled_tests', '--gtest_filter=CaseFiles.*AsSeeds'],
                       env=os.environ | {'ZELK_SEEDS': folder}, stdout=subprocess.DEVNULL, check=True)
        for path in sorted(pathlib.Path(folder).glob('*.' + kind)):
            yield path.read_bytes()


def movies():
    yield from cases('swf')
    for path in sorted(CORPUS.rglob('*.swf')):
        data = path.read_bytes()
        if data[:1] == b'C':
            try:
                data = b'F' + data[1:8] + zlib.decompress(data[8:])
            except zlib.error:
                continue
        yield data


def texts():
    yield from cases('xml')
    for path in sorted(CORPUS.rglob('*.swf')):
        if path.stat().st_size < 4000:
            yield subprocess.run([BIN / 'zelkc', 'convert', '--quiet', '--from', 'swf', '--to', 'xml', path, '-'],
                                 capture_output=True, check=False).stdout


def tags_in(body):
    """(code, body) of a movie's records."""
    at = 8 + (5 + 4 * (body[8] >> 3) + 7) // 8 + 4
    while at + 2 <= len(body):
        head = struct.unpack_from('<H', body, at)[0]
        code, size, at = head >> 6, head & 63, at + 2
        if size == 63:
            size, at = struct.unpack_from('<I', body, at)[0], at + 4
        yield code, body[at:at + size]
        at += size


def code_blocks():
    """Blocks of ActionScript 3, and what stands in the Abc elements of the cases."""
    for data in movies():
        for code, body in tags_in(data):
            if code == 72:
                yield body
            elif code == 82 and b'\0' in body[4:]:
                yield body[body.index(b'\0', 4) + 1:]
    for text in cases('xml'):
        for inner in re.findall(rb'<Abc[^>]*>(.*?)</Abc>', text, re.S):
            yield inner.strip()


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
    seeds = {'fuzz_xml_to_swf': texts, 'fuzz_project_file': archives, 'fuzz_completion': carets,
             'fuzz_abc': code_blocks}.get(target, movies)
    for seed in seeds():
        if 0 < len(seed) < (4096 if target == 'fuzz_abc' else LIMIT):
            (folder / hashlib.sha1(seed).hexdigest()).write_bytes(seed)


main()
