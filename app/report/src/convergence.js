// How the run converged: the largest component of the gradient after each step, on a logarithmic axis.
import { html, svg } from './dom.js';
import { fixed } from './numbers.js';

const power = k => ['\u2070', '\u00b9', '\u00b2', '\u00b3', '\u2074', '\u2075', '\u2076', '\u2077', '\u2078', '\u2079'][k];
const tenTo = k => '10' + (k < 0 ? '\u207b' : '') + String(Math.abs(k)).split('').map(d => power(+d)).join('');

export function convergenceCard({ convergence }) {
  const increments = convergence.increments.filter(one => one.gradient.length);
  if (!increments.length) return null;
  const values = increments.flatMap(one => one.gradient).concat(convergence.tolerance).filter(g => g > 0);
  if (!values.length) return null;
  const total = increments.reduce((sum, one) => sum + one.gradient.length, 0);
  const bottom = Math.floor(Math.log10(Math.min(...values)) - 0.15), top = Math.ceil(Math.log10(Math.max(...values)) + 1e-9);
  const width = 620, height = 300, left = 52, right = width - 72, low = height - 44, high = 14;
  const x = k => left + (k + 0.5) / total * (right - left);
  const y = gradient => low - (Math.log10(Math.max(gradient, 10 ** bottom)) - bottom) / (top - bottom || 1) * (low - high);
  const grid = [];
  const every = Math.max(1, Math.ceil((top - bottom) / 8));
  for (let k = bottom; k <= top; k += every)
    grid.push(svg('line', { class: 'grid', x1: left, x2: right, y1: y(10 ** k), y2: y(10 ** k) }),
      svg('text', { x: left - 8, y: y(10 ** k) + 4, 'text-anchor': 'end' }, tenTo(k)));
  const bands = [], lines = [], dots = [];
  const reached = [];
  let at = 0;
  increments.forEach((one, k) => {
    const begin = x(at - 0.5), end = x(at + one.gradient.length - 0.5), n = one.gradient.length;
    if (one.repeated || k % 2) bands.push(svg('rect', { class: one.repeated ? 'band again' : 'band', x: begin, y: high, width: end - begin, height: low - high }));
    if (!one.repeated) reached.push([end, one.progress]);
    const points = one.gradient.map((gradient, i) => [x(at + i), y(gradient)]);
    lines.push(svg('path', { class: 'line', d: 'M' + points.map(p => p.map(v => v.toFixed(1)).join(' ')).join('L') }));
    points.forEach(([px, py], i) => dots.push(svg('circle', { cx: px.toFixed(1), cy: py.toFixed(1), r: total > 120 ? 1.6 : 3, class: one.factor[i] === 1 ? 'full' : '' },
      svg('title', {}, `Increment ${one.number}, step ${i + 1} of ${n}: ${one.gradient[i].toExponential(2)} mm, ${one.factor[i] === 1 ? 'full step' : one.factor[i] > 0 ? `step \u00d7 ${one.factor[i]}` : 'no step'}`))));
    at += n;
  });
  let room = Infinity;  // labels from the last backwards, as many as fit
  for (const [end, progress] of increments.length > 1 ? reached.reverse() : []) {
    if (room - end < 42) continue;
    room = end;
    bands.push(svg('text', { x: end, y: low + 17, 'text-anchor': 'end' }, `${fixed(100 * progress, 0)}\u202f%`));
  }
  const tolerance = convergence.tolerance > 0 && [
    svg('line', { class: 'tolerance', x1: left, x2: right, y1: y(convergence.tolerance), y2: y(convergence.tolerance) }),
    svg('text', { x: right + 7, y: y(convergence.tolerance) + 4 }, 'tolerance')];
  const again = increments.filter(one => one.repeated).length;
  const chords = increments.reduce((sum, one) => sum + one.chords, 0), count = (n, word) => `${n} ${word}${n === 1 ? '' : 's'}`;
  const steps = count(total - chords, 'Newton iteration') + (chords ? ` and ${count(chords, 'chord step')}` : '') +
    (increments.length > 1 ? ` in ${increments.length} increments` : '');
  return html('section', { class: 'card', 'aria-labelledby': 'convergence-title' }, html('h2', { id: 'convergence-title' }, 'Convergence'),
    html('p', {}, `Largest gradient (mm) after each of ${steps}` +
      (again ? `, ${again} of them repeated with a smaller step (shaded amber)` : '') + '. ' + (chords ? 'Chord steps keep the last factorization. ' : '') + 'Hollow: shortened step.' + (increments.length > 1 ? ' Below: share of the part reached.' : '')),
    svg('svg', { class: 'chart', viewBox: `0 0 ${width} ${height}`, role: 'img', 'aria-label':
      `The gradient ends at ${increments.at(-1).gradient.at(-1).toExponential(2)} mm; the tolerance is ${convergence.tolerance.toExponential(2)} mm` },
    bands, grid, tolerance || '', lines, dots, svg('line', { class: 'axis', x1: left, x2: right, y1: low, y2: low }),
    svg('text', { x: left, y: height - 6 }, chords ? 'steps' : 'Newton iterations')));
}
