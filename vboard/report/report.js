// Draws what the tables tell.
const clock = (time, exact = false) => new Date(time * 1000).toISOString().slice(11, exact ? 23 : 19);
const span = (seconds) => seconds === 0 ? '0' : seconds < .001 ? `${Math.round(seconds * 1e6)} µs` : seconds < 1 ? `${(seconds * 1000).toFixed(seconds < .01 ? 1 : 0)} ms`
  : seconds < 120 ? `${seconds.toFixed(1)} s` : `${Math.round(seconds / 60)} min`;

// Time to place. Each stretch for which the board was on has its share of the width; the time between, in which
// nothing can happen, is a gap of fixed width.
function scale(from, to) {
  const off = 26, stretches = [];
  for (const boot of data.boots) {
    const end = boot.to ?? data.to, last = stretches.at(-1);
    if (last && boot.from - last.to < .5) last.to = Math.max(end, last.to);
    else stretches.push({ from: boot.from, to: end });
  }
  const on = stretches.reduce((sum, one) => sum + Math.max(one.to - one.from, 1e-3), 0);
  const gaps = Math.min(off * (stretches.length - 1), (to - from) / 3);
  const gap = stretches.length > 1 ? gaps / (stretches.length - 1) : 0;
  let at = from;
  for (const one of stretches) {
    one.left = at;
    one.right = at + Math.max(one.to - one.from, 1e-3) / on * (to - from - gaps);
    at = one.right + gap;
  }
  const place = (time) => {
    const one = stretches.findLast((each) => each.from <= time) ?? stretches[0];
    const share = (time - one.from) / Math.max(one.to - one.from, 1e-3);
    return one.left + Math.min(Math.max(share, 0), 1) * (one.right - one.left);
  };
  return { place, stretches };
}

const markOf = { 'soft reset': 'mark-soft', 'cold reset': 'mark-cold', 'watchdog reset': 'mark-watchdog', 'power cut': 'mark-cut' };

// A reset is a flag whose form, too, tells its kind.
function resetMark(boot, x, y) {
  const kind = markOf[boot.start];
  const form = { 'mark-soft': 'M0 -6 L6 0 L0 6 L-6 0 Z', 'mark-cold': 'M-5 -5 H5 V5 H-5 Z', 'mark-watchdog': 'M0 -6 L6 5 H-6 Z', 'mark-cut': 'M-6 -2 H-2 V-6 H2 V-2 H6 V2 H2 V6 H-2 V2 H-6 Z' }[kind];
  const reason = boot.reason === null ? '' : `, reason 0x${boot.reason.toString(16)}`;
  return shape('path', { class: kind, d: form, transform: `translate(${x} ${y})` },
    shape('title', {}, `${clock(boot.from)} ${boot.start}${reason}`));
}

function timeline(width) {
  const lanes = ['Power', 'Resets', 'Requests', 'Faults met', 'Installs', 'Feeds'];
  const left = width < 560 ? 0 : 92, top = left ? 4 : 18, step = left ? 34 : 44;
  const height = top + lanes.length * step + 22;
  const { place, stretches } = scale(left + 8, width - 8);
  const drawing = shape('svg', { width, height, viewBox: `0 0 ${width} ${height}` });
  const lane = (index) => top + index * step + step / 2;
  lanes.forEach((name, index) => {
    const y = lane(index);
    drawing.append(shape('line', { class: 'grid', x1: left, x2: width, y1: y + step / 2 - 1, y2: y + step / 2 - 1 }),
      shape('text', { class: 'lane', x: 0, y: left ? y + 4 : y - 13 }, name));
  });
  const most = Math.max(1, ...data.boots.flatMap((boot) => boot.activity));
  for (const boot of data.boots) {
    const end = boot.to ?? data.to, x = place(boot.from), w = Math.max(place(end) - x - 1, 1);
    const bar = shape('rect', { class: 'accent', x, y: lane(0) - 6, width: w, height: 12, rx: 2 },
      shape('title', {}, `${boot.start} ${clock(boot.from)}, ${boot.end} ${clock(end)}`));
    drawing.append(bar);
    if (boot.end === 'ended without a word')
      drawing.append(shape('rect', { class: 'mark-lost', x: x + w - 2, y: lane(0) - 9, width: 3, height: 18 }, shape('title', {}, boot.end)));
    if (markOf[boot.start]) drawing.append(resetMark(boot, x, lane(1)));
    const part = w / boot.activity.length;
    boot.activity.forEach((count, index) => {
      if (!count) return;
      const tall = Math.max(2, Math.sqrt(count / most) * (step - 14));
      drawing.append(shape('rect', { class: 'accent', x: x + index * part, y: lane(2) + step / 2 - 4 - tall, width: Math.max(part - .5, .8), height: tall },
        shape('title', {}, counted(count, 'request'))));
    });
  }
  for (const fault of data.faults.met)
    drawing.append(shape('rect', { class: 'warn', x: place(fault.time) - 1, y: lane(3) - 8, width: 2.5, height: 16 }, shape('title', {}, fault.words)));
  for (const one of data.installations) {
    const end = one.steps.at(-1).to ?? one.steps.at(-1).from, x = place(one.from);
    drawing.append(shape('rect', { class: one.ok ? 'good' : 'bad', x: x - 1, y: lane(4) - 6, width: Math.max(place(end) - x, 4), height: 12, rx: 2 },
      shape('title', {}, `${one.package ?? 'an installation'}: ${one.ok ? 'done' : 'with failures'}`)));
  }
  for (const [time] of data.watchdog.intervals)
    drawing.append(shape('rect', { class: 'accent', x: place(time) - .5, y: lane(5) - 6, width: 1.2, height: 12 }));
  for (const gap of data.watchdog.gaps) {
    const x = place(gap.from);
    drawing.append(shape('rect', { class: 'bad', x, y: lane(5) - 2, width: Math.max(place(gap.to) - x, 2), height: 4 },
      shape('title', {}, `${span(gap.ms / 1000)} without a feed`)));
  }
  let free = -1;
  for (const one of stretches) {
    if (one.left < free || one.left > width - 140) continue;
    drawing.append(shape('text', { x: one.left, y: height - 4 }, clock(one.from)));
    free = one.left + 70;
  }
  if (stretches.length && width - 8 - 62 > free)
    drawing.append(shape('text', { x: width - 8, y: height - 4, 'text-anchor': 'end' }, clock(stretches.at(-1).to)));
  return drawing;
}

