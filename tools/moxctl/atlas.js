// Filter, details and comparison.
const boards = data.boards;
const yes = (value) => value === true ? 'yes' : value === false ? 'no' : value ?? '–';
const link = (at) => data.links[at];

// All that a board takes, by its kind.
const filesOf = (board) => [...board.boot_files.map((at) => data.boot_files[at]),
  ...board.links.flatMap((at) => [link(at).source, link(at).destination]),
  ...board.preload.map((at) => data.preload[at].file)];
const factsOf = (board) => [['Hard type', board.hard_type], ['Role', board.role], ['OS type', board.os_type], ['Start-up flash', board.flash],
  ['Product family', board.family_type], ['Package type', board.pack_type], ['Service type', board.service_type],
  ['Logic id', board.logic_id], ['Ptn mode', board.ptn], ['Flash is written', board.flash_update]].map(([name, value]) => [name, String(yes(value))]);

// ---- boards: filter and details ----

const rows = [...document.querySelectorAll('#boards-table tbody tr')];
const haystacks = boards.map((board) => [board.name, board.description, board.hard_type, board.role, ...board.families.flatMap((at) => [data.families[at].name, data.families[at].meaning])].join('\n').toLowerCase());
const files = boards.map((board) => [...new Set(filesOf(board))]);

function marked(text, part) {
  const at = text.toLowerCase().indexOf(part);
  return part && at >= 0 ? [text.slice(0, at), node('mark', {}, text.slice(at, at + part.length)), text.slice(at + part.length)] : [text];
}

function described(pairs) {
  return node('dl', { class: 'facts' }, ...pairs.map(([name, value]) => node('div', {}, node('dt', {}, name), node('dd', {}, value === '' ? '–' : String(value)))));
}

const list = (entries, style = '') => entries.length ? node('ul', { class: `files ${style}` }, ...entries.map((entry) => node('li', {}, entry))) : node('p', { class: 'soft' }, 'none');

function details(board) {
  return [
    node('p', { class: 'soft' }, board.description),
    node('p', {}, node('button', { type: 'button', click: () => choose(0, board) }, 'Compare: left'), ' ',
      node('button', { type: 'button', click: () => choose(1, board) }, 'Compare: right')),
    described(factsOf(board)),
    node('h3', {}, 'Families'), list(board.families.map((at) => data.families[at].meaning), 'prose'),
    node('h3', {}, 'Boot files'), list(board.boot_files.map((at) => data.boot_files[at])),
    node('h3', {}, 'Links'), list(board.links.map((at) => `${link(at).destination} → ${link(at).source}`)),
    node('h3', {}, 'Start-up flash'), list(board.preload.map((at) => `${data.preload[at].kind}: ${data.preload[at].file}`)),
    node('h3', {}, 'Trust'), described(Object.entries(board.trust)),
  ];
}

function toggle(index, button) {
  const open = button.getAttribute('aria-expanded') !== 'true';
  button.setAttribute('aria-expanded', String(open));
  const next = rows[index].nextElementSibling;
  if (next?.classList.contains('detail')) next.remove();
  if (open) rows[index].after(node('tr', { class: 'detail', id: `detail-${index}` }, node('td', { colspan: rows[index].cells.length }, ...details(boards[index]))));
}

rows.forEach((row, index) => {
  const cell = row.cells[0];
  const button = node('button', { type: 'button', class: 'name', 'aria-expanded': 'false', click: () => toggle(index, button) }, boards[index].name);
  cell.replaceChildren(button, node('ul', { class: 'hits' }));
});

const search = node('input', { type: 'search', id: 'filter', placeholder: 'gl6264, 0x9002, ospkg, SPI flash …', input: filter, autocomplete: 'off' });
const kind = node('select', { id: 'kind', change: filter }, node('option', { value: '' }, 'all'), node('option', { value: 'named' }, 'named boards'), node('option', { value: 'types' }, 'hard types'));
const told = node('output', { id: 'shown', for: 'filter kind', 'aria-live': 'polite' });
find('#controls').append(node('div', {}, node('label', { for: 'filter' }, 'Board, family or file'), search), node('div', {}, node('label', { for: 'kind' }, 'Show'), kind), told);

