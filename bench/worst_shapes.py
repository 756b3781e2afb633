#!/usr/bin/env python3
"""Writes the worst shapes of input that the load limits admit, for bench/limits.sh.

    bench/worst_shapes.py SHAPE BYTES OUT

Each shape fills about BYTES bytes (less where a count limit is reached first, see --count):

  sections   small sections, one header line each ("*** 1a2b:")
  entries    one section of tiny entries, each key its own ("1a2b:\\tb")
  mixed      as many sections as a document holds, each with as many tiny entries as the
             limit on lines leaves ("*** 1a2b:" then "k0:\tb" ...)
  line       one giant line of text, no section
  value      one section holding one key with a giant value
  xml-flat   spectral XML: a click list holding empty clicks
  xml-deep   spectral XML: empty elements nested as deep as the reader takes, over and over
  dicom      a DICOM file (path ending in .dcm): image bytes with NULs, then a metadata
             copy made of small sections

--count N caps the number of sections (sections, dicom), entries (entries) or elements
(xml-flat, xml-deep) at N, so that a file can be made just under or just over a limit.
"""
import argparse
import sys

XML_DEPTH = 256  # CPLXMLReader::MAX_ELEMENT_DEPTH


def numbered(template, size, count):
    """Lines template % hex(i) up to `size` bytes or `count` lines."""
    out = []
    total = 0
    i = 0
    while total < size and (count is None or i < count):
        line = template % i
        out.append(line)
        total += len(line)
        i += 1
    return "".join(out)


def sections(size, count):
    return numbered("*** %x:\n", size, count)


def entries(size, count):
    return "*** s:\n" + numbered("%x:\tb\n", size - 7, count)


def mixed(size, count, lines):
    sections = 100000 if count is None else count  # PL_MAX_SECTIONS
    per = max(0, lines // sections - 1)
    body = "".join("k%x:\tb\n" % j for j in range(per))
    return "".join("*** %x:\n" % i + body for i in range(sections))


SPECTRAL = 'OV3.0.SpectralAnalysis'
CLICKS = SPECTRAL + '.ClickInfo'
CLICK = '<' + CLICKS + '.Click/>'


def xml_flat(size, count):
    """A spectral-analysis document whose click list holds empty clicks."""
    n = (size - 100) // len(CLICK) if count is None else count - 2
    return '<%s><%s>%s</%s></%s>\n' % (SPECTRAL, CLICKS, CLICK * n, CLICKS, SPECTRAL)


def xml_deep(size, count):
    depth = XML_DEPTH - 1  # under the root
    unit = '<a>' * (depth - 1) + '<a/>' + '</a>' * (depth - 1)
    n = max(1, (size - 16) // len(unit)) if count is None else max(1, count // depth)
    return '<r>' + unit * n + '</r>\n'


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('shape')
    parser.add_argument('bytes', type=int)
    parser.add_argument('out')
    parser.add_argument('--count', type=int)
    parser.add_argument('--lines', type=int, default=3000000,
                        help='mixed: the lines of the whole file (PL_MAX_LINES)')
    args = parser.parse_args()
    size, count = args.bytes, args.count
    if args.shape == 'sections':
        data = sections(size, count).encode('latin-1')
    elif args.shape == 'entries':
        data = entries(size, count).encode('latin-1')
    elif args.shape == 'mixed':
        data = mixed(size, count, args.lines).encode('latin-1')
    elif args.shape == 'line':
        data = b'x' * size + b'\n'
    elif args.shape == 'value':
        data = b'*** s:\r\nk:\t' + b'x' * (size - 16) + b'\n\n\n\n'
    elif args.shape == 'xml-flat':
        data = xml_flat(size, count).encode('ascii')
    elif args.shape == 'xml-deep':
        data = xml_deep(size, count).encode('ascii')
    elif args.shape == 'dicom':
        image = b'DICM' + bytes(range(256)) * 64
        data = image + sections(size - len(image), count).encode('latin-1')
    else:
        parser.error('unknown shape ' + args.shape)
    with open(args.out, 'wb') as f:
        f.write(data)


if __name__ == '__main__':
    sys.exit(main())
