'use strict';

(() => {
  const { element, data } = stage;
  const talk = document.getElementById('talk');
  const prompt = document.getElementById('prompt');
  const turn = (who, text) => talk.appendChild(element('p', { class: 'turn ' + who }, text));

  function ask(text) {
    turn('mine', text);
    const answer = turn('answer', '…');
    answer.scrollIntoView({ block: 'end' });
    setTimeout(() => {
      answer.textContent = `I am only a stand-in and cannot think about “${text}”. ${data.paragraph(4)}`;
      scrollTo(0, document.body.scrollHeight);
    }, 700);
  }

  for (const question of data.tasks.slice(0, 7)) {
    turn('mine', `How do I best ${question[0].toLowerCase()}${question.slice(1)}?`);
    turn('answer', data.paragraph(5));
  }
  document.getElementById('ask').addEventListener('submit', (event) => {
    event.preventDefault();
    if (prompt.value.trim()) ask(prompt.value.trim());
    prompt.value = '';
  });
  prompt.addEventListener('keydown', (event) => {
    if (event.key !== 'Enter' || event.shiftKey) return;
    event.preventDefault();
    document.getElementById('ask').requestSubmit();
  });
})();
