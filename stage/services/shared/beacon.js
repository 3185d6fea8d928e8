'use strict';

// Tells the stand-in service what this page sees of itself, so that a test can read it from the request log.
(() => {
  function draft() {
    const field = document.querySelector('[data-draft]') ?? document.querySelector('textarea, input:not([type]), input[type="text"], input[type="search"]');
    return field ? { field: field.id, length: field.value.length, text: field.value.slice(0, 200) } : null;
  }

  // Where the named things are, so that a hand from outside can point at them.
  function places() {
    return Object.fromEntries([...document.querySelectorAll('[id]')].map((thing) => {
      const { left, top, width, height } = thing.getBoundingClientRect();
      return [thing.id, [left, top, width, height].map(Math.round)];
    }));
  }

  function report(event, more = {}) {
    const state = {
      event,
      href: location.href,
      title: document.title,
      visibility: document.visibilityState,
      focused: document.hasFocus(),
      top: self === top,
      size: [innerWidth, innerHeight],
      scrollTop: Math.round(document.scrollingElement?.scrollTop ?? 0),
      draft: draft(),
      ...more,
    };
    navigator.sendBeacon('/_stage/beacon', JSON.stringify(state));
  }

  // Once it is on the screen: the second frame begins when the first has been drawn.
  const reportDrawn = (event) => requestAnimationFrame(() => requestAnimationFrame(() => report(event)));

  document.addEventListener('visibilitychange', () => {
    report(document.visibilityState);
    if (document.visibilityState === 'visible') reportDrawn('drawn');
  });
  addEventListener('focus', () => report('focus'));
  addEventListener('blur', () => report('blur'));
  addEventListener('pagehide', () => report('pagehide'));
  const loaded = () => {
    report('loaded', { places: places() });
    reportDrawn('painted');
  };
  if (document.readyState === 'complete') loaded();
  else addEventListener('load', loaded);
  self.stageReport = report;
})();
