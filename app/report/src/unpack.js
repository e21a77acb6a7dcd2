// Unpacks the mesh and its fields; the other end of app/result/report_pack.cpp.

async function inflated(base64) {
  const text = atob(base64.trim());
  const bytes = new Uint8Array(text.length);
  for (let k = 0; k < text.length; ++k) bytes[k] = text.charCodeAt(k);
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

// Takes one stream after the other out of the planes.
function reader(bytes, widths) {
  let at = 0, stream = 0;
  return count => {
    const folded = new Uint32Array(count), numbers = new Int32Array(count);
    for (let plane = 0, width = widths[stream++]; plane < width; ++plane, at += count)
      for (let k = 0; k < count; ++k) folded[k] |= bytes[at + k] << (8 * plane);
    for (let k = 0; k < count; ++k) numbers[k] = (folded[k] >>> 1) ^ -(folded[k] & 1);
    return numbers;
  };
}

function summed(steps) {
  for (let k = 1; k < steps.length; ++k) steps[k] += steps[k - 1];
  return steps;
}

// The order of the keys, equal ones as they stand. Keys are whole and below 2^53: a radix sort by digits of 16 bits.
export function orderOf(keys) {
  const n = keys.length;
  let low = Infinity, high = -Infinity;
  for (const key of keys) { if (key < low) low = key; if (key > high) high = key; }
  let order = new Uint32Array(n), next = new Uint32Array(n);
  for (let k = 0; k < n; ++k) order[k] = k;
  for (let unit = 1; unit <= high - low; unit *= 65536) {
    const digit = new Uint16Array(n), begin = new Uint32Array(65537);
    for (let k = 0; k < n; ++k) ++begin[(digit[k] = Math.floor((keys[k] - low) / unit) % 65536) + 1];
    for (let d = 0; d < 65536; ++d) begin[d + 1] += begin[d];
    for (let k = 0; k < n; ++k) next[begin[digit[order[k]]]++] = order[k];
    [order, next] = [next, order];
  }
  return order;
}

function keysOf(terms, fields, count) {
  const keys = new Float64Array(count);
  for (const [factor, first, second] of terms) {
    const a = fields[first].steps, b = second < 0 ? null : fields[second].steps;
    if (b) for (let e = 0; e < count; ++e) keys[e] += factor * a[e] * b[e];
    else for (let e = 0; e < count; ++e) keys[e] += factor * a[e];
  }
  return keys;
}

// Numbers of steps as the values that they stand for, to the last digit.
function valuesOf(steps, none, power) {
  const values = new Float64Array(steps.length), unit = 10 ** Math.abs(power);
  for (let e = 0; e < steps.length; ++e) values[e] = power < 0 ? steps[e] / unit : steps[e] * unit;
  for (const e of none) values[e] = NaN;
  return values;
}

// part: x, y, z and blank: x, y per node; corners: three nodes per triangle; number: of the triangle in the file;
// fields: as described, with their values.
export async function unpack(base64, mesh) {
  const read = reader(await inflated(base64), mesh.widths);
  const { nodes, triangles } = mesh;
  const interleaved = (origin, step) => {
    const axes = origin.length, points = new Float64Array(axes * nodes);
    for (let axis = 0; axis < axes; ++axis) {
      const steps = summed(read(nodes));
      for (let n = 0; n < nodes; ++n) points[axes * n + axis] = origin[axis] + step * steps[n];
    }
    return points;
  };
  const part = interleaved(mesh.partOrigin, mesh.partStep);
  const blank = interleaved(mesh.blankOrigin, mesh.blankStep);
  const first = summed(read(triangles)), second = read(triangles), third = read(triangles);
  const corners = new Uint32Array(3 * triangles);
  for (let e = 0; e < triangles; ++e) {
    corners[3 * e] = first[e];
    corners[3 * e + 1] = first[e] + second[e];
    corners[3 * e + 2] = corners[3 * e + 1] + third[e];
  }
  const number = summed(read(triangles));
  const fields = mesh.fields.map(field => ({ ...field }));
  for (const f of mesh.fieldOrder) {
    const field = fields[f], none = summed(read(field.none)), along = summed(read(triangles));
    field.steps = along;
    if (field.key.length) {
      const order = orderOf(keysOf(field.key, fields, triangles));
      field.steps = new Int32Array(triangles);
      for (let k = 0; k < triangles; ++k) field.steps[order[k]] = along[k];
    }
    field.values = valuesOf(field.steps, none, field.power);
  }
  return { nodes, triangles, part, blank, corners, number, fields };
}
