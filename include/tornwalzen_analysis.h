/*
 * tornwalzen - the inverse analysis with a handle: the library owns its memory, any number of analyses may stand side
 * by side, each used by one thread at a time, all at the same time.
 *
 * What a handle computes is what OSINIT and OSMAIN compute from the same input, to the bit. Lengths in mm, stresses in
 * MPa, strains and ratios dimensionless. Index base of triangles and results: the one that was given with the mesh.
 *
 * EXAMPLE
 *
 *   TornwalzenAnalysis* a = tornwalzen_analysis_create();
 *   tornwalzen_analysis_set_mesh(a, nn, ne, points, triangles, 0);    // copied; 0: triangles count nodes from 0
 *   tornwalzen_analysis_set_holds(a, held);                           // 2*nn flags: 1 held, 0 free
 *   tornwalzen_analysis_set_material(a, 1);
 *   int32_t code = tornwalzen_analysis_run(a);
 *   TornwalzenReport report;
 *   report.size = sizeof report;
 *   tornwalzen_analysis_report(a, &report);
 *   if (code == TORNWALZEN_OK && report.converged) {
 *     const double* blank = tornwalzen_analysis_blank(a);             // u, v of the first node, of the next, ...
 *     ...
 *   }
 *   tornwalzen_analysis_destroy(a);
 *
 * ERRORS. Every function that returns int32_t returns TORNWALZEN_OK or one of the negative codes of tornwalzen_ext.h;
 * then nothing was changed and no output was written. A null handle is TORNWALZEN_NULL_POINTER. While the analysis runs
 * (that is, from within its handlers) everything but the report and the texts is refused with TORNWALZEN_BUSY.
 * A run that does not converge is no error of the call: the report tells.
 *
 * LIFETIME. What the set functions are given is copied. Pointers that a function returns stay valid until the mesh is
 * set anew, the analysis runs again or is destroyed.
 */
#ifndef TORNWALZEN_ANALYSIS_H
#define TORNWALZEN_ANALYSIS_H

#include <stdint.h>

#include "tornwalzen_ext.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TornwalzenAnalysis TornwalzenAnalysis;

/* A new analysis: no mesh, nothing held, flow curve 1, r = 1, energy over the blank, tolerance factors 1, fixed path,
   no handlers. Null where there is no memory. */
TORNWALZEN_API TornwalzenAnalysis* tornwalzen_analysis_create(void);

/* Gives back all that the analysis holds. Null is allowed and does nothing. */
TORNWALZEN_API int32_t tornwalzen_analysis_destroy(TornwalzenAnalysis* analysis);

/*
 * Takes a mesh in place of the one before; what was held is forgotten, all other settings stay. Refused: counts below 1
 * or too large for 32-bit lengths, a coordinate that is not finite (index: of the coordinate, from 1), a node number out
 * of range (index: of the entry, from 1; value: the number), no memory. A refused mesh leaves the one before.
 *   nn, ne       in, nodes and triangles, >= 1
 *   points       in, double[3*nn], mm: x, y, z of the first node, of the next, ...
 *   triangles    in, int32[3*ne], first_index .. first_index+nn-1: the nodes of the first triangle, of the next, ...
 *   first_index  in, 0 or 1
 */
TORNWALZEN_API int32_t tornwalzen_analysis_set_mesh(TornwalzenAnalysis* analysis, int32_t nn, int32_t ne,
                                                    const double* points, const int32_t* triangles,
                                                    int32_t first_index);

/* Which unknowns are held at their place on the part: held: in, int32[2*nn], u and v of the first node, of the next, ...;
   1 held, 0 free. Hold what removes the rigid motion: a node and one direction of another, or planes of symmetry. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_holds(TornwalzenAnalysis* analysis, const int32_t* held);

/* Flow curve 0, 1, 2 (plastic work) or 10 (geometric density, no material); ends the use of an own curve. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_material(TornwalzenAnalysis* analysis, int32_t selector);

/* An own flow curve in place of curve 1: arguments and refusals as tornwalzen_set_flow_curve. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_flow_curve(TornwalzenAnalysis* analysis, int32_t n, const double* strain,
                                                          const double* stress_mpa);

/* The hardening laws. Their parameters, in this order, are those of the tornwalzen_points_... functions. */
enum {
  TORNWALZEN_HOLLOMON = 1,      /* K, m */
  TORNWALZEN_SWIFT = 2,         /* K, e0, m */
  TORNWALZEN_LUDWIK = 3,        /* s0, K, m */
  TORNWALZEN_VOCE = 4,          /* s0, ss, rate */
  TORNWALZEN_HOCKETT_SHERBY = 5 /* s0, ss, rate, m */
};

