// What goes wrong on the page shows on its root element: how often, and the first time in words.
(() => {
  const root = document.documentElement;
  const note = (words) => {
    root.dataset.errors = String(Number(root.dataset.errors) + 1);
    if (!root.dataset.firstError) root.dataset.firstError = words;
  };
  addEventListener('error', (event) => note(event.message || 'a resource could not be loaded'), true);
  addEventListener('unhandledrejection', (event) => note(String(event.reason)));
  addEventListener('securitypolicyviolation', (event) => note('refused: ' + event.violatedDirective));
})();
