"""Parts for the tests of the import, made with gmsh's OpenCASCADE kernel. Lengths in mm."""

import math

import gmsh


class Model:
    """A gmsh model that is written as a CAD file at its end."""

    def __init__(self, path):
        self.path = path

    def __enter__(self):
        gmsh.initialize([], False)
        gmsh.option.setNumber('General.Terminal', 0)
        return gmsh.model.occ

    def __exit__(self, kind, value, trace):
        if kind is None:
            gmsh.model.occ.synchronize()
            gmsh.write(self.path)
        gmsh.finalize()


def turned(direction, angle):
    c, s = math.cos(angle), math.sin(angle)
    return c * direction[0] - s * direction[1], s * direction[0] + c * direction[1]


def strip(path, flats, bends, radius, t, width, attitude=0.0):
    """A bent strip: flats of the lengths given and between them bends, angles in degrees, to the left where
    positive. radius: of the inside of every bend. attitude: of the first flat, degrees against x."""
    with Model(path) as occ:
        # the right-hand side of the strip, walking along it, and the left-hand one t beside it
        at, direction = (0.0, 0.0), turned((1.0, 0.0), math.radians(attitude))
        pieces = []  # (right from, right to, centre or None)
        normal = lambda: (-direction[1], direction[0])
        for k, length in enumerate(flats):
            to = at[0] + length * direction[0], at[1] + length * direction[1]
            pieces.append((at, to, normal(), normal(), None))
            at = to
            if k == len(bends):
                break
            before, angle = normal(), math.radians(bends[k])
            reach = radius + t if angle > 0 else -radius  # from the right-hand side to the centre
            centre = at[0] + reach * before[0], at[1] + reach * before[1]
            direction = turned(direction, angle)
            after = normal()
            at = centre[0] - reach * after[0], centre[1] - reach * after[1]
            pieces.append((pieces[-1][1], at, before, after, centre))
        point = lambda p: occ.addPoint(p[0], 0.0, p[1])
        beside = lambda p, n: (p[0] + t * n[0], p[1] + t * n[1])
        right = [point(pieces[0][0])] + [point(p[1]) for p in pieces]
        left = [point(beside(pieces[0][0], pieces[0][2]))] + [point(beside(p[1], p[3])) for p in pieces]
        def along(side):
            return [occ.addLine(side[k], side[k + 1]) if centre is None
                    else occ.addCircleArc(side[k], point(centre), side[k + 1])
                    for k, (_, _, _, _, centre) in enumerate(pieces)]

        lines = [occ.addLine(left[0], right[0])] + along(right) + [occ.addLine(right[-1], left[-1])]
        lines += along(left)[::-1]
        surface = occ.addPlaneSurface([occ.addCurveLoop(lines)])
        occ.extrude([(2, surface)], 0.0, width, 0.0)
        occ.synchronize()
        occ.remove(occ.getEntities(1) + occ.getEntities(0))  # centres of the arcs


def tray(path, sizes=(200.0, 100.0, 40.0), t=1.0, corner=20.0, foot=8.0, hole=15.0):
    """A tray: a block with rounded edges, hollowed to the thickness t, open at the top, with a hole in its floor."""
    with Model(path) as occ:
        length, breadth, height = sizes
        block = occ.addBox(-length / 2, -breadth / 2, 0, length, breadth, height)
        occ.synchronize()
        upright = [c for _, c in gmsh.model.getEntities(1) if abs(centre_z(c) - height / 2) < 1e-6]
        block = occ.fillet([block], upright, [corner])[0][1]
        occ.synchronize()
        bottom = [c for _, c in gmsh.model.getEntities(1) if abs(centre_z(c)) < 1e-6]
        block = occ.fillet([block], bottom, [foot])[0][1]
        occ.synchronize()
        top = max((f for _, f in gmsh.model.getEntities(2)), key=lambda f: gmsh.model.occ.getCenterOfMass(2, f)[2])
        body = occ.addThickSolid(block, [top], -t)
        occ.remove([(3, block)], recursive=True)
        drill = occ.addCylinder(0, 0, -height, 0, 0, 2 * height, hole)
        body = occ.cut(body, [(3, drill)])[0]


def centre_z(curve):
    return gmsh.model.occ.getCenterOfMass(1, curve)[2]


def patches_as_iges(path, patches):
    """An IGES file of bilinear patches (entity 128, each with corners 00, 10, 01, 11), none joined to another: gmsh
    writes no IGES."""
    def lines(section, text):
        return ['%-72s%s%7d' % (text[k:k + 72], section, k // 72 + 1) for k in range(0, len(text), 72)]

    start = lines('S', 'patches')
    header = ("1H,,1H;,7Hpatches,%dH%s,4Htest,4Htest,32,38,6,308,15,7Hpatches,1.,2,2HMM,1,0.01,15H20240101.000000,"
              "1E-06,1000.,4Htest,4Htest,11,0,15H20240101.000000;" % (5, 'a.igs'))
    entries, data = [], []
    for corners in patches:
        number = len(entries)
        values = [128, 1, 1, 1, 1, 0, 0, 1, 0, 0, 0., 0., 1., 1., 0., 0., 1., 1., 1., 1., 1., 1.]
        values += [float(x) for corner in corners for x in corner] + [0., 1., 0., 1.]
        text = ','.join(repr(v) for v in values) + ';'
        words, rows = text.split(','), ['']
        for k, word in enumerate(words):
            word += ',' if k + 1 < len(words) else ''
            if len(rows[-1]) + len(word) > 64:
                rows.append('')
            rows[-1] += word
        first, directory = len(data) + 1, 2 * number + 1
        data += ['%-64s%8dP%7d' % (row, directory, first + k) for k, row in enumerate(rows)]
        entries.append(('%8d%8d%8d%8d%8d%8d%8d%8d%8s' % (128, first, 0, 0, 0, 0, 0, 0, '00000000'),
                        '%8d%8d%8d%8d%8d%8s%8s%8s%8d' % (128, 0, 0, len(rows), 0, '', '', 'PATCH', 0)))
    directory = [row for entry in entries for row in entry]
    directory = ['%-72sD%7d' % (row, k + 1) for k, row in enumerate(directory)]
    header = lines('G', header)
    end = '%-72sT%7d' % ('S%7dG%7dD%7dP%7d' % (len(start), len(header), len(directory), len(data)), 1)
    with open(path, 'w') as file:
        file.write('\n'.join(start + header + directory + data + [end]) + '\n')
