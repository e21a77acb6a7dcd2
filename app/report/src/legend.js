// The legend: what the colours mean, how much of the sheet has which value, and the range that is coloured.
import { cssColour, classColours } from './colours.js';
import { html, svg } from './dom.js';
import { fixed, percent, shown, ticksOf } from './numbers.js';

// Least and largest value, and the range of all but a thousandth of the area.
export function rangesOf(field, areas) {
  const { steps, values } = field;
  let low = Infinity, high = -Infinity, total = 0;
  for (let e = 0; e < areas.length; ++e) {
    if (Number.isNaN(values[e])) continue;
    low = Math.min(low, steps[e]);
    high = Math.max(high, steps[e]);
    total += areas[e];
  }
  if (low > high) return { full: [0, 1], most: [0, 1] };
  const area = new Float64Array(high - low + 1), value = new Float64Array(high - low + 1);
  for (let e = 0; e < areas.length; ++e) {
    if (Number.isNaN(values[e])) continue;
    area[steps[e] - low] += areas[e];
    value[steps[e] - low] = values[e];
  }
  const full = [value[0], value[high - low]], cut = total * 0.0005, most = [...full];
  for (let k = 0, sum = 0; k < area.length && sum <= cut; ++k) if (area[k]) { sum += area[k]; most[0] = value[k]; }
  for (let k = area.length - 1, sum = 0; k >= 0 && sum <= cut; --k) if (area[k]) { sum += area[k]; most[1] = value[k]; }
  return { full, most: most[0] < most[1] ? most : full };
}

// Area per bin between low and high, values beyond in the end bins, as shares of the largest bin.
function histogram(field, areas, [low, high], bins) {
  const sums = new Float64Array(bins), width = (high - low) / bins || 1;
  for (let e = 0; e < areas.length; ++e) {
    const value = field.values[e];
    if (Number.isNaN(value)) continue;
    sums[Math.min(Math.max(Math.floor((value - low) / width), 0), bins - 1)] += areas[e];
  }
  const largest = Math.max(...sums) || 1;
  return Array.from(sums, sum => sum / largest);
}

function barOf(field, areas, range, scale, width) {
  const [low, high] = range, x = value => (value - low) / (high - low || 1) * width, bins = 120, top = 40;
  const columns = histogram(field, areas, range, bins).map((share, k) => {
    const height = share > 0 ? Math.max(1, Math.sqrt(share) * (top - 4)) : 0, colour = cssColour(scale, low + (k + 0.5) / bins * (high - low));
    return [svg('rect', { x: k * width / bins, y: top - height, width: width / bins + 0.3, height, fill: colour, opacity: 0.55 }),
      svg('rect', { x: k * width / bins, y: top, width: width / bins + 0.5, height: 12, fill: colour })];
  }).flat();
  const { ticks, digits } = ticksOf(low, high, Math.max(3, Math.floor(width / 110)));
  const marks = ticks.flatMap(tick => [
    svg('line', { x1: x(tick), x2: x(tick), y1: top + 12, y2: top + 16, stroke: 'currentColor', opacity: 0.5 }),
    svg('text', { x: x(tick), y: top + 29, 'text-anchor': x(tick) < 14 ? 'start' : x(tick) > width - 14 ? 'end' : 'middle' }, fixed(tick, digits))]);
  return svg('svg', { viewBox: `0 0 ${width} 74`, role: 'img', preserveAspectRatio: 'none',
    'aria-label': `Colours from ${shown(field, low)} to ${shown(field, high)}, with the area of the sheet at each value` }, columns, marks);
}

function classesOf(field, areas, selected, choose) {
  const area = field.classes.map(() => 0), count = field.classes.map(() => 0);
  let total = 0;
  for (let e = 0; e < areas.length; ++e) {
    total += areas[e];
    if (Number.isNaN(field.values[e])) continue;
    area[field.values[e]] += areas[e];
    ++count[field.values[e]];
  }
  return html('div', { class: 'classes' }, field.classes.map((one, k) => count[k] > 0 && html('button',
    { type: 'button', class: 'quiet', 'aria-pressed': String(selected === k), onclick: () => choose(selected === k ? -1 : k) },
    html('span', { class: 'swatch', style: `background:${classColours[one.colour]}` }),
    html('span', {}, `${one.name}: ${count[k]} (${percent(area[k] / total)} of the area)`))));
}

export class Legend {
  // told: { range([low, high]), class(index or -1) }.
  constructor(room, areas, told) {
    Object.assign(this, { room, areas, told });
    new ResizeObserver(() => this.paint()).observe(room);
  }

  show(field, ranges, range, scale, selected) {
    Object.assign(this, { field, ranges, range, scale, selected });
    const parts = field.classes.length ? [classesOf(field, this.areas, selected, this.told.class)] : [html('div', { class: 'strip' })];
    this.room.replaceChildren(html('div', { class: 'legend-head' }, this.title(), !field.classes.length && this.inputs()), ...parts);
    this.width = 0;
    this.paint();
  }

  title() {
    const { field } = this, name = field.name[0].toUpperCase() + field.name.slice(1);
    return html('p', {}, html('b', {}, name), field.unit && ` in ${field.unit}`, html('span', { class: 'soft' }, field.note && ` \u2002${field.note}`));
  }

  inputs() {
    const { field, ranges, range } = this, digits = Math.max(0, -field.power);
    const box = (k, label) => html('input', {
      class: 'field-box', type: 'number', step: 10 ** field.power, 'aria-label': label, id: k ? 'range-high' : 'range-low',
      value: range[k].toFixed(digits),
      onchange: event => {
        const value = event.target.valueAsNumber, next = k ? [range[0], value] : [value, range[1]];
        if (next[0] < next[1]) this.told.range(next);
        else event.target.value = range[k].toFixed(digits);
      },
    });
    const button = (text, title, wanted) => html('button', { type: 'button', class: 'quiet small', title,
      'aria-pressed': String(wanted[0] === range[0] && wanted[1] === range[1]), onclick: () => this.told.range(wanted) }, text);
    const beyond = ranges.full[0] < range[0] || ranges.full[1] > range[1];
    return html('div', { class: 'range' },
      html('span', {}, beyond ? `values reach ${shown(field, ranges.full[0])} to ${shown(field, ranges.full[1])}` : ''),
      box(0, 'Least value coloured'), '\u2013', box(1, 'Largest value coloured'),
      button('99.9\u202f%', 'The range of all but a thousandth of the area', ranges.most),
      button('All', 'The range of all values', ranges.full));
  }

  paint() {
    const strip = this.room.querySelector('.strip'), width = strip?.clientWidth;
    if (!strip || !width || width === this.width) return;
    this.width = width;
    strip.replaceChildren(barOf(this.field, this.areas, this.range, this.scale, width));
  }
}
