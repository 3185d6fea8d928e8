'use strict';

(() => {
  const { element, data } = stage;
  const main = document.getElementById('main');
  const [kind, step, name] = location.pathname.slice(1).split('/');
  const words = { document: 'document', spreadsheets: 'sheet', presentation: 'slides' };
  const columns = 'ABCDEF';

  function sheetOfCells() {
    const cells = [element('span', {}), ...[...columns].map((letter) => element('span', {}, letter))];
    for (let row = 1; row <= 40; ++row) cells.push(element('span', {}, String(row)), ...[...columns].map((letter) => element('input', { id: letter + row, 'aria-label': letter + row, type: 'text' })));
    return element('div', { class: 'grid' }, ...cells);
  }

  const bodies = {
    document: (text) => element('textarea', { class: 'sheet', id: 'text', 'data-draft': true, placeholder: 'Write here', 'aria-label': 'Text', autofocus: true }, text),
    spreadsheets: sheetOfCells,
    presentation: () => element('div', {}, ...['First slide', 'Second slide', 'Third slide'].map((text) => element('div', { class: 'slide' }, element('input', { type: 'text', placeholder: text, 'aria-label': text })))),
  };

  function list() {
    const search = document.getElementById('search');
    const rows = element('div', { class: 'rows' });
    const fill = () => rows.replaceChildren(...data.files.filter((file) => file.name.toLowerCase().includes(search.value.toLowerCase()))
      .map((file) => element('a', { href: '/document/d/' + encodeURIComponent(file.name) }, element('strong', { class: 'grow' }, file.name), element('small', {}, file.kind))));
    search.addEventListener('input', fill);
    fill();
    main.append(element('header', {}, element('h2', {}, 'Recent documents')), rows);
  }

  if (!bodies[kind]) {
    list();
    return;
  }
  const title = step === 'd' && name ? decodeURIComponent(name) : `Untitled ${words[kind]}`;
  document.title = `${title} - Docs`;
  main.append(
    element('header', {}, element('input', { id: 'name', type: 'text', value: title, 'aria-label': 'Name' }),
      element('button', { onclick: () => print() }, 'Print')),
    bodies[kind](step === 'd' ? data.paragraph(12) : ''));
})();
