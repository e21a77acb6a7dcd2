#!/usr/bin/python3
"""What comes in through tornwalzen-import and through the readers of finite-element files, by the whole program.

usage: import_test.py PROGRAM Bends|Tray|Formats|Cad|Meshes|Refusals [unittest options]
Ends with 77, which is "skipped", where the Debian packages that a group needs are absent.
"""

import json
import math
import os
import random
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.path.abspath(sys.argv[1])
HELPER = os.path.join(os.path.dirname(PROGRAM), 'tornwalzen-import')
CHECK_DXF = os.path.join(os.path.dirname(os.path.abspath(__file__)), '../program/check_dxf.py')
GROUP = sys.argv[2]

if GROUP != 'Refusals':
    try:
        import gmsh
        import meshio
        import numpy as np
        import parts
    except ImportError as missing:
        print('skipped: no %s for Python here (Debian: python3-gmsh, python3-meshio, python3-numpy)' % missing.name)
        sys.exit(77)


class Case(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory(prefix='tornwalzen_test_')
        self.addCleanup(self.scratch.cleanup)
        # the program's folders for temporary files lie here: other programs' would come and go in a shared one
        self.passing = tempfile.TemporaryDirectory(prefix='tornwalzen_test_')
        self.addCleanup(self.passing.cleanup)

    def path(self, name):
        return os.path.join(self.scratch.name, name)

    def write(self, name, content):
        with open(self.path(name), 'wb' if isinstance(content, bytes) else 'w') as file:
            file.write(content)
        return name

    def run_program(self, *words, **variables):
        run = subprocess.run([PROGRAM, *words], cwd=self.scratch.name, capture_output=True, text=True,
                             stdin=subprocess.DEVNULL, timeout=300,
                             env={**os.environ, 'TMPDIR': self.passing.name, **variables})
        self.assertEqual(os.listdir(self.passing.name), [], 'left by the program')
        return run

    def solve(self, name, *words):
        """The blank: points, triangles; and what was told."""
        run = self.run_program('solve', name, '--out', name + '_out', *words)
        self.assertEqual(run.returncode, 0, run.stderr + run.stdout)
        with open(self.path(name + '_out/summary.json')) as file:
            self.summary = json.load(file)
        return *load_obj(self.path(name + '_out/blank.obj')), run.stderr

    def refused(self, name, *words, **variables):
        run = self.run_program('solve', name, *words, **variables)
        self.assertEqual(run.returncode, 1, run.stderr)
        self.assertEqual([n for n in os.listdir(self.scratch.name) if n.endswith('_blank')], [])
        last = run.stderr.splitlines()[-1]
        self.assertTrue(last.startswith('tornwalzen: '), run.stderr)
        return last[len('tornwalzen: '):]


def load_obj(path):
    points, triangles = [], []
    with open(path) as file:
        lines = file.readlines()
    for line in lines:
        words = line.split()
        if words and words[0] == 'v':
            points.append([float(w) for w in words[1:4]])
        if words and words[0] == 'f':
            triangles.append([int(w) - 1 for w in words[1:]])
    return np.array(points), np.array(triangles)


def area(points, triangles):
    p = points[triangles]
    return 0.5 * np.linalg.norm(np.cross(p[:, 1] - p[:, 0], p[:, 2] - p[:, 0]), axis=1).sum()


def border_loops(triangles):
    """Number of closed lines of edges that belong to one triangle."""
    count = {}
    for t in triangles.tolist():
        for k in range(3):
            edge = tuple(sorted((t[k], t[(k + 1) % 3])))
            count[edge] = count.get(edge, 0) + 1
    after = {}
    for (a, b), n in count.items():
        if n == 1:
            after.setdefault(a, []).append(b)
            after.setdefault(b, []).append(a)
    loops, seen = 0, set()
    for start in after:
        if start in seen:
            continue
        loops += 1
        heap = [start]
        while heap:
            node = heap.pop()
            if node not in seen:
                seen.add(node)
                heap += after[node]
    return loops


class Bends(Case):
    """The blank of a bent strip is as long as bend allowance says: flats + angle * (inner radius + k * t)."""

    def check(self, name, flats, bends, radius, t, fibre, attitude):
        width = 12.0
        parts.strip(self.path(name), flats, bends, radius, t, width, attitude)
        points, triangles, told = self.solve(name, '--fibre', str(fibre), '--mesh', '2')
        expected = sum(flats) + sum(math.radians(abs(b)) * (radius + fibre * t) for b in bends)
        self.assertAlmostEqual(area(points, triangles) / width, expected, delta=0.01)
        self.assertAlmostEqual(self.summary['measured_thickness_mm'], t, delta=1e-6)
        self.assertIn('measured thickness %.4g mm' % t, told)

    def test_l(self):
        for radius in (1.0, 2.0, 4.0, 10.0):
            for fibre in (0.33, 0.5):
                with self.subTest(radius=radius, fibre=fibre):
                    self.check('l.step', [30.0, 20.0], [90.0], radius, 1.0, fibre, -45.0)

    def test_u(self):
        for radius, fibre in ((1.0, 0.33), (3.0, 0.5), (5.0, 0.42), (10.0, 0.33)):
            with self.subTest(radius=radius, fibre=fibre):
                self.check('u.step', [20.0, 40.0, 20.0], [90.0, 90.0], radius, 1.0, fibre, -90.0)

    def test_z(self):
        for fibre in (0.33, 0.5):
            with self.subTest(fibre=fibre):
                self.check('z.step', [30.0, 30.0, 30.0], [60.0, -60.0], 2.0, 1.5, fibre, -30.0)

    def test_bend_lines_lie_where_bend_allowance_has_them(self):
        """In the middle of each bend, from edge to edge of the strip."""
        for name, flats, bends, radius, t, attitude in (
                ('l', [30.0, 20.0], [90.0], 3.0, 1.0, -45.0), ('u', [20.0, 40.0, 20.0], [90.0, 90.0], 1.0, 1.0, -90.0),
                ('z', [30.0, 6.0, 20.0], [60.0, -60.0], 2.0, 1.5, -30.0)):
            with self.subTest(name=name):
                parts.strip(self.path(name + '.step'), flats, bends, radius, t, 12.0, attitude)
                self.solve(name + '.step', '--mesh', '1.5', '--bend-lines', '--square')
                with open(self.path(name + '.step_out/blank.dxf')) as file:
                    words = [line.strip() for line in file]
                found = []
                for at in [k for k in range(0, len(words), 2) if words[k:k + 2] == ['0', 'LINE']]:
                    codes = {words[k]: words[k + 1] for k in range(at + 2, at + 30, 2)}
                    self.assertEqual(codes['8'], 'BEND')
                    found.append([float(codes[c]) for c in ('10', '20', '11', '21')])
                places, along = [], 0.0
                for flat, bend in zip(flats, bends):
                    arc = math.radians(abs(bend)) * (radius + 0.5 * t)
                    places.append(along + flat + 0.5 * arc)
                    along += flat + arc
                if abs(sorted(found)[0][0] - places[0]) > 1.0:  # stood into its rectangle the other way round
                    places = [along + flats[-1] - place for place in places][::-1]
                self.assertEqual(len(found), len(bends))
                for line, place in zip(sorted(found), places):
                    self.assertAlmostEqual(line[0], place, delta=0.06)
                    self.assertAlmostEqual(line[2], place, delta=0.06)
                    self.assertAlmostEqual(abs(line[3] - line[1]), 12.0, delta=0.01)

    def test_the_inner_skin_gives_the_same_fibre(self):
        parts.strip(self.path('l.step'), [30.0, 20.0], [90.0], 3.0, 1.0, 12.0, -45.0)
        areas = [area(*self.solve('l.step', '--mesh', '2', '--skin', skin, '--fibre', '0.4')[:2])
                 for skin in ('outer', 'inner', 'auto')]
        self.assertAlmostEqual(areas[0], areas[1], delta=0.05)
        self.assertEqual(areas[0], areas[2])


class Tray(Case):
    """200 x 100 x 40 mm, 1 mm, fillets, a hole."""

    def test_goes_to_a_blank(self):
        parts.tray(self.path('tray.step'))
        points, triangles, told = self.solve('tray.step', '--mesh', '6')
        self.assertIn('took its outer skin', told)
        # OpenCASCADE integrates areas and volumes numerically
        self.assertAlmostEqual(self.summary['measured_thickness_mm'], 1.0, delta=1e-4)
        self.assertTrue(self.summary['converged'])
        self.assertEqual(border_loops(triangles), 2)
        # plastic work keeps no area, but the sheet's mean thickness is near its own
        self.assertAlmostEqual(self.summary['blank_area_mm2'] / self.summary['part_area_mm2'], 1.0, delta=0.01)
        self.assertGreater(float(told.split('smallest angle ')[1].split()[0]), 25.0)

    def test_one_command_to_drawing_and_page(self):
        """DXF, page and verdict from one command; the drawing's curves are the blank's outline and hole; and the mesh that
        the CAD file gave gives the same blank again."""
        parts.tray(self.path('tray.step'))
        command = ('--mesh', '6', '--material', 'DC04')
        blank, triangles, _ = self.solve('tray.step', *command, '--web', '5')
        self.assertEqual(self.summary['verdict'], 'good')
        self.assertEqual(self.summary['thickness_is'], 'measured on the part')
        self.assertEqual((self.summary['drawing']['holes'], self.summary['drawing']['crossings']), (1, 0))
        self.assertEqual(border_loops(triangles), 2)
        with open(self.path('tray.step_out/report.html')) as file:
            page = file.read()
        self.assertTrue(page.startswith('<!doctype html>') and page.rstrip().endswith('</html>'))
        self.assertIn('<title>tray.step', page)
        with open(self.path('tray.step_out/strip.svg')) as file:
            self.assertIn('two rows turned by 180 degrees', file.read())
        again, _, _ = self.solve('tray.step_out/part.vtu', '--thickness', repr(self.summary['thickness_mm']))
        self.assertLess(np.abs(again - blank).max(), 1e-6)
        try:
            import ezdxf, shapely  # noqa: F401, E401
        except ImportError as missing:
            self.skipTest('no %s for Python here (Debian: python3-ezdxf, python3-shapely)' % missing.name)
        for options, tolerance in (((), 0.05), (('--square', '--bend-lines'), 0.05), (('--dxf', '12'), 0.05),
                                   (('--dxf-tolerance', '0.005'), 0.005)):
            with self.subTest(options=options):
                self.solve('tray.step', *command, *options)
                lies = self.summary['drawing']
                check = subprocess.run(
                    [sys.executable, CHECK_DXF, self.path('tray.step_out/blank.dxf'),
                     self.path('tray.step_out/blank.obj'), str(tolerance), '1', repr(lies['turned_by_deg']),
                     repr(lies['then_shifted_x_mm']), repr(lies['then_shifted_y_mm'])],
                    capture_output=True, text=True)
                self.assertEqual(check.returncode, 0, check.stdout + check.stderr)
                self.assertIn('2 loops within', check.stdout)

    def test_units(self):
        parts.tray(self.path('tray.step'))
        self.solve('tray.step', '--mesh', '10')
        mm = self.summary
        self.solve('tray.step', '--mesh', repr(10.0 / 25.4), '--unit', 'inch')
        self.assertAlmostEqual(self.summary['blank_area_inch2'] * 25.4 ** 2, mm['blank_area_mm2'], delta=1e-3)
        self.assertAlmostEqual(self.summary['measured_thickness_inch'], mm['measured_thickness_mm'] / 25.4,
                               delta=1e-9)


class Formats(Case):
    """The same mesh gives the same blank from every format."""

    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            parts.tray(folder + '/tray.step')
            subprocess.run([HELPER, 'cad', '--mesh', '10', folder + '/tray.step', folder], check=True,
                           capture_output=True)
            cls.points, cls.triangles = load_obj(folder + '/mesh.obj')
            with open(folder + '/report.json') as file:
                cls.normals = np.array(json.load(file)['normals']).reshape(-1, 3)
            cls.points = np.round(cls.points, 6)  # so that every format holds them to the last bit

    def setUp(self):
        super().setUp()
        self.write('tray.obj', ''.join('v %r %r %r\n' % tuple(p) for p in self.points.tolist()) +
                   ''.join('f %d %d %d\n' % tuple(t) for t in (self.triangles + 1).tolist()))
        self.blank = self.solve('tray.obj')[0]

    def check_same(self, name, *words):
        points = self.solve(name, *words)[0]
        self.assertEqual(len(points), len(self.blank))
        self.assertLess(np.abs(points - self.blank).max(), 1e-6, name)

    def check_ids(self, name, part):
        vtu = meshio.read(self.path(name + '_out/part.vtu'))
        self.assertEqual(vtu.point_data['node_id'].tolist(), [10 * k + 10 for k in range(len(self.points))])
        self.assertEqual(vtu.cell_data['element_id'][0].tolist(), [3 * k + 7 for k in range(len(self.triangles))])
        self.assertEqual(set(vtu.cell_data['part_id'][0].tolist()), {part})
        self.assertEqual(self.summary['thinnest']['element_id'],
                         3 * self.summary['thinnest']['element_number_in_file'] + 4)

    def rows(self):
        return ([(10 * k + 10, *p) for k, p in enumerate(self.points.tolist())],
                [(3 * k + 7, *t) for k, t in enumerate((10 * self.triangles + 10).tolist())])

    def test_nastran(self):
        nodes, shells = self.rows()
        self.write('free.bdf', 'BEGIN BULK\n' + ''.join('GRID,%d,,%.17g,%.17g,%.17g\n' % n for n in nodes) +
                   ''.join('CTRIA3,%d,5,%d,%d,%d\n' % s for s in shells) + 'ENDDATA\n')
        self.check_same('free.bdf')
        self.check_ids('free.bdf', 5)

    def test_abaqus(self):
        nodes, shells = self.rows()
        self.write('a.inp', '*NODE\n' + ''.join('%d, %.17g, %.17g, %.17g\n' % n for n in nodes) +
                   '*ELEMENT, TYPE=S3, ELSET=tray\n' + ''.join('%d, %d, %d, %d\n' % s for s in shells))
        self.check_same('a.inp', '--part', 'TRAY')
        self.check_ids('a.inp', 1)

    def test_dyna(self):
        nodes, shells = self.rows()
        self.write('a.k', '*KEYWORD LONG=Y\n*NODE\n' + ''.join('%20d%20.12e%20.12e%20.12e\n' % n for n in nodes) +
                   '*ELEMENT_SHELL\n' + ''.join('%20d%20d%20d%20d%20d\n' % (s[0], 8, *s[1:]) for s in shells) + '*END\n')
        self.check_same('a.k')
        self.check_ids('a.k', 8)

    def test_what_meshio_writes(self):
        mesh = meshio.Mesh(self.points, [('triangle', self.triangles)])
        for name, how in (('a.vtu', {}), ('b.vtu', {'binary': False}), ('a.vtk', {}), ('a.ply', {}), ('a.off', {}),
                          ('a.msh', {'file_format': 'gmsh'}), ('b.msh', {'file_format': 'gmsh22', 'binary': False})):
            with self.subTest(name=name):
                meshio.write(self.path(name), mesh, **how)
                self.check_same(name)

    def test_med(self):
        try:
            import h5py  # noqa: F401
        except ImportError:
            self.skipTest('no python3-h5py')
        meshio.write(self.path('a.med'), meshio.Mesh(self.points, [('triangle', self.triangles)]))
        self.check_same('a.med')

    def test_results_come_in_again(self):
        self.check_same('tray.obj_out/part.vtu')

    def test_compressed_results_hold_the_same_in_less_room(self):
        place = self.path('tray.obj_out/part.vtu')
        plain, size = meshio.read(place), os.path.getsize(place)
        self.solve('tray.obj', '--compress')
        self.assertLess(os.path.getsize(place), 0.8 * size)
        packed = meshio.read(place)
        for a, b in ((plain.point_data, packed.point_data), (plain.cell_data, packed.cell_data)):
            self.assertEqual(sorted(a), sorted(b))
            for name in a:
                np.testing.assert_array_equal(a[name], b[name], name)
        np.testing.assert_array_equal(plain.points, packed.points)
        np.testing.assert_array_equal(plain.cells[0].data, packed.cells[0].data)

    def test_fixed_fields_and_abaqus_that_meshio_writes(self):
        rounded = meshio.Mesh(np.round(self.points, 3), [('triangle', self.triangles)])
        self.write('r.obj', ''.join('v %r %r %r\n' % tuple(p) for p in rounded.points.tolist()) +
                   ''.join('f %d %d %d\n' % tuple(t) for t in (self.triangles + 1).tolist()))
        self.blank = self.solve('r.obj')[0]
        for layout in ('fixed-small', 'fixed-large'):
            meshio.nastran.write(self.path(layout + '.bdf'), rounded, point_format='fixed-large', cell_format=layout)
            self.check_same(layout + '.bdf')

    def test_quads(self):
        x, y = np.meshgrid(np.linspace(0, 60, 13), np.linspace(0, 40, 9))
        points = np.stack([x.ravel(), y.ravel(), 0.02 * (x.ravel() - 30) ** 2], 1)
        first = np.array([j * 13 + i for j in range(8) for i in range(12)])
        quads = np.stack([first, first + 1, first + 14, first + 13], 1)
        meshio.write(self.path('q.vtu'), meshio.Mesh(points, [('quad', quads), ('line', np.array([[0, 1]]))]))
        blank, _, told = self.solve('q.vtu')
        self.assertIn('split 96 quads over the shorter diagonal', told)
        self.assertIn('passed over: line (1)', told)
        self.write('q.bdf', ''.join('GRID,%d,,%.17g,%.17g,%.17g\n' % (k + 1, *p) for k, p in enumerate(points.tolist())) +
                   ''.join('CQUAD4,%d,1,%d,%d,%d,%d\n' % (k + 1, *q) for k, q in enumerate((quads + 1).tolist())))
        self.assertLess(np.abs(self.solve('q.bdf')[0] - blank).max(), 1e-6)

    def test_thin_stl(self):
        """A closed STL around the skin, one millimetre thick."""
        inside = self.points - self.normals
        edges = {(a, b) for t in self.triangles.tolist() for a, b in zip(t, t[1:] + t[:1])}
        facets = [self.points[t] for t in self.triangles] + [inside[t[::-1]] for t in self.triangles]
        for a, b in sorted(edges):
            if (b, a) not in edges:
                facets += [np.array([self.points[b], self.points[a], inside[a]]),
                           np.array([self.points[b], inside[a], inside[b]])]
        self.write('thin.stl', 'solid tray\n' + ''.join(
            'facet normal 0 0 0\nouter loop\n' + ''.join('vertex %r %r %r\n' % tuple(p) for p in f.tolist()) +
            'endloop\nendfacet\n' for f in facets) + 'endsolid tray\n')
        self.blank, _, told = self.solve('thin.stl')
        self.assertIn('a thin solid: took its outer skin', told)
        self.assertAlmostEqual(self.summary['measured_thickness_mm'], 1.0, delta=0.02)
        # nodes are numbered as they appear; the middle lies half a millimetre inside
        order = list(dict.fromkeys(self.triangles.ravel().tolist()))
        middle = meshio.read(self.path('thin.stl_out/part.vtu'))
        self.assertLess(np.abs(middle.points - (self.points - 0.5 * self.normals)[order]).max(), 0.05)
        self.check_same('thin.stl_out/part.vtu')
        # the same solid as OBJ, its nodes in the order in which the STL names them
        corners = [tuple(p) for f in facets for p in f.tolist()]
        number = {p: k + 1 for k, p in enumerate(dict.fromkeys(corners))}
        self.write('thin.obj', ''.join('v %r %r %r\n' % p for p in number) +
                   ''.join('f %d %d %d\n' % tuple(number[p] for p in corners[k:k + 3]) for k in range(0, len(corners), 3)))
        self.check_same('thin.obj')


class Cad(Case):
    def test_brep_is_read_as_step_is(self):
        parts.strip(self.path('a.brep'), [30.0, 20.0], [90.0], 3.0, 1.0, 12.0, -45.0)
        points, triangles, _ = self.solve('a.brep', '--mesh', '2')
        self.assertAlmostEqual(area(points, triangles) / 12.0, 50.0 + math.pi / 2 * 3.5, delta=0.01)

    def test_a_name_that_means_another_format_is_told(self):
        parts.strip(self.path('a.step'), [30.0, 20.0], [90.0], 3.0, 1.0, 12.0, -45.0)
        os.rename(self.path('a.step'), self.path('a.igs'))
        self.assertIn('the name means IGES, but the content is STEP', self.solve('a.igs', '--mesh', '2')[2])

    def test_faces_side_by_side_are_sewn(self):
        parts.patches_as_iges(self.path('two.igs'), [[(0, 0, 0), (50, 0, 0), (0, 40, 0), (50, 40, 0)],
                                                     [(50, 0, 0), (90, 0, 10), (50, 40, 0), (90, 40, 10)]])
        points, triangles, told = self.solve('two.igs', '--mesh', '5')
        self.assertIn('sewed 2 faces', told)
        self.assertAlmostEqual(area(points, triangles), 40.0 * (50.0 + math.hypot(40.0, 10.0)), delta=0.01)

    def test_solids_that_are_no_sheet_are_refused(self):
        with parts.Model(self.path('box.step')) as occ:
            occ.addBox(0, 0, 0, 30, 20, 10)
        self.assertIn('box.step: the solid is no thin sheet: its two largest skins', self.refused('box.step'))
        with parts.Model(self.path('ball.step')) as occ:
            occ.addSphere(0, 0, 0, 10)
        self.assertIn('ball.step: the solid is no thin sheet', self.refused('ball.step'))
        with parts.Model(self.path('two.step')) as occ:
            occ.addBox(0, 0, 0, 30, 20, 1)
            occ.addBox(0, 50, 0, 30, 20, 1)
        self.assertEqual(self.refused('two.step'), 'two.step: the file has 2 solids; one part at a time can be taken')

    def test_hostile_files_end_in_a_sentence(self):
        parts.strip(self.path('good.step'), [30.0, 20.0], [90.0], 3.0, 1.0, 12.0, -45.0)
        with open(self.path('good.step')) as file:
            good = file.read()
        data = good.index('DATA;')
        for name, content in (('head', 'ISO-10303-21;'), ('cut', good[:data + 3000]), ('empty', good[:data] + 'DATA;\nENDSEC;\nEND-ISO-10303-21;\n'),
                              ('noise', good[:data] + '\x01\x02(((((((' * 1000), ('none', good.replace('CARTESIAN_POINT', 'CARTESIAN_PAINT')),
                              ('huge', re.sub(r"(CARTESIAN_POINT\('',\()[^,]*", r'\g<1>1.E308', good)), ('self', good.replace('#1', '#2'))):
            with self.subTest(name=name):
                self.write(name + '.step', content)
                sentence = self.refused(name + '.step', '--import-limit', '10')
                self.assertTrue(sentence.startswith(name + '.step: '), sentence)
        for share in (0.1, 0.5, 0.9):
            self.write('cut.step', good[:int(share * len(good))])
            self.assertTrue(self.refused('cut.step', '--import-limit', '10').startswith('cut.step: '))
        self.write('empty.step', '')
        self.assertEqual(self.refused('empty.step'), 'empty.step: the file is empty')
        noise = random.Random(1).randbytes(5000)
        self.write('binary.step', noise)
        self.assertTrue(self.refused('binary.step').startswith('binary.step: the content is of no format that is read '))
        self.write('head.step', b'ISO-10303-21;\n' + noise)
        self.assertEqual(self.refused('head.step'),
                         'head.step: gmsh cannot read it: the file is damaged, cut off or of another format')
        self.write('a.brep', 'DBRep_DrawableShape\n' + '9' * 5000)
        self.assertTrue(self.refused('a.brep', '--import-limit', '10').startswith('a.brep: '))
        self.write('a.igs', ' ' * 72 + 'S      1\n' + 'x' * 5000)
        self.assertTrue(self.refused('a.igs', '--import-limit', '10').startswith('a.igs: '))

    def test_the_time_limit_ends_the_helper_and_leaves_nothing(self):
        parts.tray(self.path('tray.step'))
        self.assertEqual(self.refused('tray.step', '--import-limit', '0.1'),
                         'tray.step: tornwalzen-import was ended after 0.1 s; --import-limit gives it more time, a '
                         'larger --mesh less to do')


class Meshes(Case):
    def test_needles_are_meshed_anew(self):
        rows = 200  # of quads 0.05 by 20
        self.write('n.obj', ''.join('v %r %r %r\n' % (0.2 * k, 30.0 * s, 0.002 * (0.2 * k - 20) ** 2)
                                    for k in range(rows + 1) for s in (0, 1)) +
                   ''.join('f %d %d %d\nf %d %d %d\n' % (2 * k + 1, 2 * k + 3, 2 * k + 4, 2 * k + 1, 2 * k + 4, 2 * k + 2)
                           for k in range(rows)))
        before = self.solve('n.obj')
        self.assertIn('400 triangles have a corner below 5 degrees (elements 1, 2, 3, ...); --remesh 3 ', before[2])
        after = self.solve('n.obj', '--remesh', '3')
        self.assertIn('meshed anew with', after[2])
        self.assertGreater(float(after[2].split('smallest angle ')[1].split()[0]), 20.0)
        self.assertAlmostEqual(area(*after[:2]) / area(*before[:2]), 1.0, delta=2e-4)

    def test_cells_that_are_no_sheet_are_refused(self):
        points = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1.0]])
        meshio.write(self.path('t.vtu'), meshio.Mesh(points, [('tetra', np.array([[0, 1, 2, 3]]))]))
        self.assertEqual(self.refused('t.vtu'), 't.vtu: it has cells of type tetra; only triangles and quads are read')
        meshio.write(self.path('n.vtu'), meshio.Mesh(points, [('vertex', np.array([[0]]))]))
        self.assertEqual(self.refused('n.vtu'), 'n.vtu: it has no triangle')

    def test_hostile_files_end_in_a_sentence(self):
        laugh = '<!ENTITY a0 "ha">' + ''.join('<!ENTITY a%d "%s">' % (k, ('&a%d;' % (k - 1)) * 10) for k in range(1, 12))
        for name, content in (
                ('laugh.vtu', '<?xml version="1.0"?><!DOCTYPE x [%s]><VTKFile type="UnstructuredGrid">&a11;</VTKFile>' % laugh),
                ('cut.vtu', '<VTKFile type="UnstructuredGrid">'),
                ('many.ply', 'ply\nformat binary_little_endian 1.0\nelement vertex 4000000000000\nproperty float x\n'
                             'property float y\nproperty float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n'),
                ('out.off', 'OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 7\n'),
                ('a.msh', '$MeshFormat\n4.1 1 8\n' + 'x' * 100),
                ('a.vtk', '# vtk DataFile Version 9.0\n'),
                ('a.med', b'\x89HDF\r\n\x1a\n' + b'\0' * 100)):
            with self.subTest(name=name):
                self.write(name, content)
                sentence = self.refused(name, '--import-limit', '10')
                self.assertTrue(sentence.startswith(name + ': '), sentence)


