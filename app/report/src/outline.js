// The blank's outline, laid into its smallest rectangle, with dimensions; and blanks on the strip.
import { html, pairs, svg } from './dom.js';
import { fixed } from './numbers.js';

const turned = (loop, degrees) => {
  const c = Math.cos(degrees * Math.PI / 180), s = Math.sin(degrees * Math.PI / 180);
  return loop.map(([x, y]) => [c * x - s * y, s * x + c * y]);
};

const lengthOf = loop => loop.reduce((sum, [x, y], k) => {
  const [nx, ny] = loop[(k + 1) % loop.length];
  return sum + Math.hypot(nx - x, ny - y);
}, 0);

function boxOf(loops) {
  const box = [Infinity, Infinity, -Infinity, -Infinity];
  for (const loop of loops) for (const [x, y] of loop) {
    box[0] = Math.min(box[0], x); box[1] = Math.min(box[1], y);
    box[2] = Math.max(box[2], x); box[3] = Math.max(box[3], y);
  }
  return box;
}

const pathOf = (loops, at) => loops.map(loop => 'M' + loop.map(point => at(point).map(x => x.toFixed(2)).join(' ')).join('L') + 'Z').join('');

// What a hole is called: by its diameter where its nodes lie on a circle to 3 percent, else by its box.
function holeName(loop, digits) {
  const [x0, y0, x1, y1] = boxOf([loop]), mean = axis => loop.reduce((sum, point) => sum + point[axis], 0) / loop.length;
  const [cx, cy] = [mean(0), mean(1)], radii = loop.map(([x, y]) => Math.hypot(x - cx, y - cy));
  const radius = radii.reduce((sum, r) => sum + r, 0) / radii.length;
  if (loop.length >= 6 && radii.every(r => Math.abs(r - radius) < 0.03 * radius)) return `\u2300 ${fixed(2 * radius, digits)}`;
  return `${fixed(x1 - x0, digits)} \u00d7 ${fixed(y1 - y0, digits)}`;
}

function arrowed(x1, y1, x2, y2) {
  const length = Math.hypot(x2 - x1, y2 - y1) || 1, dx = (x2 - x1) / length, dy = (y2 - y1) / length;
  const tip = (x, y, s) => `M${x + s * (7 * dx - 2.5 * dy)} ${y + s * (7 * dy + 2.5 * dx)}L${x} ${y}L${x + s * (7 * dx + 2.5 * dy)} ${y + s * (7 * dy - 2.5 * dx)}`;
  return svg('path', { class: 'dimension', d: `M${x1} ${y1}L${x2} ${y2}${tip(x1, y1, 1)}${tip(x2, y2, -1)}` });
}

