'use strict';

// Tells the stand-in service what this page sees of itself, so that a test can read it from the request log.
(() => {
  function draft() {
    const field = document.querySelector('[data-draft]') ?? document.querySelector('textarea, input:not([type]), input[type="text"], input[type="search"]');
    return field ? { field: field.id, length: field.value.length, text: field.value.slice(0, 200) } : null;
  }

  function report(event, more = {}) {
    const state = {
      event,
      href: location.href,
      title: document.title,
      visibility: document.visibilityState,
      focused: document.hasFocus(),
      top: self === top,
      scrollTop: Math.round(document.scrollingElement?.scrollTop ?? 0),
      draft: draft(),
      ...more,
    };
    navigator.sendBeacon('/_stage/beacon', JSON.stringify(state));
  }

  document.addEventListener('visibilitychange', () => report(document.visibilityState));
  addEventListener('focus', () => report('focus'));
  addEventListener('blur', () => report('blur'));
  addEventListener('pagehide', () => report('pagehide'));
  if (document.readyState === 'complete') report('loaded');
  else addEventListener('load', () => report('loaded'));
  self.stageReport = report;
})();
