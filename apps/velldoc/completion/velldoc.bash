# Completion of velldoc for bash: commands, options and the paths of the project.

_velldoc() {
    local cur=${COMP_WORDS[COMP_CWORD]} line=("${COMP_WORDS[@]:1:COMP_CWORD-1}") settings=() i
    # What a shell would do to the words before velldoc sees them.
    cur=${cur#[\"\']}
    cur=$(printf '%s' "$cur" | sed 's/\\\(.\)/\1/g')
    # The service, the project and the token of this line are those to ask.
    for ((i = 0; i < ${#line[@]}; i++)); do
        case ${line[i]} in
            --url | --project | --token) settings+=("${line[i]}" "${line[i + 1]-}") ;;
        esac
    done
    COMPREPLY=()
    local word
    while IFS= read -r word; do
        COMPREPLY+=("$word")
    done < <("${COMP_WORDS[0]}" "${settings[@]}" __complete -- "${line[@]}" "$cur" 2>/dev/null)
    case " ${line[*]} " in
        *" put "* | *" get "*)
            while IFS= read -r word; do
                COMPREPLY+=("$word")
            done < <(compgen -f -- "$cur")
            ;;
    esac
    # Blanks and the like are quoted, and a folder is not the end of a path.
    compopt -o filenames 2>/dev/null
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]]; then
        compopt -o nospace 2>/dev/null
    fi
}
complete -F _velldoc velldoc
