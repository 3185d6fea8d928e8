'use strict';

(() => {
  const { element, data } = stage;
  const wall = document.getElementById('wall');
  const search = document.getElementById('search');
  const note = ({ title, text }) => element('article', { class: 'card note' }, element('h3', {}, title), element('p', {}, text));

  function list() {
    const wanted = search.value.toLowerCase();
    wall.replaceChildren(...data.notes.filter(({ title, text }) => `${title} ${text}`.toLowerCase().includes(wanted)).map(note));
  }

  document.getElementById('new').addEventListener('submit', (event) => {
    event.preventDefault();
    const [title, text] = [document.getElementById('title').value, document.getElementById('note').value];
    if (title || text) data.notes.unshift({ title, text });
    event.target.reset();
    list();
  });
  search.addEventListener('input', list);
  list();
})();
