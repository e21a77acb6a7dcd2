"""Writes the tables of docs/verification.md between their marks, from the comma-separated values of the runs.

usage: verify_tables.py FOLDER DOCUMENT
"""
import csv
import os
import re
import sys


def rows(folder, name):
    with open(os.path.join(folder, name)) as lines:
        return list(csv.DictReader(lines))


def table(heading, lines):
    text = ["| " + " | ".join(heading) + " |", "|" + "---|" * len(heading)]
    return "\n".join(text + ["| " + " | ".join(line) + " |" for line in lines]) + "\n"


def error(value, converged):
    return "%.4f" % float(value) if converged == "1" else "**not converged**"


def developments(folder):
    lines = []
    for r in rows(folder, "developments.csv"):
        runs = "" if r["runs"] == "1" else " (path %s)" % r["host_path_factor"]
        lines.append([r["part"], r["size_mm"], r["curve"], error(r["fixed_error_mm"], r["fixed_converged"]),
                      r["fixed_iterations"], r["same_energy_iterations"], error(r["host_error_mm"], r["host_converged"]),
                      r["host_iterations"] + runs])
    return table(["part", "mesh (mm)", "curve", "error at 1,1, `blank` (mm)", "iterations", "iterations at 1,1, `part`",
                  "error at 0.001, `part` (mm)", "iterations"], lines)


def cup(folder):
    lines = [[r["curve"], r["r"], r["reference"], r["final_factor"] + ",1", r["iterations"], r["edge_mean_mm"],
              r["edge_largest_mm"], r["thickness_rms_mm"], r["correlation"]] for r in rows(folder, "cup.csv")]
    return table(["curve", "r", "energy", "tolerance", "iterations", "edge, mean (mm)", "edge, largest (mm)",
                  "thickness, rms (mm)", "correlation"], lines)


def square(folder):
    lines = [[r["edge_on_axis_mm"], r["material"], r["r"], r["reference"], r["half_side_mm"], r["corner_mm"],
              r["draw_in_axis_mm"], r["draw_in_diagonal_mm"]] for r in rows(folder, "square_cup.csv")]
    return table(["edge of the part on the axes (mm)", "curve", "r", "energy", "blank on the axes (mm)",
                  "blank's corner x = y (mm)", "draw-in on the axes (mm)", "draw-in on the diagonal (mm)"], lines)


def press(folder):
    names = {"dfg_cup_quarter": "rectangular cup", "round_cup_18": "round cup", "dome_15": "dome"}
    lines = [[names[r["part"]], r["variant"], r["edge_mean_mm"], r["edge_largest_mm"], r["edge_signed_mm"],
              r["thickness_rms_mm"], r["correlation"], r["exponent"], r["factorizations"]]
             for r in rows(folder, "press.csv")]
    return table(["part", "model", "edge, mean (mm)", "edge, largest (mm)", "edge, signed mean (mm)",
                  "thickness, rms (mm)", "correlation", "p", "factorizations"], lines)


def press_developments(folder):
    lines = [[r["part"], r["size_mm"], r["bending"], "%.6f" % float(r["error_mm"]), r["exponent"], r["factorizations"]]
             for r in rows(folder, "press_developments.csv")]
    return table(["part", "mesh (mm)", "bending", "error (mm)", "p", "factorizations"], lines)


def press_square(folder):
    lines = [[r["edge_on_axis_mm"], r["material"], r["tools"], r["exponent"], r["half_side_mm"], r["corner_mm"],
              r["draw_in_axis_mm"], r["draw_in_diagonal_mm"], r["thinnest_mm"]]
             for r in rows(folder, "press_square_cup.csv")]
    return table(["edge of the part on the axes (mm)", "material", "tools", "p", "blank on the axes (mm)",
                  "blank's corner x = y (mm)", "draw-in on the axes (mm)", "draw-in on the diagonal (mm)",
                  "thinnest (mm)"], lines)


