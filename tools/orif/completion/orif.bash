# Completion of orif's commands, options and items for bash. A template: the build fills in the lines with an @.

_orif() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  local -A options=(
    # @bash-options@
  )
  # What can stand in place of a value: words, or what a colon and a word name.
  local -A values=(
    # @bash-values@
  )
  local -A positionals=(
    # @bash-positionals@
  )
  COMPREPLY=()

  if [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${!options[*]} --help --version" -- "$current")
    return
  fi
  local value=${values[$command $previous]-}
  if [[ -n $value ]]; then
    _orif_complete "$value"
    # After an option that may stand alone, anything else may follow.
    [[ $value == :cells && -n $current && ${#COMPREPLY[@]} -eq 0 ]] || return
  fi
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${options[$command]-}" -- "$current")
    return
  fi

  # Which of the command's arguments this is: options and their values are none.
  local -a kinds
  local word i count=0 first=
  read -ra kinds <<<"${positionals[$command]-}"
  for ((i = 2; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ $word != -* ]]; then
      [[ $count -gt 0 ]] || first=$word
      count=$((count + 1))
    elif [[ -n ${values[$command $word]-} && (${values[$command $word]} != :cells || ${COMP_WORDS[i + 1]} =~ \.(json|csv|db)$) ]]; then
      i=$((i + 1))
    fi
  done
  [[ ${#kinds[@]} -gt 0 ]] || return
  _orif_complete "${kinds[count < ${#kinds[@]} ? count : ${#kinds[@]} - 1]}"
}

_orif_complete() {
  case $1 in
    :nothing) ;;
    :files) _orif_files '*' ;;
    :cells) _orif_files '*.json' '*.csv' '*.db' ;;
    :columns) _orif_columns "$first" ;;
    :commands) mapfile -t COMPREPLY < <(compgen -W "${!options[*]}" -- "$current") ;;
    :items)
      # More of the item follows its bracket; a quote in front of it is the shell's.
      compopt -o nospace 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -W 'R[ PR[ POS[ SR[ PRG[ ALM[ DI[ DO[ RI[ RO[ UI[ UO[ SI[ SO[ GI[ GO[' -- "${current#[\"\']}")
      ;;
    *) mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current") ;;
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
