#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# completion.sh BIN COMPLETION: bash completes the commands and options that the programs' help tells of, and what follows them; zsh,
# where it is there, offers the same commands.
set -eu
bin=$1 completion=$2
export PATH=$bin:$PATH
# shellcheck disable=SC1091
. "$completion/moxboot.bash"
wrong=0 count=0

# completed WORD...: what is offered for the last word, sorted.
completed()
{
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _moxboot "$1" "${!#}" "${*: -2:1}"
  printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort -u
}

# expect "WORDS ON THE LINE" EXPECTED...: "@" at the line's end stands for an empty word.
expect()
{
  local line=$1 expected got
  shift
  count=$((count + 1))
  expected=$(printf '%s\n' "$@" | LC_ALL=C sort -u)
  local -a words
  read -r -a words <<<"$line"
  [ "${words[-1]}" != @ ] || words[-1]=
  got=$(completed "${words[@]}")
  [ "$got" = "$expected" ] && return
  printf '"%s" is completed to\n%s\nand not to\n%s\n' "$line" "$got" "$expected"
  wrong=1
}

# Names that a help text tells of, read another way than the completion does.
verbs_of() { "$@" --help | sed -n '/^Subcommands:/,/^[^ S]/p' | grep -oP '^  \K[a-z][a-z0-9-]*'; }
options_of() { "$@" --help | sed '/^Examples:/,$d' | grep -oP '^  \K-\S+' | tr ',' '\n'; }

for program in moxctl vboard; do
  # shellcheck disable=SC2046
  expect "$program @" $(verbs_of "$program") $(options_of "$program")
  for verb in $(verbs_of "$program"); do
    below=$(verbs_of "$program" "$verb" || true)
    # shellcheck disable=SC2046,SC2086
    expect "$program $verb @" $below $(options_of "$program" "$verb")
  done
done
expect "moxctl bl" blackbox
expect "moxctl --json env g" get
expect "moxctl env se" set
expect "moxctl blackbox read --vi" --view
expect "moxctl blackbox read --view @" hex text raw
expect "moxctl plan --flash na" nand
expect "vboard run --board qs3540-m" qs3540-mpu qs3540-mpu-slave
expect "vboard fault a" add
expect "vboard fault add --err" --errno
cd "$completion"
expect "moxctl blackbox write crash --from moxb" moxboot.bash
expect "vboard exec -- test moxb" moxboot.bash
got=$(completed vboard exec -- moxct)
case $got in *moxctl*) ;; *) echo "a command behind \"--\" is not completed: $got"; wrong=1 ;; esac

if command -v zsh >/dev/null; then
  count=$((count + 1))
  # The functions of zsh's own completion stand for nothing but a list.
  got=$(zsh -f -c '
    _describe() { local name=$argv[-1]; print -rl -- "${(@P)name}"; }
    _files() { print files; }
    words=(moxctl ""); CURRENT=2
    . '"$completion"'/_moxboot.zsh
    words=(moxctl env ""); CURRENT=3
    _moxboot' | cut -d: -f1 | LC_ALL=C sort -u)
  # shellcheck disable=SC2046
  expected=$(printf '%s\n' $(verbs_of moxctl) $(options_of moxctl) $(verbs_of moxctl env) | LC_ALL=C sort -u)
  [ "$got" = "$expected" ] || { printf 'zsh offers\n%s\n' "$got"; wrong=1; }
fi
[ "$wrong" = 0 ] && echo "$count lines"
exit "$wrong"
