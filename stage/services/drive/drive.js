'use strict';

(() => {
  const { element, data } = stage;
  const files = document.getElementById('files');
  const search = document.getElementById('search');
  search.dataset.draft = '';

  function row(file) {
    const place = `/_stage/download/${encodeURIComponent(file.name)}.bin?size=${file.kilobytes * 1024}`;
    const name = element('a', { class: 'name grow cut', href: 'https://docs.google.com/document/d/' + encodeURIComponent(file.name), target: '_blank' }, file.name);
    const rename = () => {
      const wanted = prompt('A new name for this file', file.name);
      if (wanted) name.textContent = file.name = wanted;
    };
    return element('div', { class: 'file' }, name,
      element('span', { class: 'kind' }, file.kind), element('span', { class: 'owner cut' }, file.owner),
      element('span', { class: 'size' }, file.kilobytes < 1000 ? `${file.kilobytes} kB` : `${(file.kilobytes / 1000).toFixed(1)} MB`),
      element('button', { onclick: rename }, 'Rename'), element('a', { class: 'download', href: place }, 'Download'));
  }

  function list() {
    const wanted = search.value.trim().toLowerCase();
    const shown = { '/drive/shared': data.files.filter(({ owner }) => owner !== 'me'), '/drive/bin': [] }[location.pathname] ?? data.files;
    files.replaceChildren(...shown.filter(({ name }) => name.toLowerCase().includes(wanted)).map(row));
  }

  for (const id of ['upload', 'picture']) {
    document.getElementById(id).addEventListener('change', ({ target }) => {
      const chosen = [...target.files].map(({ name, size }) => ({ name, size }));
      stageReport('files-chosen', { input: id, files: chosen });
      data.files.unshift(...chosen.map(({ name, size }) => ({ name, kind: 'Upload', owner: 'me', kilobytes: Math.ceil(size / 1024) })));
      list();
    });
  }
  search.addEventListener('input', list);
  list();
})();
