'use strict';

(() => {
  const { element, data } = stage;
  const list = document.getElementById('tasks');

  function task(text) {
    const words = element('span', { class: 'grow' }, text);
    const box = element('input', { type: 'checkbox', 'aria-label': text, onchange: () => words.classList.toggle('done', box.checked) });
    const row = element('li', { class: 'task' }, box, words,
      element('button', { onclick: () => { words.textContent = prompt('What is to be done?', words.textContent) || words.textContent; } }, 'Rename'),
      element('button', { onclick: () => { if (confirm(`Delete “${words.textContent}”?`)) row.remove(); } }, 'Delete'));
    return row;
  }

  list.append(...data.tasks.map(task));
  document.getElementById('new').addEventListener('submit', (event) => {
    event.preventDefault();
    const field = document.getElementById('task');
    if (field.value) list.prepend(task(field.value));
    field.value = '';
  });
  document.getElementById('clear').addEventListener('click', () => {
    const done = [...list.querySelectorAll('.task:has(:checked)')];
    done.forEach((row) => row.remove());
    alert(done.length === 1 ? 'One task was cleared.' : `${done.length} tasks were cleared.`);
  });
})();
