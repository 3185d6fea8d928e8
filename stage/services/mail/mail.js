'use strict';

(() => {
  const { element, post, data } = stage;
  const byId = (id) => document.getElementById(id);
  const main = byId('main');
  const query = new URLSearchParams(location.search);
  const dayBefore = (days) => new Date(Date.now() - days * 86_400_000).toLocaleDateString('en', { day: 'numeric', month: 'short' });
  const shownAt = (place) => (place < 4 ? `${9 - place}:${20 + 7 * place}` : dayBefore(1 + Math.floor(place / 4)));
  let state = { unread: 0, top: 0, read: [], arrivals: [] };
  let announced = null; // ids of the arrivals that were there before this page, or have been announced

  const isUnread = (mail) => (mail.arrival ? !mail.arrival.read : mail.place < state.top && !state.read.includes(mail.place));

  function conversations() {
    const arrived = state.arrivals.map((arrival) => ({ ...arrival, text: 'This message came just now.', arrival })).reverse();
    return [...arrived, ...data.mail.map((mail, place) => ({ ...mail, place }))];
  }

  const folders = {
    starred: () => conversations().filter(({ place }) => place % 7 === 1),
    sent: () => [],
    drafts: () => [],
  };

  function showTitle() {
    const count = state.unread ? ` (${state.unread})` : '';
    document.title = `Inbox${count} - ${stage.email} - Mail`;
    byId('count').textContent = state.unread || '';
  }

  function list() {
    const wanted = byId('search').value.trim().toLowerCase();
    const found = (folders[location.hash.slice(1)] ?? conversations)().filter((mail) => `${mail.from} ${mail.subject} ${mail.text}`.toLowerCase().includes(wanted));
    main.replaceChildren(
      element('header', {}, element('h2', {}, wanted ? 'Search' : document.querySelector('.side [aria-current]').firstChild.textContent.trim()), element('small', {}, `${found.length} conversations`)),
      element('div', { class: 'rows', id: 'list' }, ...found.map((mail, place) => element('a',
        { class: 'conversation' + (isUnread(mail) ? ' unread' : ''), href: '#inbox/' + mail.id },
        element('span', { class: 'from cut' }, mail.from),
        element('span', { class: 'grow cut' }, element('span', { class: 'subject' }, mail.subject), element('span', { class: 'text' }, ' – ' + mail.text)),
        element('span', { class: 'when' }, mail.arrival ? 'now' : shownAt(place))))));
  }

  function letter(mail) {
    const paragraphs = [mail.text, data.paragraph(5), data.paragraph(4), 'All the best, ' + mail.from];
    return element('article', { class: 'letter padded' },
      element('h2', {}, mail.subject),
      element('div', { class: 'row' }, element('span', { class: 'avatar' }, mail.from[0]), element('span', { class: 'grow' }, element('strong', {}, mail.from), element('br'), element('small', {}, 'to ' + stage.email))),
      ...paragraphs.map((text) => element('p', {}, text)));
  }

  function open(mail) {
    if (isUnread(mail)) post('/_stage/state/read', { account: stage.account, id: mail.id });
    const article = letter(mail);
    article.append(
      element('p', { class: 'row' },
        element('a', { class: 'button', href: '/_stage/download/letter.pdf?size=48000' }, 'letter.pdf'),
        element('a', { class: 'button', href: '/_stage/download/photographs.zip?size=900000' }, 'photographs.zip')),
      element('textarea', { id: 'reply', rows: 4, placeholder: 'Reply', 'aria-label': 'Reply', 'data-draft': true }));
    main.replaceChildren(
      element('header', {}, element('a', { class: 'button', href: '#inbox' }, 'Back to inbox'),
        element('button', { 'aria-label': 'Print all', onclick: () => window.open(`/mail/u/0/?view=pt&id=${mail.id}`, '_blank', 'width=760,height=640') }, 'Print all')),
      article);
    scrollTo(0, 0);
  }

  function settings() {
    const permission = element('strong', { id: 'permission' }, Notification.permission);
    main.replaceChildren(
      element('header', {}, element('h2', {}, 'Settings'), element('a', { class: 'button', href: '#inbox' }, 'Back to inbox')),
      element('div', { class: 'padded stack' },
        element('h3', {}, 'Desktop notifications'), element('p', {}, 'Now: ', permission),
        element('p', { class: 'row' },
          element('button', { id: 'ask-permission', onclick: async () => { permission.textContent = await Notification.requestPermission(); } }, 'Turn on notifications'),
          element('button', { id: 'try-notification', onclick: () => announce({ id: 'try', from: 'A try', subject: 'This is what a notification looks like' }) }, 'Show one'))));
  }

  function announce(arrival) {
    const notification = new Notification(arrival.from, { body: arrival.subject, tag: arrival.id });
    notification.onclick = () => {
      stageReport('notification-click', { notification: arrival.id });
      focus();
      if (arrival.id !== 'try') location.hash = '#inbox/' + arrival.id;
    };
  }

  function route() {
    const [folder, id] = location.hash.slice(1).split('/');
    const mail = folder === 'inbox' && conversations().find((one) => one.id === id);
    if (folder === 'settings') settings();
    else if (mail) open(mail);
    else list();
  }

  function take(news) {
    state = news;
    showTitle();
    const ids = news.arrivals.map((arrival) => arrival.id);
    if (announced) {
      news.arrivals.filter((arrival) => !arrival.read && !announced.has(arrival.id)).forEach(announce);
      if (byId('list')) list();
    } else {
      route();
    }
    announced = new Set(ids);
  }

  function compose(values = query) {
    byId('compose').hidden = false;
    for (const name of ['to', 'su', 'body']) byId('compose').elements[name].value = values.get(name) ?? '';
    byId(values.has('to') ? 'compose-body' : 'compose-to').focus();
  }

  function promote() {
    const card = element('div', { class: 'card promotion no-print', id: 'promotion' },
      element('strong', {}, 'Switch to a faster browser'),
      element('p', {}, 'Mail works best in Chrome. It takes only a minute to change.'),
      element('div', { class: 'row' },
        element('button', { class: 'primary' }, 'Yes, switch'),
        element('button', { onclick: () => { card.remove(); stageReport('promotion-dismissed'); } }, 'No thanks')));
    document.body.append(card);
    stageReport('promotion-shown');
  }

  if (query.get('view') === 'pt') {
    const mail = data.mail.find((one) => one.id === query.get('id')) ?? data.mail[0];
    document.title = `${mail.subject} - Mail`;
    document.body.replaceChildren(element('main', { class: 'sheet' }, letter(mail)));
    addEventListener('load', () => print());
    return;
  }
  byId('compose').addEventListener('submit', (event) => {
    event.preventDefault();
    byId('compose').reset();
    byId('compose').hidden = true;
    if (query.get('view') !== 'cm') return;
    document.body.append(element('p', { class: 'centred' }, 'The message has been sent.'));
    close();
  });
  byId('compose-close').addEventListener('click', () => { byId('compose').hidden = true; });
  byId('new').addEventListener('click', () => compose(new URLSearchParams()));
  if (query.get('view') === 'cm') {
    document.body.classList.add('whole');
    document.title = 'Compose - Mail';
    compose();
    return;
  }
  byId('search').addEventListener('input', list);
  addEventListener('hashchange', route);
  new EventSource('/_stage/state/events').addEventListener('message', (event) => take(JSON.parse(event.data)));
  setTimeout(promote, 1500);
})();
