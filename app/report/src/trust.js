// What the result is worth; the figures beside it.
import { byId, html, pairs, svg } from './dom.js';

const words = { good: 'Good', caution: 'Doubtful', bad: 'Not a blank' };
const spoken = { good: 'fine', note: 'note', caution: 'doubt', bad: 'failed' };
const signs = { good: 'M3.5 8.5l3 3 6-7', note: 'M5 8h6', caution: 'M8 3.5v5.5M8 12.2v.3', bad: 'M4 4l8 8M12 4l-8 8' };

function sign(level) {
  return svg('svg', { viewBox: '0 0 16 16', class: level, role: 'img', 'aria-label': spoken[level] },
    svg('path', { d: signs[level], fill: 'none', stroke: 'currentColor', 'stroke-width': 2, 'stroke-linecap': 'round', 'stroke-linejoin': 'round' }));
}

export function showTrust(trust) {
  const box = byId('trust'), pill = byId('pill');
  box.classList.add(trust.level);
  box.append(html('h2', { id: 'trust-title' }, trust.headline),
    html('ul', {}, trust.findings.map(({ level, text }) => html('li', {}, sign(level), html('span', {}, text)))),
    trust.scope ? html('p', { class: 'scope' }, trust.scope) : '');
  pill.classList.add(trust.level);
  pill.textContent = words[trust.level];
}

export function showHeading(data) {
  byId('program').textContent = `${data.program} report`;
  byId('name').textContent = data.part.split(/[\\/]/).pop();
  byId('subtitle').textContent = data.notes.join(' \u00b7 ');
}

export function showFigures(figures) {
  if (!figures.length) return;
  const box = byId('figures');
  box.hidden = false;
  box.append(html('h2', { id: 'figures-title' }, 'Figures'), pairs(figures));
}
