// The box of the picked triangle: its values, the way to it by number, and the places worth a look.
import { byId, html, pairs, tell } from './dom.js';
import { counted, fixed, shown } from './numbers.js';

export class TriangleBox {
  // told: { pick(triangle), go(triangle) }.
  constructor(mesh, data, told) {
    Object.assign(this, { mesh, data, told });
    this.indexOf = new Map();
    mesh.number.forEach((number, e) => this.indexOf.set(number, e));
    this.content = html('div', { id: 'values' });
    this.input = html('input', { class: 'field-box', id: 'number', type: 'number', min: 1, step: 1,
      onkeydown: event => event.key === 'Enter' && this.find() });
    byId('triangle').append(html('h2', { id: 'triangle-title' }, 'Triangle'),
      html('div', { class: 'find' }, html('label', { for: 'number', class: 'soft' }, 'Number'), this.input,
        html('button', { type: 'button', class: 'quiet small', onclick: () => this.find() }, 'Show'),
        html('button', { type: 'button', class: 'quiet small', onclick: () => told.pick(-1) }, 'Clear')),
      html('p', { class: 'soft hint' }, 'Pick one in either view, or give its number.'), this.content, this.places());
    this.show(-1);
  }

  places() {
    return html('div', { class: 'places' }, this.data.places.map(place => html('button',
      { type: 'button', class: 'quiet small', onclick: () => this.told.go(this.indexOf.get(place.number)) }, place.text)));
  }

  find() {
    const e = this.indexOf.get(this.input.valueAsNumber);
    if (e !== undefined) return this.told.go(e);
    this.content.replaceChildren(html('p', { class: 'soft' }, `The part has no triangle ${this.input.value || 'of that number'}.`));
    tell(this.content.textContent);
  }

  show(e) {
    const { mesh, data } = this, number = mesh.number[e];
    if (e < 0) {  // the same rows, so that the views keep their size
      const names = [...mesh.fields.map(field => field.name), `on the part, ${data.unit}`, `in the blank, ${data.unit}`];
      this.input.value = '';
      this.content.replaceChildren(pairs(names.map(name => ({ name, value: '\u2013' }))));
      return;
    }
    const centre = (points, axes) => Array.from({ length: axes }, (_, axis) =>
      fixed([0, 1, 2].reduce((sum, k) => sum + points[axes * mesh.corners[3 * e + k] + axis], 0) / 3, this.digits(points, axes))).join('\u2002');
    const figures = mesh.fields.map(field => ({ name: field.name, value: shown(field, field.values[e]) }));
    figures.push({ name: `on the part, ${data.unit}`, value: centre(mesh.part, 3) }, { name: `in the blank, ${data.unit}`, value: centre(mesh.blank, 2) });
    this.input.value = number;
    this.content.replaceChildren(pairs(figures));
    tell(`Triangle ${counted(number)}: ${figures.map(({ name, value }) => `${name} ${value}`).join(', ')}`);
  }

  // Positions are stored in 65535 steps; shown are the digits that these carry.
  digits(points, axes) {
    const step = axes === 3 ? this.data.mesh.partStep : this.data.mesh.blankStep;
    return Math.min(Math.max(0, -Math.ceil(Math.log10(step) - 0.3)), 9);
  }
}
