# shellcheck shell=bash
# Completion of tulo-hours for bash.

_tulo_hours() {
  local current=$2 previous=$3 values='' prefix=''
  COMPREPLY=()
  # Bash takes "=" for a word of its own.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  [[ ${COMP_WORDS[COMP_CWORD]} != = ]] || previous=${COMP_WORDS[COMP_CWORD - 1]}
  case $previous in
  --month) values=$(_tulo_hours_months) ;;
  --week) values=$(date +%G-W%V) ;;
  --from) values=$(date +%Y-%m-01) ;;
  --to) values=$(date +%F) ;;
  --by)
    # What is there already is not offered again.
    local key
    [[ $current != *,* ]] || prefix=${current%,*},
    for key in code day task; do
      [[ ,$prefix == *,$key,* ]] || values+="$prefix$key "
    done
    ;;
  --format) values='table csv json' ;;
  *) values='--month --week --from --to --by --format --help' ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$values" -- "$current")
}

# This month and the eleven before it.
_tulo_hours_months() {
  local year month i
  year=$(date +%Y)
  month=$((10#$(date +%m)))
  for ((i = 0; i < 12; i++)); do
    printf '%04d-%02d\n' "$year" "$month"
    ((--month)) || { month=12 && ((year--)); }
  done
}

complete -F _tulo_hours tulo-hours
