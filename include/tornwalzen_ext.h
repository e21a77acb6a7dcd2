/*
 * tornwalzen, beside the fixed interface of tornwalzen.h: own flow curves, normal anisotropy, the reference of the
 * energy, tighter tolerances, an honest report of a run, and strains per element.
 *
 * Until one of the set functions is called with other than its neutral value, every result, message and status of
 * the fixed interface is what it is without them, to the bit. What is set holds for every OSMAIN that follows, also
 * for other meshes, until it is set again or tornwalzen_reset is called.
 *
 * Every function but tornwalzen_version and tornwalzen_error_text returns 0 or one of the negative codes below;
 * then nothing was changed and no output was written. While OSMAIN runs (that is, from within the progress handler)
 * the set functions and the reset are refused; the report and the strains may be asked for.
 *
 * EXAMPLE: a deep-drawing steel, tight at the end of the run, and did it converge?
 *
 *   double strain[25], stress[25];
 *   tornwalzen_points_swift(549.03, 0.007, 0.22, 1.0, 25, strain, stress);   // MPa
 *   int32_t code = tornwalzen_set_flow_curve(1, 25, strain, stress);         // what ICTRL = 1 selects from now on
 *   if (code == 0) code = tornwalzen_set_normal_anisotropy(1.6);
 *   if (code == 0) code = tornwalzen_set_energy_reference(1);
 *   if (code == 0) code = tornwalzen_set_tolerance_factors(0.001, 1.0);
 *   if (code != 0) fputs(tornwalzen_error_text(code, 1), stderr);
 *   ... OSINIT three times, OSMAIN ...
 *   TornwalzenReport report;
 *   report.size = sizeof report;
 *   tornwalzen_get_report(&report);
 *   if (!report.converged) ... report.reason, report.fatal_text
 */
#ifndef TORNWALZEN_EXT_H
#define TORNWALZEN_EXT_H

#include <stdint.h>

