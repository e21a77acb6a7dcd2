#!/usr/bin/python3
"""Times and peaks of whole runs, and the fits through them that `tornwalzen check` tells (app/run/expected_cost.cpp).

usage: scripts/cost_table.py BUILD [PARTS]    BUILD: folder of a release build; PARTS: folder of OBJ files
The Debian package time measures the peaks (scripts/setup bench).

Samples of about 5,000, 50,000 and 200,000 triangles, and the parts as they are and with every triangle divided into four,
once or more often, up to 250,000. Each is solved on one thread with all results and the page, by the default path, three
times; the least user and system time and the largest peak count. Fits, by least squares of the logarithms:
seconds = a (NE/5000)^g, megabytes = b + c (NE/5000)^p.
"""

import math
import os
import subprocess
import sys
import tempfile

SAMPLES = 'square_cup', 'round_cup', 'box', 'flanged_hole', 's_rail', 'hat', 'half_pipe', 'cone_sector', 'l_bend'
SIZES = 5000, 50000, 200000
RUNS, MOST = 3, 250000


def divided(path, target):
    """Every triangle into four by the middles of its edges."""
    points, faces, middles = [], [], {}
    with open(path) as file:
        for line in file:
            words = line.split()
            if words and words[0] == 'v':
                points.append([float(w) for w in words[1:4]])
            if words and words[0] == 'f':
                faces.append([int(w.split('/')[0]) - 1 for w in words[1:]])

    def middle(a, b):
        key = min(a, b), max(a, b)
        if key not in middles:
            middles[key] = len(points)
            points.append([0.5 * (x + y) for x, y in zip(points[a], points[b])])
        return middles[key]

    four = []
    for a, b, c in faces:
        d, e, f = middle(a, b), middle(b, c), middle(c, a)
        four += [(a, d, f), (d, b, e), (f, e, c), (d, e, f)]
    with open(target, 'w') as file:
        file.writelines('v %r %r %r\n' % tuple(p) for p in points)
        file.writelines('f %d %d %d\n' % (a + 1, b + 1, c + 1) for a, b, c in four)


def triangles(path):
    with open(path) as file:
        return sum(line.startswith('f') for line in file)


def cost(program, part, folder):
    """Seconds of the processor and megabytes at the peak; none where there is no blank."""
    seconds, peak = math.inf, 0.0
    for _ in range(RUNS):
        # the peak by a small process in between: what is started from here inherits the peak of this one
        child = subprocess.Popen(['/usr/bin/time', '-q', '-f', '%M', '-o', folder + '.peak', program, 'solve', part,
                                  '--threads', '1', '--quiet', '--force', '--out', folder], stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        if child.returncode != 0:
            return None
        seconds = min(seconds, usage.ru_utime + usage.ru_stime)
        with open(folder + '.peak') as file:
            peak = max(peak, int(file.read()) * 1024e-6)
    return seconds, peak


def line_through(x, y):
    """Intercept and slope of the least-squares line."""
    mx, my = sum(x) / len(x), sum(y) / len(y)
    slope = sum((a - mx) * (b - my) for a, b in zip(x, y)) / sum((a - mx) ** 2 for a in x)
    return my - slope * mx, slope


def main():
    build = sys.argv[1]
    program, samples = build + '/app/tornwalzen', build + '/samples/tornwalzen_samples'
    rows = []
    with tempfile.TemporaryDirectory() as scratch:
        meshes = []
        for name in SAMPLES:
            for size in SIZES:
                path = '%s/%s_%d.obj' % (scratch, name, size)
                subprocess.run([samples, name, '--triangles', str(size), '-o', path], check=True,
                               stdout=subprocess.DEVNULL)
                meshes.append(path)
        folder = sys.argv[2] if len(sys.argv) > 2 else ''
        for name in sorted(os.listdir(folder)) if folder else []:
            if not name.endswith('.obj') or 'flat_blank' in name:
                continue
            path, level = os.path.join(folder, name), 0
            while triangles(path) <= MOST:
                meshes.append(path)
                level += 1
                finer = '%s/%s_%d.obj' % (scratch, name[:-4], level)
                divided(path, finer)
                path = finer
        for path in meshes:
            found = cost(program, path, scratch + '/out')
            count = triangles(path)
            print('%-32s %8d ' % (os.path.basename(path)[:-4], count) +
                  ('no blank' if found is None else '%8.3f s %8.1f MB' % found), flush=True)
            if found:
                rows.append((count, *found))
    fits('seconds', [(n, s) for n, s, _ in rows], (0.0,))
    fits('megabytes', [(n, m) for n, _, m in rows], [0.1 * k for k in range(200)])


def fits(name, pairs, bases):
    """Prints value = base + a (NE/5000)^g with the base of the least squares."""
    found = []
    for base in bases:
        if base >= min(value for _, value in pairs):
            break
        a, g = line_through([math.log(n / 5000) for n, _ in pairs], [math.log(v - base) for _, v in pairs])
        errors = [abs(math.log(v / (base + math.exp(a) * (n / 5000) ** g))) for n, v in pairs]
        found.append((sum(e * e for e in errors), base, math.exp(a), g, errors))
    _, base, a, g, errors = min(found)
    print('%s = %.1f + %.4f (NE/5000)^%.3f; off by a factor of at most %.2f, half of them of at most %.2f'
          % (name, base, a, g, math.exp(max(errors)), math.exp(sorted(errors)[len(errors) // 2])))


if __name__ == '__main__':
    main()
