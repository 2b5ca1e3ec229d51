# Completion of velldoc for bash: commands, options and the paths of the project.

# Joins in "words" what bash has split at characters such as the colon of an address.
_velldoc_words() {
    local rest=$COMP_LINE piece blanks i
    words=()
    for ((i = 0; i <= COMP_CWORD; i++)); do
        piece=${COMP_WORDS[i]}
        blanks=${rest%%[![:space:]]*}
        if [[ ${#words[@]} -gt 0 && -z $blanks && -n $rest ]]; then
            words[-1]+=$piece
        else
            words+=("$piece")
        fi
        rest=${rest#"$blanks"}
        rest=${rest#"$piece"}
    done
}

_velldoc() {
    local words line settings=() cur taken= word i
    _velldoc_words
    cur=${words[-1]}
    line=("${words[@]:1:${#words[@]}-2}")
    # What stands before the last such character is not replaced, unless a quote holds the word together.
    if [[ $cur != [\"\']* && $cur =~ ^(.*[^\\])?[:=@] ]]; then
        taken=$(_velldoc_plain "${BASH_REMATCH[0]}")
    fi
    cur=$(_velldoc_plain "$cur")
    # The service of this line is the one to ask, in the way that the line says.
    for ((i = 0; i < ${#line[@]}; i++)); do
        case ${line[i]} in
            --url | --project | --token | --cacert | --cert | --key | --proxy)
                settings+=("${line[i]}" "${line[i + 1]-}") ;;
            --url=* | --project=* | --token=* | --cacert=* | --cert=* | --key=* | --proxy=*)
                settings+=("${line[i]}") ;;
        esac
    done
    COMPREPLY=()
    while IFS= read -r word; do
        COMPREPLY+=("${word#"$taken"}")
    done < <("${COMP_WORDS[0]}" "${settings[@]}" __complete -- "${line[@]}" "$cur" 2>/dev/null)
    case " ${line[*]} " in
        *" put "* | *" get "*)
            while IFS= read -r word; do
                COMPREPLY+=("${word#"$taken"}")
            done < <(compgen -f -- "$cur")
            ;;
    esac
    # Blanks and the like are quoted, and a folder is not the end of a path.
    compopt -o filenames 2>/dev/null
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]]; then
        compopt -o nospace 2>/dev/null
    fi
}

# A word as velldoc sees it, without what the shell takes off.
_velldoc_plain() {
    printf '%s' "${1#[\"\']}" | sed 's/\\\(.\)/\1/g'
}
complete -F _velldoc velldoc
