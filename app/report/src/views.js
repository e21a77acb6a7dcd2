// Part and blank, drawn side by side by one WebGL renderer; which triangle lies under a point.
import {
  BufferAttribute, BufferGeometry, DataTexture, GLSL3, LineBasicMaterial, LineSegments, Matrix4, Mesh, NearestFilter,
  OrthographicCamera, RGBAFormat, Scene, ShaderMaterial, Vector3, WebGLRenderer, DoubleSide, ColorManagement, Color,
} from 'three';
import { Camera, followKeys, followPointer } from './camera.js';
import { areasOf, boundaryEdges, centred, cornerNormals, cornersAround, expanded, extentAlong } from './geometry.js';
import { noneColour, rgbOf } from './colours.js';
import { html, svg } from './dom.js';
import { fixed } from './numbers.js';

ColorManagement.enabled = false;  // colours are sRGB from end to end, as in the legend

const vertexText = `
in float value; in float dim;
out vec3 vNormal, vEdge; out float vValue, vDim; flat out int vTriangle;
void main() {
  vNormal = normalMatrix * normal; vValue = value; vDim = dim; vTriangle = gl_VertexID / 3;
  int k = gl_VertexID - 3 * vTriangle;
  vEdge = vec3(k == 0, k == 1, k == 2);
  gl_Position = projectionMatrix * modelViewMatrix * vec4(position, 1.0);
}`;

// The colour keeps its hue and most of its lightness, so that the legend holds on walls too.
const fragmentText = `
uniform sampler2D ramp; uniform vec4 scale; uniform float bands, shaded, lines; uniform int picked, hovered;
uniform vec3 none, mark, paper;
in vec3 vNormal, vEdge; in float vValue, vDim; flat in int vTriangle;
out vec4 colour;
void main() {
  vec3 base = none;
  if (vValue < 1e30) {
    float x = clamp(vValue, scale.z, scale.w);
    if (bands > 0.0) {
      float width = max((scale.w - scale.z) / bands, 1e-30);
      x = scale.z + (min(floor((x - scale.z) / width), bands - 1.0) + 0.5) * width;
    }
    float place = clamp(x * scale.x + scale.y, 0.0, 1.0);
    base = texture(ramp, vec2((place * 255.0 + 0.5) / 256.0, 0.5)).rgb;
  }
  if (shaded > 0.0) {
    vec3 n = normalize(gl_FrontFacing ? vNormal : -vNormal);
    base *= 0.70 + 0.34 * max(dot(n, normalize(vec3(-0.35, 0.45, 0.82))), 0.0);
  }
  base = mix(base, paper, 0.80 * vDim);
  vec3 pixel = fwidth(vEdge);
  vec3 inside = smoothstep(pixel * 0.45, pixel * 1.35, vEdge);
  float edge = 1.0 - min(min(inside.x, inside.y), inside.z);
  float size = max(max(pixel.x, pixel.y), pixel.z);
  base = mix(base, base * 0.45, lines * edge * 0.55 * clamp(1.6 - 6.0 * size, 0.0, 1.0));
  if (vTriangle == hovered) base = mix(base, mark, 0.25);
  if (vTriangle == picked) base = mark;
  colour = vec4(base, 1.0);
}`;

function materialOf() {
  const ramp = new DataTexture(new Uint8Array(1024), 256, 1, RGBAFormat);
  ramp.minFilter = ramp.magFilter = NearestFilter;
  return new ShaderMaterial({
    glslVersion: GLSL3, vertexShader: vertexText, fragmentShader: fragmentText, side: DoubleSide,
    polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1,
    uniforms: {
      ramp: { value: ramp }, scale: { value: [0, 0, 0, 1] }, bands: { value: 0 }, shaded: { value: 1 },
      lines: { value: 0 }, picked: { value: -1 }, hovered: { value: -1 },
      none: { value: rgbOf(noneColour).map(c => c / 255) }, mark: { value: [1, 0, 0.5] }, paper: { value: [1, 1, 1] },
    },
  });
}