#include "tornwalzen.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The codes that the functions return. */
enum {
  TORNWALZEN_OK = 0,
  TORNWALZEN_NULL_POINTER = -1,
  TORNWALZEN_BUSY = -2, /* OSMAIN is running */
  TORNWALZEN_BAD_SELECTOR = -3,
  TORNWALZEN_BAD_POINT_COUNT = -4,
  TORNWALZEN_POINT_NOT_FINITE = -5,
  TORNWALZEN_FIRST_STRAIN_NOT_ZERO = -6,
  TORNWALZEN_STRAIN_NOT_INCREASING = -7,
  TORNWALZEN_STRAIN_TOO_LARGE = -8, /* 5.0 or beyond */
  TORNWALZEN_STRESS_NOT_POSITIVE = -9,
  TORNWALZEN_CURVE_NOT_POSITIVE = -10, /* between or beyond the points */
  TORNWALZEN_BAD_LAW = -11,            /* a parameter of a hardening law */
  TORNWALZEN_BAD_ANISOTROPY = -12,
  TORNWALZEN_BAD_REFERENCE = -13,
  TORNWALZEN_BAD_TOLERANCE = -14,
  TORNWALZEN_SHORT_REPORT = -15,
  TORNWALZEN_BAD_COUNT = -16, /* of nodes or elements */
  TORNWALZEN_BAD_NODE = -17,  /* a node number outside 1..nn */
  /* What is no sheet and has no blank: */
  TORNWALZEN_CLOSED_SURFACE = -18,    /* no boundary */
  TORNWALZEN_SEVERAL_PIECES = -19,    /* that do not hang together */
  TORNWALZEN_HANDLE = -20,            /* as a torus with a hole has one */
  TORNWALZEN_PINCHED_NODE = -21,      /* parts of the sheet touch in one node only */
  TORNWALZEN_EDGE_OF_THREE = -22,     /* an edge of more than two triangles */
  TORNWALZEN_MIXED_ORIENTATION = -23, /* neighbours that are turned opposite ways */
  TORNWALZEN_REPEATED_NODE = -24,     /* a triangle with a node twice */
  /* Other refusals: */
  TORNWALZEN_STRESS_TOO_LARGE = -25, /* above 20,000 MPa: Pa were given */
  TORNWALZEN_COORDINATE_NOT_FINITE = -26,
  TORNWALZEN_BAD_FIRST_INDEX = -27,
  TORNWALZEN_BAD_HOLD = -28,
  TORNWALZEN_NO_MESH = -29,
  TORNWALZEN_NO_MEMORY = -30,
  TORNWALZEN_SETUP_FAILED = -31,
  TORNWALZEN_NO_RESULTS = -32,
  TORNWALZEN_BAD_SELECTOR_OF_LAW = -33,
  TORNWALZEN_BAD_PATH = -34,
  TORNWALZEN_BAD_START = -35,
  TORNWALZEN_BAD_THREADS = -36, /* not 1..64 */
  TORNWALZEN_NO_THREAD = -37,   /* the system gave no thread, or no memory for one */
  /* -50 to -66: the press model of tornwalzen_analysis.h */
  TORNWALZEN_BAD_MODEL = -50,
  TORNWALZEN_SHORT_PRESS = -51, /* its structures are too short */
  TORNWALZEN_BAD_THICKNESS = -52,
  TORNWALZEN_BAD_YOUNG = -53,
  TORNWALZEN_BAD_THICKNESS_POINTS = -54,
  TORNWALZEN_BAD_PLANAR_ANISOTROPY = -55, /* index: 0, 45 or 90 */
  TORNWALZEN_BAD_ROLLING = -56,
  TORNWALZEN_BAD_FRICTION = -57, /* index: 1 punch, 2 die */
  TORNWALZEN_BAD_BINDER = -58,
  TORNWALZEN_NO_FLANGE = -59,
  TORNWALZEN_BAD_FLANGE = -60, /* a mark */
  TORNWALZEN_BAD_PRESS_CHOICE = -61,
  TORNWALZEN_BAD_BEAD_NODE = -62,
  TORNWALZEN_BEAD_OFF_MESH = -63, /* two nodes in a row share no edge */
  TORNWALZEN_BAD_BEAD_FORCE = -64,
  TORNWALZEN_BAD_BEAD_LENGTH = -65, /* fewer than two nodes */
  TORNWALZEN_PRESS_WITHOUT_CURVE = -66
};

/* What a code means, one sentence without full stop in German (language 0) or English (any other), ASCII. For the
   code of the last refusal it names the index (from 1) and the value that were refused. Valid until the next call of
   a function of this header; never null. */
TORNWALZEN_API const char* tornwalzen_error_text(int32_t code, int32_t language);

/*
 * Replaces the flow curve that ICTRL = selector loads.
 *   selector    in, 0, 1 or 2
 *   n           in, 3..49 points; 0 restores the built-in curve, the pointers may then be null
 *   strain      in, double[n], plastic strain (dimensionless), first exactly 0, strictly increasing, below 5
 *   stress_mpa  in, double[n], flow stress (MPa), positive
 * The curve between the points is the fixed interface's C1 piecewise cubic; beyond the last point it is led to the
 * strain 5 along the last slope. Its stress must be positive throughout 0..5. Only the shape of the curve acts on
 * the blank: the analysis divides by the smallest stress.
 */
TORNWALZEN_API int32_t tornwalzen_set_flow_curve(int32_t selector, int32_t n, const double* strain,
                                                 const double* stress_mpa);

/*
 * Points of hardening laws for tornwalzen_set_flow_curve, closer together near zero: strain(i) = strain_to *
 * (i/(n-1))^2, i = 0..n-1.
 *   strain_to           in, 0 < strain_to < 5
 *   n                   in, 3..49
 *   strain, stress_mpa  out, double[n]
 * Stresses and moduli in MPa and positive, exponents and rates positive, prestrain e0 positive.
 *   hollomon         K * e^m, held at its value of e = 0.002 below that strain: the curve is divided by its smallest
 *                    stress, which must not be 0
 *   swift            K * (e0 + e)^m
 *   ludwik           s0 + K * e^m
 *   voce             ss - (ss - s0) * exp(-rate * e)
 *   hockett_sherby   ss - (ss - s0) * exp(-rate * e^m)
 */
