#compdef moxctl vboard
# SPDX-License-Identifier: Apache-2.0
# Completion of moxctl and vboard for zsh. What can follow is read from the program's own help, so it is never behind.

# The commands and options of a help text, each with what it is there for behind a colon.
_moxboot_offers() {
  awk '/^(Examples|Exit status):/ { exit }
       /^Subcommands:/ { commands = 1; next }
       /^[^ ]/ { commands = 0 }
       commands && match($0, /^  [a-z][a-z0-9-]*/) { name = substr($0, 3, RLENGTH - 2); rest = substr($0, RLENGTH + 1)
                                                     sub(/^ +/, "", rest); print name ":" rest }
       match($0, /^  -[^ ]+/) { count = split(substr($0, 3, RLENGTH - 2), names, ","); rest = substr($0, RLENGTH + 1)
                                sub(/^.*  +/, "", rest); for (i = 1; i <= count; ++i) print names[i] ":" rest }'
}

_moxboot() {
  local program=$words[1] help word at
  local -a verbs offers names
  help=$($program --help 2>/dev/null) || return 1
  for ((at = 2; at < CURRENT; ++at)); do
    word=$words[at]
    if [[ $word == -- ]]; then
      # Somebody else's command line.
      words=("${(@)words[at+1,-1]}")
      (( CURRENT -= at ))
      _normal
      return
    fi
    names=("${(@f)$(_moxboot_offers <<<$help)}")
    names=("${(@)names%%:*}")
    if [[ $word != -* && ${names[(Ie)$word]} -gt 0 ]]; then
      verbs+=($word)
      help=$($program $verbs --help 2>/dev/null) || return 1
    fi
  done
  if [[ ${words[CURRENT-1]} == --board ]]; then
    offers=("${(@f)$($program boards 2>/dev/null | sed 's/^\([^ ]*\) */\1:/')}")
  else
    offers=("${(@f)$(_moxboot_offers <<<$help)}")
  fi
  _describe -t commands "$program" offers || _files
}

_moxboot "$@"
