# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Completion of moxctl and vboard for bash. What can follow is read from the program's own help, so it is never behind.

# The words that a help text offers: commands and options.
_moxboot_offers()
{
    awk '/^(Examples|Exit status):/ { exit }
         /^Subcommands:/ { commands = 1; next }
         /^[^ ]/ { commands = 0 }
         commands && match($0, /^  [a-z][a-z0-9-]*/) { print substr($0, 3, RLENGTH - 2) }
         match($0, /^  -[^ ]+/) { count = split(substr($0, 3, RLENGTH - 2), names, ",")
                                  for (i = 1; i <= count; ++i) print names[i] }'
}

# What can stand behind an option: the help's own list, nothing ("flag") or anything else ("file").
_moxboot_values()
{
    awk -v option="$1" '
        match($0, /^  -[^ ]+/) {
            count = split(substr($0, 3, RLENGTH - 2), names, ",")
            for (i = 1; i <= count; ++i) {
                if (names[i] != option) continue
                rest = substr($0, RLENGTH + 1)
                if (match(rest, /^ [A-Z]+:\{[^}]*\}/)) {
                    sub(/^[^{]*\{/, "", rest); sub(/\}.*/, "", rest); gsub(/,/, " ", rest); print rest
                } else if (rest ~ /^ [A-Z]+/) print "file"
                else print "flag"
                exit
            }
        }'
}

# Files: only they are shown, and ended, as such.
_moxboot_files()
{
    compopt -o filenames 2>/dev/null || true
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_moxboot()
{
    local program=$1 current=${COMP_WORDS[COMP_CWORD]} word help values at
    local -a verbs=() offers=()
    COMPREPLY=()
    help=$("$program" --help 2>/dev/null) || return 0
    for ((at = 1; at < COMP_CWORD; ++at)); do
        word=${COMP_WORDS[at]}
        if [ "$word" = -- ]; then
            # Somebody else's command line.
            if [ "$at" -eq $((COMP_CWORD - 1)) ]; then
                mapfile -t COMPREPLY < <(compgen -c -- "$current")
            else
                _moxboot_files "$current"
            fi
            return 0
        fi
        if _moxboot_offers <<<"$help" | grep -qx -- "$word" && [ "${word#-}" = "$word" ]; then
            verbs+=("$word")
            help=$("$program" "${verbs[@]}" --help 2>/dev/null) || return 0
        fi
    done
    word=${COMP_WORDS[COMP_CWORD - 1]}
    if [ "$COMP_CWORD" -gt 1 ] && [ "${word#-}" != "$word" ]; then
        values=$(_moxboot_values "$word" <<<"$help")
        if [ "$word" = --board ]; then
            values=$("$program" boards 2>/dev/null | awk '{ print $1 }')
        elif [ "$values" = file ]; then
            _moxboot_files "$current"
            return 0
        fi
        if [ -n "$values" ] && [ "$values" != flag ]; then
            mapfile -t COMPREPLY < <(compgen -W "$values" -- "$current")
            return 0
        fi
    fi
    mapfile -t offers < <(_moxboot_offers <<<"$help")
    mapfile -t COMPREPLY < <(compgen -W "${offers[*]}" -- "$current")
    # An argument that is neither command nor option may be a file.
    [ ${#COMPREPLY[@]} -gt 0 ] || _moxboot_files "$current"
}

complete -F _moxboot moxctl vboard
