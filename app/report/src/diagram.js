// Minor against major strain of all triangles, with the forming-limit curve where there is one. A rectangle drawn in
// it, or typed below it, picks triangles out of both views.
import { html, svg, tell } from './dom.js';
import { counted, fixed, percent, ticksOf } from './numbers.js';
import { rangesOf } from './legend.js';
import { rampIndex, rgbOf, noneColour } from './colours.js';

const width = 620, height = 430, left = 54, right = width - 14, top = 14, low = height - 42;

export class Diagram {
  // areas: per triangle on the part; told: { chosen(flags or null) }.
  constructor(mesh, data, areas, told) {
    Object.assign(this, { mesh, data, areas, told });
    this.major = mesh.fields[data.majorField];
    this.minor = mesh.fields[data.minorField];
    this.window();
    this.svg = svg('svg', { class: 'chart', viewBox: `0 0 ${width} ${height}`, role: 'img',
      'aria-label': 'Strain diagram; the boxes below pick a range of strains' });
    this.canvas = html('canvas', { 'aria-hidden': true });
    this.line = html('p', { class: 'told', 'aria-live': 'polite' });
    this.boxes = ['Minor from', 'to', 'Major from', 'to'].map((label, k) => html('input', { class: 'field-box', type: 'number', step: 0.01,
      'aria-label': `${k < 2 ? 'Minor' : 'Major'} strain ${k % 2 ? 'to' : 'from'}`, onchange: () => this.typed() }));
    this.card = html('section', { class: 'card', 'aria-labelledby': 'diagram-title' },
      html('h2', { id: 'diagram-title' }, data.limits.curve.length ? 'Forming-limit diagram' : 'Strain diagram'),
      html('p', {}, this.words()),
      html('div', { class: 'plot' }, this.canvas, this.svg),
      html('div', { class: 'brush-row' },
        ['minor', 'major'].map((name, k) => html('span', {}, name, this.boxes[2 * k], '\u2013', this.boxes[2 * k + 1])),
        html('button', { type: 'button', class: 'quiet small', onclick: () => this.brush(null) }, 'Clear')), this.line);
    this.frame();
    this.listen();
    new ResizeObserver(() => this.paint()).observe(this.svg);
  }

  words() {
    const { curve, source, margin } = this.data.limits;
    const limits = curve.length ? ` Red: limit${source ? ` (${source})` : ''}; dashed: ${fixed(margin, 0)}\u202f% of engineering strain below.` : '';
    return `Logarithmic strains, a point per triangle in the colour it has above. Draw a rectangle to see where its triangles lie.${limits}` +
      (this.beyond ? ` ${counted(this.beyond)} beyond the axes.` : '');
  }

  // The strains in sight: zero, the foot of the limit curve, and all triangles, or, where a few lie far out, all but a
  // thousandth of the area.
  window() {
    const ends = (field, foot) => {
      const { full, most } = rangesOf(field, this.areas);
      const [a, b] = most[1] - most[0] < 0.5 * (full[1] - full[0]) ? most : full;
      const low = Math.min(0, a), high = Math.max(0, b, foot), pad = 0.06 * (high - low) || 0.01;
      return [low - pad, high + pad];
    };
    const { curve } = this.data.limits;
    this.e2 = ends(this.minor, 0);
    this.e1 = ends(this.major, curve.length ? 1.1 * Math.min(...curve.map(([, major]) => major)) : 0);
    const beyond = (value, [low, high]) => value < low || value > high;
    this.beyond = 0;
    for (let e = 0; e < this.mesh.triangles; ++e)
      if (beyond(this.minor.values[e], this.e2) || beyond(this.major.values[e], this.e1)) ++this.beyond;
  }

  x(minor) { return left + (minor - this.e2[0]) / (this.e2[1] - this.e2[0]) * (right - left); }
  y(major) { return low - (major - this.e1[0]) / (this.e1[1] - this.e1[0]) * (low - top); }

