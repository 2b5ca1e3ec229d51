# Completion of velldoc for bash. The program itself returns the completions.

# Joins in "words" the parts that bash has split at characters such as the colon of an address.
_velldoc_words() {
    local rest=$COMP_LINE piece spaces i
    words=()
    for ((i = 0; i <= COMP_CWORD; i++)); do
        piece=${COMP_WORDS[i]}
        spaces=${rest%%[![:space:]]*}
        if [[ ${#words[@]} -gt 0 && -z $spaces && -n $rest ]]; then
            words[-1]+=$piece
        else
            words+=("$piece")
        fi
        rest=${rest#"$spaces"}
        rest=${rest#"$piece"}
    done
}

_velldoc() {
    local words line cur taken='' word
    _velldoc_words
    cur=${words[-1]}
    line=("${words[@]:1:${#words[@]}-2}")
    # The part before the last such character is not replaced, unless the word is quoted.
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
        word=${word%%$'\t'*} # without its description
        COMPREPLY+=("${word#"$taken"}")
    done < <("${COMP_WORDS[0]}" __complete -- "${line[@]}" "$cur" 2>/dev/null)
    # Quotes spaces and other special characters. There is no space after a folder.
    compopt -o filenames 2>/dev/null
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]]; then
        compopt -o nospace 2>/dev/null
    fi
}

# Prints a word as velldoc receives it, without quotes and backslashes.
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
