// Carries messages between a page and the application. Runs in Tarn's script world, in every frame. The page's side is
// message-handlers.js; the two meet in events of the window, whose texts the page can write as well: a message is the
// page's own word, but for the view, the origin and the frame, which it has no hand in.
(send) => {
  // A page that rewrites its document loses all listeners, and the engine runs the scripts again in the same window.
  const relay = (globalThis.tarnRelay ??= makeRelay());
  addEventListener("tarn-post", relay.post, true);
  addEventListener("pageshow", relay.resume, true);

  function makeRelay() {
    const isTop = self === top;
    const documentId = Array.from(crypto.getRandomValues(new Uint32Array(4)), (part) => part.toString(36)).join("-");
    let listening = false;
    let hasPosted = false;

    // Few at a time: a page that posts without end keeps its own process busy, not the application.
    const makeLane = (atOnce = 32) => {
      let waiting = [];
      let first = 0;
      let running = 0;
      const next = () => {
        while (running < atOnce && first < waiting.length) {
          const [text, done] = waiting[first];
          waiting[first++] = undefined;
          ++running;
          const sent = send("post", text);
          hasPosted = true;
          listen();
          sent.then((answer) => {
            --running;
            done?.(answer);
            next();
          });
        }
        if (first === waiting.length) {
          waiting = [];
          first = 0;
        }
      };
      return (text, done) => {
        waiting.push([text, done]);
        next();
      };
    };
    const plain = makeLane();
    const withReply = makeLane();

    const deliver = (calls) => {
      for (const call of calls) dispatchEvent(new CustomEvent("tarn-call", { detail: JSON.stringify(call) }));
    };

    // A frame is called back on a request that it keeps open, for as long as the application wants to.
    const listen = () => {
      if (isTop || listening || !hasPosted) return;
      listening = true;
      hasPosted = false;
      send("listen", documentId).then((calls) => {
        listening = false;
        if (calls) {
          hasPosted = true;
          deliver(JSON.parse(calls));
        }
        if (calls !== undefined) listen();
      });
    };

    // A lone surrogate, which only an escape can bring here, is no text outside of scripts.
    const escapes = /\\(?:u[dD][89abAB][\dA-Fa-f]{2}\\u[dD][c-fC-F][\dA-Fa-f]{2}|u[dD][89a-fA-F][\dA-Fa-f]{2}|.)/g;
    const wellFormed = (json) => json.replace(escapes, (one) => (/^\\u[dD][89a-fA-F]..$/.test(one) ? "\\ufffd" : one));

    // The detail is three lines: the handler's name, the name of the answer or nothing, the message in JSON. It is not
    // read here: how deep it is nested, the page has chosen.
    const post = (event) => {
      const [, name, id, body] = /^([^\n]*)\n([^\n]*)\n([^]*)$/.exec(event.detail) ?? [];
      if (name === undefined) return;
      event.preventDefault();
      const text = [documentId, isTop ? "main" : "sub", name, wellFormed(body)].join("\n");
      if (id === "") {
        plain(text);
        return;
      }
      withReply(text, (answer) => {
        const detail = answer || '{"error":"refused"}';
        dispatchEvent(new CustomEvent("tarn-answer-" + id, { detail }));
      });
    };

    return {
      post,
      // Back from the page cache, which ends open requests.
      resume: (event) => {
        if (!event.persisted) return;
        hasPosted = true;
        listen();
      },
      // Called by the application, in the main frame.
      deliver: (id, calls) => {
        if (id === documentId) deliver(calls);
      },
    };
  }
}
