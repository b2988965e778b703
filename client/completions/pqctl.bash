# Completion of pqctl for bash, loaded on demand from
# /usr/share/bash-completion/completions/pqctl. The list of settings comes from pqctl itself.

_pqctl_commands="list get show plot watch set try gamma patch backup diff restore undo history
  pattern pattern-mode dump boards diagnose"
_pqctl_global="--host --port --board --timeout --json --quiet --color --version --help"
_pqctl_scenes="nature-default nature-person nature-food nature-building nature-sky nature-plant
  word-default word-person word-food word-building word-sky word-plant"
_pqctl_colours="black white grey red green blue cyan magenta yellow"

# The places that begin with $1, a step at a time: ai/dci/nature-sky/ and then its members.
_pqctl_places() {
  local place scene step
  for place in $(pqctl list 2>/dev/null | sed -n 's|^\([a-z]*/[^ ]*\)  .*|\1|p'); do
    case $place in
      ai/*/SCENE/*)
        for scene in $_pqctl_scenes; do echo "${place/SCENE/$scene}"; done ;;
      *) echo "$place" ;;
    esac
  done | while read -r place; do
    [[ $place == "$1"* ]] || continue
    step=${place#"$1"}
    case $step in
      */*) echo "$1${step%%/*}/" ;;
      *) echo "$place" ;;
    esac
  done | sort -u
}

_pqctl_options() {
  case $1 in
    plot) echo "--output --width --height" ;;
    watch) echo "--interval" ;;
    set) echo "--dry-run --no-verify" ;;
    try) echo "--for" ;;
    gamma) echo "--power --srgb --points --from --reset --gain --full-scale --as-given --dry-run" ;;
    patch | undo) echo "--dry-run" ;;
    backup) echo "--force" ;;
    restore) echo "--only --dry-run --force" ;;
    pattern) echo "--for --keep --pause --key" ;;
    pattern-mode) echo "--force" ;;
    dump) echo "--output --raw --compare --gain --matrix --range" ;;
    diagnose) echo "--quick" ;;
  esac
}

_pqctl() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command="" word
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if [[ " ${_pqctl_commands//$'\n'/ } " == *" $word "* ]]; then
      command=$word
      break
    fi
  done
  local words=""
  case $previous in
    --host | --port | --timeout | --interval | --for | --pause | --power | --points | --gain | \
      --full-scale | --width | --height) return ;;
    --board) words=$(sed -n 's/^\[\(.*\)\].*/\1/p' \
      "${XDG_CONFIG_HOME:-$HOME/.config}/pqctl/boards.ini" 2>/dev/null) ;;
    --color) words="auto always never" ;;
    --matrix) words="bt601 bt709 bt2020" ;;
    --range) words="limited full" ;;
    -o | --output | --from) COMPREPLY=($(compgen -f -- "$current")); return ;;
    *)
      if [[ $current == -* ]]; then
        words="$_pqctl_global $(_pqctl_options "$command")"
      else
        case $command in
          "") words=$_pqctl_commands ;;
          list | get | watch | set | try) words=$(_pqctl_places "$current") ;;
          plot) words="gamma dci acm lut $(_pqctl_places "$current")" ;;
          pattern) words="$_pqctl_colours sequence" ;;
          pattern-mode) words="on off" ;;
          dump) words="in out both" ;;
          patch | backup | diff | restore) COMPREPLY=($(compgen -f -- "$current")); return ;;
        esac
      fi ;;
  esac
  COMPREPLY=($(compgen -W "$words" -- "$current"))
  if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]]; then compopt -o nospace 2>/dev/null; fi
}

complete -F _pqctl pqctl