/* A hardening law as own flow curve, at 49 points up to strain_to. parameters: in, double[2..4] as the list tells;
   strain_to: in, 0 < strain_to < 5. A parameter out of range is refused by its place (strain_to comes last). */
TORNWALZEN_API int32_t tornwalzen_analysis_set_law(TornwalzenAnalysis* analysis, int32_t law, const double* parameters,
                                                   double strain_to);

/* As the functions of tornwalzen_ext.h with these names. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_normal_anisotropy(TornwalzenAnalysis* analysis, double r);
TORNWALZEN_API int32_t tornwalzen_analysis_set_energy_reference(TornwalzenAnalysis* analysis, int32_t reference);
TORNWALZEN_API int32_t tornwalzen_analysis_set_threads(TornwalzenAnalysis* analysis, int32_t threads);
TORNWALZEN_API int32_t tornwalzen_analysis_set_path(TornwalzenAnalysis* analysis, int32_t path);
TORNWALZEN_API int32_t tornwalzen_analysis_set_start(TornwalzenAnalysis* analysis, int32_t start);
TORNWALZEN_API int32_t tornwalzen_analysis_set_tolerance_factors(TornwalzenAnalysis* analysis, double final_factor,
                                                                 double path_factor);

/*
 * The model: 0 (neutral) fixed, half the square of the plastic work as OSMAIN has it; 1 press: the work of deformation
 * itself, and what tornwalzen_analysis_set_press, _set_flange and _set_beads say of bending, free edges and tools. The
 * press model always goes the sure path, whatever the path is set to, and needs a flow curve in MPa and the thickness of
 * the sheet: refused without them when the analysis runs.
 */
TORNWALZEN_API int32_t tornwalzen_analysis_set_model(TornwalzenAnalysis* analysis, int32_t model);

/* Fields of TornwalzenPress. */
enum {
  TORNWALZEN_AUTOMATIC = 0, /* off without tools; on (bending: kept) with friction and a binder or beads */
  TORNWALZEN_OFF = 1,
  TORNWALZEN_ON = 2,               /* edge */
  TORNWALZEN_BENDING_RELEASED = 2, /* the work of bending alone is taken off: developable parts stay exact */
  TORNWALZEN_BENDING_KEPT = 3      /* it is kept: nearer on drawn parts */
};

/* Sheet and press beside the flow curve. What is not given is not used: zero every field but size first. */
typedef struct TornwalzenPress {
  int32_t size;             /* in: sizeof(TornwalzenPress); later versions append fields */
  int32_t thickness_points; /* Gauss points through the thickness, 3 or 5; 0: 3 */
  int32_t bending;          /* choice 1: AUTOMATIC, OFF, BENDING_RELEASED, BENDING_KEPT */
  int32_t edge;             /* choice 2: AUTOMATIC, OFF, ON: free edges bear no traction */
  int32_t mesh_side;     /* choice 3: what the mesh shows, 0 the middle of the sheet, 1 its punch side, 2 its die side;
                               moved by half the thickness inside */
  int32_t punch_above;   /* choice 4: 0 the punch comes from below, against the mean normal of the part turned to +z;
                               1 from above */
  int32_t flange_of_rim; /* choice 5: 1: the binder presses on the largest nearly flat area at the rim, across the
                               drawing direction, its pieces at one height together; 0: on the marks of
                               tornwalzen_analysis_set_flange */
  int32_t reserved;      /* 0 */
  double thickness_mm;   /* of the blank, > 0 */
  double young_mpa;      /* Young's modulus; 0: 206,000 */
  double r0, r45, r90;   /* anisotropy along, diagonal and across the rolling direction (R. Hill 1948), all > 0; all 0:
                               the normal anisotropy that is set */
  double rolling_angle_deg; /* from the blank's u axis to the rolling direction */
  double friction_punch;    /* coefficients of friction, 0 to 1 */
  double friction_die;      /* also under both faces of the binder */
  double binder_force_n;    /* on the part as meshed: a quarter of a part takes a quarter of the force; 0: no binder */
} TornwalzenPress;

