// The page: reads the run out of its script elements and shows it.
import { scaleOf } from './colours.js';
import { convergenceCard } from './convergence.js';
import { Diagram } from './diagram.js';
import { byId, html, pairs } from './dom.js';
import { Legend, rangesOf } from './legend.js';
import { shown } from './numbers.js';
import { outlineCard, stripCard } from './outline.js';
import { followTheme } from './theme.js';
import { TriangleBox } from './triangle.js';
import { showFigures, showHeading, showTrust } from './trust.js';
import { unpack } from './unpack.js';
import { Views } from './views.js';

class Page {
  constructor(data, mesh) {
    Object.assign(this, { data, mesh, bands: false, selected: -1, ranges: [], range: [] });
    const room = byId('views');
    this.views = new Views(room, byId('canvas'), mesh, data.unit, { picked: e => this.pick(e), hovered: (...at) => this.hover(...at) });
    this.areas = this.views.part.areas;
    this.tip = html('div', { class: 'hover', hidden: true });
    room.append(this.tip);
    this.legend = new Legend(byId('legend'), this.areas, { range: range => this.setRange(range), class: k => this.selectClass(k) });
    this.box = new TriangleBox(mesh, data, { pick: e => this.pick(e), go: e => this.go(e) });
    this.cards();
    this.chips();
    this.switches();
    if (mesh.fields.length) this.choose(Math.min(Math.max(data.shownField, 0), mesh.fields.length - 1));
    else byId('legend').hidden = true;
  }

  cards() {
    const { data, mesh } = this, strains = data.majorField >= 0 && data.minorField >= 0;
    if (strains) this.diagram = new Diagram(mesh, data, this.areas, { chosen: flags => this.highlight(flags, true) });
    const settings = data.settings.length ? html('section', { class: 'card', 'aria-labelledby': 'settings-title' },
      html('h2', { id: 'settings-title' }, 'The run'), pairs(data.settings)) : null;
    byId('below').append(...[outlineCard(data), convergenceCard(data), this.diagram?.card, stripCard(data), settings].filter(Boolean));
  }

  chips() {
    byId('fields').append(...this.mesh.fields.map((field, k) => html('label', {},
      html('input', { type: 'radio', name: 'field', value: k, id: `field-${k}`, onchange: () => this.choose(k) }),
      html('span', {}, field.name))));
  }

  switches() {
    const box = (id, text, title, change) => html('label', { title }, html('input', { type: 'checkbox', id, onchange: event => change(event.target.checked) }), text);
    byId('switches').append(
      box('edges', 'Edges', 'Draw the triangles', on => this.views.set(uniforms => { uniforms.lines.value = on ? 1 : 0; })),
      box('bands', 'Bands', 'Twelve even bands instead of a smooth scale', on => { this.bands = on; this.recolour(); }),
      box('link', 'Turn together', 'Part and blank turn together', on => {
        this.views.linked = on;
        if (on) this.views.blank.camera.lookLike(this.views.part.camera);
        this.views.draw();
      }),
      html('button', { type: 'button', class: 'quiet small', id: 'fit', onclick: () => this.views.fit() }, 'Fit'));
  }

  choose(k) {
    this.shown = k;
    const field = this.mesh.fields[k];
    byId(`field-${k}`).checked = true;
    this.ranges[k] ??= rangesOf(field, this.areas);
    this.range[k] ??= this.ranges[k].most;
    if (this.selected >= 0) this.highlight(null, false);
    this.views.colour(field.values, this.scale());
    this.recolour();
  }

  scale() {
    return scaleOf(this.mesh.fields[this.shown], this.range[this.shown], this.bands);
  }

  recolour() {
    const k = this.shown, scale = this.scale();
    if (k === undefined) return;
    this.views.rescale(scale);
    this.legend.show(this.mesh.fields[k], this.ranges[k], this.range[k], scale, this.selected);
    this.diagram?.show(this.mesh.fields[k], scale);
  }

  setRange(range) {
    this.range[this.shown] = range;
    this.recolour();
  }

  selectClass(k) {
    const { values } = this.mesh.fields[this.shown];
    this.highlight(k < 0 ? null : Uint8Array.from(values, value => value === k ? 1 : 0), false);
    this.selected = k;
    this.recolour();
  }

  highlight(flags, fromDiagram) {
    this.selected = -1;
    if (!fromDiagram) { this.diagram?.forget(); this.diagram?.mark(flags); }
    this.views.highlight(flags);
  }

  pick(e) {
    this.views.pick(e);
    this.box.show(e);
    this.diagram?.pick(e);
  }

  go(e) {
    this.views.show(e);
    this.pick(e);
  }

  hover(e, view, x, y) {
    this.views.hover(e);
    this.tip.hidden = e < 0 || this.shown === undefined;
    if (this.tip.hidden) return;
    const field = this.mesh.fields[this.shown];
    this.tip.textContent = shown(field, field.values[e]);
    this.tip.style.left = `${view.pane.offsetLeft + view.pane.clientWidth / 2 + x}px`;
    this.tip.style.top = `${view.pane.clientHeight / 2 + view.pane.offsetTop + y}px`;
  }

  dress() {
    const style = getComputedStyle(document.documentElement), colour = name => style.getPropertyValue(name).trim();
    this.views.dress(colour('--ink'), colour('--view-bottom'), colour('--mark'));
    this.diagram?.paint();
  }
}

async function start() {
  const data = JSON.parse(byId('report-data').textContent);
  showHeading(data);
  showTrust(data.trust);
  showFigures(data.figures);
  byId('made').textContent = data.program;
  byId('main').hidden = false;
  let page = null;
  followTheme(() => page?.dress());
  const mesh = await unpack(byId('report-mesh').textContent, data.mesh);
  page = new Page(data, mesh);
  page.views.drawn = () => {
    page.views.drawn = null;
    document.documentElement.dataset.shown = Math.round(performance.now());  // ms from the opening of the page
  };
  page.dress();
}

start().catch(error => {
  byId('main').hidden = false;
  byId('views').replaceChildren(html('p', { class: 'refused' },
    `The page could not be shown: ${error.message}. It needs a browser of 2023 or later, and the whole file.`));
  throw error;
});
