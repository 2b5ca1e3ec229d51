#compdef velldoc
# Completion of velldoc for zsh. The program itself returns the completions.

_velldoc() {
    local line word
    local -a plain folders explained
    for line in "${(@f)$("$words[1]" __complete -- "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}"; do
        case $line in
            '') ;;
            $'\tfiles') _files ;;
            *$'\t'*) explained+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}") ;;
            */) folders+=("$line") ;;
            *) plain+=("$line") ;;
        esac
    done
    (( $#explained )) && _describe 'velldoc' explained
    (( $#plain )) && compadd -- "${plain[@]}"
    # There is no space after a folder.
    (( $#folders )) && compadd -S '' -- "${folders[@]}"
    return 0
}

if [ "$funcstack[1]" = _velldoc ]; then
    _velldoc "$@"
else
    compdef _velldoc velldoc
fi
