# Completion of kavsetup, kavcfg, kavdb and upssim in bash. What can be said is asked of the programs themselves.

# _kav_offer TEXT < WORDS: the words, a line each, that begin with TEXT, quoted for the command line.
_kav_offer() {
  local word
  while IFS= read -r word; do
    [[ $word == "$1"* ]] && COMPREPLY+=("$(printf '%q' "$word")")
  done
}

# _kav_words "WORD, WORD": a line each.
_kav_words() {
  tr -s ', ' '\n' <<<"$1"
}

# _kav_options PROGRAM: those of its help.
_kav_options() {
  "$1" --help 2>/dev/null | grep -oE '(^|[][ ,|(])--?[[:alpha:]][[:alpha:]-]*' | tr -d '][ ,|(' | sort -u
}

# _kav_listed COMMAND...: what kavcfg offers when it is told a wrong word: the list at the end of its complaint.
_kav_listed() {
  _kav_words "$("$@" 2>&1 | sed 's/.*: //')"
}

# _kav_value KAVCFG KEY TEXT: the values of a setting.
_kav_value() {
  local database='' at
  case $("$1" explain "$2" 2>/dev/null | sed -n 's/^kind: //p') in
    yes_no) _kav_offer "$3" < <(_kav_words 'yes no') ;;
    model)
      for ((at = 1; at < ${#COMP_WORDS[@]}; ++at)); do
        [[ ${COMP_WORDS[at]} == -u ]] && database=${COMP_WORDS[at + 1]-}
      done
      _kav_offer "$3" < <(kavdb list "${database:-upstyp.ups}" 2>/dev/null | sed -nE 's/^ *[0-9]+  (.{31}).*/\1/p' |
        sed 's/ *$//')
      ;;
  esac
}

# _kav_job KAVCFG TEXT WORD...: the words after "job".
_kav_job() {
  local kavcfg=$1 text=$2
  shift 2
  case $#,$1 in
    0,*) _kav_offer "$text" < <(_kav_words 'list add remove') ;;
    1,*) _kav_offer "$text" < <("$kavcfg" list --keys | grep '^Event') ;;
    2,add) _kav_offer "$text" < <(_kav_listed "$kavcfg" job add "$2" .) ;;
    *,add)
      if [[ $text == TIMING=* ]]; then
        _kav_offer "${text#*=}" < <(_kav_listed "$kavcfg" job add "$2" "$3" TIMING=.)
      else
        _kav_offer "$text" < <(_kav_listed "$kavcfg" job add "$2" "$3" .= | sed 's/$/=/')
      fi
      ;;
  esac
}

# _kav_verb KAVCFG TEXT WORD...: the words after a command of kavcfg.
_kav_verb() {
  local kavcfg=$1 text=$2 verb=$3
  shift 3
  case $verb in
    set | new)
      if [[ $text == *=* ]]; then
        _kav_value "$kavcfg" "${text%%=*}" "${text#*=}"
      else
        _kav_offer "$text" < <("$kavcfg" list --keys | sed 's/$/=/')
      fi
      ;;
    get | unset | explain) _kav_offer "$text" < <("$kavcfg" list --keys) ;;
    timeline) _kav_offer "$text" < <("$kavcfg" list --keys | grep '^Event') ;;
    job) _kav_job "$kavcfg" "$text" "$@" ;;
    apply | diff) mapfile -t COMPREPLY < <(compgen -f -- "$text") ;;
  esac
}

# The words before the cursor: bash cuts them at "=", the programs do not.
_kav_complete() {
  local program=$1 text='' words=() at before takes_file='^(-[fCu]|compile|dump|check|list)$'
  for ((at = 1; at <= COMP_CWORD; ++at)); do
    if [[ ${COMP_WORDS[at]} == = || (${COMP_WORDS[at - 1]} == = && $at -gt 1) ]]; then
      text+=${COMP_WORDS[at]}
    else
      [[ -n $text ]] && words+=("$text")
      text=${COMP_WORDS[at]}
    fi
  done
  text=${text//\\/}
  before=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  if [[ $text == -* ]]; then
    _kav_offer "$text" < <(_kav_options "$program")
  elif [[ $before =~ ^-[fCu]$ || ( ${program##*/} == kavdb && $before =~ $takes_file ) ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$text")
  elif [[ ${program##*/} == kavdb ]]; then
    _kav_offer "$text" < <("$program" --help | sed -nE 's/^.*kavdb ([a-z]+) .*/\1/p')
  elif [[ ${program##*/} == kavcfg ]]; then
    while [[ ${words[0]-} == -* ]]; do
      [[ ${words[0]} =~ ^-[fCu]$ ]] && words=("${words[@]:1}")
      words=("${words[@]:1}")
    done
    if ((${#words[@]})); then
      _kav_verb "$program" "$text" "${words[@]}"
    else
      _kav_offer "$text" < <("$program" --help | sed -nE 's/^  ([a-z]+) .*/\1/p' | sort -u)
    fi
  fi
  [[ ${COMPREPLY[*]-} == *= ]] && compopt -o nospace 2>/dev/null
  return 0
}

complete -F _kav_complete kavsetup kavcfg kavdb upssim
