// What every page's script begins with: the data, and making nodes.
const data = JSON.parse(document.getElementById('data').textContent);
const find = (selector, within = document) => within.querySelector(selector);

function filled(made, attributes, children) {
  for (const [name, value] of Object.entries(attributes || {})) {
    if (value === null || value === undefined || value === false) continue;
    if (typeof value === 'function') made.addEventListener(name, value);
    else made.setAttribute(name, value === true ? '' : value);
  }
  made.append(...children.filter((child) => child !== null && child !== undefined));
  return made;
}
const node = (name, attributes, ...children) => filled(document.createElement(name), attributes, children);
const shape = (name, attributes, ...children) =>
  filled(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);

// A drawing is as wide as its place, so that its texts keep their size, and is made anew when that changes.
function drawn(place, draw) {
  if (!place) return;
  let width = 0;
  const again = () => {
    const now = Math.floor(place.clientWidth);
    if (now === width || now === 0) return;
    width = now;
    place.replaceChildren(draw(width));
  };
  again();
  new ResizeObserver(again).observe(place);
}

const counted = (count, one, many = one + 's') => `${count.toLocaleString('en')} ${count === 1 ? one : many}`;
