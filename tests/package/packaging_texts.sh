#!/usr/bin/env bash
# What the packages say about the service and about themselves is true: the manual page has the commands, options and
# faults of the program and no others, and the version and the name of the library's package are those of the build.
#   packaging_texts.sh SOURCE SERVICE VERSION SOVERSION
set -euo pipefail
source=$1 service=$2 version=$3 soversion=$4
fail() {
    echo "FAIL!  : $*"
    exit 1
}

# As it reads, without the marks of the formatter.
manual=$(sed -E 's/\\f.//g; s/\\-/-/g; s/^\.[A-Z]+ //; s/"//g; s/ +/ /g' "$source/packaging/service/vell-service.8")
documented() { grep -qE -- "(^|[^a-z-])$1([^a-z-]|$)" <<<"$manual" || fail "the manual page of the service does not have $1"; }

commands=$("$service" --help | sed -nE 's/^Other commands: (.*); each has.*/\1/p' | tr -d ,)
[ "$(wc -w <<<"$commands")" -ge 9 ] || fail "these are the commands: $commands"
helps='' actions=''
for command in '' $commands; do
    help=$("$service" ${command:+"$command"} --help)
    helps+=$help$'\n'
    while read -r option; do
        documented "$option"
    done < <(grep -oE -- '--[a-z][a-z-]*' <<<"$help")
    [ -z "$command" ] || documented "$command"
    # "user add NAME   adds a user"
    while read -r _ action _; do
        documented "$command $action"
        actions+="$command $action"$'\n'
    done < <(grep -E "^$command [a-z]+.*   " <<<"$help" || true)
done

# The other direction.
while read -r option; do
    grep -qE -- "(^|[^a-z-])$option([^a-z-]|$)" <<<"$helps" || fail "the service has no option $option"
done < <(grep -oE -- '--[a-z][a-z-]*' <<<"$manual" | sort -u)
# section TITLE: the headings of its paragraphs.
section() { sed -n "/^$1\$/,/^[A-Z ]*\$/{/^\.TP\$/{n;p}}" <<<"$manual"; }
while read -r command action _; do
    [[ " $commands " = *" $command "* ]] || fail "the service has no command $command"
    ! grep -q "^$command " <<<"$actions" || grep -qx "$command $action" <<<"$actions" \
        || fail "the service has no command $command $action"
done < <(section "Users and projects"; section "The data folder")
faults=$("$service" --help | sed -nE 's/^  ([a-z]+-?[a-z]*)(=[A-Z]+|\[=[A-Z]+\])? .*/\1/p' | sort)
[ "$(wc -w <<<"$faults")" -ge 8 ] || fail "these are the faults: $faults"
[ "$faults" = "$(section FAULTS | sed -E 's/[ =[].*//' | sort)" ] || fail "the manual page has other faults than" $faults

grep -qF "\"vell-service $version\"" <<<"$(head -n 1 "$source/packaging/service/vell-service.8")" \
    || fail "the manual page is not that of $version"
grep -q "^velldocumentdata ($version)" <<<"$(head -n 1 "$source/packaging/debian/changelog")" \
    || fail "the first entry of packaging/debian/changelog is not that of $version"
grep -qxF "Package: libvelldocumentdata$soversion" "$source/packaging/debian/control" \
    || fail "packaging/debian/control names another interface than $soversion"
[ -e "$source/packaging/debian/libvelldocumentdata$soversion.install" ] \
    || fail "packaging/debian has no files for libvelldocumentdata$soversion"
echo "PASS   : the manual page, the version and the name of the library's package are true"