export function outlineCard({ outline, unit }) {
  if (!outline.loops.length) return null;
  const loops = outline.loops.map(loop => turned(loop, -outline.angle)), [x0, y0, x1, y1] = boxOf(loops);
  const width = 620, left = 64, top = 22, room = width - left - 22, s = Math.min(room / (x1 - x0 || 1), 430 / (y1 - y0 || 1));
  const w = (x1 - x0) * s, h = (y1 - y0) * s, shift = left + (room - w) / 2, height = top + h + 50;
  const at = ([x, y]) => [shift + (x - x0) * s, top + (y1 - y) * s];
  const digits = (x1 - x0) * (unit === 'inch' ? 25.4 : unit === 'm' ? 1000 : 1) > 5000 ? 1 : unit === 'mm' ? 1 : 3;
  const chart = svg('svg', { class: 'chart', viewBox: `0 0 ${width} ${height.toFixed(0)}`, role: 'img',
    'aria-label': `Outline of the blank, ${fixed(x1 - x0, digits)} by ${fixed(y1 - y0, digits)} ${unit}, ${loops.length - 1} holes` },
  svg('rect', { class: 'frame', x: shift, y: top, width: w, height: h }),
  svg('path', { class: 'sheet', d: pathOf(loops, at) }),
  arrowed(shift, top + h + 22, shift + w, top + h + 22), arrowed(shift - 22, top + h, shift - 22, top),
  svg('text', { class: 'strong halo', x: shift + w / 2, y: top + h + 26, 'text-anchor': 'middle' }, fixed(x1 - x0, digits)),
  svg('text', { class: 'strong halo', transform: `translate(${shift - 18} ${top + h / 2}) rotate(-90)`, 'text-anchor': 'middle' }, fixed(y1 - y0, digits)),
  holes(loops.slice(1), at, digits, width),
  turned(outline.marks, -outline.angle).map(at).map(([x, y]) => svg('circle', { class: 'wrong', cx: x, cy: y, r: 9 }, svg('title', {}, 'The outline crosses itself here'))));
  const angle = fixed(outline.angle, 1);
  const turnedText = Math.abs(outline.angle) < 0.05 ? '' : `, turned by ${fixed(-outline.angle, 1)}\u00b0 to lie in it`;
  return html('section', { class: 'card', 'aria-labelledby': 'outline-title', 'data-angle': angle },
    html('h2', { id: 'outline-title' }, 'Outline of the blank'),
    html('p', {}, `In its smallest rectangle${turnedText}; lengths in ${unit}. Outer edge ${fixed(lengthOf(loops[0]), digits)}` +
      (loops.length > 1 ? `, ${loops.length - 1} ${loops.length === 2 ? 'hole' : 'holes'}.` : '.')), chart);
}

// Names of holes that have room for them. width: of the drawing, which none leaves.
function holes(loops, at, digits, width) {
  const taken = [];
  return loops.map(loop => {
    const [x0, y0, x1, y1] = boxOf([loop]), [middle, y] = at([(x0 + x1) / 2, y0]), text = holeName(loop, digits);
    const half = 4.1 * text.length, x = Math.max(half, Math.min(middle, width - half));
    const box = [x - half, y + 3, x + half, y + 17];
    if (taken.some(other => box[0] < other[2] && other[0] < box[2] && box[1] < other[3] && other[1] < box[3])) return null;
    taken.push(box);
    return svg('text', { class: 'halo', x, y: y + 14, 'text-anchor': 'middle' }, text);
  });
}

export function stripCard({ strip, outline, unit }) {
  if (!strip.placed.length || !outline.loops.length) return null;
  const blanks = strip.placed.map(([angle, x, y]) => outline.loops.map(loop => turned(loop, angle).map(([px, py]) => [px + x, py + y])));
  const [x0, , x1] = boxOf(blanks.flat()), width = 620, s = (width - 74) / (x1 - x0 || 1), h = strip.width * s, top = 26;
  const at = ([x, y]) => [52 + (x - x0) * s, top + (strip.width - y) * s];
  const digits = unit === 'mm' ? 1 : 3, pitch = strip.pitch * s;
  const chart = svg('svg', { class: 'chart', viewBox: `0 0 ${width} ${(top + h + 44).toFixed(0)}`, role: 'img',
    'aria-label': `Blanks on a strip ${fixed(strip.width, digits)} ${unit} wide, pitch ${fixed(strip.pitch, digits)} ${unit}` },
  svg('path', { class: 'frame', d: `M30 ${top}H${width}M30 ${top + h}H${width}` }),
  blanks.map(loops => svg('path', { class: 'sheet', d: pathOf(loops, at) })),
  arrowed(20, top + h, 20, top),
  svg('text', { class: 'strong halo', transform: `translate(24 ${top + h / 2}) rotate(-90)`, 'text-anchor': 'middle' }, fixed(strip.width, digits)),
  arrowed(52, top + h + 22, 52 + pitch, top + h + 22),
  svg('text', { class: 'strong halo', x: 52 + pitch / 2, y: top + h + 26, 'text-anchor': 'middle' }, fixed(strip.pitch, digits)));
  return html('section', { class: 'card', 'aria-labelledby': 'strip-title' }, html('h2', { id: 'strip-title' }, 'On the strip'),
    html('p', {}, `Width and pitch in ${unit}.`), chart, pairs(strip.figures));
}
