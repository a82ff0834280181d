# Completion in bash. The candidates come from the program itself.

# To bash a colon and an equals sign end a word: puts the words before the cursor together again, without backslashes.
_corvane_config_words() {
  local word words=() glue=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    if [[ $word == [:=]* && ${#words[@]} -gt 0 || -n $glue ]]; then words[-1]+=$word; else words+=("$word"); fi
    [[ $word == *[:=] ]] && glue=yes || glue=
  done
  printf '%s\n' "${words[@]}" | sed "s/\\\\\\(.\\)/\\1/g; s/^[\"']//"
}

_corvane_config() {
  local words typed line candidate
  mapfile -t words < <(_corvane_config_words)
  typed=${words[-1]}
  local before=${typed%"${typed##*[:=]}"}
  COMPREPLY=()
  while IFS= read -r line; do
    candidate=${line%%$'\t'*}
    if [ -z "$candidate" ]; then
      compopt -o filenames 2>/dev/null
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$typed")
    else
      COMPREPLY+=("$(printf '%q' "${candidate:${#before}}")")
    fi
  done < <("${COMP_WORDS[0]}" --complete "${words[@]}" 2>/dev/null)
}
complete -F _corvane_config corvane-config
