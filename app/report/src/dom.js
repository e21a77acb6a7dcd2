// Elements of the page. Text goes in as text, never as HTML.

function filled(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (value === false || value === undefined || value === null) continue;
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (name === 'value' || name === 'checked') element[name] = value;
    else element.setAttribute(name, value === true ? '' : value);
  }
  element.append(...children.flat(Infinity).filter(child => child !== null && child !== undefined && child !== false));
  return element;
}

export const html = (name, attributes = {}, ...children) => filled(document.createElement(name), attributes, children);
export const svg = (name, attributes = {}, ...children) =>
  filled(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);

export const byId = id => document.getElementById(id);

// Tells a screen reader.
export function tell(text) {
  byId('live').textContent = text;
}

// A list of names and values.
export function pairs(figures) {
  return html('dl', { class: 'pairs' }, figures.map(({ name, value }) => [html('dt', {}, name), html('dd', {}, value)]));
}
