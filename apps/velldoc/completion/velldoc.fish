# Completion of velldoc for fish. The program itself returns the completions.

function __velldoc_offers
    set -l line (commandline -opc)
    set -l program $line[1]
    for offer in ($program __complete -- $line[2..-1] (commandline -ct | string unescape) 2>/dev/null)
        if test "$offer" = \tfiles
            __fish_complete_path (commandline -ct)
        else
            printf '%s\n' $offer
        end
    end
end

complete -c velldoc -f -k -a '(__velldoc_offers)'