TORNWALZEN_API int32_t tornwalzen_points_hollomon(double K, double m, double strain_to, int32_t n, double* strain,
                                                  double* stress_mpa);
TORNWALZEN_API int32_t tornwalzen_points_swift(double K, double e0, double m, double strain_to, int32_t n,
                                               double* strain, double* stress_mpa);
TORNWALZEN_API int32_t tornwalzen_points_ludwik(double s0, double K, double m, double strain_to, int32_t n,
                                                double* strain, double* stress_mpa);
TORNWALZEN_API int32_t tornwalzen_points_voce(double s0, double ss, double rate, double strain_to, int32_t n,
                                              double* strain, double* stress_mpa);
TORNWALZEN_API int32_t tornwalzen_points_hockett_sherby(double s0, double ss, double rate, double m, double strain_to,
                                                        int32_t n, double* strain, double* stress_mpa);

/* Mean normal anisotropy r (dimensionless, positive and finite; 1 is isotropic and neutral) of the equivalent strain
   eps^2 = (1+r)^2/(1+2r) * (e1^2 + e2^2 + 2r/(1+r)*e1*e2). ICTRL 0, 1, 2 use it; the geometric density does not. */
TORNWALZEN_API int32_t tornwalzen_set_normal_anisotropy(double r);

/* What the density of an element is weighed with: 0 (neutral) twice the area of its blank triangle, 1 twice the area
   of the target triangle of the increment. */
TORNWALZEN_API int32_t tornwalzen_set_energy_reference(int32_t reference);

/* Factors of the gradient tolerance, each in (0, 1], neutral 1: of the final increment and of those before it. */
TORNWALZEN_API int32_t tornwalzen_set_tolerance_factors(double final_factor, double path_factor);

/* The way to the blank: 0 (neutral) the fixed path, load increments from a development of the projection; 1 the sure
   path, straight to the equilibrium with the part. The sure path starts from a rotation per triangle in the attitude of
   the part's mean normal, so that its blank does not depend on how the part lies; it needs a few factorizations, and
   memory of its own beside the host's arrays, freed at the end of the run. Its gradient tolerance is a thousandth of the
   fixed path's, or what the final tolerance factor says if that is less. Holds: up to three unknowns that only take away
   the rigid motion place the blank and load nothing; all others pin. A run that gives up has the reason
   TORNWALZEN_GAVE_UP and says why in fatal_text; it leaves no error word behind. */
TORNWALZEN_API int32_t tornwalzen_set_path(int32_t path);

/* What the sure path starts from: 0 (neutral) the part seen along its mean normal, steep triangles opened over their
   edges; 1 its largest flat patch alone, all else opened over edges. With undercut there may be several minima: the start
   decides, and TornwalzenReport.energy tells which blank is the better one. */
TORNWALZEN_API int32_t tornwalzen_set_start(int32_t start);

/* How many threads an analysis may work on, the calling one included: 1 (neutral) to 64. The threads stand ready until
   the number is set again, or to the reset; all results are the same to the bit for every number, and handlers are called on the calling
   thread alone. What the threads need beyond the arrays of the fixed interface is memory of the library's own, told in
   TornwalzenReport.thread_bytes; where it cannot be had, one thread does the work. Refused with TORNWALZEN_BAD_THREADS or,
   where a thread cannot be started, TORNWALZEN_NO_THREAD (value: the number asked for); the number before then stays. */
TORNWALZEN_API int32_t tornwalzen_set_threads(int32_t threads);

