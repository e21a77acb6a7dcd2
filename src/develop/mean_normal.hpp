// The frame in which a part is looked at: its mean normal becomes z, however the part lies.
//
//   n = Σ A·m / |Σ A·m|      A area (mm²), m unit normal of a triangle
//
// On a tube or another nearly closed shape that sum says nothing: where |Σ A·m| < 0.05·Σ A, n is the mean normal
// of the largest nearly flat patch instead.
#pragma once

#include "develop/mesh_edges.hpp"

namespace tornwalzen {

constexpr double vanishingShare = 0.05;   // of the area: a mean normal below it says nothing
constexpr double flatPatchCosine = 0.98;  // a patch stays within 11.5 degrees of its first triangle's normal
constexpr double largerPatchMargin = 1e-6;  // relative: patches this near count as equal, the first one wins

struct MeanNormal {
  double N[3] = {0.0, 0.0, 1.0};  // unit vector
  double share = 0.0;             // |Σ A·m| / Σ A, 0..1: 1 flat, 0 closed
  double area = 0.0;              // Σ A (mm²)
  bool fromPatch = false;         // N is the normal of the largest nearly flat patch
};

/// M: in. R: out; triangles without area or with an area that is not finite count for nothing, and a part of
/// nothing else has the normal z. False where there is no memory for the patches; R then holds the values above.
bool findMeanNormal(const PartMesh& M, MeanNormal& R);

/// The mean normal of the largest nearly flat patch alone: R.N with R.fromPatch; share and area are not touched, nor N
/// where no triangle has area. PATCH: out, nele, for every triangle the first one of its patch, 0 without area. first:
/// out, the first triangle of the largest patch, 0 without one. False where there is no memory.
bool findLargestPatch(const PartMesh& M, MeanNormal& R, OwnArray<Int>& PATCH, Int& first);

/// Area times unit normal of triangle e (mm²); zero where it has no finite area.
void areaNormal(const PartMesh& M, Int e, double (&S)[3]);

/// The smallest rotation that turns the unit vector N to z: rows of Q are the new axes. Where N is z to 1e-12, Q
/// is the identity to the bit; where N is −z to 1e-6, where every axis in the plane gives a smallest rotation, it
/// is half a turn about x first and the smallest rotation after it, so that rounding does not choose the axis.
void rotationToZ(const double (&N)[3], double (&Q)[3][3]);

}  // namespace tornwalzen