// One shape in its pane.
class View {
  constructor(title, mesh, points, axes, home, shared) {
    Object.assign(this, centred(points, axes, mesh.nodes));
    this.mesh = mesh;
    this.title = title;
    this.camera = new Camera(axis => extentAlong(this.positions, axis), home);
    const all = expanded(this.positions, mesh.corners), geometry = new BufferGeometry();
    this.areas = areasOf(all);
    geometry.setAttribute('position', new BufferAttribute(all, 3));
    geometry.setAttribute('normal', new BufferAttribute(axes === 3 ? cornerNormals(all, mesh.corners, shared.around) : new Float32Array(all.length), 3));
    geometry.setAttribute('value', shared.value);
    geometry.setAttribute('dim', shared.dim);
    this.material = materialOf();
    this.material.uniforms.shaded.value = axes === 3 ? 1 : 0;
    this.scene = new Scene();
    const sheet = new Mesh(geometry, this.material);
    const edges = new BufferGeometry();
    edges.setAttribute('position', new BufferAttribute(expanded(this.positions, shared.boundary), 3));
    this.border = new LineBasicMaterial();
    this.scene.add(sheet, new LineSegments(edges, this.border));
    for (const child of this.scene.children) child.frustumCulled = false;
    this.eye = new OrthographicCamera();
    this.eye.matrixAutoUpdate = false;
    this.build();
  }

  build() {
    this.triad = svg('svg', { class: 'triad', viewBox: '-32 -32 64 64', 'aria-hidden': true });
    this.bar = html('i');
    this.barText = html('span');
    this.ring = html('div', { class: 'ring', hidden: true });
    this.pane = html('div', {
      class: 'pane', tabindex: 0, role: 'application', 'aria-roledescription': 'three-dimensional view',
      'aria-label': `${this.title}: arrows turn, Shift and arrows move, plus and minus zoom, 0 fits, T top, Enter picks`,
    }, html('h3', {}, this.title), this.triad, html('div', { class: 'scale', 'aria-hidden': true }, this.barText, this.bar), this.ring);
  }

  aim() {
    const camera = this.camera, { right, up, back } = camera.axes, s = camera.perPixel / 2, eye = this.eye;
    camera.resize(this.pane.clientWidth, this.pane.clientHeight);
    Object.assign(eye, { left: -camera.width * s, right: camera.width * s, bottom: -camera.height * s, top: camera.height * s });
    const reach = this.radius + Math.hypot(...camera.target);
    Object.assign(eye, { near: 0, far: 4 * reach });
    eye.matrix.makeBasis(...[right, up, back].map(axis => new Vector3(...axis)));
    eye.matrix.setPosition(...camera.target.map((t, k) => t + back[k] * 2 * reach));
    eye.matrixWorld.copy(eye.matrix);
    eye.updateProjectionMatrix();
    eye.matrixWorldInverse = new Matrix4().copy(eye.matrix).invert();
  }

  // Axes, length bar and ring on top of the drawing.
  overlay(picked, unit) {
    const { right, up } = this.camera.axes, dots = ['x', 'y', 'z'].map((name, k) => [name, 20 * right[k], -20 * up[k]]);
    this.triad.replaceChildren(...dots.filter(([, x, y]) => Math.hypot(x, y) > 2).flatMap(([name, x, y]) => [
      svg('line', { x1: 0, y1: 0, x2: x, y2: y }), svg('text', { x: 1.4 * x, y: 1.4 * y }, name)]));
    const s = this.camera.perPixel, power = 10 ** Math.floor(Math.log10(110 * s));
    const length = [5, 2, 1].map(m => m * power).find(l => l <= 110 * s) ?? power;
    this.bar.style.width = `${length / s}px`;
    this.barText.textContent = `${fixed(length, Math.max(0, -Math.floor(Math.log10(length) + 1e-9)))}\u202f${unit}`;
    this.ring.hidden = picked < 0;
    if (picked < 0) return;
    const [x, y] = this.camera.project(this.centreOf(picked));
    this.ring.style.left = `${x + this.camera.width / 2}px`;
    this.ring.style.top = `${y + this.camera.height / 2}px`;
  }

