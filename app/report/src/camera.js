// An orthographic camera that turns about a target, and what pointer and keys do to it. z is up; azimuth 0 and
// elevation 90 degrees look down with x to the right and y up.

const degree = Math.PI / 180;

export class Camera {
  // extentOf(axis): least and largest place of the sheet along an axis; home: azimuth and elevation in degrees.
  constructor(extentOf, home) {
    this.extentOf = extentOf;
    this.home = home;
    this.width = this.height = 1;
    this.fit(home);
  }

  // Directions in the world: right and up on the screen, and towards the eye.
  get axes() {
    const [ca, sa] = [Math.cos(this.azimuth * degree), Math.sin(this.azimuth * degree)];
    const [ce, se] = [Math.cos(this.elevation * degree), Math.sin(this.elevation * degree)];
    const right = [ca, sa, 0], back = [sa * ce, -ca * ce, se];
    return { right, up: [-sa * se, ca * se, ce], back };
  }

  // The whole sheet in the middle, seen from there.
  fit([azimuth, elevation] = [this.azimuth, this.elevation]) {
    this.azimuth = azimuth;
    this.elevation = elevation;
    this.zoom = 1;
    const { right, up } = this.axes, [a, b] = [this.extentOf(right), this.extentOf(up)];
    this.size = [a[1] - a[0], b[1] - b[0]];
    this.target = right.map((r, k) => r * (a[0] + a[1]) / 2 + up[k] * (b[0] + b[1]) / 2);
  }

  // Pixels of the pane.
  resize(width, height) {
    this.width = Math.max(width, 1);
    this.height = Math.max(height, 1);
  }

  get perPixel() {
    const room = 0.82, [x, y] = this.size;
    return Math.max(x / (room * this.width), y / (room * this.height), 1e-12) / this.zoom;
  }

  turn(dx, dy) {
    this.azimuth -= dx;
    this.elevation = Math.min(90, Math.max(-90, this.elevation + dy));
  }

  // The sheet follows the pointer by so many pixels.
  move(dx, dy) {
    const { right, up } = this.axes, s = this.perPixel;
    this.target = this.target.map((t, k) => t - right[k] * dx * s + up[k] * dy * s);
  }

  // Zooms about a place of the pane (pixels from its middle, y down).
  zoomBy(factor, x = 0, y = 0) {
    const before = this.perPixel, zoom = Math.min(Math.max(this.zoom * factor, 0.2), 4000);
    this.zoom = zoom;
    const { right, up } = this.axes, change = before - this.perPixel;
    this.target = this.target.map((t, k) => t + right[k] * x * change - up[k] * y * change);
  }

  // Pixels from the pane's middle (y down) of a point of the world.
  project(point) {
    const { right, up } = this.axes, s = this.perPixel;
    const along = axis => axis.reduce((sum, a, k) => sum + a * (point[k] - this.target[k]), 0);
    return [along(right) / s, -along(up) / s];
  }

  lookLike(other) {
    this.azimuth = other.azimuth;
    this.elevation = other.elevation;
  }
}

// Pointer and wheel on a pane. changed(): the camera has another view; picked(x, y): a click there, pixels from the
// pane's middle; hovered(x, y) or hovered(): the pointer rests there, or left.
export function followPointer(pane, camera, { changed, picked, hovered }) {
  const down = new Map();
  let travelled = 0;
  const place = event => {
    const box = pane.getBoundingClientRect();
    return [event.clientX - box.left - box.width / 2, event.clientY - box.top - box.height / 2];
  };
  pane.addEventListener('contextmenu', event => event.preventDefault());
  pane.addEventListener('pointerdown', event => {
    pane.setPointerCapture(event.pointerId);
    down.set(event.pointerId, place(event));
    travelled = down.size > 1 ? Infinity : 0;
    hovered();
  });
  pane.addEventListener('pointermove', event => {
    const [x, y] = place(event), before = down.get(event.pointerId);
    if (!before) return hovered(x, y);
    const [dx, dy] = [x - before[0], y - before[1]];
    travelled += Math.abs(dx) + Math.abs(dy);
    if (down.size === 2) {
      const other = [...down].find(([id]) => id !== event.pointerId)[1];
      const gap = at => Math.hypot(at[0] - other[0], at[1] - other[1]) || 1;
      camera.zoomBy(gap([x, y]) / gap(before), (x + other[0]) / 2, (y + other[1]) / 2);
      camera.move(dx / 2, dy / 2);
    } else if (travelled > 4) {
      if (event.buttons & 6 || event.shiftKey) camera.move(dx, dy);
      else camera.turn(dx * 0.4, dy * 0.4);
    }
    down.set(event.pointerId, [x, y]);
    changed(camera);
  });
  const up = event => {
    if (!down.delete(event.pointerId)) return;
    if (event.type === 'pointerup' && travelled <= 4 && event.button === 0) picked(...place(event));
  };
  pane.addEventListener('pointerup', up);
  pane.addEventListener('pointercancel', up);
  pane.addEventListener('pointerleave', () => hovered());
  pane.addEventListener('wheel', event => {
    event.preventDefault();
    const step = event.deltaMode === 1 ? event.deltaY * 18 : event.deltaY;
    camera.zoomBy(Math.exp(-Math.max(-240, Math.min(240, step)) * 0.0016), ...place(event));
    changed(camera);
  }, { passive: false });
  pane.addEventListener('dblclick', () => { camera.fit(); changed(camera); });
}

// Keys on a pane. cleared(): nothing is to be picked.
export function followKeys(pane, camera, { changed, picked, cleared }) {
  const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
  pane.addEventListener('keydown', event => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const arrow = arrows[event.key], key = event.key.toLowerCase();
    if (arrow && event.shiftKey) camera.move(-40 * arrow[0], -40 * arrow[1]);
    else if (arrow) camera.turn(7.5 * arrow[0], 7.5 * arrow[1]);
    else if (key === '+' || key === '=') camera.zoomBy(1.25);
    else if (key === '-' || key === '_') camera.zoomBy(0.8);
    else if (key === '0' || key === 'home') camera.fit(camera.home);
    else if (key === 't') camera.fit([0, 90]);
    else if (key === 'enter' || key === ' ') picked(0, 0);
    else if (key === 'escape') cleared();
    else return;
    event.preventDefault();
    changed(camera);
  });
}
