"""Opens part.vtu and blank.vtu with VTK and compares them with the OBJ files of part and blank.

Arguments: part.vtu blank.vtu part.obj blank.obj. Ends with a message and status 1 if something differs.
"""
import math
import sys

from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader


def grid(name):
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(name)
    reader.Update()
    return reader.GetOutput()


def obj(name):
    points, faces = [], []
    with open(name) as lines:
        for line in lines:
            words = line.split()
            if words and words[0] == "v":
                points.append(tuple(float(word) for word in words[1:4]))
            elif words and words[0] == "f":
                faces.append([int(word) - 1 for word in words[1:4]])
    return points, faces


def check(condition, what):
    if not condition:
        sys.exit(what)


def area(points, face):
    a, b, c = (points[k] for k in face)
    u = [b[k] - a[k] for k in range(3)]
    v = [c[k] - a[k] for k in range(3)]
    return 0.5 * math.hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])


part_points, part_faces = obj(sys.argv[3])
blank_points, blank_faces = obj(sys.argv[4])
for name, points in ((sys.argv[1], part_points), (sys.argv[2], blank_points)):
    g = grid(name)
    check(g.GetNumberOfPoints() == len(points), name + ": number of points")
    check(g.GetNumberOfCells() == len(blank_faces), name + ": number of cells")
    check([g.GetPoint(k) for k in range(len(points))] == points, name + ": points")
    for e, face in enumerate(blank_faces):
        cell = g.GetCell(e)
        check(cell.GetCellType() == 5, name + ": cell type")
        check([cell.GetPointId(k) for k in range(3)] == face, name + ": corners of cell %d" % e)
    check(g.GetFieldData().GetArray("converged").GetValue(0) == 1, name + ": converged")
    cells, nodes = g.GetCellData(), g.GetPointData()
    for array in ("thickness_strain_ln_Ablank_by_Apart", "thickness_ratio_Ablank_by_Apart", "minus_E11_plus_E22",
                  "density", "smallest_angle_deg", "part_area_mm2", "blank_area_mm2", "element_number_in_file"):
        check(cells.GetArray(array) is not None, name + ": no " + array)
        check(cells.GetArray(array).GetNumberOfTuples() == len(blank_faces), name + ": length of " + array)
    for array in ("displacement_part_minus_blank_mm", "u_blank_mm", "v_blank_mm", "thickness_strain_node_mean",
                  "held_u", "held_v", "node_number_in_file"):
        check(nodes.GetArray(array) is not None, name + ": no " + array)
        check(nodes.GetArray(array).GetNumberOfTuples() == len(points), name + ": length of " + array)
    for e, face in enumerate(blank_faces):
        ratio = area(blank_points, face) / area(part_points, face)
        strain = cells.GetArray("thickness_strain_ln_Ablank_by_Apart").GetValue(e)
        # both are rounded a few times: 1e-12 leaves room for needle triangles
        check(abs(strain - math.log(ratio)) < 1e-12, name + ": thickness strain of cell %d" % e)
        angle = cells.GetArray("smallest_angle_deg").GetValue(e)
        check(0.0 < angle <= 60.0 + 1e-9, name + ": smallest angle of cell %d" % e)
    for k, point in enumerate(points):
        moved = nodes.GetArray("displacement_part_minus_blank_mm").GetTuple(k)
        for axis in range(3):
            check(moved[axis] == part_points[k][axis] - blank_points[k][axis], name + ": displacement of node %d" % k)
