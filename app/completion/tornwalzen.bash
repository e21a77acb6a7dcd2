# Completion of tornwalzen for bash. Made by scripts/help_files.
_tornwalzen() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]} options=
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W "solve check deck materials study collect --help --version" -- "$word"))
    return
  fi
  case $command:$before in
  solve:--material) COMPREPLY=($(compgen -W "0 1 2 10" -- "$word")); return ;;
  solve:--path) COMPREPLY=($(compgen -W "sure fixed" -- "$word")); return ;;
  solve:--energy) COMPREPLY=($(compgen -W "part blank" -- "$word")); return ;;
  solve:--unit) COMPREPLY=($(compgen -W "mm cm m inch" -- "$word")); return ;;
  solve:--hold) COMPREPLY=($(compgen -W "auto x0 y0 x0,y0 deck" -- "$word")); return ;;
  solve:--dxf) COMPREPLY=($(compgen -W "2000 12" -- "$word")); return ;;
  solve:--model) COMPREPLY=($(compgen -W "press fixed" -- "$word")); return ;;
  solve:--flange) COMPREPLY=($(compgen -W "auto" -- "$word")); return ;;
  solve:--bending) COMPREPLY=($(compgen -W "auto off released kept" -- "$word")); return ;;
  solve:--edge) COMPREPLY=($(compgen -W "auto on off" -- "$word")); return ;;
  solve:--mesh-side) COMPREPLY=($(compgen -W "middle punch die" -- "$word")); return ;;
  solve:--punch) COMPREPLY=($(compgen -W "below above" -- "$word")); return ;;
  solve:--skin) COMPREPLY=($(compgen -W "outer inner auto" -- "$word")); return ;;
  check:--draw) COMPREPLY=($(compgen -W "auto" -- "$word")); return ;;
  check:--unit) COMPREPLY=($(compgen -W "mm cm m inch" -- "$word")); return ;;
  check:--skin) COMPREPLY=($(compgen -W "outer inner auto" -- "$word")); return ;;
  deck:--hold) COMPREPLY=($(compgen -W "auto x0 y0 x0,y0 deck" -- "$word")); return ;;
  deck:--skin) COMPREPLY=($(compgen -W "outer inner auto" -- "$word")); return ;;
  esac
  case $command in
  solve) options="-h --help --material --materials --curve --law --r --path --energy --tolerance --unit --hold --out --outcome --force --largest --report --no-report --eben --eben-start --flc --n --dxf-tolerance --dxf --web --square --bend-lines --csv --verbose --quiet --json --model --thickness --young --planar-r --rolling --mu --binder --flange --bead --bending --edge --mesh-side --punch --part --skin --fibre --mesh --weld --remesh --import-limit" ;;
  check) options="-h --help --draw --unit --out --largest --quiet --json --part --skin --fibre --mesh --weld --remesh --import-limit" ;;
  deck) options="-h --help -o --output --hold --largest --part --skin --fibre --mesh --weld --remesh --import-limit" ;;
  materials) options="-h --help --materials --quiet --json" ;;
  study) options="-h --help --out --print --slurm --again" ;;
  collect) options="-h --help --out --force" ;;
  esac
  case $word in
  -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
  *) compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -f -- "$word")) ;;
  esac
}
complete -F _tornwalzen tornwalzen