  // About the middle of the box.
  centreOf(e) {
    const corner = [0, 1, 2].map(k => 3 * this.mesh.corners[3 * e + k]);
    return [0, 1, 2].map(axis => corner.reduce((sum, n) => sum + this.positions[n + axis], 0) / 3);
  }

  // Azimuth and elevation (degrees) of the eye along the triangle's normal and against it, the upper one first.
  facing(e) {
    const [a, b, c] = [0, 1, 2].map(k => this.positions.subarray(3 * this.mesh.corners[3 * e + k], 3 * this.mesh.corners[3 * e + k] + 3));
    const normal = new Vector3(b[0] - a[0], b[1] - a[1], b[2] - a[2]).cross(new Vector3(c[0] - a[0], c[1] - a[1], c[2] - a[2])).normalize();
    const angles = ({ x, y, z }) => [Math.atan2(x, -y), Math.asin(Math.min(1, Math.max(-1, z)))].map(angle => angle * 180 / Math.PI);
    return [normal, normal.clone().negate()].sort((p, q) => q.z - p.z).map(angles);
  }

  // The triangle nearest the eye under a place of the pane (pixels from its middle), -1 if none is there.
  triangleAt(x, y) {
    const camera = this.camera, { right, up, back } = camera.axes, s = camera.perPixel, p = this.positions;
    const middle = right.map((r, k) => camera.target[k] + r * x * s - up[k] * y * s);
    const nodes = p.length / 3, across = new Float64Array(nodes), along = new Float64Array(nodes);
    for (let n = 0; n < nodes; ++n) {
      const dx = p[3 * n] - middle[0], dy = p[3 * n + 1] - middle[1], dz = p[3 * n + 2] - middle[2];
      across[n] = right[0] * dx + right[1] * dy + right[2] * dz;
      along[n] = up[0] * dx + up[1] * dy + up[2] * dz;
    }
    const depth = n => back[0] * p[3 * n] + back[1] * p[3 * n + 1] + back[2] * p[3 * n + 2];
    const { corners } = this.mesh;
    let best = -1, nearest = -Infinity;
    for (let c = 0; c < corners.length; c += 3) {
      const i = corners[c], j = corners[c + 1], k = corners[c + 2];
      const u = across[j] * along[k] - across[k] * along[j], v = across[k] * along[i] - across[i] * along[k];
      const w = across[i] * along[j] - across[j] * along[i];
      if (!((u >= 0 && v >= 0 && w >= 0) || (u <= 0 && v <= 0 && w <= 0)) || u + v + w === 0) continue;
      const z = (u * depth(i) + v * depth(j) + w * depth(k)) / (u + v + w);
      if (z > nearest) { nearest = z; best = c / 3; }
    }
    return best;
  }
}

