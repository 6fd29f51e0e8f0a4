# Completion of orif's commands, options and items for bash.

_orif() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  local connection='--host --port --time-out --component --simulate --encoding --fast --trail'
  local -A options=(
    [read]="--comments --format $connection"
    [watch]="--every --for --count --format $connection"
    [write]="--yes $connection"
    [record]="--every --for --count --out --force --append --rotate $connection"
    [plot]='--out --force --from --to --size --title --columns'
    [alarms]="--list --count --format $connection"
    [tasks]="--count --no-macros --no-velto --format $connection"
    [check]='--host --port --time-out --component'
    [simulate]='--serve'
  )
  COMPREPLY=()

  if [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${!options[*]} --help --version" -- "$current")
    return
  fi
  case $previous in
    --format) mapfile -t COMPREPLY < <(compgen -W 'table csv json' -- "$current"); return ;;
    --encoding) mapfile -t COMPREPLY < <(compgen -W 'utf-8 latin-1 iso-8859-1 iso-8859-2 windows-1250 windows-1252 shift-jis gbk euc-kr big5' -- "$current"); return ;;
    --list) mapfile -t COMPREPLY < <(compgen -W 'active history password' -- "$current"); return ;;
    --host | --port | --time-out | --count | --every | --for | --rotate | --from | --to | --size | --title) return ;;
    --component | --out) _orif_files '*'; return ;;
    --simulate) _orif_files '*.json' '*.csv' '*.db'; [[ -z $current || ${#COMPREPLY[@]} -gt 0 ]] && return ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${options[$command]} --help" -- "$current")
    return
  fi
  case $command in
    read | watch | write | record)
      # More of the item follows its bracket; a quote in front of it is the shell's.
      compopt -o nospace 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -W 'R[ PR[ POS[ SR[ PRG[ ALM[ DI[ DO[ RI[ RO[ UI[ UO[ SI[ SO[ GI[ GO[' -- "${current#[\"\']}")
      ;;
    check | simulate) _orif_files '*.json' '*.csv' '*.db' ;;
    plot) if [[ $COMP_CWORD -eq 2 ]]; then _orif_files '*'; else _orif_columns "${COMP_WORDS[2]}"; fi ;;
  esac
}

# Files that match a pattern, and directories on the way to them.
_orif_files() {
  compopt -o filenames 2>/dev/null
  local pattern
  mapfile -t COMPREPLY < <(
    for pattern; do compgen -f -X "!$pattern" -- "$current"; done
    compgen -d -- "$current"
  )
}

# What was recorded in the file. Names are quoted for the shell, unless a quote is open already.
_orif_columns() {
  local file=${1//[\\\"\']/} typed=${current#[\"\']} name
  while IFS= read -r name; do
    [[ $name == "${typed//\\/}"* ]] || continue
    [[ $current == [\"\']* ]] || printf -v name %q "$name"
    COMPREPLY+=("$name")
  done < <(orif plot "$file" --columns 2>/dev/null)
}

complete -F _orif orif
