'use strict';

(() => {
  const { element, data } = stage;
  const main = document.getElementById('main');
  const search = document.getElementById('search');

  const row = ({ name, email, phone }) => element('div', { class: 'contact' },
    element('span', { class: 'avatar' }, name[0]), element('strong', { class: 'grow cut' }, name),
    element('a', { class: 'email cut', href: 'mailto:' + email }, email), element('a', { class: 'phone', href: 'tel:' + phone.replace(/ /g, '') }, phone));

  function list() {
    const rows = element('div', { class: 'rows' });
    const fill = () => rows.replaceChildren(...data.people.filter(({ name }) => name.toLowerCase().includes(search.value.toLowerCase())).map(row));
    search.dataset.draft = '';
    search.addEventListener('input', fill);
    fill();
    main.append(element('header', {}, element('h2', {}, 'Everyone'), element('small', {}, `${data.people.length} people`)), rows);
  }

  function form() {
    const field = (id, type, label) => element('input', { id, type, placeholder: label, 'aria-label': label, 'data-draft': id === 'name' });
    document.title = 'Contacts - New contact';
    main.append(element('header', {}, element('h2', {}, 'New contact')),
      element('form', { class: 'padded stack', action: '/' }, field('name', 'text', 'Name'), field('email', 'email', 'E-mail'), field('phone', 'tel', 'Telephone'),
        element('textarea', { rows: 4, placeholder: 'Notes', 'aria-label': 'Notes' }), element('div', {}, element('button', { class: 'primary' }, 'Save'))));
  }

  if (location.pathname === '/new') form();
  else list();
})();