  frame() {
    const parts = [], a = ticksOf(...this.e2, 7), b = ticksOf(...this.e1, 6);
    for (const t of a.ticks) parts.push(svg('line', { class: 'grid', x1: this.x(t), x2: this.x(t), y1: top, y2: low }),
      svg('text', { x: this.x(t), y: low + 16, 'text-anchor': 'middle' }, fixed(t, a.digits)));
    for (const t of b.ticks) parts.push(svg('line', { class: 'grid', x1: left, x2: right, y1: this.y(t), y2: this.y(t) }),
      svg('text', { x: left - 8, y: this.y(t) + 4, 'text-anchor': 'end' }, fixed(t, b.digits)));
    parts.push(svg('line', { class: 'axis', x1: this.x(0), x2: this.x(0), y1: top, y2: low }),
      svg('line', { class: 'axis', x1: left, x2: right, y1: this.y(0), y2: this.y(0) }),
      svg('text', { x: right, y: height - 6, 'text-anchor': 'end' }, 'minor strain'),
      svg('text', { transform: `translate(12 ${top}) rotate(-90)`, 'text-anchor': 'end' }, 'major strain'));
    const { curve, margin } = this.data.limits, clip = svg('clipPath', { id: 'plot' }, svg('rect', { x: left, y: top, width: right - left, height: low - top }));
    // Margins are differences of engineering strains, exp(e) - 1.
    const path = below => 'M' + curve.map(([minor, major]) => `${this.x(minor)} ${this.y(Math.log(Math.max(0.01, Math.exp(major) - below / 100)))}`).join('L');
    const limits = curve.length ? svg('g', { 'clip-path': 'url(#plot)' }, svg('path', { class: 'limit', d: path(0) }),
      margin > 0 && svg('path', { class: 'margin', d: path(margin) })) : '';
    this.rectangle = svg('rect', { class: 'brush', visibility: 'hidden' });
    this.spot = svg('circle', { r: 5.5, visibility: 'hidden', fill: 'none', style: 'fill:none;stroke:var(--mark);stroke-width:2.4' });
    this.svg.append(clip, ...parts, limits, this.rectangle, this.spot);
  }

  // field, scale: what colours the triangles now.
  show(field, scale) {
    Object.assign(this, { field, scale });
    this.paint();
  }

  pick(e) {
    const none = e < 0 || Number.isNaN(this.minor.values[e]);
    this.spot.setAttribute('visibility', none ? 'hidden' : 'visible');
    if (none) return;
    this.spot.setAttribute('cx', this.x(this.minor.values[e]));
    this.spot.setAttribute('cy', this.y(this.major.values[e]));
  }

  paint() {
    if (this.waiting) return;
    this.waiting = true;
    requestAnimationFrame(() => this.paintNow());
  }

  paintNow() {
    this.waiting = false;
    const box = this.svg.getBoundingClientRect(), ratio = Math.min(window.devicePixelRatio || 1, 2);
    if (!this.field || !box.width) return;
    const w = Math.round(box.width * ratio), h = Math.round(box.height * ratio), s = w / width, { canvas } = this;
    Object.assign(canvas, { width: w, height: h });
    Object.assign(canvas.style, { width: `${box.width}px`, height: `${box.height}px` });
    const context = canvas.getContext('2d'), image = context.createImageData(w, h), pixels = new Uint32Array(image.data.buffer);
    const deep = document.documentElement.dataset.theme === 'dark' ? 1 : 0.86;  // near white must show on white
    const ramp = new Uint32Array(Uint8Array.from(this.scale.ramp, (c, k) => k % 4 === 3 ? c : c * deep).buffer), [r, g, b] = rgbOf(noneColour), grey = (255 << 24 | b << 16 | g << 8 | r) >>> 0;
    const count = this.mesh.triangles, size = Math.max(1, Math.round((count > 30000 ? 1.3 : count > 3000 ? 2 : 3) * ratio));
    for (let e = 0; e < count; ++e) {
      const px = Math.round(this.x(this.minor.values[e]) * s), py = Math.round(this.y(this.major.values[e]) * s);
      if (!(px >= 0 && py >= 0 && px + size < w && py + size < h)) continue;
      const value = this.field.values[e], faint = this.flags && !this.flags[e];
      let colour = Number.isNaN(value) ? grey : ramp[rampIndex(this.scale, value)];
      if (faint) colour = (colour & 0xffffff | 40 << 24) >>> 0;
      for (let j = 0; j < size; ++j) pixels.fill(colour, (py + j) * w + px, (py + j) * w + px + size);
    }
    context.putImageData(image, 0, 0);
  }

