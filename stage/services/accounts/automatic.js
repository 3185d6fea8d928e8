'use strict';

// All pages of one cookie jar ask at the same time when an application starts. The lock lets one of them be given the
// account; the others find its cookie and get the same.
(async () => {
  const ask = async () => (await fetch('/signin/automatic', { method: 'POST' })).json();
  const { id, name } = await (navigator.locks ? navigator.locks.request('sign-in', ask) : ask());
  document.documentElement.dataset.account = id;
  document.getElementById('greeting').textContent = `Signing in as ${name}…`;
  document.title = `Signing in as ${name}`;
  document.getElementById('account').value = id;
  setTimeout(() => document.getElementById('form').submit(), 500);
})();
