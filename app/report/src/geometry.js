// What the views need of the mesh: corners one by one, normals, boundary, areas.

// Node positions, three per node, about the middle of their box, and its half diagonal.
export function centred(points, axes, nodes) {
  const low = [0, 0, 0], high = [0, 0, 0];
  for (let axis = 0; axis < axes; ++axis) {
    low[axis] = Infinity; high[axis] = -Infinity;
    for (let n = 0; n < nodes; ++n) {
      const x = points[axes * n + axis];
      if (x < low[axis]) low[axis] = x;
      if (x > high[axis]) high[axis] = x;
    }
  }
  const middle = low.map((x, axis) => (x + high[axis]) / 2);
  const positions = new Float32Array(3 * nodes);
  for (let n = 0; n < nodes; ++n)
    for (let axis = 0; axis < axes; ++axis) positions[3 * n + axis] = points[axes * n + axis] - middle[axis];
  const half = low.map((x, axis) => (high[axis] - x) / 2);
  return { positions, middle, half, radius: Math.hypot(...half) || 1 };
}

// One vertex per corner.
export function expanded(positions, corners) {
  const all = new Float32Array(3 * corners.length);
  for (let c = 0; c < corners.length; ++c)
    for (let axis = 0; axis < 3; ++axis) all[3 * c + axis] = positions[3 * corners[c] + axis];
  return all;
}

// Twice the area times the unit normal of each triangle.
function faceNormals(all) {
  const normals = new Float32Array(all.length / 3);
  for (let e = 0, k = 0; k < all.length; k += 9, e += 3) {
    const ax = all[k + 3] - all[k], ay = all[k + 4] - all[k + 1], az = all[k + 5] - all[k + 2];
    const bx = all[k + 6] - all[k], by = all[k + 7] - all[k + 1], bz = all[k + 8] - all[k + 2];
    normals[e] = ay * bz - az * by;
    normals[e + 1] = az * bx - ax * bz;
    normals[e + 2] = ax * by - ay * bx;
  }
  return normals;
}

export function areasOf(all) {
  const normals = faceNormals(all), areas = new Float64Array(normals.length / 3);
  for (let e = 0; e < areas.length; ++e)
    areas[e] = Math.hypot(normals[3 * e], normals[3 * e + 1], normals[3 * e + 2]) / 2;
  return areas;
}

// A normal per corner: the mean over the triangles around the node that lean by less than 35 degrees, so that bends
// look round and edges sharp.
export function cornerNormals(all, corners, nodes) {
  const face = faceNormals(all), begin = new Uint32Array(nodes + 1), around = new Uint32Array(corners.length);
  for (const n of corners) ++begin[n + 1];
  for (let n = 0; n < nodes; ++n) begin[n + 1] += begin[n];
  const at = begin.slice();
  for (let c = 0; c < corners.length; ++c) around[at[corners[c]]++] = Math.floor(c / 3);
  const length = new Float32Array(face.length / 3), normals = new Float32Array(all.length), sharp = Math.cos(35 * Math.PI / 180);
  for (let e = 0; e < length.length; ++e) length[e] = Math.hypot(face[3 * e], face[3 * e + 1], face[3 * e + 2]);
  for (let c = 0; c < corners.length; ++c) {
    const e = Math.floor(c / 3), nx = face[3 * e], ny = face[3 * e + 1], nz = face[3 * e + 2];
    let x = 0, y = 0, z = 0;
    for (let k = begin[corners[c]]; k < begin[corners[c] + 1]; ++k) {
      const f = around[k], fx = face[3 * f], fy = face[3 * f + 1], fz = face[3 * f + 2];
      if (nx * fx + ny * fy + nz * fz < sharp * length[e] * length[f]) continue;
      x += fx; y += fy; z += fz;
    }
    const size = Math.hypot(x, y, z) || 1;
    normals[3 * c] = x / size; normals[3 * c + 1] = y / size; normals[3 * c + 2] = z / size;
  }
  return normals;
}

// The edges with one triangle: two nodes each.
export function boundaryEdges(corners, nodes) {
  const keys = new Float64Array(corners.length);
  for (let c = 0; c < corners.length; ++c) {
    const a = corners[c], b = corners[c % 3 === 2 ? c - 2 : c + 1];
    keys[c] = a < b ? a * nodes + b : b * nodes + a;
  }
  keys.sort();
  const ends = [];
  for (let k = 0; k < keys.length;) {
    let last = k + 1;
    while (last < keys.length && keys[last] === keys[k]) ++last;
    if (last === k + 1) ends.push(Math.floor(keys[k] / nodes), keys[k] % nodes);
    k = last;
  }
  return new Uint32Array(ends);
}
