# Completion of velldoc for bash. What can stand where is told by the program.

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
    local words line cur taken='' word
    _velldoc_words
    cur=${words[-1]}
    line=("${words[@]:1:${#words[@]}-2}")
    # What stands before the last such character is not replaced, unless a quote holds the word together.
    if [[ $cur != [\"\']* && $cur =~ ^(.*[^\\])?[:=@] ]]; then
        taken=$(_velldoc_plain "${BASH_REMATCH[0]}")
    fi
    cur=$(_velldoc_plain "$cur")
    COMPREPLY=()
    while IFS= read -r word; do
        if [[ $word == $'\tfiles' ]]; then
            while IFS= read -r word; do
                COMPREPLY+=("${word#"$taken"}")
            done < <(compgen -f -- "$cur")
            continue
        fi
        word=${word%%$'\t'*} # what follows explains it
        COMPREPLY+=("${word#"$taken"}")
    done < <("${COMP_WORDS[0]}" __complete -- "${line[@]}" "$cur" 2>/dev/null)
    # Blanks and the like are quoted, and a folder is not the end of a path.
    compopt -o filenames 2>/dev/null
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]]; then
        compopt -o nospace 2>/dev/null
    fi
}

# A word as velldoc sees it, without what the shell takes off.
_velldoc_plain() {
    local word=${1#[\"\']} plain='' i
    [[ $word == *\\* ]] || { printf '%s' "$word" && return; }
    for ((i = 0; i < ${#word}; i++)); do
        [[ ${word:i:1} == \\ ]] && ((i++))
        plain+=${word:i:1}
    done
    printf '%s' "$plain"
}
complete -F _velldoc velldoc
