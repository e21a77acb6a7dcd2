// Numbers as text, and ticks.

const minus = text => text.replace('-', '\u2212');

export const fixed = (value, digits) => minus(value.toFixed(digits)).replace(/^\u2212(0(\.0*)?)$/, '$1');

// A value of a field with the digits that it was stored with, and its unit.
export function shown(field, value) {
  if (Number.isNaN(value)) return 'none';
  if (field.classes.length) return field.classes[value].name;
  const text = fixed(value, Math.max(0, -field.power));
  return field.unit ? `${text}\u202f${field.unit}` : text;
}

export const percent = share => share > 0 && share < 0.0005 ? '< 0.1\u202f%' : `${(100 * share).toFixed(1)}\u202f%`;

export const counted = n => n.toString().replace(/\B(?=(\d{3})+$)/g, '\u202f');

// Round numbers from low to high, about `wanted`, and their digits after the point.
export function ticksOf(low, high, wanted) {
  const rough = (high - low) / wanted;
  if (!(rough > 0)) return { ticks: [low], digits: 2, step: 1 };
  const power = Math.floor(Math.log10(rough)), unit = 10 ** power;
  const step = [1, 2, 5, 10].map(m => m * unit).find(s => s >= rough * 0.999);
  const ticks = [];
  for (let k = Math.ceil(low / step - 1e-9); k * step <= high + step * 1e-9; ++k) ticks.push(k * step);
  return { ticks, digits: Math.max(0, -Math.floor(Math.log10(step) + 1e-9)), step };
}
