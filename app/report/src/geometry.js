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
  return { positions, radius: Math.hypot(...low.map((x, axis) => (high[axis] - x) / 2)) || 1 };
}

// Least and largest place of the nodes along an axis.
export function extentAlong(positions, [x, y, z]) {
  let low = Infinity, high = -Infinity;
  for (let k = 0; k < positions.length; k += 3) {
    const place = x * positions[k] + y * positions[k + 1] + z * positions[k + 2];
    if (place < low) low = place;
    if (place > high) high = place;
  }
  return [low, high];
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

const lengthOf = (x, y, z) => Math.sqrt(x * x + y * y + z * z);

export function areasOf(all) {
  const normals = faceNormals(all), areas = new Float64Array(normals.length / 3);
  for (let e = 0; e < areas.length; ++e) areas[e] = lengthOf(normals[3 * e], normals[3 * e + 1], normals[3 * e + 2]) / 2;
  return areas;
}

// The corners at each node: those of node n are at[begin[n]] .. at[begin[n + 1] - 1].
export function cornersAround(corners, nodes) {
  const begin = new Uint32Array(nodes + 1), at = new Uint32Array(corners.length);
  for (const n of corners) ++begin[n + 1];
  for (let n = 0; n < nodes; ++n) begin[n + 1] += begin[n];
  const next = begin.slice();
  for (let c = 0; c < corners.length; ++c) at[next[corners[c]]++] = c;
  return { begin, at };
}

// A normal per corner: the mean over the triangles around the node that lean by less than 35 degrees, so that bends
// look round and edges sharp.
export function cornerNormals(all, corners, { begin, at }) {
  const face = faceNormals(all), length = new Float32Array(face.length / 3), normals = new Float32Array(all.length);
  const sharp = Math.cos(35 * Math.PI / 180);
  for (let e = 0; e < length.length; ++e) length[e] = lengthOf(face[3 * e], face[3 * e + 1], face[3 * e + 2]);
  for (let c = 0; c < corners.length; ++c) {
    const e = (c / 3) | 0, nx = face[3 * e], ny = face[3 * e + 1], nz = face[3 * e + 2], last = begin[corners[c] + 1];
    let x = 0, y = 0, z = 0;
    for (let k = begin[corners[c]]; k < last; ++k) {
      const f = (at[k] / 3) | 0, fx = face[3 * f], fy = face[3 * f + 1], fz = face[3 * f + 2];
      if (nx * fx + ny * fy + nz * fz < sharp * length[e] * length[f]) continue;
      x += fx; y += fy; z += fz;
    }
    const size = lengthOf(x, y, z) || 1;
    normals[3 * c] = x / size; normals[3 * c + 1] = y / size; normals[3 * c + 2] = z / size;
  }
  return normals;
}

// The edges with one triangle, two nodes each: no triangle around their end runs back along them.
export function boundaryEdges(corners, { begin, at }) {
  const ends = [], next = c => c % 3 === 2 ? c - 2 : c + 1;
  for (let c = 0; c < corners.length; ++c) {
    const a = corners[c], b = corners[next(c)], last = begin[b + 1];
    let k = begin[b];
    while (k < last && corners[next(at[k])] !== a) ++k;
    if (k === last) ends.push(a, b);
  }
  return new Uint32Array(ends);
}