function bars(width) {
  const rows = data.traffic.slice(0, 12), step = 26, wide = width >= 560;
  const left = wide ? Math.min(330, width * .42) : 0, high = wide ? step : 40;
  const height = rows.length * high + 4, most = Math.max(1, ...rows.map((row) => row.count));
  const room = width - left - 64;
  const drawing = shape('svg', { width, height, viewBox: `0 0 ${width} ${height}` });
  rows.forEach((row, index) => {
    const y = index * high + (wide ? 5 : 20), length = (count) => count / most * room;
    const name = [row.request, row.item || row.device].join(' ');
    drawing.append(
      shape('text', { class: 'ink', x: wide ? left - 12 : 0, y: wide ? y + 12 : y - 6, 'text-anchor': wide ? 'end' : 'start' }, name.length > 46 ? name.slice(0, 45) + '…' : name),
      shape('rect', { class: 'accent', x: left, y, width: Math.max(length(row.count), 1.5), height: 16, rx: 2 }, shape('title', {}, `${row.device} ${name}: ${row.count}`)),
      shape('text', { x: left + length(row.count) + 8, y: y + 12 }, row.count.toLocaleString('en')));
    if (row.failed) drawing.append(shape('rect', { class: 'bad', x: left, y: y + 12, width: Math.max(length(row.failed), 1.5), height: 4 }, shape('title', {}, `${row.failed} failed`)));
  });
  return drawing;
}

function intervals(width) {
  const height = 190, left = 58, right = width - 10, top = 12, bottom = height - 24;
  const all = data.watchdog.intervals, { place } = scale(left, right), late = data.watchdog.late_ms;
  const most = Math.max(late * 1.15, ...all.map((one) => one[1]), ...data.watchdog.gaps.map((one) => one.ms));
  const y = (ms) => bottom - Math.sqrt(ms / most) * (bottom - top);
  const drawing = shape('svg', { width, height, viewBox: `0 0 ${width} ${height}` });
  for (const ms of [0, late / 16, late / 4]) {
    drawing.append(shape('line', { class: 'grid', x1: left, x2: right, y1: y(ms), y2: y(ms) }),
      shape('text', { x: left - 8, y: y(ms) + 4, 'text-anchor': 'end' }, span(ms / 1000)));
  }
  drawing.append(shape('line', { class: 'late', x1: left, x2: right, y1: y(late), y2: y(late) }),
    shape('text', { x: right, y: y(late) + 14, 'text-anchor': 'end' }, `late from ${span(late / 1000)}`));
  for (const [time, ms] of all)
    drawing.append(shape('circle', { class: ms > late ? 'bad' : 'accent', cx: place(time), cy: y(ms), r: ms > late ? 4 : 2.5 },
      shape('title', {}, `${clock(time, true)}: ${span(ms / 1000)} after the one before`)));
  for (const gap of data.watchdog.gaps.filter((one) => one.bitten))
    drawing.append(shape('path', { class: 'bad', d: 'M0 -6 L6 5 H-6 Z', transform: `translate(${place(gap.to)} ${y(gap.ms)})` },
      shape('title', {}, `${span(gap.ms / 1000)}, then the watchdog reset the board`)));
  const first = data.boots[0]?.from;
  if (first) drawing.append(shape('text', { x: left, y: height - 6 }, clock(first)), shape('text', { x: right, y: height - 6, 'text-anchor': 'end' }, clock(data.to)));
  return drawing;
}

function legend(place, entries) {
  place.after(node('ul', { class: 'legend' }, ...entries.map(([colour, words]) =>
    node('li', {}, node('i', { style: `--mark: var(--${colour})` }), words))));
}

if (data.boots.length) {
  drawn(find('#timeline'), timeline);
  legend(find('#timeline'), [['accent', 'on; soft reset ◆'], ['warn', 'cold reset ■, fault met'], ['bad', 'watchdog reset ▲, gap, failure'], ['ink', 'power cut ✚'], ['good', 'installation done']]);
}
if (data.traffic.length) {
  drawn(find('#bars'), bars);
  legend(find('#bars'), [['accent', 'requests'], ['bad', 'of them failed']]);
}
if (data.watchdog.intervals.length || data.watchdog.gaps.length) drawn(find('#intervals'), intervals);
for (const empty of document.querySelectorAll('.drawing:empty')) empty.remove();