/* TornwalzenReport.reason: why a run is not converged. */
enum {
  TORNWALZEN_CONVERGED = 0,
  TORNWALZEN_NO_RUN = 1,            /* no OSMAIN since the mesh was taken */
  TORNWALZEN_REFUSED = 2,           /* OSMAIN refused its arguments or an index array */
  TORNWALZEN_RUNNING = 3,           /* asked for while OSMAIN runs */
  TORNWALZEN_LEFTOVER_ERROR = 4,    /* an earlier run had left the element error word set; tornwalzen_reset clears it */
  TORNWALZEN_NOT_DEVELOPED = 5,     /* the unfolding left inverted triangles */
  TORNWALZEN_STEP_TOO_SMALL = 6,    /* increments failed until their step became too small */
  TORNWALZEN_FINAL_UNCONVERGED = 7, /* the final increment stalled at the smallest step */
  TORNWALZEN_SOLVER_FAILED = 8,     /* a factorization or solve failed in at least one Newton step */
  TORNWALZEN_STOPPED_BY_HOST = 9,   /* a step handler asked for the end */
  TORNWALZEN_GAVE_UP = 10           /* the sure path found no blank; fatal_text says why */
};

/* The last run. Sizes never shrink: later versions append fields. */
typedef struct TornwalzenReport {
  int32_t size;                 /* in: sizeof(TornwalzenReport); out: bytes written */
  int32_t converged;            /* 1 yes, 0 no */
  int32_t reason;               /* one of the values above */
  int32_t increments;           /* accepted, the unconverged ones included */
  int32_t repeats;              /* attempts given up and made again with a smaller step */
  int32_t accepted_unconverged; /* increments accepted although their iteration stalled at the smallest step */
  int32_t newton_iterations;
  int32_t line_search_trials; /* residual evaluations of the line search */
  int32_t factorizations;
  int32_t negative_pivots; /* of the last factorization, -1 if none stands */
  int32_t unfolding_iterations;
  int32_t inverted_elements; /* left by the unfolding */
  int32_t beyond_curve;      /* 1 if largest_strain lies beyond the last point of the flow curve's data */
  int32_t reserved;          /* 0 */
  int64_t factor_entries;    /* of the triangular factor, its diagonal included */
  double factor_flops;       /* additions, multiplications and divisions of one factorization */
  double smallest_pivot;     /* magnitude, of the last factorization; held unknowns have the pivot 1 */
  double progress;           /* 0..1, end of the last accepted increment */
  double last_gradient;      /* largest free component of the gradient after the last Newton iteration (mm) */
  double gradient_limit;     /* what it had to meet (mm) */
  double largest_measure;    /* worst penalty measure at the end of the unfolding (dimensionless) */
  double largest_strain;     /* equivalent strain between the blank and the part, elements without area left out */
  double time_structure;     /* processor time (s) of OSINIT mode 1, ... */
  double time_ordering;      /* ... mode 2, */
  double time_symbolic;      /* ... mode 3, */
  double time_development;   /* of the unfolding, */
  double time_assembly;      /* of residual and tangent, */
  double time_factorization;
  double time_solve;
  double time_line_search; /* of the line search and the energy sums of the Newton iterations, */
  double time_analysis;    /* of OSMAIN as a whole */
  char fatal_text[160];    /* last fatal text of the library or its solver, zero-terminated; empty if none */
  /* The sure path; 0 on the fixed one. */
  int32_t path;             /* 0 fixed, 1 sure */
  int32_t flat_patch_start; /* 1: the start was seen along the normal of a flat patch, not along the mean normal */
  int32_t solves;           /* with factors of the tangent */
  int32_t laplace_factorizations; /* of one equation per node, for the start and for curved steps */
  int32_t hinged_elements;        /* whose rotation in the start came over edges */
  int32_t start_inverted;         /* triangles turned over in the start */
  int32_t blank_inverted;         /* triangles turned over, or without area, in the blank */
  int32_t minimum_certified;      /* 1: the exact tangent at the blank is positive definite; on the fixed path, the last
                                     one that was factorized */
  double smallest_stretch;        /* smallest singular value of the maps from part to blank (dimensionless) */
  double energy;                  /* potential of the blank (mm^2) */
  /* Both paths: what tells a right blank from a wrong one. Triangles and nodes from 1, 0: none. */
  int32_t refusal;          /* code of a mesh that the sure path refused */
  int32_t checked;          /* 1: what follows holds, and blank_inverted and smallest_stretch; 0: no memory for it */
  int32_t topology;         /* 0: the part is a disc with holes; else one of the codes from -18 to -24 */
  int32_t not_finite;       /* triangles with a blank position that is no number, */
  int32_t first_not_finite; /* the first of them */
  int32_t first_inverted;   /* of the blank_inverted triangles */
  int32_t smallest_stretch_triangle;
  int32_t sheet_checked;      /* 1: open nodes, outline and overlap were looked at */
  int32_t open_nodes;         /* inner nodes that their triangles do not close exactly once, */
  int32_t first_open_node;    /* the first of them */
  int32_t crossings_complete; /* 0: there may be more crossings than counted */
  int32_t misplaced_loops;    /* loops of the outline that lie wrongly in or beside one another, */
  int32_t first_misplaced_node;
  int32_t first_beyond_curve; /* triangle */
  int32_t first_beyond_one;
  int32_t reserved2; /* 0 */
  int64_t crossings; /* of the outline with itself */
  double crossing_u; /* place of the first (mm) */
  double crossing_v;
  double overlapped_area;    /* of the blank, covered more than once (mm^2) */
  double part_area;          /* mm^2 */
  double blank_area;         /* mm^2 */
  double undercut_area;      /* of the part, seen along its mean normal (mm^2) */
  double undercut_share;     /* of part_area */
  double share_beyond_curve; /* of part_area: strain beyond the data of the flow curve */
  double share_beyond_one;   /* of part_area: equivalent strain above 1 */
  double time_checks;        /* processor time (s) of these figures */
  /* Threads. All times of this report are processor times, summed over the threads. */
  int32_t threads;      /* that the analysis may work on */
  int32_t reserved3;    /* 0 */
  int64_t thread_bytes; /* own memory that the threads took beyond what one needs, at the most */
} TornwalzenReport;

