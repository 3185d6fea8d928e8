'use strict';

// Writes a mark into every kind of storage of this host, after telling the beacon what it found there. The mark is the
// query's "tag", else the account. With "read" in the query it only looks.
(async () => {
  const query = new URLSearchParams(location.search);
  const mark = query.get('tag') || document.documentElement.dataset.account || 'nobody';
  const name = 'stage-mark';

  const settled = (request) => new Promise((resolve, reject) => {
    request.onsuccess = () => resolve(request.result);
    request.onerror = () => reject(request.error);
  });
  async function withStore(use) {
    const opening = indexedDB.open(name, 1);
    opening.onupgradeneeded = () => opening.result.createObjectStore('marks');
    const database = await settled(opening);
    try {
      return await settled(use(database.transaction('marks', 'readwrite').objectStore('marks')));
    } finally {
      database.close();
    }
  }

  async function read() {
    const cached = await (await caches.open(name)).match('/_stage/mark');
    return {
      cookie: document.cookie.match(/(?:^|; )stage-mark=([^;]*)/)?.[1] ?? null,
      localStorage: localStorage.getItem(name),
      sessionStorage: sessionStorage.getItem(name),
      indexedDB: (await withStore((store) => store.get('mark'))) ?? null,
      cache: cached ? await cached.text() : null,
      serviceWorker: (await navigator.serviceWorker.getRegistration('/_stage/')) ? new URL((await navigator.serviceWorker.getRegistration('/_stage/')).active?.scriptURL ?? 'about:blank').search.slice(1) : null,
    };
  }

  async function write() {
    document.cookie = `${name}=${encodeURIComponent(mark)}; path=/; max-age=31536000; secure; samesite=lax`;
    localStorage.setItem(name, mark);
    sessionStorage.setItem(name, mark);
    await withStore((store) => store.put(mark, 'mark'));
    await (await caches.open(name)).put('/_stage/mark', new Response(mark));
    await navigator.serviceWorker.register('/_stage/worker.js?' + encodeURIComponent(mark));
    await navigator.serviceWorker.ready;
  }

  const found = await read();
  document.getElementById('found').textContent = JSON.stringify(found, null, 2);
  stageReport('storage-found', { mark, found });
  if (query.has('read')) return;
  await write();
  document.title = `Marked by ${mark}`;
  stageReport('storage-written', { mark });
})().catch((error) => {
  document.title = 'Storage failed';
  stageReport('storage-failed', { message: String(error) });
});
