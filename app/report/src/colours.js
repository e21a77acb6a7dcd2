// Colour ramps and the colours of classes, as sRGB.

// Even steps of lightness, from dark blue over green to light yellow; readable with weak colour vision.
const sequential = ['#2b1e5c', '#2f4b8a', '#26718f', '#1f948b', '#42b67a', '#8fd15c', '#dde24a', '#fbf3a3'];
// Thicker or compressed: blue; unchanged: near white; thinner or stretched: red.
const diverging = ['#123f7a', '#2a6fb0', '#68a5d2', '#b2d2e6', '#e9e7e1', '#f6c7a4', '#e98a62', '#c8443c', '#85132d'];

export const classColours = {
  plain: '#b9bfc6', green: '#3f9f6b', amber: '#e0a526', red: '#cf3f38', blue: '#3778c2', violet: '#8a5cc4',
};
export const noneColour = '#8b8f94';

export const rgbOf = hex => [1, 3, 5].map(k => parseInt(hex.slice(k, k + 2), 16));

// 256 colours between the stops, RGBA bytes.
export function rampOf(aboutZero) {
  const stops = (aboutZero ? diverging : sequential).map(rgbOf), bytes = new Uint8Array(4 * 256);
  for (let k = 0; k < 256; ++k) {
    const place = k / 255 * (stops.length - 1), at = Math.min(Math.floor(place), stops.length - 2), part = place - at;
    for (let c = 0; c < 3; ++c) bytes[4 * k + c] = Math.round(stops[at][c] * (1 - part) + stops[at + 1][c] * part);
    bytes[4 * k + 3] = 255;
  }
  return bytes;
}

// The colours of classes, each in one cell of 256.
export function classRamp(classes) {
  const bytes = new Uint8Array(4 * 256).fill(255);
  classes.forEach((one, k) => bytes.set(rgbOf(classColours[one.colour]), 4 * k));
  return bytes;
}

// How a field is drawn: ramp, and place = value * slope + offset in 0..1 for values clamped to low..high.
export function scaleOf(field, range, bands) {
  if (field.classes.length)
    return { ramp: classRamp(field.classes), slope: 1 / 255, offset: 0, low: 0, high: 255, bands: 0 };
  const [low, high] = range;
  const size = Math.max(Math.abs(low), Math.abs(high)) || 1, width = high - low || 1;
  const [slope, offset] = field.aboutZero ? [0.5 / size, 0.5] : [1 / width, -low / width];
  return { ramp: rampOf(field.aboutZero), slope, offset, low, high, bands: bands ? 12 : 0 };
}

// The index of the ramp's colour for a value.
export function rampIndex(scale, value) {
  let x = Math.min(Math.max(value, scale.low), scale.high);
  if (scale.bands) {
    const width = (scale.high - scale.low) / scale.bands || 1;
    x = scale.low + (Math.min(Math.floor((x - scale.low) / width), scale.bands - 1) + 0.5) * width;
  }
  return Math.round(Math.min(Math.max(x * scale.slope + scale.offset, 0), 1) * 255);
}

export const cssColour = (scale, value) => {
  const k = 4 * rampIndex(scale, value);
  return `rgb(${scale.ramp[k]} ${scale.ramp[k + 1]} ${scale.ramp[k + 2]})`;
};
