#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# links.sh PROJECT: what documents link to is there, and so are the folders and files of the project that they name.
set -eu
cd "$1"
wrong=0 count=0
for page in README.md docs/*.md; do
  folder=$(dirname "$page")
  while IFS= read -r target; do
    count=$((count + 1))
    [ -e "$folder/${target%%#*}" ] || [ -z "${target%%#*}" ] || { echo "$page links to $target"; wrong=1; }
  done < <(grep -oP '\]\(\K(?!https?:)[^)]+' "$page" || true)
  while IFS= read -r name; do
    count=$((count + 1))
    [ -e "$name" ] || { echo "$page names $name"; wrong=1; }
  done < <(grep -oP '`\K(src|include|vboard|platform|tools|tests|scripts|docs|man|cmake|completion|bench)/[A-Za-z0-9_./-]*(?=`)' "$page" || true)
done
[ "$count" -ge 20 ] || { echo "only $count names were looked at"; exit 1; }
[ "$wrong" = 0 ] && echo "$count names"
exit "$wrong"