  listen() {
    let begin = null;
    const place = event => {
      const box = this.svg.getBoundingClientRect(), s = width / box.width;
      const px = Math.min(Math.max((event.clientX - box.left) * s, left), right), py = Math.min(Math.max((event.clientY - box.top) * s, top), low);
      return [this.e2[0] + (px - left) / (right - left) * (this.e2[1] - this.e2[0]), this.e1[0] + (low - py) / (low - top) * (this.e1[1] - this.e1[0])];
    };
    this.svg.addEventListener('pointerdown', event => {
      this.svg.setPointerCapture(event.pointerId);
      begin = place(event);
      event.preventDefault();
    });
    this.svg.addEventListener('pointermove', event => {
      if (!begin) return;
      const [a, b] = place(event);
      this.outline([Math.min(a, begin[0]), Math.max(a, begin[0]), Math.min(b, begin[1]), Math.max(b, begin[1])]);
    });
    const end = event => {
      if (!begin) return;
      const [a, b] = place(event), range = [Math.min(a, begin[0]), Math.max(a, begin[0]), Math.min(b, begin[1]), Math.max(b, begin[1])];
      begin = null;
      const tiny = this.x(range[1]) - this.x(range[0]) < 4 || this.y(range[2]) - this.y(range[3]) < 4;
      this.brush(tiny ? null : range);
    };
    this.svg.addEventListener('pointerup', end);
    this.svg.addEventListener('pointercancel', () => { begin = null; });
  }

  typed() {
    const numbers = this.boxes.map(box => box.valueAsNumber), [a, b, c, d] = numbers;
    if (numbers.every(Number.isNaN)) return this.brush(null);
    const or = (value, other) => Number.isNaN(value) ? other : value;
    this.brush([or(a, this.e2[0]), or(b, this.e2[1]), or(c, this.e1[0]), or(d, this.e1[1])]);
  }

  outline(range) {
    this.rectangle.setAttribute('visibility', range ? 'visible' : 'hidden');
    if (!range) return;
    const [a, b, c, d] = range;
    for (const [name, value] of Object.entries({ x: this.x(a), y: this.y(d), width: Math.max(0, this.x(b) - this.x(a)), height: Math.max(0, this.y(c) - this.y(d)) }))
      this.rectangle.setAttribute(name, value);
  }

  // range: minor from, to, major from, to; null: all.
  brush(range) {
    this.outline(range);
    this.boxes.forEach((box, k) => { box.value = range ? range[k].toFixed(3) : ''; });
    const flags = range && new Uint8Array(this.mesh.triangles);
    let count = 0, area = 0, total = 0;
    if (range) for (let e = 0; e < flags.length; ++e) {
      const minor = this.minor.values[e], major = this.major.values[e];
      total += this.areas[e];
      if (!(minor >= range[0] && minor <= range[1] && major >= range[2] && major <= range[3])) continue;
      flags[e] = 1;
      ++count;
      area += this.areas[e];
    }
    this.mark(flags);
    this.line.textContent = range ? `${counted(count)} of ${counted(flags.length)} triangles, ${percent(area / total)} of the part's area` : '';
    this.told.chosen(flags);
  }

  // Shows a choice that was made elsewhere.
  mark(flags) {
    this.flags = flags;
    this.paint();
  }

  // The choice is another's now.
  forget() {
    this.outline(null);
    this.boxes.forEach(box => { box.value = ''; });
    this.line.textContent = '';
  }
}