function filter() {
  const part = search.value.trim().toLowerCase(), most = 3;
  let shown = 0;
  rows.forEach((row, index) => {
    const board = boards[index];
    const hits = part ? files[index].filter((file) => file.toLowerCase().includes(part)) : [];
    const wanted = (!part || haystacks[index].includes(part) || hits.length > 0) && (!kind.value || board.named === (kind.value === 'named'));
    row.classList.toggle('closed', !wanted);
    shown += wanted ? 1 : 0;
    const next = row.nextElementSibling;
    if (next?.classList.contains('detail')) next.classList.toggle('closed', !wanted);
    find('.name', row).replaceChildren(...marked(board.name, part));
    find('.hits', row).replaceChildren(...hits.slice(0, most).map((file) => node('li', {}, ...marked(file, part))),
      ...(hits.length > most ? [node('li', {}, `and ${counted(hits.length - most, 'more file')}`)] : []));
  });
  told.value = `${counted(shown, 'board')} of ${boards.length}`;
}
filter();

// ---- comparison ----

const pickers = ['left', 'right'].map((side) => node('select', { id: side, change: compare },
  ...[['Named boards', true], ['Hard types', false]].map(([label, named]) => node('optgroup', { label },
    ...boards.flatMap((board, index) => board.named === named ? [node('option', { value: index }, board.name)] : [])))));
const summary = node('p', { class: 'summary', id: 'summary', role: 'status' });
const result = node('div', { id: 'differences' });
const swap = node('button', { type: 'button', id: 'swap', 'aria-label': 'Swap the two boards', click: () => { [pickers[0].value, pickers[1].value] = [pickers[1].value, pickers[0].value]; compare(); } }, '⇄');
find('#comparison').append(node('div', { class: 'pickers' },
  node('div', {}, node('label', { for: 'left' }, 'Left'), pickers[0]), swap, node('div', {}, node('label', { for: 'right' }, 'Right'), pickers[1])), summary, result);

function choose(side, board) {
  pickers[side].value = String(boards.indexOf(board));
  compare();
  pickers[side].focus();
  find('#compare').scrollIntoView();
}

// Rows of one part: [name, left, right]; what has no value on a side is null there.
const parts = [
  ['Board', (one) => factsOf(one)],
  ['Families', (one) => one.families.map((at) => [data.families[at].meaning, 'yes'])],
  ['Boot files', (one) => one.boot_files.map((at) => [data.boot_files[at], 'extracted'])],
  ['Links', (one) => one.links.map((at) => [link(at).destination, link(at).source]), 'path'],
  ['Start-up flash', (one) => one.preload.map((at) => [data.preload[at].file, data.preload[at].kind])],
  ['Trust', (one) => Object.entries(one.trust).map(([name, value]) => [name, String(value)])],
];

function compare() {
  const [left, right] = pickers.map((picker) => boards[picker.value]);
  let all = 0, differing = 0;
  const bodies = parts.map(([title, pairs, style]) => {
    const [one, other] = [new Map(pairs(left)), new Map(pairs(right))];
    const names = [...new Set([...one.keys(), ...other.keys()])];
    const changed = names.filter((name) => one.get(name) !== other.get(name));
    all += names.length;
    differing += changed.length;
    const cell = (value, board) => node('td', { class: value === undefined ? 'absent' : style, 'data-label': board.name }, value === undefined ? '–' : value === '' ? 'none' : value);
    return changed.length === 0 ? null : node('tbody', { 'data-part': title },
      node('tr', {}, node('th', { scope: 'rowgroup', colspan: 3 }, `${title}: ${changed.length} of ${names.length}`)),
      ...changed.map((name) => node('tr', { class: 'row' }, node('th', { scope: 'row', class: style }, name), cell(one.get(name), left), cell(other.get(name), right))));
  });
  summary.textContent = left === right ? 'Choose two different boards.' : differing === 0 ? `${left.name} and ${right.name} are treated alike.` : `${differing} of ${counted(all, 'row')} differ.`;
  summary.dataset.differing = differing;
  result.replaceChildren(differing === 0 ? '' : node('table', { class: 'difference' }, node('caption', {}, 'What differs'),
    node('thead', {}, node('tr', {}, node('th', { scope: 'col' }, 'What'), node('th', { scope: 'col' }, left.name), node('th', { scope: 'col' }, right.name))),
    ...bodies.filter((body) => body !== null)));
}

// At first two of a kind, of which the differences are worth a look.
const first = boards.findIndex((board, at) => board.named && boards.some((other, behind) => behind > at && other.named && other.hard_type === board.hard_type));
const second = boards.findIndex((board, at) => at > first && board.named && board.hard_type === boards[first]?.hard_type);
pickers[0].value = String(Math.max(first, 0));
pickers[1].value = String(second > first ? second : Math.min(1, boards.length - 1));
compare();