/* Takes sheet and press, as one: a field out of range leaves all as it was. A binder without a flange is refused when the
   analysis runs. press: in. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_press(TornwalzenAnalysis* analysis, const TornwalzenPress* press);

/* Which triangles of the mesh the binder presses on: marks: in, int32[ne], 1 or 0; null, or 0 throughout:
   none. A new mesh forgets them. */
TORNWALZEN_API int32_t tornwalzen_analysis_set_flange(TornwalzenAnalysis* analysis, const int32_t* marks);

/*
 * Draw beads, as polylines of nodes of the mesh; each two in a row share an edge. A new mesh forgets them.
 *   count              in, beads, >= 0; 0: none, the pointers may then be null
 *   lengths            in, int32[count]: nodes of each bead, >= 2
 *   nodes              in, int32[sum of lengths], counted from first_index of the mesh
 *   force_n_per_mm     in, double[count]: what each holds back per length across it, > 0
 */
TORNWALZEN_API int32_t tornwalzen_analysis_set_beads(TornwalzenAnalysis* analysis, int32_t count,
                                                     const int32_t* lengths, const int32_t* nodes,
                                                     const double* force_n_per_mm);

/* Phases of a run, in their order. */
enum {
  TORNWALZEN_PHASE_STRUCTURE = 1,   /* pattern of the global matrix */
  TORNWALZEN_PHASE_ORDERING = 2,    /* fill-reducing order of the equations */
  TORNWALZEN_PHASE_SYMBOLIC = 3,    /* layout of the factor */
  TORNWALZEN_PHASE_DEVELOPMENT = 4, /* fixed path: the starting blank */
  TORNWALZEN_PHASE_INCREMENTS = 5,  /* fixed path: load increments */
  TORNWALZEN_PHASE_START = 6,       /* sure path: the starting blank */
  TORNWALZEN_PHASE_NEWTON = 7,      /* sure path: iteration at the full part */
  TORNWALZEN_PHASE_PRESS = 9        /* press model: rounds within which edges and tools pull as they stand */
};

/* Where a run stands; valid only during the call. */
typedef struct TornwalzenStep {
  int32_t size;      /* bytes of this structure; later versions append fields */
  int32_t phase;     /* one of the values above */
  double fraction;   /* of the phase, 0..1 */
  int32_t increment; /* from 1; 0 in phases without increments */
  int32_t iteration; /* of the increment, or of the phase, from 1; 0 before the first */
  double residual;   /* largest free component of the gradient (mm); negative where there is none yet */
} TornwalzenStep;

/* Called on the thread that runs the analysis. Returns 0 to go on; anything else asks for an orderly end: the run stops
   at its next step, and the report's reason is TORNWALZEN_STOPPED_BY_HOST. */
typedef int32_t (*TornwalzenStepHandler)(void* userdata, const TornwalzenStep* step);

/* Takes one line of the library, zero-terminated, without a line end, at most 80 characters; valid only during the
   call. On the thread that runs the analysis. */
typedef void (*TornwalzenMessageHandler)(void* userdata, const char* line);

/* Registers a handler with the datum it is called with; null: none. Without a message handler a handle is silent. */
TORNWALZEN_API int32_t tornwalzen_analysis_on_step(TornwalzenAnalysis* analysis, TornwalzenStepHandler handler,
                                                   void* userdata);
TORNWALZEN_API int32_t tornwalzen_analysis_on_message(TornwalzenAnalysis* analysis, TornwalzenMessageHandler handler,
                                                      void* userdata);

/*
 * Runs the analysis of the mesh that is set; the structure is set up at the first run of a mesh and kept for the next.
 * Returns TORNWALZEN_OK if it ran, converged or not. Refused: no mesh (TORNWALZEN_NO_MESH), no memory
 * (TORNWALZEN_NO_MEMORY), a structure that fails (TORNWALZEN_SETUP_FAILED, the report has the text).
 */
TORNWALZEN_API int32_t tornwalzen_analysis_run(TornwalzenAnalysis* analysis);

