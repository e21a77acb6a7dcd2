// A finished run made by hand: a roof of two triangles that unrolls into the unit square.
#pragma once

#include "mesh/mesh_check.hpp"
#include "result/results.hpp"
#include "result/run_data.hpp"
#include "result/run_report.hpp"
#include "run/hold.hpp"
#include "run/part_data.hpp"
#include "system/unit.hpp"

// The settings of the way by load increments, whose figures most of the tests look at.
inline host::RunSettings byIncrements() {
  host::RunSettings settings;
  settings.surePath = false;
  return settings;
}

struct SampleRun {
  host::Part part;
  host::Hold hold;
  host::RunOutput run;
  host::RunSettings settings = byIncrements();
  host::Unit unit;
  int runs = 1;
  host::Verdict verdict{true, "", host::exitConverged, host::Worth::good, {}};
  host::SecondStart second;
  host::Results results;
  host::PartData data;  // of the part, as compute() saw it
  host::ShopReport shop;

  SampleRun() {
    host::Mesh mesh;
    mesh.file = "roof.obj";
    // nodes 1, 2, 4, 5 are the square of the plan, one side raised; node 3 is in no triangle
    mesh.points = {0, 0, 0, 1, 0, 0, 9, 9, 9, 1, 1, 0, 0, 1, 1};
    mesh.corners = {1, 2, 4, 1, 4, 5};
    part = host::checkMesh(mesh, false);
    hold = host::holdUnknowns(part, "auto");
    run.corners = part.corners;
    run.RX = {0, 0, 1, 0, 9, 9, 1, 1, 0, 1};
    run.EVAL = {0.1, 0.2, 45, 0.01, 0.5, 0.3, 0.4, 30, 0.02, 0.9};
    run.matrixEntries = 35;
    run.times = {0.25, 0.5, 0.75, 1.0, 1.25};
    run.report.converged = 1;
    run.report.reason = TORNWALZEN_CONVERGED;
    run.report.increments = 15;
    run.report.repeats = 1;
    run.report.newton_iterations = 31;
    run.report.last_gradient = 5e-5;
    run.report.gradient_limit = 1e-4;
    run.report.progress = 1.0;
    run.report.largest_strain = 0.25;
    run.strains = {{0.1, -0.05, {1, 0}, {0, 1, 0}, -0.05, 0.12, 400},
                   {0.2, 0, {0, 1}, {0, 0, 1}, -0.2, 0.25, 500}};
    compute();
  }
  void compute() {
    data = host::partData(part);
    results = host::computeResults(data, run, unit);
    shop.major.clear();
    shop.minor.clear();
    for (const TornwalzenElementStrain& strain : run.strains) {
      shop.major.push_back(strain.major);
      shop.minor.push_back(strain.minor);
    }
    host::addBlank(shop, {run.corners, run.RX, part.points, results.partArea, 1.0});
  }
  host::RunReport report() const {
    return {data, hold, run, results, verdict, settings, runs, second, unit, shop, "auto", "out"};
  }
};
