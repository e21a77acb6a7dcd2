"""Evaluates the equations of the press model at a blank of the library, apart from it: differences of the work, nothing
shared but the part, the blank and the process data. Writes what is left of the forces, term by term.

usage: verify_residual.py FOLDER   (reads press_blank_*.csv there, writes press_residual.csv)
"""
import csv
import os
import sys

try:
    import numpy as np
except ImportError:
    sys.exit("no residual: the Debian package python3-numpy is missing")


def table(folder, name):
    with open(os.path.join(folder, name)) as lines:
        return np.array([[float(cell) for cell in line] for line in list(csv.reader(lines))[1:]])


folder = sys.argv[1]
if not os.path.exists(os.path.join(folder, "press_blank_nodes.csv")):
    sys.exit("no residual: there is no press_blank_nodes.csv")
nodes = table(folder, "press_blank_nodes.csv")
T = table(folder, "press_blank_elements.csv").astype(int) - 1
K, e0, n, t0, E, r0, r45, r90, mu, binder, p = table(folder, "press_blank_process.csv")[0]
X, U = nodes[:, :3], nodes[:, 3:]
E /= 10.0  # the elastic foot

# axes and maps: J = blank from part in each triangle's own plane
P, Q = X[T[:, 1]] - X[T[:, 0]], X[T[:, 2]] - X[T[:, 0]]
normal = np.cross(P, Q)
area = 0.5 * np.linalg.norm(normal, axis=1)
normal /= 2.0 * area[:, None]
e1 = P / np.linalg.norm(P, axis=1)[:, None]
e2 = np.cross(normal, e1)
part = np.stack([np.stack([(a * b).sum(1) for b in (P, Q)], 1) for a in (e1, e2)], 1)
blank = np.stack([U[T[:, 1]] - U[T[:, 0]], U[T[:, 2]] - U[T[:, 0]]], 2)
inverse = np.linalg.inv(part)
J = blank @ inverse

# Hill 1948, the work and its family
G = 1.0 / (1.0 + r0)
H = r0 * G
F = H / r90
N = (r45 + 0.5) * (F + G)
determinant = F + H - H * H


def work(strain):
    plastic = np.maximum(strain - 0.01, 0.0)
    for _ in range(60):
        sigma = K * (e0 + plastic) ** n
        plastic = np.maximum(plastic - (plastic + sigma / E - strain) / (1.0 + n * sigma / (e0 + plastic) / E), 0.0)
    sigma = K * (e0 + plastic) ** n
    W = K / (1.0 + n) * ((e0 + plastic) ** (1.0 + n) - e0 ** (1.0 + n)) + 0.5 * sigma**2 / E
    foot = K * e0**n / E
    W = np.where(strain <= foot, 0.5 * E * strain**2, W)
    return 50.0 / p * ((W + 0.5 * E * foot**2) / 50.0) ** p if p != 1.0 else W


def strain_of(J):
    """H = -1/2·ln(J·Jᵀ) in the blank's axes."""
    M = J @ np.swapaxes(J, 1, 2)
    mean, half, off = 0.5 * (M[:, 0, 0] + M[:, 1, 1]), 0.5 * (M[:, 0, 0] - M[:, 1, 1]), M[:, 0, 1]
    root = np.hypot(half, off) + 1e-300
    g1, g2 = -0.5 * np.log(mean + root), -0.5 * np.log(mean - root)
    middle, slope = 0.5 * (g1 + g2), 0.5 * (g1 - g2) / root
    return middle + slope * half, middle - slope * half, slope * off


# curvature from normals at the nodes, in planes of symmetry within them
normals = np.zeros_like(X)
for c in range(3):
    i, j, k = T[:, c], T[:, (c + 1) % 3], T[:, (c + 2) % 3]
    a, b = X[j] - X[i], X[k] - X[i]
    np.add.at(normals, i, np.cross(a, b) / ((a * a).sum(1) * (b * b).sum(1))[:, None])