/* The last run, as tornwalzen_get_report. */
TORNWALZEN_API int32_t tornwalzen_analysis_report(TornwalzenAnalysis* analysis, TornwalzenReport* report);

/* Counts of the mesh that is set; 0 without one. */
TORNWALZEN_API int32_t tornwalzen_analysis_nodes(const TornwalzenAnalysis* analysis);
TORNWALZEN_API int32_t tornwalzen_analysis_triangles(const TornwalzenAnalysis* analysis);

/* Results of the last run, null without one. */
TORNWALZEN_API const double* tornwalzen_analysis_blank(const TornwalzenAnalysis* analysis); /* double[2*nn], mm: u, v */
TORNWALZEN_API const double* tornwalzen_analysis_starting_blank(const TornwalzenAnalysis* analysis); /* likewise */
/* double[5*ne], per triangle as EVAL of OSMAIN; not a number where no increment converged */
TORNWALZEN_API const double* tornwalzen_analysis_element_table(const TornwalzenAnalysis* analysis);
/* int32[3*ne]: the triangles, counter-clockwise in the blank, counted from first_index */
TORNWALZEN_API const int32_t* tornwalzen_analysis_oriented_triangles(const TornwalzenAnalysis* analysis);

/* Strains between the part and the blank of the last run. strains: out, [ne]; as tornwalzen_element_strains. */
TORNWALZEN_API int32_t tornwalzen_analysis_strains(TornwalzenAnalysis* analysis, TornwalzenElementStrain* strains);

/* What the press model did in the last run; 0 throughout after a run of the fixed model. */
typedef struct TornwalzenPressResult {
  int32_t size;            /* in: sizeof(TornwalzenPressResult); out: bytes written */
  int32_t bending;         /* which terms acted: 0 none, 1 its work taken off, 2 kept */
  int32_t edge;            /* 1 or 0 */
  int32_t contact;         /* friction under punch and die, 1 or 0 */
  int32_t binder;          /* 1 or 0 */
  int32_t beads;           /* 1 or 0 */
  int32_t rounds;          /* in which the forces stood still */
  int32_t flange_elements; /* under the binder */
  int32_t loads_held;      /* 1: edges and tools came to equilibrium; 0: none acted, or the blank is one without them */
  int32_t reserved;        /* 0 */
  double exponent;         /* p of the last member of the family of works that came to equilibrium: 1 is the work
                                 itself, 0 none */
  double thinnest_mm, thickest_mm; /* sheet on the part, between the smallest and the largest triangle mean */
  double punch_pressure_mpa;       /* largest contact pressure, from the equilibrium across the sheet: an estimate */
  double die_pressure_mpa;         /* likewise */
  double binder_pressure_mpa;      /* largest under the rigid binder */
  double binder_area_mm2;          /* that bears */
  double work_nmm;                 /* of deformation */
  double friction_work_nmm; /* against friction, binder and beads over the whole way of the sheet: an upper estimate */
  double depth_mm;          /* of the part along the drawing direction */
  double punch_force_n;     /* both works over the depth: the mean force on the part as meshed */
} TornwalzenPressResult;
TORNWALZEN_API int32_t tornwalzen_analysis_press_result(TornwalzenAnalysis* analysis, TornwalzenPressResult* result);

/* Contact pressure per triangle, double[ne], MPa, positive at the punch, negative at the die, the binder's beside it with
   its own sign; null without a run of the press model with tools. */
TORNWALZEN_API const double* tornwalzen_analysis_contact_pressure(const TornwalzenAnalysis* analysis);
TORNWALZEN_API const double* tornwalzen_analysis_binder_pressure(const TornwalzenAnalysis* analysis);

/* Stored entries of the lower triangle of the global matrix; 0 before the first run of a mesh. */
TORNWALZEN_API int64_t tornwalzen_analysis_matrix_entries(const TornwalzenAnalysis* analysis);

/* What a code means, as tornwalzen_error_text, with index and value of this analysis' last refusal. Valid until the next
   call with this handle; never null. */
TORNWALZEN_API const char* tornwalzen_analysis_error_text(TornwalzenAnalysis* analysis, int32_t code, int32_t language);

#ifdef __cplusplus
}
#endif

#endif /* TORNWALZEN_ANALYSIS_H */
