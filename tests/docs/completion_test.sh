#!/bin/bash
# usage: completion_test.sh COMPLETION-FILE. Completes some command lines as the shell would.
. "$1" || exit 1
compopt() { :; } # works only within a real completion
directory=$(mktemp -d) || exit 1
trap 'rm -rf -- "$directory"' EXIT
cd "$directory" || exit 1
mkdir -p inst/zorfiles/mcs/CLAIMS inst/zorfiles/mcs/STOCK books
touch 'menu one.fldp' order.fldp
export ZORROOT=$directory/inst/
failed=0

# completes EXPECTED WORD...: the last word is the one being completed; results joined by "|".
completes() {
    local expected=$1 IFS='|'
    shift
    COMP_WORDS=(grolof "$@") COMP_CWORD=$#
    _grolof
    [ "${COMPREPLY[*]}" = "$expected" ] && return
    echo "grolof $*: got '${COMPREPLY[*]}', expected '$expected'"
    failed=1
}

completes 'CLAIMS|STOCK' -g ''
completes 'STOCK' -rg S
completes 'books' -w b
completes '-x' -x
completes 'order.fldp' -g CLAIMS or
completes 'menu one.fldp' men
[ "$(complete -p bmsgrolof)" = 'complete -F _grolof bmsgrolof' ] || failed=1
exit $failed
