'use strict';

// What all stand-in pages share: the signed-in person, the title bar, and small helpers.
const stage = (() => {
  const { account = '', name = '', email = '' } = document.documentElement.dataset;

  function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [key, value] of Object.entries(attributes)) {
      if (key.startsWith('on')) made.addEventListener(key.slice(2), value);
      else if (value === true) made.setAttribute(key, '');
      else if (value !== false && value !== undefined) made.setAttribute(key, value);
    }
    made.append(...children);
    return made;
  }

  function post(path, parameters = {}) {
    return fetch(path + '?' + new URLSearchParams(parameters), { method: 'POST' });
  }

  // The same numbers for the same person at every visit.
  function seeded(text) {
    let state = [...text].reduce((sum, character) => (sum * 31 + character.charCodeAt(0)) >>> 0, 7);
    return (below) => {
      state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
      return Math.floor((state / 4294967296) * below);
    };
  }

  function fillBar(bar) {
    const title = bar.dataset.title;
    const here = encodeURIComponent(location.href);
    bar.append(
      element('span', { class: 'mark' }),
      element('h1', {}, title),
      element('span', { class: 'tag', title: 'A page that stands in for the real service' }, 'stand-in'),
      bar.dataset.search
        ? element('input', { class: 'search', type: 'search', id: 'search', placeholder: bar.dataset.search, 'aria-label': bar.dataset.search })
        : element('span', { class: 'search' }),
      element('details', { class: 'person' },
        element('summary', {}, element('span', { class: 'name' }, name), element('span', { class: 'avatar' }, name.slice(0, 1))),
        element('div', { class: 'menu' },
          element('strong', {}, name), element('span', { class: 'soft' }, email),
          element('a', { href: 'https://myaccount.google.com/' }, 'Manage account'),
          element('a', { id: 'sign-out', href: 'https://accounts.google.com/Logout?continue=' + here }, 'Sign out'))));
  }

  // Marks the entry of the side list whose address this is.
  function markPlace() {
    const links = [...document.querySelectorAll('.side a:not(.button)')];
    const here = links.find((link) => link.href === location.href) ?? links.find((link) => link.hasAttribute('aria-current'));
    for (const link of links) link.toggleAttribute('aria-current', link === here);
  }

  for (const bar of document.querySelectorAll('.bar')) fillBar(bar);
  markPlace();
  addEventListener('hashchange', markPlace);
  return { account, name, email, element, post, seeded };
})();