export class Views {
  // room: the element with the canvas; told: { picked(triangle), hovered(triangle, pane, x, y) }.
  constructor(room, canvas, mesh, unit, told) {
    const count = mesh.corners.length, around = cornersAround(mesh.corners, mesh.nodes);
    this.shared = {
      around,
      value: new BufferAttribute(new Float32Array(count).fill(3e38), 1),
      dim: new BufferAttribute(new Uint8Array(count), 1),
      boundary: boundaryEdges(mesh.corners, around),
    };
    this.unit = unit;
    this.mesh = mesh;
    this.linked = false;
    this.canvas = canvas;
    this.part = new View('Part', mesh, mesh.part, 3, [-38, 38], this.shared);
    this.blank = new View('Blank', mesh, mesh.blank, 2, [0, 90], this.shared);
    this.all = [this.part, this.blank];
    this.picked = this.hovered = -1;
    for (const view of this.all) this.listen(view, told);
    room.append(...this.all.map(view => view.pane));
    try {
      this.renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true });
      this.renderer.setClearColor(0, 0);
      this.renderer.sortObjects = false;  // two shapes, and sorting would measure them first
    } catch {
      room.append(html('p', { class: 'refused' }, 'This browser gives no WebGL, so part and blank cannot be drawn. All figures below stand.'));
    }
    new ResizeObserver(() => this.draw()).observe(room);
  }

  listen(view, told) {
    const changed = camera => {
      if (this.linked) for (const other of this.all) if (other !== view) other.camera.lookLike(camera);
      this.draw();
    };
    const picked = (x, y) => told.picked(view.triangleAt(x, y));
    let waiting = null;
    const hovered = (x, y) => {
      const idle = waiting === null;
      waiting = [x, y];
      if (idle) requestAnimationFrame(() => {
        const [px, py] = waiting;
        waiting = null;
        told.hovered(px === undefined ? -1 : view.triangleAt(px, py), view, px, py);
      });
    };
    followPointer(view.pane, view.camera, { changed, picked, hovered });
    followKeys(view.pane, view.camera, { changed, picked, cleared: () => told.picked(-1) });
  }

  // Colours by the values of a field.
  colour(values, scale) {
    const all = this.shared.value.array;
    for (let e = 0; e < values.length; ++e) {
      const value = Number.isNaN(values[e]) ? 3e38 : values[e];
      all[3 * e] = all[3 * e + 1] = all[3 * e + 2] = value;
    }
    this.shared.value.needsUpdate = true;
    this.rescale(scale);
  }

  rescale(scale) {
    this.set(uniforms => {
      uniforms.ramp.value.image.data.set(scale.ramp);
      uniforms.ramp.value.needsUpdate = true;
      uniforms.scale.value = [scale.slope, scale.offset, scale.low, scale.high];
      uniforms.bands.value = scale.bands;
    });
  }

  // Only the triangles of `chosen` (a flag each) keep their colour; null: all.
  highlight(chosen) {
    const all = this.shared.dim.array;
    for (let c = 0; c < all.length; ++c) all[c] = chosen && !chosen[Math.floor(c / 3)] ? 1 : 0;
    this.shared.dim.needsUpdate = true;
    this.draw();
  }

  set(change) {
    for (const view of this.all) change(view.material.uniforms);
    this.draw();
  }

  pick(e) {
    this.picked = e;
    this.set(uniforms => { uniforms.picked.value = e; });
  }

  hover(e) {
    if (e === this.hovered) return;
    this.hovered = e;
    this.set(uniforms => { uniforms.hovered.value = e; });
  }

  // Brings a triangle into the middle, large enough to be seen; where another one hides it, it is looked at along its
  // normal, from above if that frees it.
  show(e) {
    for (const view of this.all) {
      const { camera } = view, size = Math.sqrt(2 * view.areas[e]) || view.radius / 100;
      camera.target = view.centreOf(e);
      camera.zoom = Math.max(camera.zoom, Math.min(camera.perPixel * camera.zoom * 26 / size, 30));
      if (view === this.part && view.triangleAt(0, 0) !== e) {
        const directions = view.facing(e);
        for (const [azimuth, elevation] of [...directions, directions[0]]) {
          Object.assign(camera, { azimuth, elevation });
          if (view.triangleAt(0, 0) === e) break;
        }
      }
    }
    this.draw();
  }

  fit() {
    for (const view of this.all) view.camera.fit(view.camera.home);
    this.draw();
  }

  // ink, paper, mark: CSS colours of the theme.
  dress(ink, paper, mark) {
    const rgb = text => new Color(text).toArray();
    for (const view of this.all) view.border.color.set(ink);
    this.set(uniforms => { uniforms.paper.value = rgb(paper); uniforms.mark.value = rgb(mark); });
  }

  draw() {
    if (this.drawing) return;
    this.drawing = true;
    requestAnimationFrame(() => this.drawNow());
  }

  drawNow() {
    this.drawing = false;
    const room = this.canvas.getBoundingClientRect(), renderer = this.renderer;
    if (renderer) {
      renderer.setPixelRatio(Math.min(window.devicePixelRatio || 1, 2));
      renderer.setSize(room.width, room.height, false);
      renderer.setScissorTest(true);
    }
    for (const view of this.all) {
      view.aim();
      view.overlay(this.picked, this.unit);
      if (!renderer) continue;
      const box = view.pane.getBoundingClientRect();
      const at = [box.left - room.left, room.bottom - box.bottom, box.width, box.height];
      renderer.setViewport(...at);
      renderer.setScissor(...at);
      renderer.render(view.scene, view.eye);
    }
    this.drawn?.();
  }
}
