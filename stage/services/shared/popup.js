'use strict';

document.getElementById('opener').textContent = opener ? 'present' : 'none';
document.getElementById('send').addEventListener('click', () => opener?.postMessage({ word: document.getElementById('answer').value }, '*'));
document.getElementById('close').addEventListener('click', () => close());
document.getElementById('notify').addEventListener('click', () => {
  new Notification('Popup', { body: 'From a window of its own' }).onclick = () => stageReport('answer', { text: 'came back' });
});
document.getElementById('popup-print').addEventListener('click', (event) => {
  event.preventDefault();
  print();
});
