# bash completion of nuvhost. Commands and options are asked of its help, names of `nuvhost list`.

# The words that may stand at the place of $2, the program being $1 and its command $3.
_nuvhost_candidates() {
  local program=$1 word=$2 command=$3
  case $word in
    -*) "$program" $command --help | sed -nE 's/^  (-[a-z],)?(--[a-z-]+).*/\2/p' ;;
    *)
      case $command in
        "") "$program" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]\+\) .*/\1/p' ;;
        describe | call) _nuvhost_names "$program" "$word" ;;
      esac
      ;;
  esac
}

# Identifiers for a word that begins like one; else display names, by category and name those that
# several instructions share.
_nuvhost_names() {
  "$1" list --identifiers | sed -E 's/^ *[0-9]+  (.*[^ ])  +(.*[^ ])  +(_[^ ]*)$/\1\t\2\t\3/' |
    awk -F '\t' -v word="$2" '
      substr(word, 1, 1) == "_" { print $3; next }
      { name[NR] = $2; full[NR] = $1 ": " $2; shared[$2]++ }
      END { for (i = 1; i in name; ++i) {
        if (shared[name[i]] == 1) print name[i]
        print full[i]
      } }'
}

_nuvhost() {
  # The word at the cursor as it was typed: bash has taken it apart at colons.
  local line=${COMP_LINE:0:COMP_POINT} typed="" quote="" word="" words=() i char
  for ((i = 0; i < ${#line}; ++i)); do
    char=${line:i:1}
    if [[ -z $quote && $char == [[:blank:]] ]]; then
      [[ -z $typed ]] || words+=("$word")
      typed="" word=""
      continue
    fi
    typed+=$char
    if [[ $quote != "'" && $char == "\\" ]]; then
      ((++i))
      typed+=${line:i:1} word+=${line:i:1}
    elif [[ $char == "$quote" ]]; then
      quote=""
    elif [[ -z $quote && $char == [\"\'] ]]; then
      quote=$char
    else
      word+=$char
    fi
  done

  # The command, and how many plain words stand behind it.
  local command="" plain=0 previous="" each
  for each in "${words[@]:1}"; do
    case $previous in
      --plugin | --log | --category | --const) ;;
      *)
        if [[ $each != -* ]]; then
          if [[ -z $command ]]; then command=$each; else ((++plain)); fi
        fi
        ;;
    esac
    previous=$each
  done

  local found=() cut=""
  case $previous in
    --category)
      mapfile -t found < <("$1" list --identifiers | sed -E 's/^ *[0-9]+  (.*[^ ])  +.*[^ ]  +_.*/\1/' | sort -u)
      ;;
    --plugin | --log | --data | --results | --overlay | --report | --junit) ;;
    *)
      [[ $word != -* && $plain -gt 0 ]] || mapfile -t found < <(_nuvhost_candidates "$1" "$word" "$command")
      ;;
  esac

  # Outside quotes blanks are guarded, and what stands before a colon is no part of the word.
  [[ -n $quote || $typed != *:* ]] || cut=${typed%"${typed##*:}"}
  COMPREPLY=()
  for each in "${found[@]}"; do
    [[ $each == "$word"* ]] || continue
    [[ -n $quote || $typed == [\"\']* ]] || printf -v each %q "$each"
    COMPREPLY+=("${each#"$cut"}")
  done
}
complete -o default -F _nuvhost nuvhost
