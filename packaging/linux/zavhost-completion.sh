# shellcheck shell=bash
# Completion of zavhost's command line in bash: commands, options and their values, files, names of functions and of
# distributions.

# The files that match a pattern, and folders on the way to them.
_zavhost_files() {
  compopt -o filenames 2>/dev/null # which complains where nobody is completing
  mapfile -t COMPREPLY < <(compgen -f -X "!$1" -- "$current"; compgen -d -- "$current")
}

# The names are matched in either case, as formulas are.
_zavhost_functions() {
  local name
  while IFS=, read -r name _; do
    if [[ ${name,,} == "${current,,}"* ]]; then COMPREPLY+=("$name"); fi
  done < <("$program" functions --csv 2>/dev/null | tail -n +2)
}

# Names with blanks are one word each.
_zavhost_distributions() {
  local name
  while IFS= read -r name; do
    if [[ ${name,,} == "${current,,}"* ]]; then COMPREPLY+=("$(printf %q "$name")"); fi
  done < <("$program" distributions --json 2>/dev/null | sed -n 's/^    "name": "\(.*\)",$/\1/p')
}

# First the analysis, then its data.
_zavhost_report() {
  local word words=0
  for word in "${COMP_WORDS[@]:2:COMP_CWORD-2}"; do
    if [[ $word != -* ]]; then words=$((words + 1)); fi
  done
  if ((words == 0)); then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" report --list 2>/dev/null | sed -n '3,$s/^  \([a-z-]*\) .*/\1/p')" -- "$current")
  else
    _zavhost_files '*.@([xX][lL][sS][xX]|[cC][sS][vV])'
  fi
}

_zavhost() {
  local program=${1/#\~\//$HOME/} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' options i
  COMPREPLY=()
  # bash has made words of both sides of --option=value, and of the sign itself.
  if [ "$current" = = ]; then
    current=''
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      run | check | eval | functions | distributions | formula | report | doctor) command=${COMP_WORDS[i]}; break ;;
    esac
  done

  case $previous in
    --add-in) _zavhost_files '*.so'; return ;;
    --data) _zavhost_files '*.[cC][sS][vV]'; return ;;
    -o | --output) _zavhost_files '*.[xX][lL][sS][xX]'; return ;;
    --output-folder)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return ;;
    --language | --from | --to) mapfile -t COMPREPLY < <(compgen -W 'en de' -- "$current"); return ;;
    --style | --to-style) mapfile -t COMPREPLY < <(compgen -W 'a1 r1c1' -- "$current"); return ;;
    --by | --cell | --columns | --digits | --jobs | --max-formulas | --memory | --timeout) return ;;
  esac

  local common='--help --add-in --language --json'
  local workbooks='--all --max-formulas --jobs --timeout --memory'
  case $command in
    run) options="$common $workbooks --output --output-folder --resume --in-place --values-only --csv" ;;
    check) options="$common $workbooks --digits" ;;
    eval) options="$common --data --csv" ;;
    functions) options="$common --csv" ;;
    distributions) options='--help --json' ;;
    formula) options='--help --from --to --style --to-style --cell' ;;
    report) options='--help --add-in --language --list --columns --by --output' ;;
    doctor) options=$common ;;
    *) options='--help --version' ;;
  esac
  case $command:$current in
    *:-*) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current") ;;
    :*) mapfile -t COMPREPLY < <(compgen -W 'run check eval functions distributions formula report doctor' -- "$current") ;;
    run:* | check:*) _zavhost_files '*.[xX][lL][sS][xX]' ;;
    functions:*) _zavhost_functions ;;
    distributions:*) _zavhost_distributions ;;
    report:*) _zavhost_report ;;
  esac
}

complete -F _zavhost zavhost