class Refusals(Case):
    """Needs none of the packages."""

    STEP = 'ISO-10303-21;\nHEADER;\n'

    def helper(self, text):
        self.write('helper', text)
        os.chmod(self.path('helper'), 0o755)
        return self.path('helper')

    def test_names_what_is_missing(self):
        self.write('a.step', self.STEP)
        self.assertEqual(self.refused('a.step', TORNWALZEN_IMPORT='/nowhere/import'),
                         'a.step: this format is read by the program tornwalzen-import, which is not there '
                         '(/nowhere/import); it comes with tornwalzen and needs the Debian packages python3-gmsh, '
                         'python3-meshio and python3-numpy')
        # without its site packages, Python has none of them
        with open(HELPER) as file:
            text = file.read().replace('python3 -I', 'python3 -IS', 1)
        self.assertEqual(self.refused('a.step', TORNWALZEN_IMPORT=self.helper(text)),
                         'a.step: reading it needs the Debian packages python3-gmsh and python3-numpy (apt-get install '
                         'python3-gmsh python3-numpy)')
        self.write('a.ply', 'ply\n')
        self.assertEqual(self.refused('a.ply', TORNWALZEN_IMPORT=self.helper(text)),
                         'a.ply: reading it needs the Debian packages python3-meshio and python3-numpy (apt-get install '
                         'python3-meshio python3-numpy)')

    def test_tells_how_the_helper_failed(self):
        self.write('a.step', self.STEP)
        for text, sentence in (
                ('#!/bin/sh\nkill -SEGV $$\n', 'tornwalzen-import was ended by signal 11 on this file; it said nothing'),
                ('#!/bin/sh\necho oh; exit 3\n', 'tornwalzen-import failed on this file; its last words: oh'),
                ('#!/bin/sh\nfor f; do :; done; echo "[" >$f/report.json\n', 'tornwalzen-import left no usable report'),
                ('#!/bin/sh\nfor f; do :; done; echo \'{"refused": "no"}\' >$f/report.json; exit 1\n', 'no'),
                ('#!/bin/sh\nfor f; do :; done; echo \'{}\' >$f/report.json; printf "v 0 0 0\\nf 1 2 3\\n" >$f/mesh.obj\n',
                 'tornwalzen-import left no usable mesh'),
                ('#!/bin/sh\nfor f; do :; done; echo \'{"thickness": 1}\' >$f/report.json; '
                 'printf "v 0 0 0\\nv 1 0 0\\nv 0 1 0\\nf 1 2 3\\n" >$f/mesh.obj\n', 'tornwalzen-import left no usable report'),
                ('#!/bin/sh\nfor f; do :; done; echo \'{"remarks": 3}\' >$f/report.json; '
                 'printf "v 0 0 0\\nv 1 0 0\\nv 0 1 0\\nf 1 2 3\\n" >$f/mesh.obj\n', 'tornwalzen-import left no usable report')):
            with self.subTest(text=text):
                self.assertEqual(self.refused('a.step', TORNWALZEN_IMPORT=self.helper(text)), 'a.step: ' + sentence)

    def test_options_are_checked(self):
        self.write('a.step', self.STEP)
        for words in (('--skin', 'middle'), ('--fibre', '1.5'), ('--mesh', '0'), ('--weld', '-1'), ('--import-limit', '0')):
            run = self.run_program('solve', 'a.step', *words)
            self.assertEqual(run.returncode, 1, words)
            self.assertIn(words[0], run.stderr)


if __name__ == '__main__':
    unittest.main(argv=[sys.argv[0], GROUP] + sys.argv[3:])
