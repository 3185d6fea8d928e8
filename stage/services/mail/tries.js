'use strict';

// Everything a page can do to leave itself, in one panel.
(() => {
  const { element } = stage;
  const news = 'https://news.example/story';
  const wrapped = 'https://www.google.com/url?q=' + encodeURIComponent(news);
  const line = (id, href, text) => element('li', { class: 'row' },
    element('a', { id: 'link-' + id, class: 'grow', href }, text),
    element('a', { id: `link-${id}-blank`, href, target: '_blank' }, 'new window'));
  const button = (id, text, onclick) => element('button', { id, onclick }, text);
  const frame = (id, src, attributes = {}) => element('iframe', { id, src, title: id, ...attributes });

  const answer = element('small', { id: 'popup-answer', class: 'answer' });
  const form = element('form', { id: 'form-foreign', action: 'https://news.example/search', method: 'post', class: 'row' },
    element('input', { type: 'hidden', name: 'words', value: 'lake' }), element('button', {}, 'Form to another site'));
  const features = 'width=420,height=360,left=60,top=80';
  const openLater = () => setTimeout(() => window.open('/_stage/popup.html', 'later', features), 1200);
  const leave = element('input', { type: 'checkbox', id: 'ask-before-leaving' });

  const said = element('small', { id: 'question-answer', class: 'answer' });
  const answered = (text) => { said.textContent = text; stageReport('answer', { text }); };
  const files = (id, text, attributes = {}) => element('label', { id, class: 'button' }, text,
    element('input', { type: 'file', hidden: true, ...attributes,
      onchange: (event) => answered([...event.target.files].map((file) => `${file.name} (${file.size})`).join(', ')) }));

  addEventListener('message', (event) => {
    if (event.data?.word === undefined) return;
    answer.textContent = `A window said: ${event.data.word}`;
    stageReport('popup-answer', { word: String(event.data.word), from: event.origin });
  });
  addEventListener('beforeunload', (event) => { if (leave.checked) event.preventDefault(); });

  document.getElementById('tries').append(
    element('section', { class: 'card' }, element('h3', {}, 'Links'),
      element('ul', {},
        line('same', '/mail/u/0/#inbox/c4', 'Same app'), line('calendar', 'https://calendar.google.com/calendar/u/0/r', 'Calendar'),
        line('docs', 'https://docs.google.com/document/create', 'A document'), line('foreign', news, 'News site'),
        line('wrapped', wrapped, 'News, wrapped'), line('meeting', 'meeting://join/42', 'A meeting'), line('tel', 'tel:+15550123', 'Telephone'),
        line('mailto', 'mailto:mira@example.com?subject=Hello%20there', 'Write to Mira'))),
    element('section', { class: 'card' }, element('h3', {}, 'Script and forms'),
      element('div', { class: 'row' },
        button('go-script', 'Go to news', () => { location = news; }),
        button('go-calendar', 'Go to calendar', () => { location = 'https://calendar.google.com/'; }), form),
      element('div', { class: 'row' },
        button('open-popup', 'Open window', () => window.open('/_stage/popup.html', 'popup', features)),
        button('open-foreign', 'Open news', () => window.open(news)),
        button('open-sign-in', 'Sign in', () => window.open('https://accounts.google.com/ServiceLogin?by=hand&continue='
          + encodeURIComponent(location.origin + '/_stage/signed-in.html'), 'sign-in', 'width=520,height=640')),
        button('open-later', 'Open later', openLater)), answer,
      element('label', { class: 'row' }, leave, 'Ask before leaving')),
    element('section', { class: 'card' }, element('h3', {}, 'Questions'),
      element('div', { class: 'row' },
        button('ask-alert', 'Alert', () => { alert('The telescope is free tonight.'); answered('read'); }),
        button('ask-confirm', 'Confirm', () => answered(String(confirm('Cancel the booking?')))),
        button('ask-prompt', 'Prompt', () => answered(String(prompt('What shall we look at?', 'M31')))),
        files('ask-file', 'File'), files('ask-files', 'Files', { multiple: true }),
        button('ask-print', 'Print', () => print()),
        button('show-notification', 'Notify', () => {
          new Notification('Mira Okonkwo', { body: 'The dome is open.' }).onclick = () => answered('came back');
        })), said),
    element('section', { class: 'card' }, element('h3', {}, 'Downloads'),
      element('div', { class: 'row' }, ...['sized', 'unsized', 'slow', 'broken', 'inline'].map((kind) =>
        element('a', { id: 'download-' + kind, href: `/_stage/download/${kind}.bin?size=600000&kind=${kind}` }, kind[0].toUpperCase() + kind.slice(1))))),
    element('section', { class: 'card' }, element('h3', {}, 'Frames'),
      frame('frame-same', '/_stage/frame.html'), frame('frame-cross', 'https://contacts.google.com/_stage/frame.html'),
      frame('frame-sandboxed', '/_stage/frame.html', { sandbox: '' })));
})();
