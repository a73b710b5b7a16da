# SPDX-License-Identifier: Apache-2.0
# A picture of recorded deltas. Called with the variables deltas, picture, from and to (ns).
set terminal svg size 960,540 font "sans-serif,14" background rgb "white"
set output picture
set title "Times between two readings of the clock, one walk over 128 KiB between them"
set xlabel "delta (ns)"
set ylabel "how often"
set logscale y
set grid y lc rgb "#dddddd"
set style fill solid 0.8 noborder
unset key
width = (to - from) / 240.0 < 1 ? 1 : (to - from) / 240.0
set boxwidth width
set xrange [from:to]
plot deltas using (width * floor($1 / width)):(1) smooth frequency with boxes lc rgb "#2f6f9f"
