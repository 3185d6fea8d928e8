'use strict';

document.getElementById('opener').textContent = opener ? 'present' : 'none';
document.getElementById('send').addEventListener('click', () => opener?.postMessage({ word: document.getElementById('answer').value }, '*'));
document.getElementById('close').addEventListener('click', () => close());
document.getElementById('popup-print').addEventListener('click', (event) => {
  event.preventDefault();
  print();
});
