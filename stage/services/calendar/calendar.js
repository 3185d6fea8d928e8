'use strict';

(() => {
  const { element, data } = stage;
  const main = document.getElementById('main');
  const hour = 46; // pixels
  const first = 4; // the day is shown from here
  const kinds = { eventedit: 'New event', tasks: 'New task', appointment: 'New appointment schedule' };
  const kind = location.pathname.split('/').pop();
  const monday = new Date();
  monday.setDate(monday.getDate() - ((monday.getDay() + 6) % 7));

  const clock = (time) => `${Math.floor(time)}:${String(Math.round((time % 1) * 60)).padStart(2, '0')}`;
  const event = ({ start, end, title }) => element('div', { class: 'event', style: `top:${(start - first) * hour}px;height:${(end - start) * hour - 3}px` },
    element('strong', { class: 'cut' }, title), `${clock(start)} – ${clock(end)}`);

  function day(offset) {
    const date = new Date(monday);
    date.setDate(monday.getDate() + offset);
    const today = date.toDateString() === new Date().toDateString();
    return element('div', { class: 'day' + (today ? ' today' : '') },
      element('small', {}, date.toLocaleDateString('en', { weekday: 'short' })), ' ', element('strong', {}, String(date.getDate())));
  }

  function week() {
    const lanes = Array.from({ length: 7 }, (_, offset) => element('div', { class: 'lane' }, ...data.events.filter((one) => one.day === offset).map(event)));
    const quick = element('input', { id: 'quick', class: 'quick', type: 'text', 'data-draft': true, placeholder: 'Add an event at noon today', 'aria-label': 'Add an event' });
    quick.addEventListener('keydown', ({ key }) => {
      if (key !== 'Enter' || !quick.value) return;
      lanes[(new Date().getDay() + 6) % 7].append(event({ start: 12, end: 13, title: quick.value }));
      quick.value = '';
    });
    const search = document.getElementById('search');
    search.addEventListener('input', () => {
      for (const shown of main.querySelectorAll('.event')) shown.hidden = !shown.textContent.toLowerCase().includes(search.value.toLowerCase());
    });
    main.replaceChildren(
      element('header', {}, element('h2', {}, monday.toLocaleDateString('en', { month: 'long', year: 'numeric' })), quick),
      element('div', { class: 'week' },
        element('div', { class: 'corner' }), ...Array.from({ length: 7 }, (_, offset) => day(offset)),
        element('div', { class: 'hours' }, ...Array.from({ length: 24 - first }, (_, at) => element('span', {}, at ? at + first + ':00' : ''))), ...lanes));
  }

  function form(title) {
    document.title = `Calendar - ${title}`;
    main.replaceChildren(
      element('header', {}, element('h2', {}, title), element('a', { class: 'button', href: '/calendar/u/0/r' }, 'Back to the week')),
      element('form', { class: 'padded stack', action: '/calendar/u/0/r' },
        element('input', { type: 'text', id: 'title', 'data-draft': true, placeholder: 'Title', 'aria-label': 'Title', autofocus: true }),
        element('div', { class: 'row' }, element('input', { type: 'date', 'aria-label': 'Day' }), element('input', { type: 'time', 'aria-label': 'Start' })),
        element('textarea', { rows: 6, placeholder: 'Notes', 'aria-label': 'Notes' }),
        element('div', {}, element('button', { class: 'primary' }, 'Save'))));
  }

  if (kinds[kind]) form(kinds[kind]);
  else week();
})();