/* Fills the report. A structure whose size field is smaller than that of the first version, which ended with fatal_text,
   is refused; of a shorter one than this header's only the front is filled, of a longer one only the front is written. */
TORNWALZEN_API int32_t tornwalzen_get_report(TornwalzenReport* report);

/* Strains of one element, logarithmic and dimensionless. */
typedef struct TornwalzenElementStrain {
  double major, minor;       /* principal strains in the sheet's plane, major >= minor */
  double direction_blank[2]; /* unit vector of the major strain in the blank */
  double direction_part[3];  /* unit vector of the major strain on the part */
  double thickness;          /* -(major + minor): plastic flow keeps the volume */
  double equivalent;         /* with the anisotropy that is set */
  double flow_stress;        /* MPa, at the equivalent strain, of the curve that the selector loads */
} TornwalzenElementStrain;

/*
 * Strains of all elements from part and blank. Needs no run.
 *   selector  in, 0, 1, 2 or 10: the flow curve, as ICTRL
 *   nn, ne    in, nodes and elements, >= 0
 *   knots     in, double[3*nn], mm, node by node as for OSINIT
 *   inzi      in, int32[3*ne], 1..nn, element by element as for OSINIT; the orientation does not matter
 *   rx        in, double[2*nn], mm, u and v of node 1, of node 2, ...: RX of OSMAIN
 *   strains   out, [ne]; values that are not finite for an element without area in the blank or on the part
 */
TORNWALZEN_API int32_t tornwalzen_element_strains(int32_t selector, int32_t nn, int32_t ne, const double* knots,
                                                  const int32_t* inzi, const double* rx,
                                                  TornwalzenElementStrain* strains);

/* The state as after loading: no mesh, no curves or options of the host, no report, no progress handler, and the
   error words cleared, also that of the elements, which OSINIT and OSMAIN never clear. */
TORNWALZEN_API int32_t tornwalzen_reset(void);

/* "major.minor.patch" of the library that runs; never null. */
TORNWALZEN_API const char* tornwalzen_version(void);

#ifdef __cplusplus
}
#endif

#endif /* TORNWALZEN_EXT_H */