def sure(folder):
    """Factorizations by part and size, for the curves 0, 1 and 2."""
    runs = rows(folder, "sure.csv")
    lines = []
    for part in dict.fromkeys(r["part"] for r in runs):
        for size in dict.fromkeys(r["triangles"] for r in runs if r["part"] == part):
            same = [r for r in runs if r["part"] == part and r["triangles"] == size]
            right = all(r["converged"] == r["minimum"] == "1" and r["inverted"] == "0" for r in same)
            lines.append([part, size, "all" if right else "**not all**", ", ".join(r["factorizations"] for r in same),
                          "%.3f" % min(float(r["smallest_stretch"]) for r in same)])
    counts = sorted(int(r["factorizations"]) for r in runs)
    end = "\nFactorizations over all %d runs: median %d, at most %d.\n" % (len(counts), counts[len(counts) // 2], counts[-1])
    return table(["part", "triangles", "certified minima", "factorizations with curves 0, 1, 2", "smallest stretch"], lines) + end


def both_paths(folder):
    lines = []
    for r in rows(folder, "sure_fixed.csv"):
        same = r["fixed_converged"] == "1"
        more = float(r["fixed_energy_mm2"]) / float(r["sure_energy_mm2"]) - 1.0 if same else float("nan")
        tiny = same and float(r["fixed_energy_mm2"]) < 1e-4  # mm^2: a development, both are rounding
        lines.append([r["part"], r["triangles"], r["curve"],
                      "not converged" if not same else "both developed" if tiny else "%.1e" % more,
                      "" if not same else "%.4f" % float(r["apart_mm"]), r["fixed_factorizations"], r["sure_factorizations"]])
    return table(["part", "triangles", "curve", "energy of the fixed path's blank above the sure path's",
                  "blanks apart (mm)", "factorizations, fixed", "sure"], lines)


def press_survey(folder):
    lines = [[r["part"], r["triangles"], r["tools"], r["end"],
              *(["", "", ""] if r["end"] == "no flange" else [r["exponent"], r["thinnest_mm"], r["factorizations"]]),
              r["seconds"]] for r in rows(folder, "press_survey.csv")]
    return table(["part", "triangles", "tools", "end", "p", "thinnest (mm)", "factorizations", "seconds"], lines)


def press_rings(folder):
    lines = [[r["cup"], r["radius_mm"], r["depth_mm"], r["friction"], r["binder_n"], r["r"], r["tools"], r["edge_mm"],
              r["edge_rings_mm"], r["thinnest_mm"], r["thinnest_rings_mm"], r["thickest_mm"], r["thickest_rings_mm"]]
             for r in rows(folder, "press_rings.csv")]
    return table(["cup", "radius (mm)", "depth (mm)", "μ", "binder (N)", "r", "tools", "blank's radius (mm)", "rings",
                  "thinnest (mm)", "rings", "thickest (mm)", "rings"], lines)


def press_residual(folder):
    return table(["terms", "largest force left on a node (N)"],
                 [[r["terms"], r["largest_force_n"]] for r in rows(folder, "press_residual.csv")])


def press_cost(folder):
    lines = [[r["model"], r["factorizations"], r["seconds"], r["ratio"]] for r in rows(folder, "press_cost.csv")]
    return table(["model", "factorizations", "processor time (s)", "over the first"], lines)


def replaced(text, name, content):
    pattern = "(<!-- %s -->\n).*?(<!-- end -->)" % name
    result, count = re.subn(pattern, lambda m: m.group(1) + content + m.group(2), text, flags=re.S)
    if count != 1:
        sys.exit("no place for the table %s" % name)
    return result


folder, document = sys.argv[1:]
with open(document) as file:
    text = file.read()
for name, source, make in (("developments", "developments.csv", developments), ("cup", "cup.csv", cup),
                           ("square cup", "square_cup.csv", square), ("press", "press.csv", press),
                           ("press developments", "press_developments.csv", press_developments),
                           ("sure path", "sure.csv", sure), ("both paths", "sure_fixed.csv", both_paths),
                           ("press square cup", "press_square_cup.csv", press_square),
                           ("press survey", "press_survey.csv", press_survey),
                           ("press rings", "press_rings.csv", press_rings),
                           ("press residual", "press_residual.csv", press_residual),
                           ("press cost", "press_cost.csv", press_cost)):
    if os.path.exists(os.path.join(folder, source)):
        text = replaced(text, name, make(folder))
with open(document, "w") as file:
    file.write(text)
