#!/usr/bin/env bash
# The shared library exports its functions, fixed and extended, and nothing else, under a versioned soname.
# usage: exported_symbols.sh LIBRARY MAJOR
set -euo pipefail
library=$1 major=$2

fixed='OSINIT OSMAIN PlivaneSetProgressHdlr inipgr procpu progre proinf prterr prttxt'
extended='analysis_binder_pressure analysis_blank analysis_contact_pressure analysis_create analysis_destroy
  analysis_element_table analysis_error_text analysis_matrix_entries analysis_nodes analysis_on_message
  analysis_on_step analysis_oriented_triangles analysis_press_result analysis_report analysis_run
  analysis_set_beads analysis_set_energy_reference analysis_set_flange analysis_set_flow_curve
  analysis_set_holds analysis_set_law analysis_set_material analysis_set_mesh analysis_set_model
  analysis_set_normal_anisotropy analysis_set_path analysis_set_press analysis_set_start analysis_set_threads
  analysis_set_tolerance_factors analysis_starting_blank analysis_strains analysis_triangles element_strains
  error_text get_report points_hockett_sherby points_hollomon points_ludwik points_swift points_voce reset
  set_energy_reference set_flow_curve set_normal_anisotropy set_path set_start set_threads
  set_tolerance_factors version'
wanted=$fixed
for name in $extended; do wanted+=" tornwalzen_$name"; done
# Of a symbol "name@@VERSION" the name counts; absolute symbols (A) are version names.
found=$(nm -D --defined-only "$library" | awk '$2 != "A" {sub(/@.*/, "", $3); print $3}' | LC_ALL=C sort | xargs)
if [ "$found" != "$wanted" ]; then
  printf 'exported: %s\nwanted:   %s\n' "$found" "$wanted"
  exit 1
fi

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
if [ "$soname" != "libtornwalzen.so.$major" ]; then
  echo "soname: '$soname', wanted 'libtornwalzen.so.$major'"
  exit 1
fi
echo "exports: $found; soname $soname"