planes = np.abs(X[:, :2]) < 1e-6
normals[:, :2][planes] = 0.0
normals /= np.linalg.norm(normals, axis=1)[:, None]
change = np.stack([normals[T[:, 1]] - normals[T[:, 0]], normals[T[:, 2]] - normals[T[:, 0]]], 2) @ inverse
curvature = np.stack([np.einsum("ei,eij->ej", a, change) for a in (e1, e2)], 1)
curvature = 0.5 * (curvature + np.swapaxes(curvature, 1, 2))
left, _, right = np.linalg.svd(np.linalg.inv(J))
rotation = left @ right
bent = np.swapaxes(rotation, 1, 2) @ curvature @ rotation
points = 0.5 * t0 * np.sqrt(0.6) * np.array([-1.0, 0.0, 1.0])
weights = np.array([5.0, 8.0, 5.0]) / 18.0


def density(J):
    h = strain_of(J)
    total = 0.0
    for z, w in zip(points, weights):
        x, y, s = h[0] + z * bent[:, 0, 0], h[1] + z * bent[:, 1, 1], h[2] + z * bent[:, 0, 1]
        square = ((F + H) * x * x + y * y + 2.0 * H * x * y) / determinant + 2.0 / N * s * s
        total = total + w * work(np.sqrt(np.maximum(square, 0.0)))
    return total


def derivative(function, at, step=1e-5):
    result = np.zeros_like(at)
    for i in range(2):
        for j in range(2):
            more, less = at.copy(), at.copy()
            more[:, i, j] += step
            less[:, i, j] -= step
            result[:, i, j] = (function(more) - function(less)) / (2.0 * step)
    return result


free = ~planes
forces = np.zeros_like(U)
lines = []


def tell(term):
    lines.append((term, np.abs(forces[free]).max()))


per_map = derivative(lambda J: np.linalg.det(J) * density(J), J) * (t0 * area)[:, None, None] @ np.swapaxes(inverse, 1, 2)
for c in (1, 2):
    np.add.at(forces, T[:, c], per_map[:, :, c - 1])
np.add.at(forces, T[:, 0], -per_map.sum(2))
tell("work with bending kept")

psi = density(J)
sides = {(T[e, c], T[e, (c + 1) % 3]): e for e in range(len(T)) for c in range(3)}
for (a, b), e in sides.items():
    if (b, a) not in sides and not (planes[a] & planes[b]).any():
        pull = 0.5 * t0 * psi[e] * np.array([U[b, 1] - U[a, 1], U[a, 0] - U[b, 0]])
        forces[a] -= pull
        forces[b] -= pull
tell("and free edges")

forward = np.linalg.inv(J)
stress = derivative(lambda F: density(np.linalg.inv(F)), forward) @ np.swapaxes(forward, 1, 2)
thickness = t0 * np.linalg.det(J)
pressure = np.abs((thickness[:, None, None] * stress * curvature).sum((1, 2)))
way = (X[:, :2] - U)[T].mean(1)
slip = np.stack([(way * a[:, :2]).sum(1) for a in (e1, e2)], 1)
slip /= np.sqrt((slip**2).sum(1) + 0.04)[:, None]
flange = (np.abs(normal[:, 2]) > np.cos(np.radians(3.0))) & (X[T][:, :, 2].mean(1) < 0.5 * X[:, 2].max())
low, high = 0.0, 10.0 * t0
for _ in range(200):
    gap = 0.5 * (low + high)
    grip = np.where(flange, 2000.0 * np.maximum(thickness - gap, 0.0), 0.0)
    low, high = (gap, high) if (grip * area).sum() > binder else (low, gap)
for term, size in (("and friction on punch and die", pressure), ("and the binder", 2.0 * grip)):
    load = np.einsum("eij,ei->ej", forward, -mu * (size * area)[:, None] * slip) / 3.0
    for c in range(3):
        np.add.at(forces, T[:, c], load)
    tell(term)

with open(os.path.join(folder, "press_residual.csv"), "w") as file:
    file.write("terms,largest_force_n\n")
    for term, value in lines:
        file.write("%s,%.3f\n" % (term, value))
