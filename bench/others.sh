#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# others.sh BIN STATE TABLE: the same work done by moxctl and by what one would use otherwise, timed in one run. Writes a
# row for each into TABLE: subject, who, median in ms, what is different. STATE is the folder of a next generation board with NAND
# flash that is up; the others work on its files from outside.
set -eu
bin=$1 state=$2 table=$3
export VBOARD_STATE=$state
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
: >"$table"
on_board="$bin/vboard exec --"
inside=$state/tree/tmp # there: /tmp

# contest SUBJECT PREPARE (WHO COMMAND NOTE)...
contest() {
  local subject=$1 prepare=$2 names=() commands=() notes=() i=0 line
  shift 2
  while [ $# -gt 0 ]; do
    names+=("$1") commands+=("$2") notes+=("$3")
    shift 3
  done
  hyperfine --shell=none --warmup 2 --runs 15 --prepare "$prepare" --export-csv "$work/times.csv" --style none \
    "${commands[@]}" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  while IFS= read -r line; do
    # Behind the command, which may hold commas: mean, stddev, median, user, system, min, max.
    awk -F, -v subject="$subject" -v who="${names[i]}" -v note="${notes[i]}" \
      '{ printf "%s\t%s\t%.2f\t%s\n", subject, who, $(NF - 4) * 1000, note }' <<<"$line" >>"$table"
    i=$((i + 1))
  done < <(tail -n +2 "$work/times.csv")
}

# Ten at a time: so what starts a program on the board counts little.
echo "for i in 1 2 3 4 5 6 7 8 9 10; do $bin/moxctl env get bootdelay; done >/dev/null" >"$inside/get"
echo "for i in 1 2 3 4 5 6 7 8 9 10; do fw_printenv -c $state/fw_env.config -n bootdelay; done >/dev/null" >"$work/get"
contest "read a boot variable, ten times" true \
  moxctl "$on_board sh /tmp/get" "asks the running driver" \
  fw_printenv "sh $work/get" "reads and checks the saved image"

echo "for i in 1 2 3 4 5 6 7 8 9 10; do $bin/moxctl env set bench \$i && $bin/moxctl env save; done >/dev/null" >"$inside/save"
echo "for i in 1 2 3 4 5 6 7 8 9 10; do fw_setenv -c $state/fw_env.config bench \$i; done >/dev/null" >"$work/save"
contest "set and save a boot variable, ten times" true \
  moxctl "$on_board sh /tmp/save" "two programs; the driver keeps two copies of the image" \
  fw_setenv "sh $work/save" "one program; the copy that is not in use"

"$bin/moxctl" package sample "$inside/bench.moxpkg" --size "$((4 << 20))" >/dev/null
install="$bin/moxctl install /tmp/bench.moxpkg --root /opt/moxv8/install"
$on_board $install >"$work/installed"
mapfile -t files < <(cd "$state/tree/boot" && find . -type f -printf 'boot/%f\n' | sort)
mapfile -t links < <(cd "$state/tree/opt/moxv8" && find . -type l -printf '%P\t%l\n' | sort)
[ "${#files[@]}" -gt 0 ] && [ "${#links[@]}" -gt 0 ] || { cat "$work/installed"; exit 1; }
mkdir -p "$work/out"
take="bsdtar -x -C $work/out -f $inside/bench.moxpkg ${files[*]}"
contest "install ${#files[@]} boot files of 4 MiB, ${#links[@]} links" "sh -c 'rm -rf $state/tree/boot/* $work/out/*'" \
  moxctl "$on_board $install --quiet" "the whole package checked, each file flushed and put in place whole; links; flash" \
  bsdtar "$take" "the boot files alone, nothing checked, nothing flushed" \
  "bsdtar and sync" "sh -c '$take && sync $work/out/boot/*'" "flushed, not checked"

# The same links by programs. The library's own walk stands in the table of the goals.
mkdir -p "$work/links" "$work/stow/package"
{
  echo "cd $work/links"
  printf '%s\n' "${links[@]}" | awk -F'\t' -v q="'" '{ gsub("/", "-", $1); printf "ln -sfn %s%s%s %s%s%s\n", q, $2, q, q, $1, q }'
} >"$work/ln"
for i in "${!links[@]}"; do : >"$work/stow/package/file-$i"; done
contest "make ${#links[@]} links alone" "sh -c 'rm -rf $work/links && mkdir $work/links'" \
  "ln in a loop" "sh $work/ln" "no choice by board" \
  stow "stow -d $work/stow -t $work/links package" "no choice by board"
