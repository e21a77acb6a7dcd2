#!/usr/bin/env bash
# The shared library exports its functions, fixed and extended, and nothing else: under a versioned soname, and on
# Windows without need of another library than the system's own.
# usage: exported_symbols.sh LIBRARY MAJOR | exported_symbols.sh LIBRARY.dll
set -euo pipefail
library=$1

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
elfNames() { nm -D --defined-only "$library" | awk '$2 != "A" {sub(/@.*/, "", $3); print $3}'; }
dllHeaders() { x86_64-w64-mingw32-objdump -p "$library"; }
dllNames() { dllHeaders | awk '/Ordinal\/Name Pointer/ {on = 1; next} NF == 0 {on = 0} on {print $NF}'; }
names=elfNames
[[ $library = *.dll ]] && names=dllNames
found=$($names | LC_ALL=C sort | xargs)
if [ "$found" != "$wanted" ]; then
  printf 'exported: %s\nwanted:   %s\n' "$found" "$wanted"
  exit 1
fi

if [[ $library = *.dll ]]; then
  needed=$(dllHeaders | awk '/DLL Name:/ {print toupper($3)}' | LC_ALL=C sort | xargs)
  if [ "$needed" != 'KERNEL32.DLL MSVCRT.DLL' ]; then
    echo "needs: $needed"
    exit 1
  fi
  echo "exports: $found; needs $needed"
  exit
fi

major=$2
soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
if [ "$soname" != "libtornwalzen.so.$major" ]; then
  echo "soname: '$soname', wanted 'libtornwalzen.so.$major'"
  exit 1
fi
echo "exports: $found; soname $soname"
